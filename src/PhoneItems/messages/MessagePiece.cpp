#include "PhoneItems/messages/MessagePiece.h"

#include "PhoneBackup/folder/BackupFiles.h"
#include "PhoneItems/words/Words.h"

namespace PhoneItems {

using namespace PhoneBackup;
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
                           bool neverDownloaded,
                           const MessagePiece **lastRead)
    : m_type(type)
    , m_files(&files)
    , m_row(row)
    , m_name(name)
    , m_neverDownloaded(neverDownloaded)
    , m_lastRead(lastRead)
{
}

MessagePiece::~MessagePiece() = default;

const QByteArray &MessagePiece::pieceData() const
{
    if (m_files && *m_lastRead != this) {
        if (*m_lastRead)
            (*m_lastRead)->m_data.clear(); // before the next takes as much
        m_data = m_files->wholeContent(m_row);
        *m_lastRead = this;
    }
    return m_data;
}

QString MessagePiece::fault() const
{
    if (!m_files || m_row == FileIndex::kNone)
        return {};
    const std::optional<BackupFiles::Remark> remark = m_files->takeRemark(m_row);
    return remark ? words(remark->what) : QString();
}

} // namespace PhoneItems
