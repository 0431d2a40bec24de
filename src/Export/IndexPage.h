#ifndef EXPORT_INDEXPAGE_H
#define EXPORT_INDEXPAGE_H

#include "Export/Outcome.h"

#include <QString>

namespace PhoneItems {
class Backup;
}

namespace Export {

/*!
    \brief The page in OUTPUT that leads to everything that was exported: how much of what, whose,
    from when, and what failed.

    It stands alone: no script, no network, no picture. The texts of a backup are encoded.
*/
class IndexPage
{
public:
    //! OUTPUT holds what \a outcome tells of, out of \a backup.
    IndexPage(const Outcome &outcome, const PhoneItems::Backup &backup);

    /*!
        Writes index.html: in place of that of an earlier export, but beside a file of somebody
        else's, as "index (2).html". \return 0, or the system's error number when it could not be
        written.
    */
    int write();

    QString path() const { return m_path; } //!< Of the page, once it is written.

    QByteArray html() const; //!< The whole page.

private:
    QString heading() const;
    QString rows() const;
    QString row(const TypeOutcome &type, bool isOdd) const;
    QString failures() const;
    QString pageOf(const TypeOutcome &type) const;

    const Outcome &m_outcome;
    const Sums m_sums;
    const PhoneItems::Backup &m_backup;
    QString m_path;
};

} // namespace Export

#endif
