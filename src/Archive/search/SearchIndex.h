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
    \brief The texts that the search page looks through: scripts with a line per entry, one or more
    per month.

    A line is: seconds since 1970 in hexadecimal, the number of the place, the page and anchor
   within it, who wrote it, and the text; tabs between them. Everything that \a search says of
   places is in places.js.
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
    struct Shard
    {
        int part = 1;
        std::unique_ptr<OutputStream> stream;
        int count = 0;
        qint64 first = 0;
    };

    void close(int month, Shard &shard);

    OutputTree &m_tree;
    LocalClock &m_clock;
    std::map<int, Shard> m_shards; // by year and month; 0 for what has no date
    std::vector<std::pair<int, QByteArray>> m_files; // month and description
    QByteArray m_places;
    int m_placeCount = 0;
    QByteArray m_line;
};

} // namespace Archive

#endif
