#include "export/TextFile_p.h"

#include <algorithm>

namespace {

constexpr qsizetype kSlice = 65536;

} // namespace

bool TextFile::open(const QString &path, QStringConverter::Encoding encoding, bool byteOrderMark)
{
    m_path = path;
    auto output = std::make_unique<Output>();
    output->file.setFileName(path);
    if (!output->file.open(QIODevice::WriteOnly)) {
        m_error = output->file.errorString();
        return false;
    }
    output->stream.setDevice(&output->file);
    output->stream.setEncoding(encoding);
    output->stream.setGenerateByteOrderMark(byteOrderMark);
    m_output = std::move(output);
    return true;
}

void TextFile::write(QStringView text)
{
    while (m_output && !text.isEmpty()) {
        qsizetype length = std::min(kSlice, text.size());
        if (length < text.size() && text[length - 1].isHighSurrogate())
            ++length;
        m_output->stream << text.first(length);
        text = text.sliced(length);
    }
}

bool TextFile::close(bool keep)
{
    if (!m_output)
        return true;
    const std::unique_ptr<Output> output = std::move(m_output);
    QFile &file = output->file;
    // Both layers buffer: only their flush meets a full disk.
    output->stream.flush();
    bool written = output->stream.status() == QTextStream::Ok && file.flush();
    m_error = file.errorString();
    output->stream.setDevice(nullptr);
    file.close();
    if (written && file.error() != QFileDevice::NoError) {
        written = false;
        m_error = file.errorString();
    }
    if (!keep || !written)
        file.remove();
    return written;
}
