#ifndef PHONEBACKUP_MESSAGES_POLL_H
#define PHONEBACKUP_MESSAGES_POLL_H

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace PhoneBackup {

//! A question with answers to choose from, which somebody sent in a message.
struct Poll
{
    struct Option
    {
        QString id; //!< What votes call it.
        QString text; //!< In one line; may be empty.
    };

    QString title; //!< In one line; may be empty.
    QString updatedGuid; //!< Of the message whose poll this one replaces; empty for a new poll.
    QList<Option> options; //!< In their order; empty where there is no poll.

    //! The poll that the app of polls keeps in \a address, without options when it holds none.
    static Poll read(const QString &address);

    //! The place of each option by its identifier; of equal ones the first.
    QHash<QString, qsizetype> places() const;

    /*!
        What a vote in \a address chose, as identifiers of options: all that its sender has chosen
        at that moment, none when everything was withdrawn. No value when it holds no vote.
    */
    static std::optional<QStringList> readVote(const QString &address);
};

} // namespace PhoneBackup

#endif
