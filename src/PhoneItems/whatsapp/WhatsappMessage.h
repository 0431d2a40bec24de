#ifndef PHONEITEMS_WHATSAPP_WHATSAPPMESSAGE_H
#define PHONEITEMS_WHATSAPP_WHATSAPPMESSAGE_H

#include "PhoneBackup/folder/BackupFiles.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/whatsapp/WhatsappFiles.h"
#include "message/BkWhatsappMsg.h"

namespace PhoneBackup {

//! What a message is to those who show it.
namespace WhatsappCode {
enum Code { Text, Picture, Video, Audio, ContactCard, Location, GroupEvent };
}

//! One message of the chat that is open.
class WhatsappMessage final : public BkWhatsappMsg
{
public:
    // What the reader fills in.
    qint64 dateMs = PhoneTime::kNoMs;
    QString text;
    QString author;
    BackupFiles *files = nullptr; //!< Those that its media file is one of.
    FileIndex::Row mediaFile = FileIndex::kNone;
    qint64 storedType = 0; // the app's own, with the title the name of the file
    QString title;
    bool isPreview = false; // a small picture in the place of the file
    int code = WhatsappCode::Text;
    bool fromMe = false;
    bool sentDone = true;
    bool broadcast = false;
    bool isDeleted = false; // for everyone: its text is not what was said
    quint64 idHash = 0; // of the identifier by which answers name it

    int type() const override { return code; }
    const QString &content() const override { return text; }
    bool isFromMe() const override { return fromMe; }
    bool isSentDone() const override { return sentDone; }
    bool isBroadcast() const override { return broadcast; }
    const QString &member() const override { return author; }
    QDateTime msgDate() const override { return PhoneTime::ofMs(dateMs); }
    const QString &media() const override
    {
        // Only now: an encrypted file is decrypted for whoever wants its path. Pages look for a
        // picture in everything; whole films are not decrypted to find that they hold none.
        const bool isWorthIt = !files->isEncrypted() || isPreview
            || (code != WhatsappCode::Video && code != WhatsappCode::Audio);
        if (mediaFile != FileIndex::kNone && isWorthIt)
            m_mediaPath = files->plainPath(mediaFile);
        return m_mediaPath;
    }
    QString mediaName() const override
    {
        if (mediaFile == FileIndex::kNone || isPreview)
            return {};
        const QByteArrayView path = files->index().path(mediaFile);
        return whatsappFileName(
            storedType, title, msgDate(), PathParts::text(PathParts::extension(path)));
    }

private:
    mutable QString m_mediaPath;
};

} // namespace PhoneBackup

#endif
