#ifndef PHONEITEMS_MESSAGES_MESSAGEWORDS_H
#define PHONEITEMS_MESSAGES_MESSAGEWORDS_H

#include <QString>
#include <QStringList>

namespace PhoneBackup {

struct Balloon;
struct Poll;

/*!
    The words for what messages hold besides their text: one line each, in the user's language.
*/
namespace MessageWords {

//! "Ann loved “See you there”". \a type: 2000 to 2007, 1000.
QString reaction(const QString &who, qint64 type, const QString &emoji, const QString &quotedText);

//! "Ann voted for “Fish” in “[Poll: Supper?]”"; \a chosen is empty where nobody knows for what.
QString vote(const QString &who, const QStringList &chosen, const QString &quotedPoll);

//! What happened to a group. The numbers are those of the message's columns.
struct Event
{
    qint64 type = 0;
    qint64 action = 0;
    qint64 shareStatus = 0;
    QString title;
    QString who;
    QString other; //!< Who it was done to.
    bool toOneself = false;
};
QString event(const Event &event);

/*!
    What a link preview or the message of an app says, for a message that has no text: the link, or
    what the app calls it in brackets. Never empty.
*/
QString balloon(const Balloon &balloon);

//! The title of the page behind a link, to stand beside its address.
QString linkTitle(const QString &title);

//! A poll's question in brackets; and with a line for each option below.
QString pollTitle(const Poll &poll);
QString poll(const Poll &poll);

//! The text of an option, which may have none.
QString pollOption(const Poll &poll, qsizetype option);

//! A file that the message had and of which nothing else is known.
QString attachment();

//! A voice message without its sound; \a transcription is what the phone understood.
QString voiceMessage(bool isExpired, const QString &transcription);

QString deleted();
QString edited();
QString unsent();
QString unreadable();
//! How a message was set off, "[Sent with Confetti]", from the identifier that the phone stores.
QString effect(const QString &identifier);
QString scheduled();

} // namespace MessageWords

} // namespace PhoneBackup

#endif
