#ifndef PHONEBACKUP_FOLDER_BACKUPFILES_H
#define PHONEBACKUP_FOLDER_BACKUPFILES_H

#include "PhoneBackup/base/KeepGoing.h"
#include "PhoneBackup/base/PrivateFolder.h"
#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/crypto/ClassKeys.h"
#include "PhoneBackup/folder/BackupFolder.h"
#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/folder/FileRecord.h"
#include "PhoneBackup/folder/Manifest.h"
#include "PhoneBackup/folder/Password.h"
#include "PhoneBackup/sqlite/Database.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>

class QIODevice;

namespace PhoneBackup {

/*!
    \brief The files of one backup: where they are, what they hold, what is recorded of them.

    The contents of an encrypted backup are decrypted as they are read. Plain bytes come to the disk
    only in the private folder, and only those of databases and of the one file whose path was
    asked for last.
*/
class BackupFiles
{
public:
    using Row = FileIndex::Row;

    //! Something that was noticed of a file's content while it was read.
    struct Remark
    {
        Row row;
        Notice what;
        bool loss; //!< Whether something of the file is lost.
        Fault fault = Fault::Corrupt;
        int systemError = 0;
    };

    /*!
        Opens the folder \a path and reads its index. Without a password an encrypted backup is
        Fault::Encrypted, with one that does not fit Fault::WrongPassword.
    */
    static Result<std::unique_ptr<BackupFiles>>
    open(const QString &path, const KeepGoing &keepGoing, const Password &password = {});

    const BackupFolder &folder() const { return m_folder; }
    const FileIndex &index() const { return m_index; }
    PrivateFolder &privateFolder() { return m_private; }

    //! Whether the contents are encrypted, and so no file of the folder can be read as it is.
    bool isEncrypted() const { return m_keys.has_value(); }

    //! What reading the index met that did not stop it.
    const Manifest::Findings &findings() const { return m_findings; }

    //! What reading contents met since this was called last.
    QList<Remark> takeRemarks();

    //! The remark on \a row, which takeRemarks() leaves out from then on: the caller tells of it.
    std::optional<Remark> takeRemark(Row row);

    //! Bytes of the content of \a row, 0 when it is missing. Of an encrypted file nearly.
    qint64 contentSize(Row row);

    /*!
        The content of \a row as a stream that is open for reading; Fault::NotFound when its file is
        missing. It borrows from this object.
    */
    Result<std::unique_ptr<QIODevice>> openContent(Row row);

    //! The content of \a row, at most \a maxBytes of it; empty when it cannot be read.
    QByteArray content(Row row, qint64 maxBytes);

    //! What wholeContent() reads at most; what is sent in messages is smaller.
    static constexpr qint64 kMaxWholeBytes = qint64(128) << 20;

    /*!
        All of the content of \a row; empty when it cannot be read, when it is longer than
        kMaxWholeBytes, and for what is no file.
    */
    QByteArray wholeContent(Row row);

    /*!
        Path of a file with the plain content of \a row. Of an encrypted one it is a copy that lasts
        until the next call. Nothing may be there; the path is empty when a symbolic link stands in
        the file's place, and when it cannot be decrypted.
    */
    QString plainPath(Row row);

    /*!
        What is recorded of \a row; unset when the record is damaged. A content that is empty, or
        more than an eighth shorter than recorded, is a remark: it was cut off. Databases and logs
        are not held against their recorded sizes, which are often out of date.
    */
    FileRecord record(Row row);

    //! Whether the record of \a row names the extended attribute; costs less than record().
    bool hasAttribute(Row row, QByteArrayView name);

    //! "domain/path", for a person.
    QString place(Row row) const;

    //! The file at exactly this place, FileIndex::kNone when there is none.
    Row findFile(QByteArrayView domain, const QString &path) const;

    /*!
        The database at this place with its log or journal. Fault::NotFound when the index has none;
        Fault::Io when its content is missing, Fault::CutOff when it is empty but was not,
        Fault::Locked when its key is missing. It is damaged when the content of its log or journal
        is missing.
    */
    Result<Database> openDatabase(QByteArrayView domain, const QString &path);

private:
    explicit BackupFiles(BackupFolder folder, const KeepGoing &keepGoing);
    static std::optional<Error> refusal(const BackupFolder &folder);
    Result<> unlock(const Password &password);
    Result<> load(const Password &password);
    Result<DatabaseFiles> decrypted(Row row, Row wal, Row journal);
    Result<> decryptTo(Row row, const QString &target);
    QString contentPath(Row row) const { return m_folder.contentPath(m_index.id(row)); }
    Result<Secret> keyOf(Row row);
    void addRemark(Row row, const Notice &what, bool loss, Fault fault = Fault::Corrupt);
    void addRemark(Row row, const Error &error);
    void checkSize(Row row);
    bool isRewritten(Row row);
    Notice missingLog(Row row);

    BackupFolder m_folder;
    KeepGoing m_keepGoing;
    std::optional<ClassKeys> m_keys; // of an encrypted backup
    FileIndex m_index;
    PrivateFolder m_private; // before the index, which may lie in it
    std::unique_ptr<Manifest> m_manifest;
    Manifest::Findings m_findings;
    QHash<Row, DatabaseFiles> m_databases; // that have been decrypted
    QString m_plainCopy;
    Row m_recordRow = FileIndex::kNone;
    FileRecord m_record; // of that row: size, date and key are asked for one after the other
    QList<Remark> m_remarks;
    QSet<Row> m_remarked;
    QHash<Row, Remark> m_taken; // remarks that somebody has
};

} // namespace PhoneBackup

#endif
