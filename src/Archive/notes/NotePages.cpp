#include "Archive/notes/NotePages.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/notes/Note.h"
#include "PhoneItems/notes/NoteBodyText.h"

#include <QCryptographicHash>

#include <algorithm>
#include <array>

namespace Archive {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestSnippet = 140;

QString stateText(const Note &note)
{
    switch (note.bodyState) {
    case Note::BodyState::Locked:
        return u"This note is locked with a password of its own."_s
            + (note.hint.isEmpty() ? QString() : u" Hint: "_s + note.hint);
    case Note::BodyState::Unreadable:
        return u"The text of this note is damaged."_s;
    case Note::BodyState::Cut:
        return u"The end of this note is missing."_s;
    case Note::BodyState::Elsewhere:
        return u"The backup has no text for this note."_s;
    case Note::BodyState::Whole:
        break;
    }
    return {};
}

} // namespace

NotePages::NotePages(Site &site)
    : m_site(site)
    , m_list(site, "notes", "note", "rows notes")
    , m_place(site.search.addPlace("note", u"Notes"_s, u"notes"_s))
{
}

void NotePages::take(const Note &note)
{
    QString title = note.title.isEmpty() ? note.body.firstLine() : note.title;
    title = title.simplified();
    if (title.isEmpty())
        title = note.deleted ? u"Deleted note"_s : u"Note"_s;
    const QByteArray identity = note.identifier.isEmpty()
        ? QByteArray::number(note.id) + (note.store == Note::Store::Old ? "old" : "")
        : note.identifier.toUtf8();
    const QString name = QString::fromLatin1(
        QCryptographicHash::hash(identity, QCryptographicHash::Sha1).toHex().first(12));
    QString free = name;
    for (int i = 2; m_names.contains(free); ++i)
        free = u"%1-%2"_s.arg(name).arg(i);
    m_names.insert(free);
    const QString text = PhoneItems::NoteBodyText::of(note).text;
    m_site.search.add(m_place,
                      note.orderDate().isValid() ? note.orderDate().toMSecsSinceEpoch()
                                                 : PhoneTime::kNoMs,
                      free.toLatin1() + ".html",
                      title,
                      text);
    writeNote(note, title, free);

    Listed &listed = m_notes.emplace_back();
    listed.folder = note.deleted ? u"Recently deleted"_s
        : note.folder.isEmpty()  ? u"Notes"_s
                                 : note.folder;
    if (!note.account.isEmpty() && !note.deleted)
        listed.folder = note.account + u" › "_s + listed.folder;
    listed.isPinned = note.pinned;
    Html html(listed.entry.html);
    html << "<a class=\"whole\" href=\"" << free.toLatin1() << ".html\"><b dir=\"auto\">"
         << (note.pinned ? "📌 " : "") << (note.isLocked() ? "🔒 " : "");
    html.text(title) << "</b><span class=\"when\">";
    html.text(m_site.clock.dayAndTime(note.orderDate())) << "</span><span dir=\"auto\">";
    QString snippet = text.simplified();
    if (snippet.startsWith(title))
        snippet = snippet.sliced(title.size()).trimmed();
    if (snippet.isEmpty())
        snippet = note.snippet;
    html.text(snippet.first(std::min(snippet.size(), kLongestSnippet))) << "</span></a>";
    listed.entry.date = note.orderDate();
    listed.entry.latest = title;
}

void NotePages::writeNote(const Note &note, const QString &title, const QString &name)
{
    std::vector<FileIndex::Row> wanted;
    for (const NoteAttachment &attachment : note.attachments)
        NoteHtml::mediaOf(attachment).addWanted(wanted);
    m_site.thumbnails.prepare(wanted);
    const Page page { title, "notes", 1 };
    const MediaHtml media(m_site, page);
    QByteArray out;
    Html html(out);
    html << "<article class=\"narrow note\"><p class=\"acts\"><a class=\"btn\" "
            "href=\"index.html\">‹ Notes</a></p><p class=\"facts\" dir=\"auto\">";
    QStringList facts;
    if (note.created.isValid())
        facts.append(u"Created "_s + m_site.clock.dayAndTime(note.created));
    if (note.modified.isValid())
        facts.append(u"Changed "_s + m_site.clock.dayAndTime(note.modified));
    if (!note.folder.isEmpty())
        facts.append(note.folder);
    if (!note.account.isEmpty())
        facts.append(note.account);
    if (note.pinned)
        facts.append(u"Pinned"_s);
    if (note.shared)
        facts.append(u"Shared"_s);
    if (note.deleted)
        facts.append(u"Deleted"_s);
    html.text(facts.join(u" · "_s)) << "</p>";
    const bool hasTitle = !note.body.blocks.empty() && note.body.firstLine().simplified() == title;
    if (!hasTitle)
        html << "<h1 dir=\"auto\">", html.text(title) << "</h1>";
    if (const QString state = stateText(note); !state.isEmpty())
        html << "<p class=\"lost\" dir=\"auto\">", html.text(state) << "</p>";
    NoteHtml body(html, media, note);
    body.put(note.body);
    body.putRest();
    html << "</article>\n";
    m_site.write(u"notes/%1.html"_s.arg(name), page, out);
}

