#ifndef PHONEBACKUP_MESSAGES_MESSAGEEXTRAS_H
#define PHONEBACKUP_MESSAGES_MESSAGEEXTRAS_H

#include "PhoneBackup/messages/Balloon.h"
#include "PhoneBackup/messages/EditHistory.h"
#include "PhoneBackup/messages/GroupEvent.h"
#include "PhoneBackup/messages/MessagePart.h"
#include "PhoneBackup/messages/Reaction.h"

#include <memory>

namespace PhoneBackup {

//! The message that another one answers.
struct Answer
{
    QString targetGuid;
    int part = 0; //!< Number of the answered part.
    qsizetype target = Reaction::kNone; //!< Place of the answered message in its conversation.
};

//! A part of a message that was deleted by itself.
struct DeletedPart
{
    qint64 number = 0;
    QString text; //!< Empty for a file, of which nothing else is known.
    qint64 deletedMs = PhoneTime::kNoMs;
};

//! What only few messages have.
struct MessageExtras
{
    QString guid; //!< The message's GUID where that is no UUID in capital letters.
    QString serviceName; //!< As it is stored, where MessageService does not know it.
    QString subject;
    std::vector<MessagePart> parts; //!< In their order; empty when Message::text is everything.
    QList<TextSpan> links; //!< In Message::text.
    QList<TextSpan> mentions; //!< In Message::text: names of people, with their address.
    std::unique_ptr<Balloon> balloon; //!< A link's preview, a poll, or what an app says.

    std::unique_ptr<Reaction> reaction; //!< The row is one, and no message of its own.
    std::unique_ptr<GroupEvent> event; //!< Likewise.
    std::vector<qsizetype> reactions; //!< Places of the reactions and votes that it has got.
    std::unique_ptr<Answer> answer;
    bool isPollUpdate = false; //!< Sent for an option more of an earlier poll, which now has it.

    bool isVoice = false; //!< It was spoken.
    bool isExpired = false; //!< The phone has deleted the sound since.
    qint64 playedMs = PhoneTime::kNoMs; //!< When the sound was played.
    QString transcription; //!< What was said, as the phone understood it.

    QString effect; //!< Identifier of how it was set off.
    bool isScheduled = false; //!< It was to be sent at its date.
    qint64 deletedMs = PhoneTime::kNoMs; //!< When it was deleted.

    bool isTextLost = false; //!< There was a text, of which nothing can be read.
    bool isEdited = false;
    bool isUnsent = false; //!< It was taken back; the history tells when only parts of it were.
    qint64 editedMs = PhoneTime::kNoMs; //!< When it was changed last.
    qint64 unsentMs = PhoneTime::kNoMs;
    std::unique_ptr<EditHistory> history; //!< Its texts from first to last, and what was unsent.
    std::vector<DeletedPart> deletedParts;
};

} // namespace PhoneBackup

#endif
