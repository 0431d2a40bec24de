#include "export/FileProgress.h"

#include <algorithm>

FileProgress::FileProgress(CIProgressCallback *parent, int span)
    : m_parent(parent)
    , m_span(span)
{
}

FileProgress::~FileProgress() = default;

void FileProgress::initRange(int n)
{
    setTotal(n);
}

void FileProgress::setTotal(qint64 bytes)
{
    m_done = 0;
    m_total = bytes == 0 ? 1 : bytes;
}

int FileProgress::range()
{
    return 1;
}

bool FileProgress::progress(double delta)
{
    const auto total = static_cast<double>(m_total);
    const double step = std::min(delta, total - m_done);
    const bool goOn = !m_parent || m_parent->progress(step / total * m_span);
    m_done += step;
    return goOn;
}

bool FileProgress::finish()
{
    CIProgressCallback *self = this;
    return self->progress(static_cast<double>(m_total) - m_done);
}
