#include "Export/IndexPage.h"

#include "Archive/ArchiveWriter.h"
#include "Export/Backups.h"
#include "Export/NewFile.h"
#include "Export/Text.h"
#include "export/CUtils.h"
#include "platform/CCommonUtils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimeZone>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace Export {

namespace {

constexpr qsizetype kFailuresShown = 100;
constexpr qint64 kHeadBytes = 1024;
constexpr char kMark[] = "<meta name=\"generator\" content=\"dataexport\">";

constexpr char kHead[] =
    "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
    "style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'\">";

// The colours and measures of the pages that it leads to.
constexpr char kStyle[] = R"(
<meta name="viewport" content="width=device-width">
<style>
body { margin:8px; font:14px/160% Arial, Helvetica, sans-serif; color:#575757; }
#wrap { max-width:900px; margin:0 auto; padding:4px; border:1px solid #cacaca; }
h1 { margin:0; padding:10px 16px; font-size:32px; line-height:130%; color:#fefefe;
  background:#7f8ea3; overflow-wrap:anywhere; }
h2 { margin:24px 14px 8px; font-size:16px; color:#353535; }
p { margin:12px 14px; overflow-wrap:anywhere; }
table { width:100%; border-spacing:0; }
td, th { padding:8px 14px; text-align:left; overflow-wrap:anywhere; }
th { background:#e5e4e4; color:#353535; }
tr.grey td { background:#f8f8f8; }
.n { text-align:right; }
td.n { white-space:nowrap; }
.rd { color:#e61010; }
a { color:#2f6db0; }
@media (max-width:600px) {
  body { margin:0; font-size:13px; }
  td, th { padding:8px 4px; }
  th { overflow-wrap:normal; }
  table:first-of-type tr > :last-child { display:none; } /* the type leads to its folder, too */
}
</style>
)";

QString encoded(const QString &text)
{
    return CUtils::htmlEncode(printable(text));
}

QString link(const QString &path, const QString &text)
{
    const QString target = QString::fromLatin1(QUrl::toPercentEncoding(path, "/"));
    return u"<a href=\"%1\">%2</a>"_s.arg(CUtils::attributeEncode(target), encoded(text));
}

QString offsetText(const QDateTime &when)
{
    const int minutes = when.offsetFromUtc() / 60;
    constexpr QChar zeros(u'0');
    return u"UTC%1%2:%3"_s.arg(minutes < 0 ? u"−"_s : u"+"_s)
        .arg(std::abs(minutes) / 60, 2, 10, zeros)
        .arg(std::abs(minutes) % 60, 2, 10, zeros);
}

QString number(int value, bool isBad)
{
    return (isBad && value > 0 ? "<td class=\"n rd\">"_L1 : "<td class=\"n\">"_L1) + grouped(value)
        + "</td>"_L1;
}

// The page in \a folder that was written last: an earlier export may have left others.
QString newestPage(const QDir &folder)
{
    return folder.entryList({ u"*.html"_s }, QDir::Files, QDir::Time).value(0);
}

bool isOurs(const QString &path)
{
    const QFileInfo there(path);
    if (!there.isFile() || there.isSymLink())
        return false;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(kHeadBytes).contains(kMark);
}

} // namespace

IndexPage::IndexPage(const Outcome &outcome,
                     const PhoneItems::Backup &backup,
                     const Archive::ArchiveWriter *archive)
    : m_outcome(outcome)
    , m_sums(outcome.types)
    , m_backup(backup)
    , m_archive(archive)
{
}

int IndexPage::write()
{
    const QDir output(m_outcome.absoluteOutput);
    QString path = output.filePath(u"index.html"_s);
    const bool replace = isOurs(path);
    if (!replace)
        path = CCommonUtils::uniqFileName(output, u"index"_s, u".html"_s);
    NewFile file(m_outcome.absoluteOutput);
    file.write(html());
    if (file.moveTo(path, replace) == 0)
        m_path = path;
    return file.error();
}

// The sections in their order, those that people look at most in wide tiles.
QByteArray IndexPage::entrance() const
{
    const Archive::Frame &frame = m_archive->frame();
    const QByteArray root = QUrl::toPercentEncoding(frame.archiveFolder) + '/';
    QByteArray body = "<div class=\"home\"><h1 dir=\"auto\">";
    body += encoded(frame.phone).toUtf8() + "</h1>\n";
    body += heading().replace("<p>"_L1, "<p class=\"sub\">"_L1).toUtf8();
    body += "<form class=\"hero\" role=\"search\" aria-label=\"Whole archive\"><input "
            "type=\"search\" name=\"all\" "
            "aria-label=\"Search "
            "messages, people, notes and everything else\" placeholder=\"Search messages, people, "
            "notes, calls, places …\"></form>\n<ul class=\"tiles\">\n";
    for (const Archive::Section &section : frame.sections) {
        const QByteArray folder(section.folder);
        const bool isBig = folder == "chats" || folder == "photos";
        body += (isBig ? "<li class=\"big\"><a href=\"" : "<li><a href=\"") + root + folder
            + "/index.html\"><b>" + section.title + "</b>" + m_archive->tiles().value(folder)
            + "</a></li>\n";
    }
    body += "</ul>\n";
    if (m_outcome.failureCount > 0) {
        body += "<p class=\"trouble\"><b>"
            + counted(m_outcome.failureCount, u"item"_s, u"items"_s).toUtf8()
            + " could not be exported.</b> <a href=\"#missing\">See the list</a></p>\n";
    }
    body += "<h2>Files and folders</h2>\n" + table().toUtf8() + "</div>\n";
    const Archive::Page page { u"%1's Backup"_s.arg(m_backup.backupProperty(0)), {}, -1 };
    return page.html(frame, body);
}

QByteArray IndexPage::html() const
{
    if (m_archive && m_archive->error() == 0 && !m_archive->tiles().isEmpty())
        return entrance();
    const QString title = encoded(u"%1's Backup"_s.arg(m_backup.backupProperty(0)));
    const QString page = QLatin1StringView(kHead) + QLatin1StringView(kMark) + "<title>"_L1 + title
        + "</title>"_L1 + QLatin1StringView(kStyle) + "</head><body><div id=\"wrap\"><h1>"_L1
        + title + "</h1>\n"_L1 + heading() + table() + "</div></body></html>\n"_L1;
    return page.toUtf8();
}

QString IndexPage::table() const
{
    QString page =
        u"<table><tr><th>Type</th><th class=\"n\">Exported</th><th class=\"n\">Failed</th>"_s;
    if (m_sums.missing > 0)
        page += "<th class=\"n\">Missing</th>"_L1;
    if (m_sums.neverDownloaded > 0)
        page += "<th class=\"n\">Never downloaded</th>"_L1;
    page += "<th>Folder</th></tr>\n"_L1 + rows() + "</table>\n"_L1;
    for (const QString &line : absences(m_outcome.remarks))
        page += "<p>"_L1 + encoded(line) + "</p>\n"_L1;
    return page + failures();
}

QString IndexPage::heading() const
{
    const PhoneBackup::BackupInfo &info = m_backup.info();
    const QString time = u"yyyy-MM-dd hh:mm"_s;
    const QString phone = phoneText(info);
    QString text =
        u"Backup of “%1”"_s.arg(info.deviceName.isEmpty() ? info.displayName : info.deviceName);
    if (!phone.isEmpty())
        text += u" (%1)"_s.arg(phone);
    if (info.date.isValid())
        text += u", made "_s + info.date.toLocalTime().toString(time);
    const QDateTime now = QDateTime::currentDateTime();
    text += u". Exported "_s + now.toString(time) + u'.';
    // Times of messages and the like bear no zone: they are those of the computer that exported.
    text += u" Times are in the time zone %1 (%2)."_s.arg(
        QString::fromUtf8(QTimeZone::systemTimeZoneId()), offsetText(now));
    QString html = "<p>"_L1 + encoded(text) + "</p>\n"_L1;
    if (m_outcome.failure)
        html += "<p class=\"rd\">"_L1 + encoded(m_outcome.failure->what) + "</p>\n"_L1;
    return html;
}

QString IndexPage::rows() const
{
    QString html;
    bool isOdd = false;
    for (const TypeOutcome &type : m_outcome.types) {
        if (type.isNothing())
            continue;
        html += row(type, isOdd);
        isOdd = !isOdd;
    }
    return html;
}

QString IndexPage::row(const TypeOutcome &type, bool isOdd) const
{
    const QString &name = type.totals.name;
    const bool isThere = type.exported > 0 && !type.isInArchiveOnly;
    const QString page = isThere ? pageOf(type) : QString();
    QString html = isOdd ? u"<tr class=\"grey\">"_s : u"<tr>"_s;
    html += "<td>"_L1 + (isThere ? link(page.isEmpty() ? name : page, name) : encoded(name));
    if (type.state != CIExportReport::End::Complete)
        html += " <span class=\"rd\">("_L1 + encoded(stateText(type)) + ")</span>"_L1;
    html += "</td>"_L1 + number(type.exported, false) + number(type.failed, true);
    if (m_sums.missing > 0)
        html += number(type.missing, true);
    if (m_sums.neverDownloaded > 0)
        html += number(type.counts.neverDownloaded, false);
    html += "<td>"_L1;
    if (isThere)
        html += link(name + u'/', name + u'/');
    return html + "</td></tr>\n"_L1;
}

// Path of the type's page below OUTPUT; empty for a type that is files.
QString IndexPage::pageOf(const TypeOutcome &type) const
{
    if (!type.totals.isPage())
        return {};
    const QDir output(m_outcome.absoluteOutput);
    for (const QString &folder : { type.totals.name, type.totals.name + u"/HTML"_s }) {
        const QString page = newestPage(QDir(output.filePath(folder)));
        if (!page.isEmpty())
            return folder + u'/' + page;
    }
    return {};
}

QString IndexPage::failures() const
{
    if (m_outcome.failureCount == 0)
        return {};
    QString html = "<h2 id=\"missing\">What could not be exported</h2>\n<table>"_L1;
    const qsizetype shown = std::min(kFailuresShown, m_outcome.failures.size());
    for (qsizetype i = 0; i < shown; ++i) {
        const RunReport::Failed &failed = m_outcome.failures.at(i);
        const QString item = failed.item.isEmpty() ? failed.type : failed.type + u'/' + failed.item;
        html += (i % 2 == 0 ? "<tr><td>"_L1 : "<tr class=\"grey\"><td>"_L1) + encoded(item)
            + "</td><td>"_L1 + encoded(failed.reason) + "</td></tr>\n"_L1;
    }
    html += "</table>\n"_L1;
    const QString list = QFileInfo(m_outcome.reportPath).fileName();
    if (!list.isEmpty()) {
        html += u"<p>All %1 are listed in %2.</p>\n"_s.arg(grouped(m_outcome.failureCount),
                                                           link(list, list));
    }
    return html;
}

} // namespace Export
