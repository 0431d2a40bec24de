#include "Export/HeicCopies.h"

#include "Export/HeicToJpeg/HeicToJpeg.h"
#include "Export/NewFile.h"
#include "Export/SavedBeside.h"

using namespace Qt::StringLiterals;

namespace Export {

namespace {

using Cause = CIExportReport::Cause;

} // namespace

std::optional<CIExportReport::Fault> HeicCopies::fileCopied(const QString &path)
{
    using Fault = CIExportReport::Fault;
    if (!HeicToJpeg::isHeic(path))
        return std::nullopt;
    const HeicToJpeg::Conversion made = HeicToJpeg::convert(path);
    if (made.jpeg.isEmpty()) {
        return Fault { Cause::Content,
                       u"The HEIC file was copied, but could not be converted to JPEG: %1."_s.arg(
                           made.why) };
    }
    const SavedBeside saved = saveBeside(path, u".jpg"_s, made.jpeg);
    if (saved.error != 0) {
        return Fault { Cause::Target,
                       u"Its JPEG copy could not be written to “%1”: %2."_s.arg(
                           saved.path, errorText(saved.error)),
                       saved.error };
    }
    ++m_count;
    m_lastPath = saved.path;
    if (!made.lacksRemarks)
        return std::nullopt;
    return Fault {
        Cause::Content,
        u"Its JPEG copy has no date or location: the picture’s metadata cannot be read."_s
    };
}

} // namespace Export
