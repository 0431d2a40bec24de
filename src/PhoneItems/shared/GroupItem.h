#ifndef PHONEITEMS_SHARED_GROUPITEM_H
#define PHONEITEMS_SHARED_GROUPITEM_H

#include "backup/BkAbstractItem.h"

namespace PhoneItems {

//! A group of files: an album, a folder, an app.
class GroupItem : public BkAbstractItem
{
public:
    GroupItem(const QString &name, qint64 number);
    ~GroupItem() override;

    QString value(int index) const override;
    bool flag(int index) const override;
    qint64 id() const override;

private:
    QString m_name;
    qint64 m_number;
};

} // namespace PhoneItems

#endif
