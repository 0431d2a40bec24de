#include "PhoneBackup/source/PathParts.h"

#include <algorithm>
#include <cstring>

namespace PhoneBackup::PathParts {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

uchar folded(char c)
{
    return static_cast<uchar>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
}

// Takes the digits at \a position, without the zeros in front.
QByteArrayView number(QByteArrayView text, qsizetype &position)
{
    while (position < text.size() && text[position] == '0')
        ++position;
    const qsizetype start = position;
    while (position < text.size() && isDigit(text[position]))
        ++position;
    return text.sliced(start, position - start);
}

int exactly(QByteArrayView a, QByteArrayView b)
{
    const qsizetype common = std::min(a.size(), b.size());
    const int order = common > 0 ? std::memcmp(a.data(), b.data(), std::size_t(common)) : 0;
    return order != 0 ? order : a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

} // namespace

bool isHidden(QByteArrayView path)
{
    for (qsizetype start = 0; start < path.size();) {
        const qsizetype slash = path.indexOf('/', start);
        const QByteArrayView part = path.sliced(start, (slash < 0 ? path.size() : slash) - start);
        if (part.startsWith('.') && part != QByteArrayView(".") && part != QByteArrayView(".."))
            return true;
        start += part.size() + 1;
    }
    return false;
}

int compareNatural(QByteArrayView a, QByteArrayView b)
{
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            const QByteArrayView left = number(a, i);
            const QByteArrayView right = number(b, j);
            if (left.size() != right.size())
                return left.size() < right.size() ? -1 : 1;
            if (const int order = exactly(left, right))
                return order;
        } else {
            const int order = int(folded(a[i])) - int(folded(b[j]));
            if (order != 0)
                return order;
            ++i;
            ++j;
        }
    }
    if (i < a.size() || j < b.size())
        return i < a.size() ? 1 : -1;
    return exactly(a, b);
}

} // namespace PhoneBackup::PathParts
