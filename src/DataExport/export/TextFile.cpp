#include "export/TextFile_p.h"

#include <algorithm>

namespace {

constexpr qsizetype kSlice = 64 * 1024;

} // namespace

bool TextFile::open(const QString &path, QStringConverter::Encoding encoding, bool byteOrderMark)
{
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly)) {
        m_error = m_file.errorString();
        return false;
    }
    m_stream.setDevice(&m_file);
    m_stream.setEncoding(encoding);
    m_stream.setGenerateByteOrderMark(byteOrderMark);
    return true;
}

void TextFile::write(QStringView text)
{
    while (!text.isEmpty()) {
        qsizetype length = std::min(kSlice, text.size());
        if (length < text.size() && text[length - 1].isHighSurrogate())
            ++length;
        m_stream << text.first(length);
        text = text.sliced(length);
    }
}

bool TextFile::close(bool keep)
{
    if (!m_file.isOpen())
        return true;
    // Both layers buffer: only their flush meets a full disk.
    m_stream.flush();
    bool written = m_stream.status() == QTextStream::Ok && m_file.flush();
    m_error = m_file.errorString();
    m_stream.setDevice(nullptr);
    m_file.close();
    if (written && m_file.error() != QFileDevice::NoError) {
        written = false;
        m_error = m_file.errorString();
    }
    if (!keep || !written)
        m_file.remove();
    return written;
}
