#ifndef PHONEBACKUP_SAFARI_BOOKMARK_H
#define PHONEBACKUP_SAFARI_BOOKMARK_H

#include <QDateTime>
#include <QString>

#include <memory>

namespace PhoneBackup {

//! A folder of bookmarks.
struct BookmarkFolder
{
    enum class Kind {
        Own, //!< Made by a person.
        Root, //!< What all others lie in.
        Favorites,
        Menu,
        ReadingList,
        AllowList, //!< What a filter lets pass: no bookmarks.
    };

    Kind kind = Kind::Own;
    qint64 id = 0; //!< Number of its row.
    QString uuid; //!< The same in every backup, where there is one.
    QString title; //!< In one line. Those of the phone's own folders are no words.
    QDateTime modified;
    bool deleted = false; //!< Waits to be removed from the cloud.
    const BookmarkFolder *parent = nullptr; //!< Null at the top, and where folders form a circle.
};

//! What is kept of a page that is to be read later.
struct ReadingListEntry
{
    bool isRead = false;
    QString preview; //!< The beginning of the page's text.
    QString picture; //!< Address of a picture that stands for the page.
    QDateTime added;
    QDateTime viewed; //!< The last time.
    QDateTime fetched; //!< When the phone looked at the page last.
    bool isSaved = false; //!< A copy of the page was kept on the phone; backups leave it out.
};

//! A bookmark, or an entry of the reading list.
struct Bookmark
{
    qint64 id = 0; //!< Number of its row.
    QString uuid; //!< The same in every backup, where there is one.
    QString title; //!< In one line; may be empty.
    QString address;
    QDateTime modified;
    bool deleted = false; //!< Waits to be removed from the cloud.
    const BookmarkFolder *folder = nullptr; //!< Null when it lies in none that is known.
    std::unique_ptr<ReadingListEntry> readLater; //!< Null for a plain bookmark.
};

} // namespace PhoneBackup

#endif
