#include "folder/MappedFile.h"

#include "platform/CCommonUtils.h"

#include <QFile>

#include <sys/mman.h>

namespace PhoneBackup {

// QFile's own mapping keeps the file open: a conversation may hold more pictures than a process may
// have files open.
MappedFile::MappedFile(const QString &path)
{
    QFile file(path);
    if (!path.isEmpty() && CCommonUtils::openForReading(file))
        map(file);
}

MappedFile::MappedFile(const QFile &openFile)
{
    map(openFile);
}

void MappedFile::map(const QFile &file)
{
    if (file.size() <= 0)
        return;
    void *data =
        ::mmap(nullptr, std::size_t(file.size()), PROT_READ, MAP_PRIVATE, file.handle(), 0);
    if (data == MAP_FAILED) // NOLINT: the macro's cast is the system's
        return;
    m_bytes = QByteArrayView(static_cast<const char *>(data), qsizetype(file.size()));
}

void MappedFile::release() const
{
    if (!m_bytes.isEmpty())
        ::madvise(const_cast<char *>(m_bytes.data()), // NOLINT: advice changes nothing
                  std::size_t(m_bytes.size()),
                  MADV_DONTNEED);
}

MappedFile::~MappedFile()
{
    if (!m_bytes.isEmpty())
        ::munmap(const_cast<char *>(m_bytes.data()), // NOLINT: what was mapped is unmapped
                 std::size_t(m_bytes.size()));
}

} // namespace PhoneBackup
