#ifndef PHONEBACKUP_SOURCE_SOURCE_H
#define PHONEBACKUP_SOURCE_SOURCE_H

#include "PhoneBackup/base/KeepGoing.h"
#include "PhoneBackup/base/Problem.h"
#include "PhoneBackup/folder/BackupFiles.h"
#include "PhoneBackup/plist/PropertyList.h"
#include "PhoneBackup/source/AddressBook.h"
#include "PhoneBackup/source/MessageFilter.h"

#include <QSet>

#include <functional>
#include <optional>

namespace PhoneBackup {

/*!
    \brief What the readers of the data types share: the backup's files, and a place to say what
    could not be read.
*/
class Source
{
public:
    Source(std::unique_ptr<BackupFiles> files, KeepGoing keepGoing);

    BackupFiles &files() { return *m_files; }
    const FileIndex &index() const { return m_files->index(); }
    const QList<Problem> &problems() const { return m_problems; }

    //! Which messages are wanted.
    const MessageFilter &messageFilter() const { return m_messageFilter; }
    void setMessageFilter(const MessageFilter &filter) { m_messageFilter = filter; }

    //! The phone's address book, read when it is first asked for.
    const AddressBook &addressBook();

    //! Remembers \a problem, once for each data type, source and row.
    void addProblem(const Problem &problem);

    /*!
        Remembers that \a error keeps \a source of \a dataType from being read. \a consequence is
       told a person, \a loss as in Problem: what the temporary folder is to blame for always is
       one.
    */
    void addProblem(int dataType,
                    const QString &source,
                    const Error &error,
                    const Notice &consequence,
                    bool loss);

    /*!
        Remembers that a backup of this kind never holds what was looked for, in vain, for
        \a dataType: it is not encrypted, and was made by \a release of the phone's system or later.
        \a what is a sentence for a person. Without effect when that is not so.
    */
    void addAbsence(int dataType, int release, const Notice &what);

    //! Asks, at most every few thousand calls, whether to go on. False once and for all.
    bool keepGoing();

    //! Whoever learned otherwise that the caller asked to stop says so: keepGoing() is false then.
    void stop();

    /*!
        The database at this place. None when the backup has none, and when it cannot be read; the
        latter and a damaged one are a problem of \a dataType: what its rows tell is missing, the
        files are not.
    */
    std::optional<Database> openDatabase(int dataType, QByteArrayView domain, const QString &path);

    /*!
        Calls \a row for each row of \a sql. \return false when it could not be read to its end,
        which is then a problem of \a dataType.
    */
    bool query(int dataType,
               const Database &database,
               const QString &sql,
               const std::function<void(const Statement &)> &row);

    //! Says that \a database could not be used for \a dataType, and why.
    void addDatabaseProblem(int dataType, const Database &database, const Notice &why);

    //! The property list at this place; a damaged one is a problem of \a dataType.
    PropertyList propertyList(int dataType, QByteArrayView domain, const QString &path);

private:
    std::unique_ptr<BackupFiles> m_files;
    KeepGoing m_keepGoing;
    MessageFilter m_messageFilter;
    std::optional<AddressBook> m_addressBook;
    QList<Problem> m_problems;
    QSet<QString> m_known;
    int m_questions = 0;
    bool m_stopped = false;
};

//! \a column when \a columns has it, else "NULL": what a query asks for in its place.
QString columnOrNull(const QStringList &columns, const QString &column);

} // namespace PhoneBackup

#endif
