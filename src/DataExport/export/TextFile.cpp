#include "export/TextFile_p.h"

#include <QFileInfo>

#include <algorithm>

namespace {

constexpr qsizetype kSlice = 65536;

} // namespace

bool TextFile::open(const QString &path,
                    const Format &format,
                    OutputFile::Way way,
                    OutputFile::Existing existing)
{
    m_writeError = 0;
    m_pending.resize(0); // keeps its room, for the next of many small files
    m_encoder = QStringEncoder(format.encoding,
                               format.byteOrderMark ? QStringConverter::Flag::WriteBom
                                                    : QStringConverter::Flag::Default);
    return m_file.open(path, way, existing);
}

void TextFile::write(QStringView text)
{
    while (isOpen() && m_writeError == 0 && !text.isEmpty()) {
        const QStringView slice = text.first(std::min(kSlice, text.size()));
        const qsizetype before = m_pending.size();
        m_pending.resize(before + m_encoder.requiredSpace(slice.size()));
        const char *end = m_encoder.appendToBuffer(m_pending.data() + before, slice);
        m_pending.resize(end - m_pending.constData());
        if (m_pending.size() >= kSlice)
            flush();
        text = text.sliced(slice.size());
    }
}

bool TextFile::close(Closing closing)
{
    if (!isOpen())
        return true;
    if (closing != Closing::Discard)
        flush();
    if (closing == Closing::KeepOnDisk && m_writeError == 0 && !m_file.sync())
        m_writeError = m_file.error();
    if (closing == Closing::Discard || m_writeError != 0) {
        m_file.discard();
        return m_writeError == 0;
    }
    if (!m_file.complete())
        return false;
    if (closing == Closing::KeepOnDisk)
        OutputFile::syncFolder(QFileInfo(path()).path());
    return true;
}

QString TextFile::errorString() const
{
    return qt_error_string(error());
}

CIExportReport::Fault TextFile::fault(const QString &reason) const
{
    return { CIExportReport::Cause::Target, reason, error() };
}

void TextFile::flush()
{
    if (m_writeError == 0 && !m_file.write(m_pending.constData(), m_pending.size()))
        m_writeError = m_file.error();
    m_pending.resize(0);
}
