#ifndef ARCHIVE_RECORDS_RECORDREADER_H
#define ARCHIVE_RECORDS_RECORDREADER_H

#include "Archive/records/FileNames.h"

#include <QByteArray>
#include <QList>

#include <functional>

namespace PhoneBackup {
class Source;
}

namespace Archive {

//! Takes a record as JSON in one line, without its end.
using RecordSink = std::function<void(const QByteArray &record)>;

//! Records of one kind.
struct RecordKind
{
    const char *name; //!< In file names and in scripts that read them.

    //! Reads all records of \a source in the order of its reader. What cannot be read is a problem
    //! of the source.
    void (*read)(PhoneBackup::Source &source, const FileNames &files, const RecordSink &sink);
};

/*!
    All kinds. A conversation or chat stands before its messages and a shared album before its
    pictures; reactions and votes stand with the message that they are about, those whose message is
    gone by themselves.
*/
const QList<RecordKind> &recordKinds();

//! The kind of this \a name, null when there is none.
const RecordKind *recordKind(QByteArrayView name);

} // namespace Archive

#endif
