#ifndef EXPORT_INVENTORY_H
#define EXPORT_INVENTORY_H

#include "PhoneBackup/base/KeepGoing.h"

#include <QList>
#include <QString>

#include <optional>

namespace PhoneItems {
class Backup;
}

namespace Export {

class Observer;

//! The word of data type \a code in machine-readable results, "photos"; its number when it has
//! none.
QString typeWord(int code);

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

    bool isPage() const; //!< Whether it is written as a page, and not as copies of files.
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

/*!
    Reads the data sets \a codes of \a backup and counts. None when \a keepGoing asked to stop,
   which is to be what the backup was opened with.
*/
std::optional<Inventory> readInventory(const PhoneItems::Backup &backup,
                                       const QList<int> &codes,
                                       Observer &observer,
                                       const PhoneBackup::KeepGoing &keepGoing);

} // namespace Export

#endif
