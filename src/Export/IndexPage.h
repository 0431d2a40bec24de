#ifndef EXPORT_INDEXPAGE_H
#define EXPORT_INDEXPAGE_H

#include "Export/Outcome.h"

#include <QString>

namespace Archive {
class ArchiveWriter;
}

namespace PhoneItems {
class Backup;
}

namespace Export {

/*!
    \brief The page in OUTPUT with links to everything that was exported, the counts, the phone and date
    of the backup, and what failed.

    With an archive it is that one's entrance and looks like its pages; else it is self-contained.
    Texts from the backup are encoded.
*/
class IndexPage
{
public:
    //! For the export of \a backup that ended with \a outcome. \a archive may be null.
    IndexPage(const Outcome &outcome,
              const PhoneItems::Backup &backup,
              const Archive::ArchiveWriter *archive);

    /*!
        Writes index.html. It replaces the page of an earlier export; if the name is taken by any
        other file, the page is called "index (2).html". \return 0 or the system's error number.
    */
    int write();

    QString path() const { return m_path; } //!< Of the written page.

    QByteArray html() const; //!< The whole page.

private:
    QByteArray entrance() const;
    QString table() const;
    QString heading() const;
    QString rows() const;
    QString row(const TypeOutcome &type, bool isOdd) const;
    QString failures() const;
    QString pageOf(const TypeOutcome &type) const;

    const Outcome &m_outcome;
    const Sums m_sums;
    const PhoneItems::Backup &m_backup;
    const Archive::ArchiveWriter *m_archive;
    QString m_path;
};

} // namespace Export

#endif
