#include "export/CIDataExporter.h"
#include "export/CUtils.h"
#include "export/PageText_p.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kLinkedSchemes {
    "http"_L1, "https"_L1, "ftp"_L1, "mailto"_L1, "tel"_L1, "sms"_L1, "facetime"_L1,
};

// Browsers skip control characters and blanks before a scheme, and line breaks and tabs in it:
// "java\nscript:" is one. A target that needs such care gets no link at all.
QStringView schemeOf(QStringView target)
{
    const auto colon = target.indexOf(u':');
    return colon < 0 ? QStringView() : target.first(colon);
}

} // namespace

QString PageText::plain(const CIDataExporter &page, const QString &text)
{
    return page.isHardened() ? CUtils::htmlEncode(text) : text;
}

QString PageText::attribute(const CIDataExporter &page, const QString &value)
{
    return page.isHardened() ? CUtils::attributeEncode(value) : value;
}

QString PageText::alt(const CIDataExporter &page, const QString &words)
{
    return page.isHardened() ? " alt=\""_L1 + CUtils::attributeEncode(words) + u'"' : QString();
}

QString PageText::linkTarget(const CIDataExporter &page, const QString &target)
{
    if (!page.isHardened())
        return target;
    QString encoded;
    encoded.reserve(target.size());
    for (const QChar c : target) {
        if (c <= u' ' || "\"<>^`{|}"_L1.contains(c)) // as browsers do when they open it
            encoded += u'%' + QString::number(c.unicode(), 16).rightJustified(2, u'0').toUpper();
        else
            encoded += c;
    }
    return CUtils::attributeEncode(encoded);
}

bool PageText::mayLink(const CIDataExporter &page, const QString &target)
{
    if (!page.isHardened())
        return true;
    const QStringView scheme = schemeOf(target);
    return std::any_of(kLinkedSchemes.begin(), kLinkedSchemes.end(), [scheme](QLatin1String known) {
        return scheme.compare(known, Qt::CaseInsensitive) == 0;
    });
}

QString PageText::wrappingStyleElement()
{
    return u"<style type=\"text/css\">"
           ".main td { overflow-wrap:anywhere; min-width:7em; }"
           "</style>"_s;
}
