#include "PhoneBackup/safari/Bookmarks.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/plist/PropertyList.h"
#include "PhoneBackup/source/RowDatabase.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

const QString kTable = u"bookmarks"_s;
constexpr qint64 kRoot = 0; // number of its row
constexpr qint64 kFolder = 1; // among the values of "type"

// What a bookmark is read as, in the order of the query.
enum Column {
    Id,
    Parent,
    Type,
    Special,
    Title,
    Url,
    OrderIndex,
    Read,
    Deleted,
    Uuid,
    Modified,
    ArchiveStatus,
    Extra,
};

const QStringList kColumns { u"id"_s,
                             u"parent"_s,
                             u"type"_s,
                             u"special_id"_s,
                             u"title"_s,
                             u"url"_s,
                             u"order_index"_s,
                             u"read"_s,
                             u"deleted"_s,
                             u"external_uuid"_s,
                             u"last_modified"_s,
                             u"archive_status"_s,
                             u"extra_attributes"_s };

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
    explicit Bookmarks(RowDatabase &database)
        : m_database(database)
    {
    }

    void read()
    {
        QStringList wanted;
        for (const QString &column : kColumns)
            wanted.append(m_database.column(kTable, column));
        QSet<qint64> known; // damage makes rows come twice
        m_database.query(wanted.join(u','), kTable, [&](const Statement &row) {
            const qint64 id = row.integer(Id);
            if (known.contains(id))
                return;
            known.insert(id);
            if (row.integer(Type) == kFolder)
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

    static qint64 parentOf(const Statement &row)
    {
        constexpr qint64 kNone = -1;
        return row.number(Parent) ? row.integer(Parent) : kNone;
    }

    void addFolder(const Statement &row)
    {
        BookmarkFolder folder;
        folder.id = row.integer(Id);
        folder.kind = kindOf(folder.id, row.integer(Special));
        folder.uuid = row.text(Uuid);
        folder.title = row.text(Title).simplified();
        folder.modified = PhoneTime::sinceUnix(row.number(Modified));
        folder.deleted = row.integer(Deleted) != 0;
        m_folders.insert_or_assign(folder.id, Folder { folder, parentOf(row) });
    }

    void addLink(const Statement &row)
    {
        Bookmark bookmark;
        bookmark.id = row.integer(Id);
        bookmark.title = row.text(Title).simplified();
        bookmark.address = row.text(Url);
        bookmark.deleted = row.integer(Deleted) != 0;
        if (bookmark.address.isEmpty() && (bookmark.deleted || bookmark.title.isEmpty()))
            return;
        bookmark.uuid = row.text(Uuid);
        bookmark.modified = PhoneTime::sinceUnix(row.number(Modified));
        m_links.push_back({ std::move(bookmark),
                            parentOf(row),
                            row.integer(OrderIndex),
                            row.number(Read).has_value(),
                            readLaterOf(row) });
    }

    static ReadingListEntry readLaterOf(const Statement &row)
    {
        ReadingListEntry entry;
        entry.isRead = row.integer(Read) != 0;
        entry.isSaved = row.integer(ArchiveStatus) != 0;
        const QByteArrayView extra = row.bytes(Extra);
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

    RowDatabase &m_database;
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
    if (!database->hasColumn(kTable, u"url"_s)) {
        database->addLoss(Notice("safari.noBookmarks"));
        return;
    }
    Bookmarks bookmarks(*database);
    bookmarks.read();
    bookmarks.yield(bookmark);
}

} // namespace PhoneBackup
