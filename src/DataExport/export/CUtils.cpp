#include "export/CUtils.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isFormula(const QString &text)
{
    if (text.isEmpty() || !"=@+-\t\r"_L1.contains(text.front()))
        return false;
    if (text.front() != u'+' && text.front() != u'-')
        return true;
    return !std::all_of(text.cbegin() + 1, text.cend(), [](QChar c) {
        return (c >= u'0' && c <= u'9') || " ()-./"_L1.contains(c);
    });
}

} // namespace

QString CUtils::safeFileName(const QString &s)
{
    QString safe = s;
    for (const char16_t forbidden : { u'/', u'\\', u':', u'"', u'*', u'?', u'<', u'>', u'|' })
        safe.replace(QChar(forbidden), QLatin1Char('_'));
    return safe;
}

QString CUtils::htmlEncode(const QString &s)
{
    // Most texts need nothing: a look at them costs less than the copies.
    const auto isSpecial = [](QChar c) {
        return c == u'<' || c == u'>' || c == u'&' || c == u'"' || c == u'\n';
    };
    if (std::none_of(s.cbegin(), s.cend(), isSpecial))
        return s;
    return s.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"));
}

QString CUtils::attributeEncode(const QString &s)
{
    return s.toHtmlEscaped().replace(QLatin1Char('\''), QLatin1String("&#39;"));
}

QString CUtils::csvEncode(const QString &s)
{
    QString field = s;
    field.replace(QLatin1Char('"'), QLatin1String("\"\""));
    const bool enclosed = field.contains(QLatin1Char(',')) || field.contains(QLatin1Char('\r'))
        || field.contains(QLatin1Char('\n'));
    return enclosed ? QLatin1Char('"') + field + QLatin1Char('"') : field;
}

QString CUtils::csvCell(const QString &s)
{
    // Most texts need nothing: a look at them costs less than the copies.
    const auto isSpecial = [](QChar c) {
        return c == u'"' || c == u',' || c == u'\r' || c == u'\n' || c.isNull();
    };
    const bool isEnclosed = std::any_of(s.cbegin(), s.cend(), isSpecial);
    if (!isEnclosed)
        return isFormula(s) ? u'\'' + s : s;
    QString field = s;
    field.remove(QChar::Null).replace(u'"', "\"\""_L1);
    if (isFormula(field))
        field.prepend(u'\'');
    return u'"' + field + u'"';
}
