#ifndef PHONEITEMS_SAFARI_LINKITEM_H
#define PHONEITEMS_SAFARI_LINKITEM_H

#include "table/BkSafariBookmarkItem.h"

namespace PhoneItems {

class SafariData;

//! A link of the browser; it knows its number only and asks the set for the rest.
class LinkItem : public BkSafariBookmarkItem
{
public:
    LinkItem(const SafariData &data, int index);
    ~LinkItem() override;

    const SafariData &data() const { return m_data; }

    QString value(int index) const override;
    bool flag(int index) const override;
    qint64 id() const override;
    QDateTime date() const override;
    QString bookmarkGroup() const override;

private:
    const SafariData &m_data;
    int m_index;
};

} // namespace PhoneItems

#endif
