#ifndef DATAEXPORT_TABLE_CBOOKMARKTRANSLATE_H
#define DATAEXPORT_TABLE_CBOOKMARKTRANSLATE_H

#include "DataExport_global.h"

class BkData;
class CIDataExporter;
class CIProgressCallback;
class QString;

/*!
    \brief Writes bookmarks, reading list and history as a page of links under their groups.

    \par Order
    bookmarkStyle() goes to the sink before it is opened; then translate(), once an object. On the
    page come the links without a group, the reading list, the bookmark folders by name, and the
    history; in each group the order of the set.
    \par Reads
    The items of recoverList(); null items and items of another class than BkSafariBookmarkItem are
    skipped.
    \par Progress
    One call an index, before its item is looked at; each is worth range() / count. An answer of
    false ends the collecting; what was collected is written: that is no failure.
    \par Text
    Headings are encoded. Titles and link targets stand as they are stored, unless the sink is
    hardened: then both are encoded, and a target that is no place of the web shows as text beside
    its title instead of as a link.
    \par Report
    Every link that was written, by its title.
    \par Memory
    The page's text: all groups are written in one piece.
*/
class DATAEXPORT_EXPORT CBookmarkTranslate
{
public:
    //! \a data is borrowed.
    explicit CBookmarkTranslate(BkData *data);
    ~CBookmarkTranslate();

    CBookmarkTranslate(const CBookmarkTranslate &) = delete;
    CBookmarkTranslate &operator=(const CBookmarkTranslate &) = delete;

    //! The style element of the page.
    QString bookmarkStyle() const;

    /*!
        Writes the links under \a title into \a exporter, which is open and writes a page. \a
        progress may be null. \return false when a step failed: the steps after it are left out.
    */
    bool translate(CIDataExporter *exporter, const QString &title, CIProgressCallback *progress);

private:
    BkData *m_data;
};

#endif
