#ifndef PHONEBACKUP_MESSAGES_REACTION_H
#define PHONEBACKUP_MESSAGES_REACTION_H

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace PhoneBackup {

//! What a row says of another message. Who and when are the row's own.
struct Reaction
{
    enum class Kind : quint8 {
        Love,
        Like,
        Dislike,
        Laugh,
        Emphasis,
        Question,
        Emoji,
        Sticker,
        PutSticker, //!< Any number of them may stick to a message.
        Vote, //!< On a poll.
    };
    static constexpr int kWholeMessage = -1;
    static constexpr qsizetype kNone = -1;

    Kind kind = Kind::Love;
    bool isWithdrawn = false; //!< The row takes one back.
    bool isLast = true; //!< No later row of the same person is about the same.
    int part = kWholeMessage; //!< Number of the part that it is about.
    int person = -1; //!< The same number for all addresses of who it is from; -1 for the owner.
    QString targetGuid;
    qsizetype target = kNone; //!< Place of the other message in the conversation, kNone when gone.
    QString emoji;
    std::optional<QStringList> vote; //!< Identifiers of the options; see Poll::readVote().
    qsizetype poll = kNone; //!< Of a vote: place of the message with the poll as it is last.
    std::vector<qsizetype> options; //!< Of a vote: which it chose, of those that there are.

    //! Whether it holds: a later row may have taken its place, or taken it back.
    bool holds() const { return isLast && !isWithdrawn && !(vote && vote->isEmpty()); }

    //! The GUID in the name of another message, as rows have it; \a part is set when it is named.
    static QString guidIn(const QString &name, int *part = nullptr);

    //! The reaction of a row with this type and the name of another message; none for other rows.
    static std::optional<Reaction> read(qint64 type, const QString &target);
};

} // namespace PhoneBackup

#endif
