#ifndef PHONEBACKUP_MODEL_MESSAGEBODY_H
#define PHONEBACKUP_MODEL_MESSAGEBODY_H

#include "plist/AttributedText.h"

namespace PhoneBackup {

class Source;
class Statement;

//! The text of a message, from the two columns that may hold it.
struct MessageBody
{
    QString text;
    QList<AttributedText::File> places; //!< Which file stands where in it.
    QString transcription; //!< What was said in a voice message.
    bool isUnreadable = false; //!< There is a text, of which nothing can be read.

    //! The attributed text in column \a attributed of \a row; the one in \a plain where that fails
    //! or is empty.
    static MessageBody read(const Statement &row, int attributed, int plain);

    //! Tells \a source that texts could not be read in \a column.
    static void tellUnreadable(Source &source, const QString &column);
};

} // namespace PhoneBackup

#endif
