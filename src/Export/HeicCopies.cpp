#include "Export/HeicCopies.h"

#include "Export/HeicToJpeg/HeicToJpeg.h"
#include "Export/NewFile.h"
#include "platform/CCommonUtils.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace Export {

namespace {

using Cause = CIExportReport::Cause;

// Answers 0 or the error number.
int write(const QString &path, const QByteArray &jpeg)
{
    NewFile file(QFileInfo(path).path());
    file.write(jpeg);
    return file.moveTo(path, false);
}

} // namespace

std::optional<CIExportReport::Fault> HeicCopies::fileCopied(const QString &path)
{
    using Fault = CIExportReport::Fault;
    if (!HeicToJpeg::isHeic(path))
        return std::nullopt;
    const QFileInfo original(path);
    QString target = path + ".jpg"_L1;
    if (QFileInfo::exists(target))
        target = CCommonUtils::uniqFileName(original.dir(), original.fileName(), u".jpg"_s);
    const HeicToJpeg::Conversion made = HeicToJpeg::convert(path);
    if (made.jpeg.isEmpty()) {
        return Fault { Cause::Content,
                       u"The HEIC file was copied, but could not be converted to JPEG: %1."_s.arg(
                           made.why) };
    }
    if (const int number = write(target, made.jpeg)) {
        return Fault { Cause::Target,
                       u"Its JPEG copy could not be written to “%1”: %2."_s.arg(target,
                                                                                errorText(number)),
                       number };
    }
    QFile dated(target);
    if (dated.open(QIODevice::ReadWrite))
        dated.setFileTime(original.lastModified(), QFileDevice::FileModificationTime);
    ++m_count;
    m_lastPath = target;
    if (!made.lacksRemarks)
        return std::nullopt;
    return Fault {
        Cause::Content,
        u"Its JPEG copy has no date or location: the picture’s metadata cannot be read."_s
    };
}

} // namespace Export
