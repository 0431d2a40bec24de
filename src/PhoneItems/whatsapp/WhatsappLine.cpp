#include "PhoneItems/whatsapp/WhatsappLine.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneItems/whatsapp/WhatsappFiles.h"

namespace PhoneItems {

using PhoneBackup::FileIndex;
namespace PathParts = PhoneBackup::PathParts;

const QString &WhatsappLine::media() const
{
    // Only now: an encrypted file is decrypted for whoever wants its path. Pages look for a
    // picture in everything; whole films are not decrypted to find that they hold none.
    const bool isWorthIt = !files->isEncrypted() || isPreview
        || (code != BkWhatsappType::Video && code != BkWhatsappType::Audio);
    if (mediaFile != FileIndex::kNone && isWorthIt)
        m_mediaPath = files->plainPath(mediaFile);
    return m_mediaPath;
}

QString WhatsappLine::mediaName() const
{
    if (mediaFile == FileIndex::kNone || isPreview)
        return {};
    const QByteArrayView path = files->index().path(mediaFile);
    return whatsappFileName(kind, title, msgDate(), PathParts::text(PathParts::extension(path)));
}

} // namespace PhoneItems
