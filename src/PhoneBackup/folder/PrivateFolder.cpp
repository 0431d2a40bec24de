#include "folder/PrivateFolder.h"

#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using DataExport::tr;

namespace {

constexpr qint64 kChunk = 262144;

bool liesIn(const QString &path, const QString &folder)
{
    const QString inner = QDir(path).canonicalPath() + u'/';
    const QString outer = QDir(folder).canonicalPath() + u'/';
    return !folder.isEmpty() && inner.startsWith(outer);
}

Error notMade(const QString &path, const QString &why)
{
    return Error { Fault::Io,
                   path,
                   tr("No temporary folder could be made in “%1”: %2. Set the environment variable "
                      "TMPDIR to a folder with free space.")
                       .arg(path, why) };
}

} // namespace

PrivateFolder::PrivateFolder(const QString &forbidden)
    : m_forbidden(forbidden)
{
}

PrivateFolder::~PrivateFolder() = default;

Result<QString> PrivateFolder::newSubFolder()
{
    if (!m_dir) {
        const QString place = QDir::tempPath();
        if (liesIn(place, m_forbidden))
            return notMade(place, tr("it lies in the backup"));
        auto dir = std::make_unique<QTemporaryDir>(place + "/dataexport-XXXXXX"_L1);
        if (!dir->isValid())
            return notMade(place, dir->errorString());
        m_dir = std::move(dir);
    }
    const QString path = m_dir->filePath(QString::number(++m_count));
    if (!QDir().mkdir(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        return notMade(m_dir->path(), tr("it cannot be written to"));
    return path;
}

Result<> PrivateFolder::copy(const QString &source, const QString &target)
{
    QFile from(source);
    QString why;
    if (!CCommonUtils::openForReading(from, &why))
        return Error { Fault::Io, source, tr("“%1” could not be read: %2.").arg(source, why) };
    QFile to(target);
    bool written = to.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                           QFile::ReadOwner | QFile::WriteOwner);
    QByteArray chunk(kChunk, Qt::Uninitialized);
    qint64 count = 0;
    while (written && (count = from.read(chunk.data(), chunk.size())) > 0)
        written = to.write(chunk.constData(), count) == count;
    to.close();
    if (written && count == 0 && to.error() == QFileDevice::NoError)
        return Done {};
    const Error error = count < 0
        ? Error { Fault::Io,
                  source,
                  tr("“%1” could not be read: %2.").arg(source, from.errorString()) }
        : notMade(target, to.errorString());
    to.remove();
    return error;
}

} // namespace PhoneBackup
