#ifndef PHONEBACKUP_FOLDER_FILERECORD_H
#define PHONEBACKUP_FOLDER_FILERECORD_H

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QString>

namespace PhoneBackup {

//! What the index records of one file. A record that cannot be read leaves everything unset.
struct FileRecord
{
    quint32 mode = 0; //!< POSIX mode with the type bits.
    qint64 sizeBytes = -1; //!< As recorded; often stale, never to be relied on.
    QDateTime modified; //!< UTC.
    QDateTime created; //!< UTC.
    QByteArray attributes; //!< The extended attributes, a property list.
    QMap<QString, QByteArray> properties; //!< Further ones, as an old index stores them.
    QByteArray encryptionKey; //!< Class and wrapped key; empty when the file has no key.

    //! Whether there is a record at all.
    bool isSet() const { return mode != 0; }

    //! Parses the keyed archive that Manifest.db holds for a file.
    static FileRecord parse(const QByteArray &archive);

    //! The extended attributes by name.
    QMap<QString, QByteArray> extendedAttributes() const;
};

} // namespace PhoneBackup

#endif
