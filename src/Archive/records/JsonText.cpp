#include "Archive/records/JsonText.h"

#include <QStringEncoder>

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>

namespace Archive::JsonText {

namespace {

// Whether it may stand in quotes as it is. U+2028 and U+2029 end a line for some readers of lines.
bool isPlain(char16_t unit)
{
    return unit >= 0x20 && unit != u'"' && unit != u'\\' && unit != 0x7F && unit != 0x2028
        && unit != 0x2029;
}

void appendEscaped(QByteArray &out, char16_t unit)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    switch (unit) {
    case u'"':
        out += "\\\"";
        return;
    case u'\\':
        out += "\\\\";
        return;
    case u'\n':
        out += "\\n";
        return;
    case u'\t':
        out += "\\t";
        return;
    case u'\r':
        out += "\\r";
        return;
    default:
        break;
    }
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += kDigits[(unit >> shift) & 0xF];
}

template <class Number>
void appendNumber(QByteArray &out, Number number)
{
    std::array<char, 32> digits; // enough for any number of 64 bits
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    out.append(digits.data(), end - digits.data());
}

// At least \a width digits of a number that is not negative.
void appendPadded(QByteArray &out, qint64 number, int width)
{
    std::array<char, 20> digits; // enough for any number of 64 bits
    auto first = digits.end();
    for (; number > 0 || width > 0; number /= 10, --width)
        *--first = char('0' + number % 10);
    out.append(first, digits.end() - first);
}

} // namespace

void append(QByteArray &out, QStringView text)
{
    out += '"';
    for (qsizetype at = 0; at < text.size();) {
        qsizetype end = at;
        bool isAscii = true;
        while (end < text.size() && isPlain(text[end].unicode())) {
            isAscii = isAscii && text[end].unicode() < 0x80;
            ++end;
        }
        const QStringView plain = text.sliced(at, end - at);
        if (isAscii) {
            const qsizetype old = out.size();
            out.resize(old + plain.size());
            char *to = out.data() + old;
            for (const QChar unit : plain)
                *to++ = char(unit.unicode());
        } else {
            out += plain.toUtf8();
        }
        if (end < text.size())
            appendEscaped(out, text[end++].unicode());
        at = end;
    }
    out += '"';
}

void append(QByteArray &out, qint64 number)
{
    appendNumber(out, number);
}

void append(QByteArray &out, double number)
{
    if (std::isfinite(number))
        appendNumber(out, number);
    else
        out += "null";
}

void appendMoment(QByteArray &out, qint64 ms)
{
    using namespace std::chrono;
    const sys_time<milliseconds> moment { milliseconds(ms) };
    const sys_days day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss time(moment - day);
    out += '"';
    const int year = int(date.year());
    if (year < 0)
        out += '-';
    appendPadded(out, std::abs(year), 4);
    out += '-';
    appendPadded(out, unsigned(date.month()), 2);
    out += '-';
    appendPadded(out, unsigned(date.day()), 2);
    out += 'T';
    appendPadded(out, time.hours().count(), 2);
    out += ':';
    appendPadded(out, time.minutes().count(), 2);
    out += ':';
    appendPadded(out, time.seconds().count(), 2);
    out += '.';
    appendPadded(out, time.subseconds().count(), 3);
    out += "Z\"";
}

} // namespace Archive::JsonText
