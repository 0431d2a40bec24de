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

} // namespace PhoneBackup

#endif
