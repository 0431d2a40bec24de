#ifndef PHONEBACKUP_SAFARI_BROWSERHISTORY_H
#define PHONEBACKUP_SAFARI_BROWSERHISTORY_H

#include "PhoneItems/shared/RowStore.h"

#include <QString>

namespace PhoneBackup {

class RowDatabase;
class SafariData;
class Source;

/*!
    \brief Reads the visited pages of the browser: one row a page, with its last visit and the
    title that it had last.

    The newest kind of place that has pages is read; older ones are what an update left behind.
*/
class BrowserHistory
{
public:
    explicit BrowserHistory(Source &source);

    //! Adds all pages to \a data, the one visited last first.
    void read(SafariData &data);

private:
    bool readDatabases(QByteArrayView domain);
    bool readDatabase(QByteArrayView domain, const QString &path);
    void readPages(RowDatabase &database);
    bool readPropertyList(QByteArrayView domain);
    void add(const Row &page);

    Source &m_source;
    RowStore m_pages;
    bool m_isMerged = false; // from several databases
};

} // namespace PhoneBackup

#endif
