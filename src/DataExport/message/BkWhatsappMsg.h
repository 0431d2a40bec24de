#ifndef DATAEXPORT_MESSAGE_BKWHATSAPPMSG_H
#define DATAEXPORT_MESSAGE_BKWHATSAPPMSG_H

#include "DataExport_global.h"

#include <QDateTime>
#include <QString>

/*!
    \brief One message of a WhatsApp chat.

    Item model, implemented by the application. References live as long as the message; empty texts
    mean that the message has none.
*/
class DATAEXPORT_EXPORT BkWhatsappMsg
{
public:
    BkWhatsappMsg() = default;
    virtual ~BkWhatsappMsg();

    BkWhatsappMsg(const BkWhatsappMsg &) = delete;
    BkWhatsappMsg &operator=(const BkWhatsappMsg &) = delete;

    //! What it is: a BkWhatsappType::Code. Any other number is treated like a text.
    virtual int type() const = 0;

    //! The text: of a picture or video its caption, of a group event its description.
    virtual const QString &content() const = 0;

    //! Whether the phone's owner sent it.
    virtual bool isFromMe() const = 0;

    //! Whether it was delivered. false: it failed.
    virtual bool isSentDone() const = 0;

    //! Whether it was sent to all people of a list.
    virtual bool isBroadcast() const = 0;

    //! Name of the group's member who wrote it; empty outside of groups and of the owner's own.
    virtual const QString &member() const = 0;

    //! When it was sent or received; invalid when not known. UTC dates are the cheapest to show.
    virtual QDateTime msgDate() const = 0;

    //! Path of the media file on disk. Asked of messages of every type, once a pass.
    virtual const QString &media() const = 0;

    //! Name of the media file for people, such as that of its copy; empty when it is not known.
    //! Hardened tables name the file by it. Empty by default.
    virtual QString mediaName() const;
};

#endif
