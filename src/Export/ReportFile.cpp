#include "Export/ReportFile.h"

#include "Export/NewFile.h"
#include "Export/Text.h"
#include "export/CUtils.h"
#include "platform/CCommonUtils.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Export {

namespace {

QString cell(const QString &text)
{
    return CUtils::csvCell(printable(text));
}

QByteArray lineOf(const QStringList &cells)
{
    QStringList encoded;
    for (const QString &text : cells)
        encoded += cell(text);
    return encoded.join(u',').toUtf8() + "\r\n";
}

} // namespace

ReportFile::ReportFile(const QString &folder)
    : m_folder(folder)
{
}

ReportFile::~ReportFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void ReportFile::append(const QStringList &cells)
{
    if (m_descriptor < 0 && m_error == 0)
        open();
    write(lineOf(cells));
}

void ReportFile::sync()
{
    if (m_descriptor >= 0 && ::fsync(m_descriptor) != 0 && m_error == 0 && errno != EINVAL)
        m_error = errno;
}

void ReportFile::open()
{
    const QString path = CCommonUtils::uniqFileName(QDir(m_folder), u"export-report"_s, u".csv"_s);
    const QByteArray native = QFile::encodeName(path);
    constexpr mode_t kForAll = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    m_descriptor = ::open(native.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kForAll);
    if (m_descriptor < 0) {
        m_error = errno;
        return;
    }
    write("\xEF\xBB\xBF" + lineOf({ u"Type"_s, u"Item"_s, u"Cause"_s, u"Reason"_s }));
    if (m_error == 0) {
        m_path = path;
    } else {
        ::close(m_descriptor);
        m_descriptor = -1;
        ::unlink(native.constData());
    }
}

void ReportFile::write(const QByteArray &bytes)
{
    if (m_error != 0)
        return;
    const off_t before = ::lseek(m_descriptor, 0, SEEK_CUR);
    m_error = writeAll(m_descriptor, bytes);
    if (m_error != 0 && ::ftruncate(m_descriptor, before) != 0) // no half line
        m_error = errno;
}

} // namespace Export
