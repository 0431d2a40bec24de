#ifndef PHONEITEMS_MESSAGES_MESSAGECHAT_H
#define PHONEITEMS_MESSAGES_MESSAGECHAT_H

#include "PhoneBackup/messages/Message.h"
#include "message/BkSMSChat.h"

namespace PhoneItems {

/*!
    \brief One message as it is shown. Made by the million: most show the text of their record, and
    have nothing else.
*/
class MessageChat final : public BkSMSChat
{
public:
    //! What is shown of a message that is more than a text.
    struct Extras
    {
        QString text;
        QString subject;
        QList<BkSMSPiece *> pieces;
        QStringList parts; //!< A line for each part, for those who quote it.
        bool isEvent = false;
    };

    explicit MessageChat(const PhoneBackup::Message &shown)
        : record(&shown)
    {
    }

    const PhoneBackup::Message *record; //!< Lives as long as the conversation is open.
    Extras *extras = nullptr;
    bool normalSms = true;
    bool hidden = false; //!< Not shown; may still be quoted.

    bool isFromMe() const override { return record->isFromMe; }
    bool isSentDone() const override;
    bool isNormalSMS() const override { return normalSms; }
    QDateTime msgDate() const override { return PhoneBackup::PhoneTime::ofMs(record->dateMs); }
    const QString &addr() const override;
    const QString &subject() const override;
    const QString &content() const override { return extras ? extras->text : record->text; }
    const QList<BkSMSPiece *> &pieces() const override;
};

} // namespace PhoneItems

#endif
