#include "model/MessagePiece.h"

#include "model/MappedFile.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

MessagePiece::MessagePiece(const QString &text)
    : m_type(u"text/plain"_s)
    , m_data(text.toUtf8())
{
}

MessagePiece::MessagePiece(const QString &type,
                           const QString &path,
                           const QString &name,
                           const MappedFile **lastRead)
    : m_type(type)
    , m_path(path)
    , m_name(name)
    , m_lastRead(lastRead)
{
}

MessagePiece::~MessagePiece() = default;

const QByteArray &MessagePiece::pieceData() const
{
    if (!m_path.isEmpty() && !m_file) {
        if (*m_lastRead)
            (*m_lastRead)->release();
        m_file = std::make_unique<MappedFile>(m_path);
        m_data = QByteArray::fromRawData(m_file->bytes().data(), m_file->bytes().size());
        *m_lastRead = m_file.get();
    }
    return m_data;
}

} // namespace PhoneBackup
