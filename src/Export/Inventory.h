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

//! The name of data type \a code in machine-readable results, such as "photos"; its number if it
//! has none.
QString typeWord(int code);

//! How much the backup contains of one data type.
struct TypeTotals
{
    int code = -1;
    QString name; //!< Display name, also used for the folder.
    int items = 0;
    int deleted = 0; //!< Items that the phone keeps as deleted.
    qint64 messages = -1; //!< Messages in the items; -1 for types without messages.
    qint64 sizeBytes = 0; //!< 0 for types that are written as a page.
    qint64 diskBytes = 0; //!< sizeBytes, with each file rounded up to whole blocks.
    qint64 heicBytes = 0; //!< The part of sizeBytes that is HEIC pictures.

    bool isPage() const; //!< Whether it is exported as a page instead of copies of files.
};

//! How much the backup contains of each requested data type, in the order of the codes.
struct Inventory
{
    QList<TypeTotals> types;

    TypeTotals total() const; //!< Totals, named "Total".
    bool hasMessages() const; //!< Whether any type with messages has an item.
    const TypeTotals *find(int code) const; //!< Null if the type was not requested.
};

//! Whether any type in \a codes has messages, which can be filtered.
bool holdMessages(const QList<int> &codes);

/*!
    Reads the data sets \a codes of \a backup and counts their items. Returns nothing if \a
    keepGoing asked to stop; it must be the one that the backup was opened with.
*/
std::optional<Inventory> readInventory(const PhoneItems::Backup &backup,
                                       const QList<int> &codes,
                                       Observer &observer,
                                       const PhoneBackup::KeepGoing &keepGoing);

} // namespace Export

#endif
