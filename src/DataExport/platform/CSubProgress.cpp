#include "platform/CSubProgress.h"

#include <algorithm>

namespace {
// Rounding leaves crumbs; nobody wants a call for them.
constexpr double kNegligible = 1e-6;
} // namespace

CSubProgress::CSubProgress(CIProgressCallback *parent, int span)
    : m_parent(parent)
    , m_span(std::max(span, 0))
{
}

CSubProgress::~CSubProgress() = default;

void CSubProgress::initRange(int n)
{
    m_range = n;
    m_left = n > 0 ? m_span : 0;
}

int CSubProgress::range()
{
    return m_range;
}

bool CSubProgress::progress(double delta)
{
    if (m_cancelled)
        return false;
    const double wanted = m_range > 0 ? delta * m_span / m_range : 0;
    return forward(std::clamp(wanted, 0.0, m_left));
}

bool CSubProgress::finish()
{
    if (m_cancelled)
        return false;
    if (m_left < kNegligible)
        return true;
    return forward(m_left);
}

bool CSubProgress::forward(double parentUnits)
{
    m_left -= parentUnits;
    m_cancelled = m_parent && !m_parent->progress(parentUnits);
    return !m_cancelled;
}
