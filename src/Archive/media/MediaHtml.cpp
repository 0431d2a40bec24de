#include "Archive/media/MediaHtml.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"

#include <algorithm>
#include <array>

namespace Archive {

using namespace Qt::StringLiterals;
using PhoneBackup::FileIndex;

namespace {

template <std::size_t Count>
bool isOneOf(QStringView suffix, const std::array<QLatin1StringView, Count> &all)
{
    return std::any_of(all.begin(), all.end(), [suffix](QLatin1StringView one) {
        return suffix.compare(one, Qt::CaseInsensitive) == 0;
    });
}

QStringView suffixOf(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? QStringView() : name.sliced(dot + 1);
}

constexpr std::array kPictures { "jpg"_L1,  "jpeg"_L1, "png"_L1,  "gif"_L1, "webp"_L1, "bmp"_L1,
                                 "avif"_L1, "heic"_L1, "heif"_L1, "tif"_L1, "tiff"_L1 };
constexpr std::array kFilms {
    "mov"_L1, "mp4"_L1, "m4v"_L1, "webm"_L1, "3gp"_L1, "avi"_L1, "mkv"_L1
};
constexpr std::array kSounds { "m4a"_L1,  "mp3"_L1,  "wav"_L1, "aac"_L1, "ogg"_L1,
                               "opus"_L1, "oga"_L1,  "amr"_L1, "caf"_L1, "m4r"_L1,
                               "aif"_L1,  "aiff"_L1, "flac"_L1 };

// What the usual browsers show and play by themselves.
bool isShown(QStringView path)
{
    static constexpr std::array kShown { "jpg"_L1,  "jpeg"_L1, "png"_L1, "gif"_L1,
                                         "webp"_L1, "bmp"_L1,  "avif"_L1 };
    return isOneOf(suffixOf(path), kShown);
}

bool isPlayed(QStringView path)
{
    static constexpr std::array kPlayed { "mov"_L1, "mp4"_L1,  "m4v"_L1, "webm"_L1, "m4a"_L1,
                                          "m4r"_L1, "mp3"_L1,  "wav"_L1, "aac"_L1,  "ogg"_L1,
                                          "oga"_L1, "opus"_L1, "flac"_L1 };
    return isOneOf(suffixOf(path), kPlayed);
}

// What a browser would run rather than show: saved, as far as it lets us say so.
bool isActive(QStringView path)
{
    static constexpr std::array kActive { "html"_L1, "htm"_L1, "xhtml"_L1, "svg"_L1,   "svgz"_L1,
                                          "xml"_L1,  "mht"_L1, "mhtml"_L1, "shtml"_L1, "xht"_L1 };
    return isOneOf(suffixOf(path), kActive);
}

QString detailsOf(const Media &media)
{
    QStringList details;
    const QStringView suffix = suffixOf(media.name);
    if (!suffix.isEmpty() && suffix.size() <= 5)
        details.append(suffix.toString().toUpper());
    if (media.bytes > 0)
        details.append(sizeText(media.bytes));
    if (media.seconds >= 0)
        details.append(lengthText(media.seconds));
    return details.join(u" · "_s);
}

} // namespace

Media::Kind Media::kindOf(QStringView name)
{
    const QStringView suffix = suffixOf(name);
    if (isOneOf(suffix, kPictures))
        return Kind::Picture;
    if (isOneOf(suffix, kFilms))
        return Kind::Film;
    return isOneOf(suffix, kSounds) ? Kind::Sound : Kind::Other;
}

void Media::addWanted(std::vector<FileIndex::Row> &rows) const
{
    if (kind == Kind::Picture && file != FileIndex::kNone)
        rows.push_back(file);
    if (preview != FileIndex::kNone)
        rows.push_back(preview);
}

MediaHtml::MediaHtml(const Site &site, const Page &page)
    : m_site(site)
    , m_toArchive(page.toArchive(site.frame))
    , m_toOutput(page.toOutput())
{
}

void MediaHtml::put(Html &html, const Media &media) const
{
    const QString path = m_site.files.nameOf(media.file);
    if (media.kind == Media::Kind::Picture && putPicture(html, media))
        return;
    if (!media.missing.isEmpty() || path.isEmpty()) {
        if (media.preview != FileIndex::kNone && media.kind != Media::Kind::Picture)
            putPicture(html, media);
        html << "<p class=\"lost\"><b dir=\"auto\">";
        html.text(media.name.isEmpty() ? u"File"_s : media.name) << "</b> ";
        html.text(media.missing.isEmpty() ? u"was not exported"_s : media.missing) << "</p>";
        if (!media.transcript.isEmpty())
            html << "<p class=\"said\" dir=\"auto\">", html.text(media.transcript) << "</p>";
    } else if (media.kind == Media::Kind::Film && isPlayed(path)) {
        putFilm(html, media, path);
    } else if (media.kind == Media::Kind::Sound) {
        putSound(html, media, path);
    } else {
        putFile(html, media, path);
    }
}

bool MediaHtml::putPicture(Html &html, const Media &media) const
{
    Thumbnails::Thumb thumb = m_site.thumbnails.of(media.file);
    if (thumb.isNull())
        thumb = m_site.thumbnails.of(media.preview);
    if (thumb.isNull())
        return false;
    const QString original = m_site.files.nameOf(media.file);
    const QString shown = m_site.files.shownOf(media.file);
    html << (media.isSticker ? "<a class=\"pic sticker\"" : "<a class=\"pic\"");
    if (original.isEmpty())
        html.link("href", m_toArchive, thumb.path);
    else
        html.link("href", m_toOutput, original);
    if (isShown(shown))
        html.link("data-view", m_toOutput, shown);
    else
        html.link("data-view", m_toArchive, thumb.path);
    html.attribute("data-name", media.name);
    html << "><img loading=\"lazy\" decoding=\"async\" width=\""
         << QByteArray::number(thumb.size.width()) << "\" height=\""
         << QByteArray::number(thumb.size.height()) << '"';
    html.link("src", m_toArchive, thumb.path)
        .attribute("alt", media.name.isEmpty() ? u"Picture"_s : media.name);
    html << "></a>";
    if (!media.missing.isEmpty()) {
        html << "<p class=\"lost\">The original ";
        html.text(media.missing) << "; this is a preview.</p>";
    }
    return true;
}

void MediaHtml::putFilm(Html &html, const Media &media, const QString &path) const
{
    html << "<figure class=\"film\"><video controls preload=\"none\"";
    const Thumbnails::Thumb poster = m_site.thumbnails.of(media.preview);
    if (!poster.isNull()) {
        html.link("poster", m_toArchive, poster.path);
        html << " width=\"" << QByteArray::number(poster.size.width()) << "\" height=\""
             << QByteArray::number(poster.size.height()) << '"';
    }
    html.link("src", m_toOutput, path)
        .attribute("aria-label", media.name.isEmpty() ? u"Film"_s : media.name);
    html << "></video><figcaption><a";
    html.link("href", m_toOutput, path);
    html << "><bdi>";
    html.text(media.name) << "</bdi></a> ";
    html.text(detailsOf(media)) << "</figcaption></figure>";
}

void MediaHtml::putSound(Html &html, const Media &media, const QString &path) const
{
    html << "<figure class=\"sound\">";
    const QString played = m_site.files.shownOf(media.file);
    if (isPlayed(played)) {
        html << "<audio controls preload=\"none\"";
        html.link("src", m_toOutput, played)
            .attribute("aria-label", media.name.isEmpty() ? u"Sound"_s : media.name);
        html << "></audio>";
    }
    html << "<figcaption><a";
    html.link("href", m_toOutput, path);
    html << "><bdi>";
    html.text(media.name.isEmpty() ? u"Sound"_s : media.name) << "</bdi></a> ";
    html.text(detailsOf(media));
    if (!media.transcript.isEmpty())
        html << "<span class=\"said\" dir=\"auto\">", html.text(media.transcript) << "</span>";
    html << "</figcaption></figure>";
}

void MediaHtml::putFile(Html &html, const Media &media, const QString &path) const
{
    html << "<a class=\"file\"" << (isActive(path) ? " download" : "");
    html.link("href", m_toOutput, path);
    html << "><b dir=\"auto\">";
    html.text(media.name.isEmpty() ? path.section(u'/', -1) : media.name) << "</b><span>";
    html.text(detailsOf(media)) << "</span></a>";
}

void MediaHtml::putTile(Html &html,
                        const Media &media,
                        const QByteArray &anchor,
                        QStringView about) const
{
    html << "<li" << (anchor.isEmpty() ? QByteArray() : " id=\"" + anchor + '"') << '>';
    const QString path = m_site.files.nameOf(media.file);
    if (media.kind == Media::Kind::Film && !path.isEmpty()) {
        html << "<a class=\"filmtile\"";
        html.link("href", m_toOutput, path);
        html << (isPlayed(path) ? " data-film" : "");
        html.attribute("data-name", media.name);
        html << "><span aria-hidden=\"true\">▶</span><bdi>";
        html.text(media.name) << "</bdi>";
        if (media.seconds >= 0)
            html << "<small>", html.text(lengthText(media.seconds)) << "</small>";
        html << "</a>";
    } else {
        put(html, media);
    }
    if (!about.isEmpty())
        html << "<p class=\"about\" dir=\"auto\">", html.text(about) << "</p>";
    html << "</li>";
}

void MediaHtml::putAvatar(Html &html, const QString &path, QStringView name) const
{
    if (!path.isEmpty()) {
        html << "<img class=\"avatar\" alt=\"\" width=\"48\" height=\"48\" loading=\"lazy\"";
        html.link("src", m_toArchive, path) << ">";
        return;
    }
    QString initials;
    for (const QStringView word : name.tokenize(u' ', Qt::SkipEmptyParts)) {
        const QChar first = word.front();
        if (first.isLetterOrNumber() && initials.size() < 2)
            initials += first.toUpper();
    }
    html << "<span class=\"avatar\" aria-hidden=\"true\">";
    html.text(initials.isEmpty() ? u"?"_s : initials) << "</span>";
}

} // namespace Archive
