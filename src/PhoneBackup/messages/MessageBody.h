#ifndef PHONEBACKUP_MESSAGES_MESSAGEBODY_H
#define PHONEBACKUP_MESSAGES_MESSAGEBODY_H

#include "PhoneBackup/plist/AttributedText.h"

namespace PhoneBackup {

class Source;
class Statement;

//! The text of a message, from the two columns that may hold it.
struct MessageBody
{
    static constexpr qsizetype kMaxTextBytes = 4 << 20; //!< Nobody writes more.

    QString text;
    QList<AttributedText::File> places; //!< Which file stands where in it.
    QList<AttributedText::Span> links;
    QList<AttributedText::Span> mentions;
    QString transcription; //!< What was said in a voice message.
    bool isUnreadable = false; //!< There is a text, of which nothing can be read.

    /*!
        The text in \a column of \a row. One of more than kMaxTextBytes is cut there, and \a source
        told.
    */
    static QString textAt(Source &source, const Statement &row, int column);

    //! The attributed text in column \a attributed of \a row; the one in \a plain where that
    //! fails, is empty, or longer than textAt() reads.
    static MessageBody read(Source &source, const Statement &row, int attributed, int plain);

    //! Tells \a source that texts could not be read in \a column.
    static void reportUnreadable(Source &source, const QString &column);
};

} // namespace PhoneBackup

#endif
