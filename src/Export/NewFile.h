#ifndef EXPORT_NEWFILE_H
#define EXPORT_NEWFILE_H

#include <QByteArrayView>
#include <QString>

namespace Export {

/*!
    \brief A file of OUTPUT while it is written: nobody sees it under its own name before it is
    complete and on the disk.

    Nothing is written through a link. Without moveTo() the file is removed again.
    \par Errors
    Each step answers 0 or the system's error number. What failed once fails from then on.
*/
class NewFile
{
public:
    //! Makes an empty file of a name that nobody has in \a folder.
    explicit NewFile(const QString &folder);
    ~NewFile();

    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    //! Appends \a bytes.
    int write(QByteArrayView bytes);

    /*!
        Gives the file, once it is on the disk, the name \a path in the same folder, in place of
        what bears it; without \a replace that is EEXIST.
    */
    int moveTo(const QString &path, bool replace);

    //! The error number, of the first step that failed.
    int error() const { return m_error; }

private:
    QByteArray m_path; // empty once it was moved
    int m_descriptor = -1;
    int m_error = 0;
};

//! Writes all of \a bytes to \a descriptor. \return 0 or the error number.
[[nodiscard]] int writeAll(int descriptor, QByteArrayView bytes);

//! Whether error \a number concerns a disk as a whole, so that nothing more can be written there. A
//! file that is too large for the disk's format, or for a limit of this user, is none of these.
bool isOfWholeDisk(int number);

//! What error \a number means, for a person.
QString errorText(int number);

} // namespace Export

#endif
