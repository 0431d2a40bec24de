#ifndef ARCHIVE_ARCHIVEWRITER_H
#define ARCHIVE_ARCHIVEWRITER_H

#include "Archive/html/Page.h"
#include "Archive/media/ExportedFiles.h"
#include "Archive/media/Thumbnails.h"

#include <QHash>
#include <QList>
#include <QString>

#include <functional>

namespace PhoneBackup {
class Source;
}

namespace Archive {

struct Site;

//! What to write.
struct Plan
{
    QString output; //!< Absolute path of OUTPUT, which exists.
    QString phone; //!< Its name.
    QList<int> types; //!< Codes of the data types.
    bool pages = true;
    bool data = true; //!< JSON Lines.
};

/*!
    \brief Writes the archive: the pages that people browse, the data for programs, or both.

    \par Owner
    Everything is borrowed.
*/
class ArchiveWriter
{
public:
    //! Told how many records of which kind have come.
    using Progress = std::function<void(const char *kind, qint64 records)>;

    //! \a files tells what was exported. \a maker makes small pictures.
    ArchiveWriter(PhoneBackup::Source &source,
                  const ExportedFiles &files,
                  const Plan &plan,
                  PictureMaker maker,
                  PhoneBackup::KeepGoing keepGoing,
                  Progress progress);

    /*!
        Writes everything. After a stop or a failure, what was written so far is readable and leads
        nowhere that does not exist. \return whether all of it is there and on the disk.
    */
    bool write();

    //! Why it is not complete: the error number of what could not be written and its path; 0 after
    //! a stop.
    int error() const { return m_error; }
    const QString &failedPath() const { return m_failedPath; }

    //! What the entrance needs: what all pages share, and the inside of each section's tile.
    const Frame &frame() const { return m_frame; }
    const QHash<QByteArray, QByteArray> &tiles() const { return m_tiles; }

private:
    void writeEmpty(Site &site, bool isWhole);
    bool hasType(int code) const { return m_plan.types.contains(code); }

    PhoneBackup::Source &m_source;
    const ExportedFiles &m_files;
    const Plan &m_plan;
    PictureMaker m_maker;
    PhoneBackup::KeepGoing m_keepGoing;
    Progress m_progress;
    Frame m_frame;
    QHash<QByteArray, QByteArray> m_tiles;
    int m_error = 0;
    QString m_failedPath;
};

} // namespace Archive

#endif
