#ifndef PHONEITEMS_MESSAGES_MESSAGEPIECE_H
#define PHONEITEMS_MESSAGES_MESSAGEPIECE_H

#include "PhoneBackup/folder/FileIndex.h"
#include "message/BkSMSPiece.h"

namespace PhoneBackup {
class BackupFiles;
}

namespace PhoneItems {

/*!
    \brief A part of a message: a text, or a file that is read when it is asked for.

    A file that is missing from the backup is a part all the same; its bytes are empty.
    \par Memory
    One file of a conversation is held: its bytes are gone when those of the next are asked for.
*/
class MessagePiece final : public BkSMSPiece
{
public:
    //! A text of its own.
    explicit MessagePiece(const QString &text);

    /*!
        The file \a row of \a files, kNone for a missing one, \a neverDownloaded if it is missing
        because the phone did not have it either. \a lastRead is where the pieces of a conversation
        note the one that holds its bytes.
    */
    MessagePiece(const QString &type,
                 PhoneBackup::BackupFiles &files,
                 PhoneBackup::FileIndex::Row row,
                 const QString &name,
                 bool neverDownloaded,
                 const MessagePiece **lastRead);

    ~MessagePiece() override;

    const QString &pieceType() const override { return m_type; }
    const QByteArray &pieceData() const override;
    const QString &pieceLocation() const override { return m_name; }
    bool neverDownloaded() const override { return m_neverDownloaded; }
    QString fault() const override;

private:
    QString m_type;
    PhoneBackup::BackupFiles *m_files = nullptr;
    PhoneBackup::FileIndex::Row m_row = PhoneBackup::FileIndex::kNone;
    QString m_name;
    bool m_neverDownloaded = false;
    mutable QByteArray m_data;
    const MessagePiece **m_lastRead = nullptr;
};

} // namespace PhoneItems

#endif
