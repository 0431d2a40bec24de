#ifndef ARCHIVE_SEARCH_SEARCHINDEX_H
#define ARCHIVE_SEARCH_SEARCHINDEX_H

#include "Archive/html/LocalClock.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <memory>
#include <vector>

namespace Archive {

class OutputStream;
class OutputTree;

/*!
    \brief The texts that the search page looks through: scripts with a line per entry, the newest
    months first.

    A line is: seconds since 1970 in hexadecimal, the number of the place, the page and anchor
   within it, who wrote it, and the text; tabs between them. Places, and which months are in which
   script, are in places.js.
    \par Memory
    A buffer for each month that has entries, whatever their number.
*/
class SearchIndex
{
public:
    //! Both are borrowed.
    SearchIndex(OutputTree &tree, LocalClock &clock);
    ~SearchIndex();

    /*!
        Makes a place: something of the kind \a kind ("message", "note", …) with \a title, whose
        pages lie in \a folder of the archive. \return its number.
    */
    int addPlace(const char *kind, const QString &title, const QString &folder);

    //! Adds an entry of \a place; \a dateMs may be PhoneTime::kNoMs. \a page is a page and anchor:
    //! "3.html#m12".
    void add(int place, qint64 dateMs, const QByteArray &page, QStringView who, QStringView text);

    //! Writes what is left: the page itself is not its business.
    void finish();

private:
    struct Month
    {
        std::unique_ptr<OutputStream> lines;
        int count = 0;
    };
    struct Shard
    {
        std::unique_ptr<OutputStream> stream;
        int newest = 0; // as year * 100 + month
        int oldest = 0;
        int count = 0;
    };

    void append(int month, OutputStream &lines, Shard &shard);
    void close(Shard &shard);

    OutputTree &m_tree;
    LocalClock &m_clock;
    std::map<int, Month> m_months; // by year * 100 + month; 0 for what has no date
    QByteArray m_shards; // their descriptions
    int m_shardCount = 0;
    QByteArray m_places;
    int m_placeCount = 0;
    QByteArray m_line;
};

} // namespace Archive

#endif