void NotePages::finish()
{
    // Folder by folder in the order of their newest note, pinned ones first.
    QHash<QString, int> folders;
    for (const Listed &listed : m_notes) {
        if (!folders.contains(listed.folder))
            folders.insert(listed.folder, int(folders.size()));
    }
    std::stable_sort(m_notes.begin(), m_notes.end(), [&](const Listed &a, const Listed &b) {
        return std::pair(folders.value(a.folder), !a.isPinned)
            < std::pair(folders.value(b.folder), !b.isPinned);
    });
    for (const Listed &listed : m_notes) {
        m_list.group(listed.folder);
        m_list.add(listed.entry);
    }
    m_list.finish();
}

NoteHtml::NoteHtml(Html &html, const MediaHtml &media, const Note &note)
    : m_html(html)
    , m_media(media)
    , m_note(note)
{
}

Media NoteHtml::mediaOf(const NoteAttachment &attachment)
{
    Media media;
    media.name = attachment.title.isEmpty() ? attachment.fileName : attachment.title;
    for (const NoteFile &file : attachment.files) {
        const bool isOriginal = file.shows == NoteFile::Shows::Original;
        if (media.file == FileIndex::kNone || isOriginal)
            media.file = file.row;
        if (file.shows == NoteFile::Shows::Picture)
            media.preview = file.row;
        if (isOriginal)
            break;
    }
    media.kind = Media::kindOf(attachment.fileName);
    if (media.kind == Media::Kind::Other
        && (attachment.kind == NoteAttachment::Kind::Drawing
            || attachment.kind == NoteAttachment::Kind::Scan || attachment.type.contains("image"_L1)
            || attachment.type.contains("jpeg"_L1) || attachment.type.contains("png"_L1)
            || attachment.type.contains("heic"_L1)))
        media.kind = Media::Kind::Picture;
    if (media.name.isEmpty())
        media.name =
            attachment.kind == NoteAttachment::Kind::Drawing ? u"Drawing"_s : u"Attachment"_s;
    media.bytes = std::max<qint64>(0, attachment.bytes);
    media.seconds = attachment.seconds > 0 ? attachment.seconds : -1;
    media.transcript = attachment.words;
    switch (attachment.presence) {
    case NoteAttachment::Presence::NeverDownloaded:
        media.missing = u"was never downloaded to the phone"_s;
        break;
    case NoteAttachment::Presence::Locked:
        media.missing = u"belongs to a locked note"_s;
        break;
    case NoteAttachment::Presence::NoFile:
    case NoteAttachment::Presence::Present:
        if (media.file == FileIndex::kNone)
            media.missing = u"is missing from the backup"_s;
        break;
    }
    return media;
}

void NoteHtml::put(const NoteBody &body)
{
    NoteBlock::List list = NoteBlock::List::None;
    bool isQuote = false;
    bool isCode = false;
    const auto close = [&] {
        if (list != NoteBlock::List::None)
            m_html << (list == NoteBlock::List::Numbered ? "</ol>" : "</ul>");
        list = NoteBlock::List::None;
    };
    for (const NoteBlock &block : body.blocks) {
        const bool inCode = block.kind == NoteBlock::Kind::Code;
        if (block.list != list || block.isQuote != isQuote || inCode != isCode)
            close();
        if (isCode && !inCode)
            m_html << "</pre>";
        if (isQuote && !block.isQuote)
            m_html << "</blockquote>";
        if (block.isQuote && !isQuote)
            m_html << "<blockquote>";
        if (inCode && !isCode)
            m_html << "<pre>";
        isQuote = block.isQuote;
        isCode = inCode;
        if (list == NoteBlock::List::None && block.list != NoteBlock::List::None) {
            m_html << (block.list == NoteBlock::List::Numbered        ? "<ol>"
                           : block.list == NoteBlock::List::Checklist ? "<ul class=\"checks\">"
                           : block.list == NoteBlock::List::Dashed    ? "<ul class=\"dashes\">"
                                                                      : "<ul>");
        }
        list = block.list;
        putBlock(body, block);
    }
    close();
    m_html << (isCode ? "</pre>" : "") << (isQuote ? "</blockquote>" : "");
}

