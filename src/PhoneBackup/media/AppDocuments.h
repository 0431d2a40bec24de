#ifndef PHONEBACKUP_MEDIA_APPDOCUMENTS_H
#define PHONEBACKUP_MEDIA_APPDOCUMENTS_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QByteArrayView>

#include <vector>

namespace PhoneBackup {

class Source;

//! A file that an app keeps for its user; the views lie in the index.
struct AppDocument
{
    FileIndex::Row file = FileIndex::kNone;
    QByteArrayView domain; //!< Where the app keeps it; one app may have several.
    QByteArrayView app; //!< The identifier of the app, or of the group of apps.
    QByteArrayView path; //!< In that domain.
};

//! What apps keep in their Documents folder, and the local files of the Files app.
class AppDocuments
{
public:
    /*!
        Finds them: without hidden files and caches, in the order of apps and paths as a person
        counts them.
    */
    explicit AppDocuments(Source &source);

    std::size_t count() const { return m_rows.size(); }
    AppDocument at(std::size_t position) const;

private:
    const FileIndex &m_index;
    std::vector<FileIndex::Row> m_rows; // a phone may have half a million
};

} // namespace PhoneBackup

#endif
