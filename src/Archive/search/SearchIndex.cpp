#include "Archive/search/SearchIndex.h"

#include "Archive/html/Html.h"
#include "Archive/output/OutputTree.h"
#include "PhoneBackup/base/PhoneTime.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace Archive {

using namespace Qt::StringLiterals;
using PhoneBackup::PhoneTime::kNoMs;

namespace {

// So much text is looked through in the time of a few frames.
constexpr qint64 kShardBytes = 3 << 20;

// Of one text: the rest is in its page.
constexpr qsizetype kLongestText = 100'000;

// The inside of a string in back quotes, in one line.
void appendLine(QByteArray &out, QStringView text)
{
    const QByteArray utf8 = text.first(std::min(text.size(), kLongestText)).toUtf8();
    const auto isPlain = [](char c) {
        return static_cast<unsigned char>(c) >= ' ' && c != 0x7F && c != '`' && c != '\\'
            && c != '$';
    };
    for (auto at = utf8.begin(); at != utf8.end();) {
        const auto end = std::find_if_not(at, utf8.end(), isPlain);
        out.append(at, end - at);
        if (end == utf8.end())
            return;
        if (*end == '`' || *end == '\\' || *end == '$')
            out += '\\';
        out += static_cast<unsigned char>(*end) < ' ' || *end == 0x7F ? ' ' : *end;
        at = end + 1;
    }
}

} // namespace

SearchIndex::SearchIndex(OutputTree &tree, LocalClock &clock)
    : m_tree(tree)
    , m_clock(clock)
{
}

SearchIndex::~SearchIndex() = default;

int SearchIndex::addPlace(const char *kind, const QString &title, const QString &folder)
{
    m_places += m_places.isEmpty() ? "[" : ",\n[";
    m_places += '"' + QByteArray(kind) + "\"," + scriptText(title) + ',' + scriptText(folder) + ']';
    return m_placeCount++;
}

void SearchIndex::add(
    int place, qint64 dateMs, const QByteArray &page, QStringView who, QStringView text)
{
    if (text.trimmed().isEmpty() && who.isEmpty())
        return;
    int month = 0;
    if (dateMs != kNoMs) {
        const int sinceZero = m_clock.month(dateMs);
        month = sinceZero / 12 * 100 + sinceZero % 12 + 1;
    }
    Month &of = m_months[month];
    if (!of.lines)
        of.lines = std::make_unique<OutputStream>(m_tree);
    m_line.resize(0);
    if (dateMs != kNoMs)
        m_line += QByteArray::number(dateMs / 1000, 16);
    m_line += '\t';
    m_line += QByteArray::number(place, 16);
    m_line += '\t';
    m_line += page;
    m_line += '\t';
    appendLine(m_line, who);
    m_line += '\t';
    appendLine(m_line, text);
    m_line += '\n';
    of.lines->write(m_line);
    ++of.count;
}

// Lines of one month, which may be more than fit into one shard.
void SearchIndex::append(int month, OutputStream &lines, Shard &shard)
{
    QByteArray rest;
    for (qint64 at = 0; at < lines.size(); at += kShardBytes) {
        rest += lines.read(at, kShardBytes);
        qsizetype done = 0;
        for (qsizetype end = rest.indexOf('\n') + 1; end > 0; end = rest.indexOf('\n', done) + 1) {
            if (shard.stream && shard.stream->size() + end - done > kShardBytes)
                close(shard);
            if (!shard.stream) {
                shard = { std::make_unique<OutputStream>(m_tree), month, month, 0 };
                shard.stream->write("archiveShard(`");
            }
            shard.stream->write(QByteArrayView(rest).sliced(done, end - done));
            shard.oldest = month;
            ++shard.count;
            done = end;
        }
        rest.remove(0, done);
    }
}

void SearchIndex::close(Shard &shard)
{
    const QString name = u"%1.js"_s.arg(++m_shardCount, 4, 10, QLatin1Char('0'));
    m_shards += m_shards.isEmpty() ? "[\"" : ",\n[\"";
    m_shards += name.toLatin1() + "\"," + QByteArray::number(shard.newest) + ','
        + QByteArray::number(shard.oldest) + ',' + QByteArray::number(shard.count) + ']';
    shard.stream->write("`);\n");
    shard.stream->finish(u"search/"_s + name);
    shard.stream.reset();
}

void SearchIndex::finish()
{
    Shard shard;
    for (auto &[number, month] : std::views::reverse(m_months)) {
        append(number, *month.lines, shard);
        month.lines.reset();
    }
    if (shard.stream)
        close(shard);
    m_tree.write(u"search/places.js"_s,
                 "archivePlaces([\n" + m_places + "\n],[\n" + m_shards + "\n]);\n");
}

} // namespace Archive
