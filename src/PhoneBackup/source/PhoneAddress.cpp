#include "PhoneBackup/source/PhoneAddress.h"

#include <algorithm>
#include <array>
#include <limits>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShortestComparable = 7; // short codes match only when they are equal
constexpr qsizetype kBucketDigits = 6; // such a number without the zero in front
constexpr int kEqual = std::numeric_limits<int>::max();

QString withoutScheme(const QString &text)
{
    static constexpr std::array<QLatin1StringView, 3> kSchemes { "tel:"_L1,
                                                                 "mailto:"_L1,
                                                                 "sms:"_L1 };
    const QString trimmed = text.trimmed();
    for (const QLatin1StringView scheme : kSchemes) {
        if (trimmed.startsWith(scheme, Qt::CaseInsensitive))
            return trimmed.sliced(scheme.size()).trimmed();
    }
    return trimmed;
}

// Where an extension or what is dialled afterwards begins: "555 0100 x12", "5550100,,3".
qsizetype endOfNumber(const QString &text)
{
    bool digitSeen = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isDigit())
            digitSeen = true;
        else if (digitSeen && (c == u';' || c == u',' || c == u'x' || c == u'X'))
            return i;
        else if (c.isLetter())
            break;
    }
    return text.size();
}

QStringView withoutZeros(QStringView digits)
{
    while (digits.startsWith(u'0'))
        digits = digits.sliced(1);
    return digits;
}

} // namespace

PhoneAddress::PhoneAddress(const QString &text)
{
    const QString whole = withoutScheme(text);
    if (whole.contains(u'@')) {
        m_kind = Kind::Email;
        m_text = whole.toCaseFolded();
        return;
    }
    const QString number = whole.first(endOfNumber(whole));
    const auto isLetter = [](QChar c) { return c.isLetter(); };
    if (std::any_of(number.cbegin(), number.cend(), isLetter)) {
        m_kind = Kind::Word;
        m_text = whole.toCaseFolded();
        return;
    }
    setNumber(number);
}

void PhoneAddress::setNumber(const QString &text)
{
    QString number = text;
    const auto isMark = [](QChar c) { return !c.isDigit() && c != u'+'; };
    const auto first = std::find_if_not(number.cbegin(), number.cend(), isMark);
    m_international = first != number.cend() && *first == u'+';
    if (m_international) // "+49 (0)30": the zero is for callers within the country
        number.replace(u"(0)"_s, QString());
    for (const QChar c : std::as_const(number)) {
        if (c.isDigit())
            m_text.append(QChar(u'0' + c.digitValue()));
    }
    if (!m_international && m_text.startsWith("00"_L1)) {
        m_international = true;
        m_text.remove(0, 2);
    }
    // Mobile numbers of Mexico and Argentina are written with and without a digit of their own.
    constexpr qsizetype kWithMark = 13;
    if (m_international && m_text.size() == kWithMark
        && (m_text.startsWith("521"_L1) || m_text.startsWith("549"_L1)))
        m_text.remove(2, 1);
    m_kind = m_text.isEmpty() ? Kind::None : Kind::Number;
}

QString PhoneAddress::bucket() const
{
    return m_kind == Kind::Number ? m_text.right(kBucketDigits) : m_text;
}

int PhoneAddress::match(const PhoneAddress &a, const PhoneAddress &b)
{
    if (a.m_kind != b.m_kind || a.m_kind == Kind::None)
        return 0;
    if (a.m_text == b.m_text)
        return kEqual;
    if (a.m_kind != Kind::Number || (a.m_international && b.m_international)
        || std::min(a.m_text.size(), b.m_text.size()) < kShortestComparable)
        return 0;
    const bool aIsShorter = a.m_text.size() < b.m_text.size();
    const QStringView shorter = withoutZeros(aIsShorter ? a.m_text : b.m_text);
    const QString &longer = aIsShorter ? b.m_text : a.m_text;
    return shorter.size() >= kBucketDigits && longer.endsWith(shorter) ? int(shorter.size()) : 0;
}

bool PhoneAddress::areApart(const PhoneAddress &a, const PhoneAddress &b)
{
    return a.m_international && b.m_international && a.m_text != b.m_text;
}

} // namespace PhoneBackup
