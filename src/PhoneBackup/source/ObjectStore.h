#ifndef PHONEBACKUP_SOURCE_OBJECTSTORE_H
#define PHONEBACKUP_SOURCE_OBJECTSTORE_H

#include <QHash>
#include <QString>

//! What the phone's object stores (tables "Z…") name anew with every release of their model.
namespace PhoneBackup {

class RowDatabase;

namespace ObjectStore {

//! The names of the kinds of objects by their number in Z_ENT; empty when the store names none.
QHash<qint64, QString> entityNames(RowDatabase &store);

/*!
    SQL for the attribute \a name of \a table, whose columns may bear a number behind it ("ZTITLE",
    "ZTITLE1"): the first that is not null, those with higher numbers first. "NULL" without any.
*/
QString attribute(const RowDatabase &store, const QString &table, const QString &name);

} // namespace ObjectStore

} // namespace PhoneBackup

#endif
