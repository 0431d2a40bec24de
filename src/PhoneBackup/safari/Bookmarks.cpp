#include "PhoneBackup/safari/Bookmarks.h"

#include "PhoneBackup/source/RowDatabase.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/safari/SafariData.h"
#include "platform/Translation_p.h"

#include <QSet>

#include <algorithm>
#include <tuple>
#include <vector>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kRoot = 0;
constexpr int kFolder = 1;

// Folders of the phone's own, by the number that marks them.
enum Special {
    FavoritesBar = 1,
    Menu = 2,
    ReadingList = 3,
    AllowList = 4, // of a filter; no bookmarks
};

const QString kReadingList = u"Reading List"_s; // as the item model has it, untranslated

struct Folder
{
    QString name;
    bool isHidden = false;
};

struct Bookmark
{
    qint64 parent = -1;
    qint64 order = 0;
    Row link;
    bool isInReadingList = false;
};

class Bookmarks
{
public:
    explicit Bookmarks(RowDatabase &database)
        : m_database(database)
    {
    }

    void read()
    {
        const QString table = u"bookmarks"_s;
        QStringList wanted;
        for (const QString &column : { u"id"_s,
                                       u"parent"_s,
                                       u"type"_s,
                                       u"special_id"_s,
                                       u"title"_s,
                                       u"url"_s,
                                       u"order_index"_s,
                                       u"read"_s,
                                       u"deleted"_s })
            wanted.append(m_database.column(table, column));
        QSet<qint64> known; // damage makes rows come twice
        m_database.query(wanted.join(u','), table, [&](const Statement &row) {
            const qint64 id = row.integer(0);
            if (known.contains(id))
                return;
            known.insert(id);
            if (row.integer(2) == kFolder)
                addFolder(id, int(row.integer(3)), row.text(4).simplified());
            else
                addLink(row);
        });
        std::sort(m_links.begin(), m_links.end(), [](const Bookmark &a, const Bookmark &b) {
            return std::tie(a.parent, a.order, a.link.id) < std::tie(b.parent, b.order, b.link.id);
        });
    }

    // A name is all that is asked of a folder: a tree that goes round in a circle does no harm.
    void addTo(SafariData &data) const
    {
        for (const Bookmark &bookmark : m_links) {
            const Folder folder = m_folders.value(bookmark.parent);
            if (!folder.isHidden)
                data.add(bookmark.link, bookmark.isInReadingList ? kReadingList : folder.name);
        }
    }

private:
    void addFolder(qint64 id, int special, const QString &title)
    {
        Folder folder { title, special == AllowList };
        if (id == kRoot)
            folder.name.clear();
        else if (special == FavoritesBar)
            folder.name = tr("Favorites");
        else if (special == Menu)
            folder.name = tr("Bookmarks Menu");
        else if (special == ReadingList)
            folder.name = kReadingList;
        m_folders.insert(id, folder);
    }

    void addLink(const Statement &row)
    {
        Bookmark bookmark;
        bookmark.link.cells = QStringList { row.text(4).simplified(), row.text(5) };
        bookmark.link.id = row.integer(0);
        bookmark.link.deleted = row.integer(8) != 0;
        const bool hasUrl = !bookmark.link.cells[1].isEmpty();
        if (!hasUrl && (bookmark.link.deleted || bookmark.link.cells[0].isEmpty()))
            return;
        bookmark.parent = row.number(1) ? row.integer(1) : -1;
        bookmark.order = row.integer(6);
        bookmark.isInReadingList = row.number(7).has_value();
        m_links.push_back(bookmark);
    }

    RowDatabase &m_database;
    QHash<qint64, Folder> m_folders;
    std::vector<Bookmark> m_links;
};

} // namespace

void readBookmarks(Source &source, SafariData &data)
{
    std::optional<RowDatabase> database = RowDatabase::open(source,
                                                            SafariData::kSafari,
                                                            "HomeDomain",
                                                            u"Library/Safari/Bookmarks.db"_s,
                                                            tr("Bookmarks may be missing."));
    if (!database)
        return;
    if (!database->hasColumn(u"bookmarks"_s, u"url"_s)) {
        database->addLoss(tr("It has no table of bookmarks that can be read."));
        return;
    }
    Bookmarks bookmarks(*database);
    bookmarks.read();
    bookmarks.addTo(data);
}

} // namespace PhoneBackup
