#ifndef PHONEBACKUP_SAFARI_BROWSERHISTORY_H
#define PHONEBACKUP_SAFARI_BROWSERHISTORY_H

#include "PhoneBackup/safari/VisitedPage.h"
#include "PhoneBackup/source/PackedTexts.h"

#include <functional>
#include <vector>

namespace PhoneBackup {

class RowDatabase;
class Source;

/*!
    \brief Reads the visited pages of the browser.

    The newest kind of place that has pages is read; older ones are what an update left behind.
    \par Memory
    A page takes 32 bytes and its texts, until all are read.
*/
class BrowserHistory
{
public:
    explicit BrowserHistory(Source &source);

    //! Calls \a page for each page, the one visited last first. To be called once.
    void read(const std::function<void(const VisitedPage &)> &page);

private:
    struct Record
    {
        qsizetype texts; // title and address in m_texts
        qint64 visitedMs;
        qint64 id;
        int visits;
        int knownVisits;
    };

    bool readDatabases(QByteArrayView domain);
    bool readDatabase(QByteArrayView domain, const QString &path);
    void readPages(RowDatabase &database);
    bool readPropertyList(QByteArrayView domain);
    void add(const VisitedPage &page);
    VisitedPage page(const Record &record) const;

    Source &m_source;
    PackedTexts m_texts;
    std::vector<Record> m_pages;
    bool m_isMerged = false; // from several databases
};

} // namespace PhoneBackup

#endif
