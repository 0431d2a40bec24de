#ifndef DATAEXPORT_TABLE_BKSAFARIBOOKMARKITEM_H
#define DATAEXPORT_TABLE_BKSAFARIBOOKMARKITEM_H

#include "backup/BkAbstractItem.h"

/*!
    \brief One link of the browser: a bookmark, an entry of the reading list, a visited page.

    Its texts are value(0) title and value(1) URL; flag(0) tells that it was deleted on the phone.
*/
class DATAEXPORT_EXPORT BkSafariBookmarkItem : public BkAbstractItem
{
public:
    ~BkSafariBookmarkItem() override;

    /*!
        Where the link belongs: "Reading List", "History" (both as they stand here, the page shows
        them translated), the name of its bookmark folder, or empty for a link outside any folder.
    */
    virtual QString bookmarkGroup() const = 0;
};

#endif
