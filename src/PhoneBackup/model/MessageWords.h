#ifndef PHONEBACKUP_MODEL_MESSAGEWORDS_H
#define PHONEBACKUP_MODEL_MESSAGEWORDS_H

#include <QString>

namespace PhoneBackup {

/*!
    The words for what messages hold besides their text: one line each, in the user's language.
*/
namespace MessageWords {

//! \a text in one line, cut when it is long, in quotation marks; empty for an empty text.
QString quote(const QString &text);

//! "Ann loved “See you there”". \a type: 2000 to 2007, 1000 or 4000.
QString reaction(const QString &who, qint64 type, const QString &emoji, const QString &quotedText);

//! The line above an answer.
QString replyTo(const QString &quotedText);

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
