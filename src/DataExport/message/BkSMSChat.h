#ifndef DATAEXPORT_MESSAGE_BKSMSCHAT_H
#define DATAEXPORT_MESSAGE_BKSMSCHAT_H

#include "DataExport_global.h"

#include <QDateTime>
#include <QList>
#include <QString>

class BkSMSPiece;

/*!
    \brief One message of a conversation.

    Item model, implemented by the application, which owns the pieces. References and pieces live as
    long as the message; empty texts mean that the message has none.
*/
class DATAEXPORT_EXPORT BkSMSChat
{
public:
    BkSMSChat() = default;
    virtual ~BkSMSChat();

    BkSMSChat(const BkSMSChat &) = delete;
    BkSMSChat &operator=(const BkSMSChat &) = delete;

    //! Whether the phone's owner sent it.
    virtual bool isFromMe() const = 0;

    //! Whether it was delivered. false: it failed, or its state is not known.
    virtual bool isSentDone() const = 0;

    //! true for SMS and MMS, false for iMessage.
    virtual bool isNormalSMS() const = 0;

    //! When it was sent or received; invalid when not known. UTC dates are the cheapest to show.
    virtual QDateTime msgDate() const = 0;

    //! The sender's phone number or e-mail address.
    virtual const QString &addr() const = 0;

    //! The subject.
    virtual const QString &subject() const = 0;

    //! The text; empty in a message that consists of pieces alone.
    virtual const QString &content() const = 0;

    //! The parts of the message in their order. Null entries are skipped.
    virtual const QList<BkSMSPiece *> &pieces() const = 0;
};

#endif
