#include "ReportFile.h"

#include "Text.h"
#include "export/CUtils.h"
#include "platform/CCommonUtils.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

QString cell(const QString &text)
{
    return CUtils::csvCell(printable(text));
}

} // namespace

ReportFile::ReportFile(const QString &folder)
    : m_folder(folder)
{
}

void ReportFile::append(const QStringList &cells)
{
    if (!m_error.isEmpty())
        return;
    if (!m_file.isOpen() && !open())
        return;
    write(cells);
}

QString ReportFile::path() const
{
    return m_file.isOpen() ? m_file.fileName() : QString();
}

QString ReportFile::error() const
{
    return m_error;
}

bool ReportFile::open()
{
    m_file.setFileName(CCommonUtils::uniqFileName(QDir(m_folder), u"export-report"_s, u".csv"_s));
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        m_error = m_file.errorString();
        return false;
    }
    if (m_file.write("\xEF\xBB\xBF") == 3
        && write({ u"Type"_s, u"Item"_s, u"Cause"_s, u"Reason"_s }))
        return true;
    if (m_error.isEmpty())
        m_error = m_file.errorString();
    m_file.close();
    m_file.remove();
    return false;
}

bool ReportFile::write(const QStringList &cells)
{
    QStringList encoded;
    for (const QString &text : cells)
        encoded += cell(text);
    const QByteArray line = encoded.join(u',').toUtf8() + "\r\n";
    const qint64 before = m_file.pos();
    if (m_file.write(line) == line.size())
        return true;
    m_error = m_file.errorString();
    m_file.resize(before); // no half line
    return false;
}

} // namespace Cli
