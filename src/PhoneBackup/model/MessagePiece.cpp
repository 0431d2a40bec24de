#include "model/MessagePiece.h"

#include "folder/BackupFiles.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

MessagePiece::MessagePiece(const QString &text)
    : m_type(u"text/plain"_s)
    , m_data(text.toUtf8())
{
}

MessagePiece::MessagePiece(const QString &type,
                           BackupFiles &files,
                           FileIndex::Row row,
                           const QString &name,
                           const MappedFile **lastRead)
    : m_type(type)
    , m_files(&files)
    , m_row(row)
    , m_name(name)
    , m_lastRead(lastRead)
{
}

MessagePiece::~MessagePiece() = default;

const QByteArray &MessagePiece::pieceData() const
{
    if (m_files && !m_file) {
        if (*m_lastRead)
            (*m_lastRead)->release();
        m_file = m_files->map(m_row);
        m_data = QByteArray::fromRawData(m_file->bytes().data(), m_file->bytes().size());
        *m_lastRead = m_file.get();
    }
    return m_data;
}

} // namespace PhoneBackup
