#ifndef DATAEXPORT_MESSAGE_BKSMSCHATGROUP_H
#define DATAEXPORT_MESSAGE_BKSMSCHATGROUP_H

#include "DataExport_global.h"

#include <QList>
#include <QMap>
#include <QString>

class BkSMSChat;

/*!
    \brief The content of one conversation: its messages and who takes part.

    Item model, implemented by the application, which owns the messages. References and messages
    live as long as the group.
*/
class DATAEXPORT_EXPORT BkSMSChatGroup
{
public:
    BkSMSChatGroup() = default;
    virtual ~BkSMSChatGroup();

    BkSMSChatGroup(const BkSMSChatGroup &) = delete;
    BkSMSChatGroup &operator=(const BkSMSChatGroup &) = delete;

    //! The messages in the order of display. Null entries are skipped.
    virtual const QList<BkSMSChat *> &chats() const = 0;

    /*!
        Each participant's address with the name to show, which may be empty. More than one entry
        makes it a group conversation, in which received messages bear their sender.
    */
    virtual const QMap<QString, QString> &addrIds() const = 0;
};

#endif
