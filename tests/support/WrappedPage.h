#ifndef TESTS_SUPPORT_WRAPPEDPAGE_H
#define TESTS_SUPPORT_WRAPPEDPAGE_H

#include <QRegularExpression>
#include <QString>

//! A page is one line; the golden files break it before each block, for those who read them.
inline QByteArray wrappedPage(const QString &page)
{
    static const QRegularExpression block(QStringLiteral("(?=<(?:div|h2|hr|p|tr|table)[ >])"));
    QString lines = page;
    lines.replace(block, QStringLiteral("\n"));
    return lines.mid(lines.startsWith(QLatin1Char('\n')) ? 1 : 0).toUtf8();
}

#endif
