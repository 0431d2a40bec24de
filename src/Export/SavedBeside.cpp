#include "Export/SavedBeside.h"

#include "Export/NewFile.h"
#include "platform/CCommonUtils.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Export {

SavedBeside saveBeside(const QString &original, const QString &extension, const QByteArray &bytes)
{
    const QFileInfo info(original);
    SavedBeside saved { original + extension };
    if (QFileInfo::exists(saved.path))
        saved.path = CCommonUtils::uniqFileName(info.dir(), info.fileName(), extension);
    NewFile file(info.path());
    file.write(bytes);
    saved.error = file.moveTo(saved.path, false);
    QFile dated(saved.path);
    if (saved.error == 0 && dated.open(QIODevice::ReadWrite))
        dated.setFileTime(info.lastModified(), QFileDevice::FileModificationTime);
    return saved;
}

} // namespace Export
