#ifndef CLI_INVENTORY_H
#define CLI_INVENTORY_H

#include <QList>
#include <QString>

#include <optional>

namespace PhoneItems {
class Backup;
}

namespace Cli {

class Console;
struct Options;

//! How much there is of one data type.
struct TypeTotals
{
    int code = -1;
    QString name; //!< Display name, which is also that of its folder.
    int items = 0;
    int deleted = 0; //!< How many of them the phone keeps as deleted.
    qint64 messages = -1; //!< In the items; -1 for types without messages.
    qint64 sizeBytes = 0; //!< 0 for types that are written as a page.
    qint64 diskBytes = 0; //!< sizeBytes with each file rounded up to whole blocks.
    qint64 heicBytes = 0; //!< How much of it are pictures in HEIC.
};

//! How much there is of each data type that was asked for, in the order of the codes.
struct Inventory
{
    QList<TypeTotals> types;

    TypeTotals total() const; //!< The sums, under the name "Total".
    bool hasMessages() const; //!< Whether any type with messages has an item.
    const TypeTotals *find(int code) const; //!< Null when the type was not asked for.
};

//! Whether messages of some kind are among the types of \a codes: only they can be filtered.
bool holdMessages(const QList<int> &codes);

//! Reads the data sets \a codes of \a backup and counts. None when the user asked to stop.
std::optional<Inventory>
readInventory(Console &console, const PhoneItems::Backup &backup, const QList<int> &codes);

//! Says so when messages are looked for that \a inventory, read with \a options, does not have.
void sayWhenNothingFits(Console &console, const Options &options, const Inventory &inventory);

} // namespace Cli

#endif
