#ifndef PHONEBACKUP_MESSAGES_MESSAGEPART_H
#define PHONEBACKUP_MESSAGES_MESSAGEPART_H

#include "PhoneBackup/messages/MessageAttachment.h"

#include <memory>

namespace PhoneBackup {

//! A stretch of a text that leads somewhere.
struct TextSpan
{
    qsizetype position; //!< In UTF-16 units, as the length.
    qsizetype length;
    QString address; //!< Of a page or a person.
};

//! One of the things that a message consists of, in their order.
struct MessagePart
{
    enum class Kind : quint8 {
        Text,
        File,
        LostFile, //!< The text has a place for a file of which the database knows nothing.
    };

    Kind kind = Kind::Text;
    QString text;
    QList<TextSpan> links; //!< In the text.
    QList<TextSpan> mentions; //!< In the text: names of people, with their address.
    std::unique_ptr<MessageAttachment> file; //!< Of a file, never null; of others null.
};

} // namespace PhoneBackup

#endif