void NoteHtml::putBlock(const NoteBody &body, const NoteBlock &block)
{
    if (block.list != NoteBlock::List::None) {
        m_html << "<li class=\"l" << QByteArray::number(std::min<int>(block.level, 8)) << '"';
        if (block.list == NoteBlock::List::Numbered)
            m_html << " value=\"" << QByteArray::number(block.number) << '"';
        m_html << " dir=\"auto\">";
        if (block.list == NoteBlock::List::Checklist)
            m_html << (block.isChecked
                           ? "<span class=\"check\" role=\"img\" aria-label=\"done\">☑</span> "
                           : "<span class=\"check\" role=\"img\" aria-label=\"open\">☐</span> ");
        putRuns(body, block);
        m_html << "</li>\n";
        return;
    }
    switch (block.kind) {
    case NoteBlock::Kind::Table:
        putTable(body, block);
        return;
    case NoteBlock::Kind::Code:
        putRuns(body, block);
        m_html << "\n";
        return;
    case NoteBlock::Kind::Title:
        m_html << "<h1 dir=\"auto\">";
        putRuns(body, block);
        m_html << "</h1>\n";
        return;
    case NoteBlock::Kind::Heading:
        m_html << "<h2 dir=\"auto\">";
        putRuns(body, block);
        m_html << "</h2>\n";
        return;
    case NoteBlock::Kind::Subheading:
        m_html << "<h3 dir=\"auto\">";
        putRuns(body, block);
        m_html << "</h3>\n";
        return;
    case NoteBlock::Kind::Paragraph:
    case NoteBlock::Kind::Row:
        m_html << "<div class=\"par l" << QByteArray::number(std::min<int>(block.level, 8))
               << "\" dir=\"auto\">";
        putRuns(body, block);
        m_html << "</div>\n";
        return;
    }
}

void NoteHtml::putRuns(const NoteBody &body, const NoteBlock &block)
{
    for (const NoteRun &run : body.runsOf(block))
        putRun(body, run);
}

void NoteHtml::putRun(const NoteBody &body, const NoteRun &run)
{
    const NoteLook &look = run.look;
    if (look.attachment >= 0 && std::size_t(look.attachment) < m_note.attachments.size()) {
        m_shown.insert(look.attachment);
        putAttachment(m_note.attachments[std::size_t(look.attachment)]);
        return;
    }
    static constexpr std::array kHighlights { "", "purple", "pink", "orange", "mint", "blue" };
    if (look.highlight != NoteHighlight::None)
        m_html << "<mark class=\"" << kHighlights[std::size_t(look.highlight)] << "\">";
    m_html << (look.bold ? "<b>" : "") << (look.italic ? "<i>" : "")
           << (look.underlined ? "<u>" : "") << (look.struck ? "<s>" : "")
           << (look.raised > 0       ? "<sup>"
                   : look.raised < 0 ? "<sub>"
                                     : "");
    const QString text = body.textOf(run).toString();
    if (look.link >= 0 && look.link < body.links.size())
        m_html.external(body.links.at(look.link), text);
    else
        m_html.text(text);
    m_html << (look.raised > 0       ? "</sup>"
                   : look.raised < 0 ? "</sub>"
                                     : "")
           << (look.struck ? "</s>" : "") << (look.underlined ? "</u>" : "")
           << (look.italic ? "</i>" : "") << (look.bold ? "</b>" : "");
    if (look.highlight != NoteHighlight::None)
        m_html << "</mark>";
}

void NoteHtml::putTable(const NoteBody &body, const NoteBlock &block)
{
    if (block.table < 0 || std::size_t(block.table) >= body.tables.size())
        return;
    const NoteTable &table = *body.tables[std::size_t(block.table)];
    m_html << "<div class=\"wide\"><table" << (table.isRightToLeft ? " dir=\"rtl\">" : ">");
    for (qsizetype row = 0; row < table.rows(); ++row) {
        m_html << "<tr>";
        for (qsizetype column = 0; column < table.columns; ++column) {
            m_html << "<td dir=\"auto\">";
            put(table.cells[std::size_t(row * table.columns + column)]);
            m_html << "</td>";
        }
        m_html << "</tr>\n";
    }
    m_html << "</table></div>\n";
}

void NoteHtml::putAttachment(const NoteAttachment &attachment)
{
    using Kind = NoteAttachment::Kind;
    switch (attachment.kind) {
    case Kind::Hashtag:
    case Kind::Mention:
    case Kind::NoteLink:
    case Kind::Calculation:
    case Kind::Word:
        m_html << "<span class=\"word\">";
        m_html.text(attachment.text) << "</span>";
        return;
    case Kind::Link:
        m_html << "<span class=\"card link\"><b dir=\"auto\">";
        m_html.external(attachment.url,
                        attachment.title.isEmpty() ? attachment.url : attachment.title)
            << "</b>";
        if (!attachment.summary.isEmpty())
            m_html << "<span dir=\"auto\">", m_html.text(attachment.summary) << "</span>";
        m_html << "</span>";
        return;
    case Kind::Table:
    case Kind::Gallery:
        return; // its parts are attachments of their own
    default:
        m_html << "<div class=\"att\">";
        m_media.put(m_html, mediaOf(attachment));
        m_html << "</div>";
    }
}

void NoteHtml::putRest()
{
    for (std::size_t i = 0; i < m_note.attachments.size(); ++i) {
        const NoteAttachment &attachment = m_note.attachments[i];
        if (!m_shown.contains(qsizetype(i)) && attachment.isOwn && !attachment.files.empty())
            putAttachment(attachment);
    }
}

} // namespace Archive
