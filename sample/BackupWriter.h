#ifndef SAMPLE_BACKUPWRITER_H
#define SAMPLE_BACKUPWRITER_H

#include "sample/Encryption.h"

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QString>
#include <QVariantMap>

#include <memory>

namespace Sample {

//! What the index records of a file, besides its name and size.
struct FileTraits
{
    QDateTime modified; //!< Invalid: the writer's default date.
    int protectionClass = 3; //!< In an encrypted backup, the class whose key wraps the file's.
    bool hasKey = true; //!< false: the file stays plain in an encrypted backup.
    QMap<QString, QByteArray> extendedAttributes;
};

/*!
    \brief Writes a phone backup folder in the true on-disk format.

    \par Order
    Set-up, any number of addFile() and addFolder(), finish() exactly once.
    \par Bytes
    The same calls give the same bytes: nothing of the clock or the machine gets in.
    \par Memory
    Contents go to disk as they come; the index is a database from the start.
*/
class BackupWriter
{
public:
    enum class Layout {
        TwoLevel, //!< Contents in folders named after the first two digits of their identifier.
        Flat, //!< Contents side by side in the backup folder.
        Records, //!< The same, and the index Manifest.mbdb: system versions 4 to 9.
    };

    //! \a root is made when missing. Nothing is written before the first addFile().
    explicit BackupWriter(const QString &root, Layout layout = Layout::TwoLevel);
    ~BackupWriter();

    //! Sets or adds a key of Info.plist, Manifest.plist or Status.plist; an invalid value removes
    //! it.
    void setInfo(const QString &key, const QVariant &value);
    void setManifest(const QString &key, const QVariant &value);
    void setStatus(const QString &key, const QVariant &value);

    /*!
        From now on contents are encrypted, and finish() encrypts the index. What the property lists
        say of it can still be set to something else. To be called before anything is added.
    */
    void setEncryption(const Encryption::Settings &settings);

    //! Adds a file with its content, and the folders above it to the index. \return its identifier.
    QString addFile(const QString &domain,
                    const QString &path,
                    const QByteArray &content,
                    const FileTraits &traits = {});

    //! The place on disk for a file's content, its folder made; empty after a failure. For contents
    //! that are too big for memory: write there, then call addWritten().
    QString contentPath(const QString &domain, const QString &path);

    //! As addFile() for a content that stands at contentPath() already.
    QString addWritten(const QString &domain, const QString &path, const FileTraits &traits = {});

    //! As addFile(), but without the content file: what an interrupted run leaves behind.
    QString addWithoutContent(const QString &domain,
                              const QString &path,
                              qint64 sizeBytes,
                              const FileTraits &traits = {});

    //! Adds a folder that may stay empty, and those above it, to the index.
    void addFolder(const QString &domain, const QString &path);

    //! Adds exactly this row to the index: for what the other operations would never write.
    void addIndexRow(const QString &fileId,
                     const QString &domain,
                     const QString &path,
                     int flags,
                     const QByteArray &record);

    //! Notes that \a path could not be made because of \a reason; only the first failure is kept,
    //! and finish() then answers false. For contents that are made outside of this class.
    void fail(const QString &path, const QString &reason);

    //! Writes the property lists and closes the index. \return false when something failed.
    bool finish();

    //! How many rows the index has so far, those of folders among them.
    qint64 rowCount() const;

    //! How many files with content there are so far, and how long they are together.
    qint64 fileCount() const;
    qint64 contentSizeBytes() const;

    //! What failed, for a person.
    QString error() const;

    //! The identifier of a file: SHA-1 of "domain-path" in lower-case hex.
    static QString fileId(const QString &domain, const QString &path);

    //! The record of the index for a file: a keyed archive of its metadata.
    static QByteArray fileRecord(const QString &path, qint64 sizeBytes, const FileTraits &traits);

private:
    class Private;
    std::unique_ptr<Private> m_d;
};

} // namespace Sample

#endif
