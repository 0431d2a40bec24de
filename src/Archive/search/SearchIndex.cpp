#include "Archive/search/SearchIndex.h"

#include "Archive/html/Html.h"
#include "Archive/output/OutputTree.h"
#include "PhoneBackup/base/PhoneTime.h"

#include <algorithm>

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
    for (const char c : utf8) {
        if (c == '`' || c == '\\' || c == '$')
            out += '\\';
        out += static_cast<unsigned char>(c) < ' ' || c == 0x7F ? ' ' : c;
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
        const QDate date = m_clock.at(dateMs).date();
        month = date.year() * 12 + date.month() - 1;
    }
    Shard &shard = m_shards[month];
    if (!shard.stream) {
        shard.stream = std::make_unique<OutputStream>(m_tree);
        shard.stream->write("archiveShard(`");
    }
    m_line = dateMs == kNoMs ? QByteArray() : QByteArray::number(dateMs / 1000, 16);
    m_line += '\t' + QByteArray::number(place, 16) + '\t' + page + '\t';
    appendLine(m_line, who);
    m_line += '\t';
    appendLine(m_line, text);
    m_line += '\n';
    shard.stream->write(m_line);
    ++shard.count;
    if (shard.stream->size() >= kShardBytes)
        close(month, shard);
}

void SearchIndex::close(int month, Shard &shard)
{
    shard.stream->write("`);\n");
    const QString name = month == 0 ? u"undated-%1.js"_s.arg(shard.part)
                                    : u"%1-%2-%3.js"_s.arg(month / 12)
                                          .arg(month % 12 + 1, 2, 10, QLatin1Char('0'))
                                          .arg(shard.part);
    m_files.emplace_back(
        month,
        "[\"" + name.toLatin1() + "\","
            + QByteArray::number(month == 0 ? 0 : month / 12 * 100 + month % 12 + 1) + ','
            + QByteArray::number(shard.count) + ']');
    shard.stream->finish(u"search/"_s + name);
    shard.stream.reset();
    shard.count = 0;
    ++shard.part;
}

void SearchIndex::finish()
{
    for (auto &[month, shard] : m_shards) {
        if (shard.stream)
            close(month, shard);
    }
    // The newest months first, as they are searched.
    std::stable_sort(m_files.begin(), m_files.end(), [](const auto &a, const auto &b) {
        return a.first > b.first;
    });
    QByteArray list = "archivePlaces([\n" + m_places + "\n],[\n";
    for (std::size_t i = 0; i < m_files.size(); ++i)
        list += (i == 0 ? "" : ",\n") + m_files[i].second;
    m_tree.write(u"search/places.js"_s, list + "\n]);\n");
}

} // namespace Archive
