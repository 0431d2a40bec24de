#ifndef CLI_INVENTORY_H
#define CLI_INVENTORY_H

#include <QList>
#include <QString>

#include <optional>

class BkBackup;

namespace Cli {

class Console;

//! How much there is of one data type.
struct TypeTotals
{
    int code = -1;
    QString name; //!< Display name, which is also that of its folder.
    int items = 0;
    int deleted = 0; //!< How many of them the phone keeps as deleted.
    qint64 sizeBytes = 0;
    qint64 diskBytes = 0; //!< sizeBytes with each file rounded up to whole blocks.
};

//! How much there is of each data type that was asked for, in the order of the codes.
struct Inventory
{
    QList<TypeTotals> types;

    TypeTotals total() const; //!< The sums, under the name "Total".
    const TypeTotals *find(int code) const; //!< Null when the type was not asked for.
};

//! Reads the data sets \a codes of \a backup and counts. None when the user asked to stop.
std::optional<Inventory>
readInventory(Console &console, const BkBackup &backup, const QList<int> &codes);

} // namespace Cli

#endif
