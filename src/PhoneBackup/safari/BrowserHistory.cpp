#include "PhoneBackup/safari/BrowserHistory.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/RowSet.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

#include <QSet>

#include <algorithm>
#include <limits>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kHome = "HomeDomain";
constexpr QByteArrayView kBrowser = "AppDomain-com.apple.mobilesafari";
constexpr int kFirstReleaseWithoutHistory = 13;
constexpr qint64 kMaxPropertyListBytes = qint64(64) << 20;
constexpr qint64 kNoDate = std::numeric_limits<qint64>::min(); // sorts behind every date

// A count of a hostile database may be any number.
int countOf(qint64 number)
{
    return int(std::clamp<qint64>(number, 0, std::numeric_limits<int>::max()));
}

// What the visits tell of a page.
struct Visits
{
    static constexpr double kNever = -std::numeric_limits<double>::infinity();

    double last = kNever;
    double lastWithTitle = kNever;
    qint64 visitWithTitle = 0;
    int count = 0;
};

// \return whether all visits were read.
bool readVisits(RowDatabase &database, const RowSet &pages, std::vector<Visits> &visits)
{
    Table stored(database, u"history_visits"_s);
    const auto [page, time] = stored.columns(u"history_item"_s, u"visit_time"_s);
    const auto hasTitle =
        stored.expression(u"ifnull(length(%1), 0) > 0"_s.arg(stored.sql(u"title"_s)));
    return stored.isThere() && stored.forEach([&, page = page, time = time](const Table::Row &row) {
        const qsizetype position = pages.position(row.integer(page));
        if (position == RowSet::kNone)
            return;
        Visits &of = visits[std::size_t(position)];
        const double seconds = row.number(time).value_or(0);
        of.last = std::max(of.last, seconds);
        of.count += of.count < std::numeric_limits<int>::max() ? 1 : 0;
        if (row.integer(hasTitle) != 0 && seconds >= of.lastWithTitle) {
            of.lastWithTitle = seconds;
            of.visitWithTitle = row.id();
        }
    });
}

} // namespace

BrowserHistory::BrowserHistory(Source &source)
    : m_source(source)
{
}

void BrowserHistory::read(const std::function<void(const VisitedPage &)> &page)
{
    bool isThere = false;
    for (const QByteArrayView domain : { kHome, kBrowser }) {
        if (m_pages.empty())
            isThere |= readDatabases(domain);
    }
    for (const QByteArrayView domain : { kHome, kBrowser }) {
        if (m_pages.empty())
            isThere |= readPropertyList(domain);
    }
    if (!isThere)
        m_source.addAbsence(
            DataType::Safari, kFirstReleaseWithoutHistory, Notice("safari.notInPlainBackups"));
    std::stable_sort(m_pages.begin(), m_pages.end(), [](const Record &a, const Record &b) {
        return a.visitedMs > b.visitedMs;
    });
    QSet<QString> known;
    for (const Record &record : m_pages) {
        const VisitedPage found = this->page(record);
        if (m_isMerged) {
            if (known.contains(found.address)) // by another profile, later
                continue;
            known.insert(found.address);
        }
        page(found);
    }
}

// The owner's, then those of the profiles. \return whether there is any.
bool BrowserHistory::readDatabases(QByteArrayView domain)
{
    QStringList paths { u"Library/Safari/History.db"_s };
    const FileIndex &index = m_source.index();
    const FileIndex::Range range = index.walk(domain, "Library/Safari/Profiles/");
    for (FileIndex::Row row = range.first; row < range.last; ++row) {
        if (PathParts::name(index.path(row)) == "History.db")
            paths.append(PathParts::text(index.path(row)));
    }
    m_isMerged = paths.size() > 1;
    bool isThere = false;
    for (const QString &path : paths)
        isThere |= readDatabase(domain, path);
    return isThere;
}

