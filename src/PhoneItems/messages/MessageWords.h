#ifndef PHONEITEMS_MESSAGES_MESSAGEWORDS_H
#define PHONEITEMS_MESSAGES_MESSAGEWORDS_H

#include <QString>
#include <QStringList>

namespace PhoneBackup {
struct Balloon;
struct Conversation;
struct GroupEvent;
struct Poll;
struct Reaction;
} // namespace PhoneBackup

namespace PhoneItems {

/*!
    The words for what messages hold besides their text: one line each, in the user's language.
*/
namespace MessageWords {

//! What a conversation goes by: its title, else the people in it, else what the phone calls it.
QString conversation(const PhoneBackup::Conversation &conversation);

//! "Ann loved “See you there”"; no vote.
QString reaction(const QString &who, const PhoneBackup::Reaction &reaction, const QString &quoted);

//! "Ann voted for “Fish” in “[Poll: Supper?]”"; \a chosen is empty where nobody knows for what.
QString vote(const QString &who, const QStringList &chosen, const QString &quotedPoll);

//! What happened to a group: what \a who did, to \a other where it was done to somebody.
QString event(const PhoneBackup::GroupEvent &event, const QString &who, const QString &other);

/*!
    What a link preview or the message of an app says, for a message that has no text: the link, or
    what the app calls it in brackets. Never empty.
*/
QString balloon(const PhoneBackup::Balloon &balloon);

//! The title of the page behind a link, to stand beside its address.
QString linkTitle(const QString &title);

//! A poll's question in brackets; and with a line for each option below.
QString pollTitle(const PhoneBackup::Poll &poll);
QString poll(const PhoneBackup::Poll &poll);

//! The text of an option, which may have none.
QString pollOption(const PhoneBackup::Poll &poll, qsizetype option);

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

} // namespace PhoneItems

#endif
