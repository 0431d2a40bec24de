#ifndef PHONEITEMS_SHARED_ITEMDATA_H
#define PHONEITEMS_SHARED_ITEMDATA_H

#include "backup/BkData.h"

#include <deque>
#include <numeric>

namespace PhoneItems {

//! A data set that owns its items, all of which are selected. Subclasses fill m_items.
template <class Item, class Base = BkData>
class ItemData : public Base
{
public:
    explicit ItemData(int dataType)
        : m_dataType(dataType)
    {
    }

    int dataType() const override { return m_dataType; }
    int recoverCount() const override { return int(m_items.size()); }
    QList<int> recoverList() const override
    {
        QList<int> list(recoverCount());
        std::iota(list.begin(), list.end(), 0);
        return list;
    }
    BkAbstractItem *at(int index, bool /*original*/) const override
    {
        return index >= 0 && index < recoverCount() ? &m_items[std::size_t(index)] : nullptr;
    }
    int count(int /*kind*/) const override { return recoverCount(); }
    bool recover(BkAbstractItem *item) const override
    {
        const auto *own = dynamic_cast<const Item *>(item);
        return own && &own->data() == this;
    }

protected:
    // Items are asked for as changeable objects by a set that is not.
    mutable std::deque<Item> m_items;

private:
    int m_dataType;
};

} // namespace PhoneItems

#endif