bool BrowserHistory::readDatabase(QByteArrayView domain, const QString &path)
{
    std::optional<RowDatabase> database = RowDatabase::open(
        m_source, DataType::Safari, domain, path, Notice("safari.pagesMayBeMissing"));
    if (!database)
        return m_source.files().findFile(domain, path) != FileIndex::kNone;
    if (database->hasColumn(u"history_items"_s, u"url"_s))
        readPages(*database);
    else
        database->addLoss(Notice("safari.noPages"));
    return true;
}

void BrowserHistory::readPages(RowDatabase &database)
{
    Table stored(database, u"history_items"_s);
    RowSet pages;
    stored.forEach([&pages](const Table::Row &row) { pages.add(row.id()); });
    pages.sort();
    std::vector<Visits> visits(std::size_t(pages.count()));
    const bool isComplete = readVisits(database, pages, visits);

    Table titles(database, u"history_visits"_s);
    const auto title = titles.column(u"title"_s);
    Table::Lookup titleOf = titles.lookup();
    const auto [url, count] = stored.columns(u"url"_s, u"visit_count"_s);
    stored.forEach([&, this, url = url, count = count](const Table::Row &row) {
        const qsizetype position = pages.position(row.id());
        if (position == RowSet::kNone)
            return;
        const Visits &of = visits[std::size_t(position)];
        const bool isVisited = of.last != Visits::kNever;
        if (!isVisited && isComplete) // known, but never opened
            return;
        VisitedPage page;
        page.id = row.id();
        page.address = row.text(url);
        page.visits = countOf(row.integer(count));
        page.knownVisits = of.count;
        if (isVisited)
            page.visited = PhoneTime::ofThePast(of.last);
        if (of.lastWithTitle != Visits::kNever) {
            if (const Table::Row *visit = titleOf.find(of.visitWithTitle))
                page.title = visit->text(title).simplified();
        }
        add(page);
    });
}

bool BrowserHistory::readPropertyList(QByteArrayView domain)
{
    const QString path = u"Library/Safari/History.plist"_s;
    const FileIndex::Row row = m_source.files().findFile(domain, path);
    if (row == FileIndex::kNone)
        return false;
    const PropertyList list =
        PropertyList::parse(m_source.files().content(row, kMaxPropertyListBytes));
    const QVariant pages = list.value("WebHistoryDates");
    if (pages.metaType() != QMetaType::fromType<QVariantList>()) {
        m_source.addProblem({ DataType::Safari,
                              m_source.files().place(row),
                              Notice("safari.damagedPropertyList"),
                              true });
        return true;
    }
    for (const QVariant &entry : pages.toList()) {
        const QVariantMap from = entry.toMap();
        bool isNumber = false;
        const double visit = from.value(u"lastVisitedDate"_s).toDouble(&isNumber);
        VisitedPage page;
        page.title = from.value(u"title"_s).toString().simplified();
        page.address = from.value(QString()).toString();
        page.visits = countOf(from.value(u"visitCount"_s).toLongLong());
        if (isNumber)
            page.visited = PhoneTime::ofThePast(visit);
        add(page);
    }
    return true;
}

void BrowserHistory::add(const VisitedPage &page)
{
    if (page.address.isEmpty())
        return;
    m_pages.push_back({ m_texts.add({ page.title, page.address }),
                        page.visited.isValid() ? page.visited.toMSecsSinceEpoch() : kNoDate,
                        page.id,
                        page.visits,
                        page.knownVisits });
}

VisitedPage BrowserHistory::page(const Record &record) const
{
    VisitedPage page;
    page.id = record.id;
    page.title = m_texts.text(record.texts, 0);
    page.address = m_texts.text(record.texts, 1);
    if (record.visitedMs != kNoDate)
        page.visited = QDateTime::fromMSecsSinceEpoch(record.visitedMs, Qt::UTC);
    page.visits = record.visits;
    page.knownVisits = record.knownVisits;
    return page;
}

} // namespace PhoneBackup
