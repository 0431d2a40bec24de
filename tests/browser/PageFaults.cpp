#include "browser/PageFaults.h"

#include "browser/Browser.h"
#include "support/Files.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace BrowserTest {

namespace {

QStringList texts(const QJsonValue &list)
{
    QStringList all;
    const QJsonArray array = list.toArray();
    for (const QJsonValue &entry : array)
        all += entry.toString();
    return all;
}

const QString kPicturesNotShown = uR"js(
    [...document.images].filter(i => !i.complete || i.naturalWidth === 0).map(i => i.src))js"_s;

const QString kPicturesOfStyles = uR"js(
    [...document.styleSheets].flatMap(s => [...s.cssRules])
        .flatMap(r => [...r.cssText.matchAll(/url\("([^"]*)"\)/g)])
        .map(m => new URL(m[1], document.baseURI).href))js"_s;

const QString kWhatRuns = uR"js(
    [...document.querySelectorAll('*')].filter(e =>
        ['SCRIPT', 'IFRAME', 'OBJECT', 'EMBED', 'FORM'].includes(e.tagName)
        || [...e.attributes].some(a => /^on/i.test(a.name)
                                       || /^\s*javascript:/i.test(a.value)))
        .map(e => e.outerHTML.slice(0, 200)))js"_s;

// Half a pixel is rounding, not overflow.
const QString kWhatReachesOver = uR"js(
    (() => {
        const wrap = document.getElementById('wrap') ?? document.body;
        const edge = wrap.getBoundingClientRect();
        return [...wrap.querySelectorAll('*')].filter(e => {
            const r = e.getBoundingClientRect();
            return r.width > 0 && (r.left < edge.left - 0.5 || r.right > edge.right + 0.5);
        }).map(e => e.outerHTML.slice(0, 200));
    })())js"_s;

} // namespace

QString pageFaults(Browser &browser, const QString &folder, int width)
{
    QStringList faults;
    const auto report = [&faults](const QString &what, const QStringList &list) {
        for (const QString &entry : list)
            faults += what + u": "_s + entry;
    };
    report(u"picture not shown"_s, texts(browser.evaluate(kPicturesNotShown)));
    report(u"may run"_s, texts(browser.evaluate(kWhatRuns)));
    report(u"reaches over the edge"_s, texts(browser.evaluate(kWhatReachesOver)));
    report(u"the browser says"_s, browser.complaints());
    const QStringList inStyles = texts(browser.evaluate(kPicturesOfStyles));
    for (const QString &url : inStyles) {
        if (!QFileInfo(QUrl(url).toLocalFile()).isFile())
            faults += u"picture of the style sheet is missing: "_s + url;
    }
    const QString inside = QUrl::fromLocalFile(folder + u'/').toString(QUrl::FullyEncoded);
    for (const QString &url : browser.requests()) {
        if (!url.startsWith(inside))
            faults += u"fetched from elsewhere: "_s + url;
    }
    const QJsonValue widths = browser.evaluate(
        u"[document.documentElement.scrollWidth, innerWidth,"
        " (document.getElementById('wrap') ?? document.body).getBoundingClientRect().width]"_s);
    if (widths[0].toInt() > widths[1].toInt())
        faults += u"has to be moved sideways: %1 in %2 pixels"_s.arg(widths[0].toInt())
                      .arg(widths[1].toInt());
    if (width > 0 && widths[2].toInt() != width)
        faults += u"is %1 pixels wide"_s.arg(widths[2].toDouble());
    if (!browser.error().isEmpty())
        faults += browser.error();
    return faults.join(u'\n');
}

int writeScreenshots(Browser &browser, const QString &path)
{
    constexpr int kMostHeight = 2000;
    const int height = browser.evaluate(u"document.documentElement.scrollHeight"_s).toInt();
    int count = 0;
    for (int top = 0; top < height; top += kMostHeight) {
        const QByteArray png = browser.screenshot(top, std::min(kMostHeight, height - top));
        if (!png.startsWith("\x89PNG") || !Files::write(u"%1-%2.png"_s.arg(path).arg(++count), png))
            return 0;
    }
    return count;
}

} // namespace BrowserTest
