#ifndef PHONEITEMS_WHATSAPP_WHATSAPPLINE_H
#define PHONEITEMS_WHATSAPP_WHATSAPPLINE_H

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/folder/BackupFiles.h"
#include "PhoneBackup/whatsapp/WhatsappMessage.h"
#include "message/BkWhatsappMsg.h"
#include "message/BkWhatsappType.h"

namespace PhoneItems {

//! One message of the chat that is open, or a line about one.
class WhatsappLine final : public BkWhatsappMsg
{
public:
    using Kind = PhoneBackup::WhatsappMessage::Kind;

    // What it is made of.
    qint64 dateMs = PhoneBackup::PhoneTime::kNoMs;
    QString text;
    QString author;
    PhoneBackup::BackupFiles *files = nullptr; //!< Those that its media file is one of.
    PhoneBackup::FileIndex::Row mediaFile = PhoneBackup::FileIndex::kNone;
    QString title;
    Kind kind = Kind::Text; // with the title the name of the file
    bool isPreview = false; // a small picture in the place of the file
    BkWhatsappType::Code code = BkWhatsappType::Text;
    bool fromMe = false;
    bool sentDone = true;
    bool broadcast = false;
    quint64 idHash = 0; // of the identifier by which answers name it

    //! Deleted for everyone: its text is not what was said.
    bool isDeleted() const { return kind == Kind::Deleted; }

    int type() const override { return code; }
    const QString &content() const override { return text; }
    bool isFromMe() const override { return fromMe; }
    bool isSentDone() const override { return sentDone; }
    bool isBroadcast() const override { return broadcast; }
    const QString &member() const override { return author; }
    QDateTime msgDate() const override { return PhoneBackup::PhoneTime::ofMs(dateMs); }
    const QString &media() const override;
    QString mediaName() const override;

private:
    mutable QString m_mediaPath;
};

} // namespace PhoneItems

#endif
