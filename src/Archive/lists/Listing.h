#ifndef ARCHIVE_LISTS_LISTING_H
#define ARCHIVE_LISTS_LISTING_H

#include "Archive/html/Page.h"
#include "Archive/media/MediaHtml.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <vector>

namespace Archive {

struct Site;

/*!
    \brief A section that is a list: entries in groups, on pages of at most kEntriesPerPage, with a
    table of the groups on the first one.
*/
class Listing
{
public:
    static constexpr int kEntriesPerPage = 500;

    /*!
        \a folder is that of a section, in which \a kind is what a search calls its entries.
        \a layout is a class of the list: "rows", "cards", "grid". All are borrowed.
    */
    Listing(Site &site, const char *folder, const char *kind, const char *layout);

    //! The page that the next entry stands on, for its links and media.
    const Page &page() const { return m_page; }
    const MediaHtml &media() const { return m_media; }

    //! Starts the group \a title unless it is the current one.
    void group(const QString &title);

    //! An entry: what stands between the tags of a list's item, and what a search finds it by.
    struct Entry
    {
        QByteArray html;
        QDateTime date; //!< Invalid for none.
        QString who;
        QString text;
        QString latest = {}; //!< For the entrance: one line.
    };
    void add(const Entry &entry);

    //! The page and anchor of the entry that was added last.
    QByteArray lastPlace() const;

    qint64 count() const { return m_count; }

    //! Writes what is left, and the tile of the section; nothing when there are no entries.
    void finish();

private:
    struct Group
    {
        QString title;
        QByteArray place;
        qint64 count = 0;
    };

    void flush(bool isLast);
    QByteArray heading() const;

    Site &m_site;
    const char *m_folder;
    const char *m_layout;
    QString m_title;
    Page m_page;
    MediaHtml m_media;
    int m_place;
    qint64 m_count = 0;
    int m_pages = 0; // that are full
    int m_onPage = 0;
    bool m_isInList = false;
    bool m_isFinished = false;
    QByteArray m_body;
    QByteArray m_firstBody; // which waits for the table of groups
    std::vector<Group> m_groups;
    QStringList m_latest;
    QDateTime m_oldest;
    QDateTime m_newest;
};

} // namespace Archive

#endif
