#include "PhoneBackup/safari/BrowserHistory.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/RowDatabase.h"
#include "PhoneBackup/source/RowSet.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/safari/SafariData.h"
#include "platform/Translation_p.h"

#include <QSet>

#include <limits>
#include <vector>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kHome = "HomeDomain";
constexpr QByteArrayView kBrowser = "AppDomain-com.apple.mobilesafari";
constexpr int kFirstReleaseWithoutHistory = 13;
constexpr qint64 kMaxPropertyListBytes = qint64(64) << 20;

// What the visits tell of a page.
struct Visits
{
    static constexpr double kNever = -std::numeric_limits<double>::infinity();

    double last = kNever;
    double lastWithTitle = kNever;
    qint64 visitWithTitle = 0;
};

} // namespace

BrowserHistory::BrowserHistory(Source &source)
    : m_source(source)
{
}

void BrowserHistory::read(SafariData &data)
{
    bool isThere = false;
    for (const QByteArrayView domain : { kHome, kBrowser }) {
        if (m_pages.count() == 0)
            isThere |= readDatabases(domain);
    }
    for (const QByteArrayView domain : { kHome, kBrowser }) {
        if (m_pages.count() == 0)
            isThere |= readPropertyList(domain);
    }
    if (!isThere) {
        m_source.addAbsence(SafariData::kSafari,
                            kFirstReleaseWithoutHistory,
                            tr("Phones with iOS 13 or later put the web history into encrypted "
                               "backups only, and this one is not encrypted."));
    }
    m_pages.sortNewestFirst();
    QSet<QString> known;
    for (int i = 0; i < m_pages.count(); ++i) {
        if (m_isMerged) {
            const QString url = m_pages.cell(i, 1);
            if (known.contains(url)) // by another profile, later
                continue;
            known.insert(url);
        }
        data.add({ { m_pages.cell(i, 0), m_pages.cell(i, 1) },
                   m_pages.date(i),
                   m_pages.id(i),
                   m_pages.isDeleted(i) },
                 u"History"_s);
    }
    m_pages = {};
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
    std::optional<RowDatabase> database = RowDatabase::open(m_source,
                                                            SafariData::kSafari,
                                                            domain,
                                                            path,
                                                            tr("Pages of the history may be "
                                                               "missing."));
    if (!database)
        return m_source.files().findFile(domain, path) != FileIndex::kNone;
    if (database->hasColumn(u"history_items"_s, u"url"_s))
        readPages(*database);
    else
        database->addLoss(tr("It has no table of visited pages that can be read."));
    return true;
}

void BrowserHistory::readPages(RowDatabase &database)
{
    const QString pageTable = u"history_items"_s;
    const QString visitTable = u"history_visits"_s;
    RowSet pages;
    database.query(u"ROWID"_s, pageTable, [&](const Statement &row) { pages.add(row.integer(0)); });
    pages.sort();

    std::vector<Visits> visits(std::size_t(pages.count()));
    const QString title = database.column(visitTable, u"title"_s);
    const QString what = u"%1, %2, ifnull(length(%3), 0) > 0, ROWID"_s.arg(
        database.column(visitTable, u"history_item"_s),
        database.column(visitTable, u"visit_time"_s),
        title);
    const bool isComplete = database.query(what, visitTable, [&](const Statement &row) {
        const qsizetype page = pages.position(row.integer(0));
        if (page == RowSet::kNone)
            return;
        Visits &of = visits[std::size_t(page)];
        const double time = row.number(1).value_or(0);
        of.last = std::max(of.last, time);
        if (row.integer(2) != 0 && time >= of.lastWithTitle) {
            of.lastWithTitle = time;
            of.visitWithTitle = row.integer(3);
        }
    });

    const std::unique_ptr<Statement> titles = database.hasTable(visitTable)
        ? database.prepare(u"SELECT %1 FROM %2 WHERE ROWID = ?"_s.arg(title, visitTable))
        : nullptr;
    std::vector<bool> isAdded(visits.size()); // damage makes rows come twice
    database.query(u"ROWID, url"_s, pageTable, [&](const Statement &row) {
        const qsizetype position = pages.position(row.integer(0));
        if (position == RowSet::kNone || isAdded[std::size_t(position)])
            return;
        isAdded[std::size_t(position)] = true;
        const Visits &of = visits[std::size_t(position)];
        const bool isVisited = of.last != Visits::kNever;
        if (!isVisited && isComplete) // known, but never opened
            return;
        Row page { { {}, row.text(1) }, {}, row.integer(0), false };
        if (isVisited)
            page.date = PhoneTime::ofThePast(of.last);
        if (titles && of.lastWithTitle != Visits::kNever) {
            titles->bind(1, of.visitWithTitle);
            if (titles->step() == Statement::Step::Row)
                page.cells[0] = titles->text(0).simplified();
            titles->reset();
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
        m_source.addProblem(
            { SafariData::kSafari,
              m_source.files().place(row),
              tr("The property list is damaged or missing. Pages of the history are "
                 "missing."),
              true });
        return true;
    }
    for (const QVariant &entry : pages.toList()) {
        const QVariantMap from = entry.toMap();
        bool isNumber = false;
        const double visit = from.value(u"lastVisitedDate"_s).toDouble(&isNumber);
        const Row page { { from.value(u"title"_s).toString().simplified(),
                           from.value(QString()).toString() },
                         isNumber ? PhoneTime::ofThePast(visit) : QDateTime(),
                         -1,
                         false };
        add(page);
    }
    return true;
}

void BrowserHistory::add(const Row &page)
{
    if (!page.cells[1].isEmpty())
        m_pages.add(page);
}

} // namespace PhoneBackup
