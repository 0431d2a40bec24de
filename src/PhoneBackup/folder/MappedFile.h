#ifndef PHONEBACKUP_FOLDER_MAPPEDFILE_H
#define PHONEBACKUP_FOLDER_MAPPEDFILE_H

#include <QByteArrayView>
#include <QString>

class QFile;

namespace PhoneBackup {

/*!
    \brief The bytes of a file, mapped into memory for as long as the object lives.

    The file is open only while it is being mapped: any number of objects may live.
*/
class MappedFile
{
public:
    MappedFile() = default; //!< No bytes.
    explicit MappedFile(const QString &path);
    explicit MappedFile(const QFile &openFile);
    ~MappedFile();

    MappedFile(const MappedFile &) = delete;
    MappedFile &operator=(const MappedFile &) = delete;

    //! Empty when the file is missing, empty or cannot be read.
    QByteArrayView bytes() const { return m_bytes; }

    //! Gives back the memory that reading took; the bytes stay and are read again when need be.
    void release() const;

private:
    void map(const QFile &openFile);

    QByteArrayView m_bytes;
};

} // namespace PhoneBackup

#endif
