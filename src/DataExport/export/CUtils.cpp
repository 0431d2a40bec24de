#include "export/CUtils.h"

QString CUtils::safeFileName(const QString &s)
{
    QString safe = s;
    for (const char16_t forbidden : { u'/', u'\\', u':', u'"', u'*', u'?', u'<', u'>', u'|' })
        safe.replace(QChar(forbidden), QLatin1Char('_'));
    return safe;
}

QString CUtils::htmlEncode(const QString &s)
{
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
