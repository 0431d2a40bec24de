#ifndef EXPORT_NEWFILE_H
#define EXPORT_NEWFILE_H

#include <QByteArrayView>
#include <QString>

namespace Export {

/*!
    \brief A new file in OUTPUT, which gets its name only when it is complete and on the disk.

    Nothing is written through a link. Without moveTo(), the file is removed again.
    \par Errors
    Each step returns 0 or the system's error number. After a failure, all further steps fail.
*/
class NewFile
{
public:
    //! Creates an empty file with an unused name in \a folder.
    explicit NewFile(const QString &folder);
    ~NewFile();

    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    //! Appends \a bytes.
    int write(QByteArrayView bytes);

    /*!
        Syncs the file and renames it to \a path, in the same folder. If \a path exists, it is
        replaced if \a replace is set; otherwise the error is EEXIST.
    */
    int moveTo(const QString &path, bool replace);

    //! The error number of the first step that failed.
    int error() const { return m_error; }

private:
    QByteArray m_path; // empty once it was moved
    int m_descriptor = -1;
    int m_error = 0;
};

//! Writes all of \a bytes to \a descriptor. \return 0 or the error number.
[[nodiscard]] int writeAll(int descriptor, QByteArrayView bytes);

//! Whether error \a number affects the whole disk, so that nothing more can be written to it. A
//! file that is too large for the file system or for a limit of this user does not count.
bool isOfWholeDisk(int number);

//! A description of error \a number.
QString errorText(int number);

} // namespace Export

#endif
