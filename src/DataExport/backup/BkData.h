#ifndef DATAEXPORT_BACKUP_BKDATA_H
#define DATAEXPORT_BACKUP_BKDATA_H

#include "DataExport_global.h"

#include <QList>
#include <QString>

class BkAbstractItem;

/*!
    \brief One data set of a backup: all items of one data type, and which of them are selected.

    Item model, implemented by the application. The selection is offered in three ways that must
    agree: recoverList() with at(), count() with recover(), and for file sets recoverFileList().
    \par Owner
    Sets and items belong to the item model and stay valid for the whole export.
    \par Errors
    None: what cannot be had is a null pointer, a zero or an empty text.
*/
class DATAEXPORT_EXPORT BkData
{
public:
    BkData() = default;
    virtual ~BkData();

    BkData(const BkData &) = delete;
    BkData &operator=(const BkData &) = delete;

    //! Which data type it is: a BkDataType::Code.
    virtual int dataType() const = 0;

    //! Number of selected items. 0: the set is not exported.
    virtual int recoverCount() const = 0;

    //! Indices of the selected items, in export order.
    virtual QList<int> recoverList() const = 0;

    //! The item at \a index, null when there is none. The library passes true for \a original.
    virtual BkAbstractItem *at(int index, bool original) const = 0;

    //! Number of all items, selected or not; indices are dense. The library passes 1 for \a kind.
    virtual int count(int kind) const = 0;

    //! Whether \a item is selected.
    virtual bool recover(BkAbstractItem *item) const = 0;

    //! The selected items of a file set, in export order. Empty by default.
    virtual QList<BkAbstractItem *> recoverFileList() const;

    //! Number of columns of a table set, at least 1 in one that is exported. 0 by default.
    virtual int column() const;

    //! Header of column \a col of a table set.
    virtual QString columnName(int col) const;

    //! Cell text of a table set; \a row is an index from recoverList().
    virtual QString value(int row, int col) const;
};

#endif
