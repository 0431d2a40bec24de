#include "PhoneBackup/safari/Bookmarks.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/plist/PropertyList.h"
#include "PhoneBackup/source/Table.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kRoot = 0; // number of its row
constexpr qint64 kFolder = 1; // among the values of "type"

class BookmarkTable
{
public:
    explicit BookmarkTable(RowDatabase &database)
        : table(database, u"bookmarks"_s)
    {
    }

    Table table;
    Table::Column id = table.column(u"id"_s);
    Table::Column parent = table.column(u"parent"_s);
    Table::Column type = table.column(u"type"_s);
    Table::Column special = table.column(u"special_id"_s);
    Table::Column title = table.column(u"title"_s);
    Table::Column url = table.column(u"url"_s);
    Table::Column orderIndex = table.column(u"order_index"_s);
    Table::Column read = table.column(u"read"_s);
    Table::Column deleted = table.column(u"deleted"_s);
    Table::Column uuid = table.column(u"external_uuid"_s);
    Table::Column modified = table.column(u"last_modified"_s);
    Table::Column archiveStatus = table.column(u"archive_status"_s);
    Table::Column extra = table.column(u"extra_attributes"_s);
};

// By the row and the number in "special_id" that marks the phone's own folders.
BookmarkFolder::Kind kindOf(qint64 id, qint64 special)
{
    constexpr std::array kSpecial { BookmarkFolder::Kind::Own,
                                    BookmarkFolder::Kind::Favorites,
                                    BookmarkFolder::Kind::Menu,
                                    BookmarkFolder::Kind::ReadingList,
                                    BookmarkFolder::Kind::AllowList };
    const bool isKnown = special > 0 && special < qint64(kSpecial.size());
    const BookmarkFolder::Kind kind =
        isKnown ? kSpecial[std::size_t(special)] : BookmarkFolder::Kind::Own;
    return id == kRoot && kind != BookmarkFolder::Kind::AllowList ? BookmarkFolder::Kind::Root
                                                                  : kind;
}

class Bookmarks
{
public:
    explicit Bookmarks(const BookmarkTable &stored)
        : m_stored(stored)
    {
    }

    void read()
    {
        m_stored.table.forEach([this](const Table::Row &row) {
            if (row.integer(m_stored.type) == kFolder)
                addFolder(row);
            else
                addLink(row);
        });
        linkFolders();
        std::sort(m_links.begin(), m_links.end(), [](const Link &a, const Link &b) {
            return std::tie(a.parent, a.order, a.bookmark.id)
                < std::tie(b.parent, b.order, b.bookmark.id);
        });
    }

    void yield(const std::function<void(const Bookmark &)> &sink)
    {
        for (Link &link : m_links) {
            Bookmark &bookmark = link.bookmark;
            bookmark.folder = folder(link.parent);
            const auto kind = bookmark.folder ? bookmark.folder->kind : BookmarkFolder::Kind::Root;
            if (kind == BookmarkFolder::Kind::AllowList)
                continue;
            if (link.isMarked || kind == BookmarkFolder::Kind::ReadingList)
                bookmark.readLater = std::make_unique<ReadingListEntry>(link.readLater);
            sink(bookmark);
        }
    }

private:
    struct Folder
    {
        BookmarkFolder folder;
        qint64 parent;
        int walk = 0; // in which it was first met, while circles are looked for
    };
    struct Link
    {
        Bookmark bookmark;
        qint64 parent;
        qint64 order;
        bool isMarked; // as an entry of the reading list
        ReadingListEntry readLater;
    };

    qint64 parentOf(const Table::Row &row) const
    {
        constexpr qint64 kNone = -1;
        return row.number(m_stored.parent) ? row.integer(m_stored.parent) : kNone;
    }

    void addFolder(const Table::Row &row)
    {
        BookmarkFolder folder;
        folder.id = row.integer(m_stored.id);
        folder.kind = kindOf(folder.id, row.integer(m_stored.special));
        folder.uuid = row.text(m_stored.uuid);
        folder.title = row.text(m_stored.title).simplified();
        folder.modified = PhoneTime::sinceUnix(row.number(m_stored.modified));
        folder.deleted = row.integer(m_stored.deleted) != 0;
        m_folders.insert_or_assign(folder.id, Folder { folder, parentOf(row) });
    }

    void addLink(const Table::Row &row)
    {
        Bookmark bookmark;
        bookmark.id = row.integer(m_stored.id);
        bookmark.title = row.text(m_stored.title).simplified();
        bookmark.address = row.text(m_stored.url);
        bookmark.deleted = row.integer(m_stored.deleted) != 0;
        if (bookmark.address.isEmpty() && (bookmark.deleted || bookmark.title.isEmpty()))
            return;
        bookmark.uuid = row.text(m_stored.uuid);
        bookmark.modified = PhoneTime::sinceUnix(row.number(m_stored.modified));
        m_links.push_back({ std::move(bookmark),
                            parentOf(row),
                            row.integer(m_stored.orderIndex),
                            row.number(m_stored.read).has_value(),
                            readLaterOf(row) });
    }

    ReadingListEntry readLaterOf(const Table::Row &row) const
    {
        ReadingListEntry entry;
        entry.isRead = row.integer(m_stored.read) != 0;
        entry.isSaved = row.integer(m_stored.archiveStatus) != 0;
        const QByteArrayView extra = row.bytes(m_stored.extra);
        if (extra.isEmpty())
            return entry;
        const QVariantMap facts =
            PropertyList::parse(extra.toByteArray()).value("com.apple.ReadingList").toMap();
        entry.preview = facts.value(u"PreviewText"_s).toString();
        entry.picture = facts.value(u"ReadingListIconURL"_s).toString();
        entry.added = facts.value(u"DateAdded"_s).toDateTime();
        entry.viewed = facts.value(u"DateLastViewed"_s).toDateTime();
        entry.fetched = facts.value(u"DateLastFetched"_s).toDateTime();
        return entry;
    }

    const BookmarkFolder *folder(qint64 id) const
    {
        const auto found = m_folders.find(id);
        return found == m_folders.end() ? nullptr : &found->second.folder;
    }

    // Each folder learns the one that it lies in; a folder that would lie in itself by way of
    // others is left at the top.
    void linkFolders()
    {
        int walk = 0;
        for (auto &[id, first] : m_folders) {
            ++walk;
            for (Folder *inner = &first; inner->walk == 0;) {
                inner->walk = walk;
                const auto outer = m_folders.find(inner->parent);
                if (outer == m_folders.end() || outer->second.walk == walk)
                    break;
                inner->folder.parent = &outer->second.folder;
                inner = &outer->second;
            }
        }
    }

    const BookmarkTable &m_stored;
    std::unordered_map<qint64, Folder> m_folders; // which never move
    std::vector<Link> m_links;
};

} // namespace

void readBookmarks(Source &source, const std::function<void(const Bookmark &)> &bookmark)
{
    std::optional<RowDatabase> database = RowDatabase::open(source,
                                                            DataType::Safari,
                                                            "HomeDomain",
                                                            u"Library/Safari/Bookmarks.db"_s,
                                                            Notice("safari.bookmarksMayBeMissing"));
    if (!database)
        return;
    const BookmarkTable stored(*database);
    if (!stored.table.hasColumn(u"url"_s)) {
        database->addLoss(Notice("safari.noBookmarks"));
        return;
    }
    Bookmarks bookmarks(stored);
    bookmarks.read();
    bookmarks.yield(bookmark);
}

} // namespace PhoneBackup
