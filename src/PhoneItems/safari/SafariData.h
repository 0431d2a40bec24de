#ifndef PHONEITEMS_SAFARI_SAFARIDATA_H
#define PHONEITEMS_SAFARI_SAFARIDATA_H

#include "PhoneItems/safari/LinkItem.h"
#include "PhoneItems/shared/ItemData.h"
#include "PhoneItems/shared/RowStore.h"

#include <QHash>

namespace PhoneItems {

/*!
    \brief Data type 17: bookmarks, reading list and history; all of them are selected.

    A link's row has the cells title, which may be empty, and URL. Its date is that of the last
    visit, which pages show behind the title; bookmarks have none.
*/
class SafariData final : public ItemData<LinkItem>
{
public:
    SafariData();
    ~SafariData() override;

    //! Adds \a link to the group \a group. \see BkSafariBookmarkItem::bookmarkGroup()
    void add(const Row &link, const QString &group);

    const RowStore &links() const { return m_links; }
    QString group(int index) const;

private:
    RowStore m_links;
    QStringList m_groups;
    QHash<QString, int> m_groupNumbers;
    std::vector<int> m_groupOf; // of each link
};

} // namespace PhoneItems

#endif
