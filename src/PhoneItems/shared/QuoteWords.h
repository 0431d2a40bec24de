#ifndef PHONEITEMS_SHARED_QUOTEWORDS_H
#define PHONEITEMS_SHARED_QUOTEWORDS_H

#include <QString>

//! The words with which one message is about another, in whatever app.
namespace PhoneItems::QuoteWords {

//! \a text in one line, cut when it is long, in quotation marks; empty for an empty text.
QString quote(const QString &text);

//! \a quotedText, or words for a message that is not there.
QString orMessage(const QString &quotedText);

//! "Ann reacted with 😀 to “See you there”".
QString reaction(const QString &who, const QString &emoji, const QString &quotedText);

//! The line above an answer.
QString replyTo(const QString &quotedText);

} // namespace PhoneItems::QuoteWords

#endif
