#ifndef PHONEITEMS_MESSAGES_MESSAGE_H
#define PHONEITEMS_MESSAGES_MESSAGE_H

#include "PhoneBackup/messages/Conversation.h"
#include "message/BkSMSChat.h"

namespace PhoneBackup {

/*!
    \brief One message. Made by the million: what few messages have lies in an object of its own.
*/
class Message final : public BkSMSChat
{
public:
    //! What only few messages have.
    struct Extras
    {
        QString subject;
        QList<BkSMSPiece *> pieces;
        QStringList parts; //!< A line for each part, for those who quote it.
    };

    //! What the reader fills in; the pointers are to what lives as long as the conversation.
    qint64 row = 0;
    qint64 dateMs = PhoneTime::kNoMs;
    quint64 guidHash = 0;
    const QString *address = nullptr;
    Extras *extras = nullptr;
    QString text;
    bool fromMe = false;
    bool sentDone = true;
    bool normalSms = true;
    bool hidden = false; //!< Not shown; may still be quoted.

    bool isFromMe() const override { return fromMe; }
    bool isSentDone() const override { return sentDone; }
    bool isNormalSMS() const override { return normalSms; }
    QDateTime msgDate() const override;
    const QString &addr() const override;
    const QString &subject() const override;
    const QString &content() const override { return text; }
    const QList<BkSMSPiece *> &pieces() const override;
};

} // namespace PhoneBackup

#endif
