#ifndef ARCHIVE_RECORDS_RECORDREADER_H
#define ARCHIVE_RECORDS_RECORDREADER_H

#include "Archive/records/RecordTaker.h"

#include <QList>

namespace PhoneBackup {
class Source;
}

namespace Archive {

//! Records of one kind.
struct RecordKind
{
    const char *name; //!< In file names and in scripts that read them.
    QList<int> dataTypes; //!< Codes of the data types that they belong to.

    //! Gives all records of \a source to \a taker, in the order of their reader. What cannot be
    //! read is a problem of the source.
    void (*read)(PhoneBackup::Source &source, RecordTaker &taker);
};

/*!
    All kinds. A conversation or chat stands before its messages and a shared album before its
    pictures; reactions and votes stand with the message that they are about, those whose message is
    gone by themselves. Conversations and messages are those that the source's filter accepts.
*/
const QList<RecordKind> &recordKinds();

//! The kind of this \a name, null when there is none.
const RecordKind *recordKind(QByteArrayView name);

} // namespace Archive

#endif
