#include "Archive/html/Page.h"

#include "Archive/html/Html.h"

#include <QUrl>

namespace Archive {

namespace {

constexpr qsizetype kSectionsInBar = 6;

} // namespace

const QList<Section> &allSections()
{
    static const QList<Section> sections {
        { "chats", "Conversations" },  { "photos", "Photos" },       { "people", "People" },
        { "calls", "Calls" },          { "notes", "Notes" },         { "calendar", "Calendar" },
        { "reminders", "Reminders" },  { "voicemail", "Voicemail" }, { "memos", "Voice memos" },
        { "albums", "Shared albums" }, { "bookmarks", "Bookmarks" }, { "history", "Web history" },
        { "books", "Books" },          { "music", "Music" },         { "documents", "Documents" },
    };
    return sections;
}

QByteArray Page::toArchive(const Frame &frame) const
{
    if (depth < 0)
        return QUrl::toPercentEncoding(frame.archiveFolder) + '/';
    return QByteArray("../").repeated(depth);
}

QByteArray Page::toOutput() const
{
    return QByteArray("../").repeated(depth + 1);
}

QByteArray Page::html(const Frame &frame, const QByteArray &body) const
{
    const QByteArray root = toArchive(frame);
    QByteArray out;
    out.reserve(body.size() + 4096);
    Html html(out);
    html << "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
            "<meta name=\"generator\" content=\"dataexport\">"
            "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
            "script-src 'self' file:; style-src 'self' file:; img-src 'self' file:; "
            "media-src 'self' file:; base-uri 'none'; form-action 'none'\">"
            "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
            "<meta name=\"referrer\" content=\"no-referrer\">"
            "<meta name=\"color-scheme\" content=\"light dark\"><title>";
    html.text(title) << "</title><link rel=\"stylesheet\" href=\"" << root
                     << "archive.css\"><script src=\"" << root << "archive.js\"></script>";
    for (const QByteArray &script : scripts)
        html << "<script defer src=\"" << script << "\"></script>";
    html << "</head>\n<body data-root=\"" << root << "\"";
    if (!layout.isEmpty())
        html << " class=\"" << layout << "\"";
    html << "><a class=\"skip\" href=\"#main\">Skip to content</a>\n<header class=\"bar\">"
            "<a class=\"phone\" dir=\"auto\" href=\""
         << toOutput() << "index.html\">";
    html.text(frame.phone) << "</a><nav aria-label=\"Sections\"><ul>";
    const auto entry = [&](const Section &one) {
        html << "<li><a href=\"" << root << one.folder << "/index.html\""
             << (section == one.folder ? " aria-current=\"page\">" : ">") << one.title
             << "</a></li>";
    };
    for (qsizetype i = 0; i < frame.sections.size(); ++i) {
        if (i == kSectionsInBar)
            html << "</ul></nav><details class=\"more\"><summary>More</summary><ul>";
        entry(frame.sections[i]);
    }
    html << (frame.sections.size() > kSectionsInBar ? "</ul></details>" : "</ul></nav>");
    html << "<form class=\"find\" role=\"search\" aria-label=\"Everything\"><input type=\"search\" "
            "name=\"q\" "
            "aria-label=\"Search everything\" placeholder=\"Search everything\"></form>"
            "<button class=\"theme\" type=\"button\" hidden aria-label=\"Switch between light and "
            "dark\">◐</button></header>\n<main id=\"main\" tabindex=\"-1\">\n";
    html << body << "</main>\n</body></html>\n";
    return out;
}

} // namespace Archive
