#ifndef PHONEBACKUP_MEDIA_BOOKS_H
#define PHONEBACKUP_MEDIA_BOOKS_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QByteArrayView>
#include <QString>

#include <vector>

namespace PhoneBackup {

class Source;

//! A book of the phone's reader: a file, or the files of a folder.
struct Book
{
    enum class Kind { Epub, Pdf, Authored };

    QByteArrayView path; //!< Of the file or folder in its domain; lies in the index.
    //! The file; of a folder, its own entry or a file of it.
    FileIndex::Row row = FileIndex::kNone;
    std::vector<FileIndex::Row> parts; //!< The files of a folder; empty for a file.
    Kind kind = Kind::Epub;
    QString identifier; //!< The store's or the computer's; empty when no list tells it.
    QString title; //!< Empty when no list tells it.
    QString author; //!< Likewise.

    static constexpr QByteArrayView kDomain = "BooksDomain";
};

//! All books, in the order of the index.
std::vector<Book> books(Source &source);

} // namespace PhoneBackup

#endif
