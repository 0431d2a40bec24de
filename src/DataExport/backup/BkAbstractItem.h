#ifndef DATAEXPORT_BACKUP_BKABSTRACTITEM_H
#define DATAEXPORT_BACKUP_BKABSTRACTITEM_H

#include "DataExport_global.h"

#include <QDateTime>
#include <QString>

/*!
    \brief One item of a data set: a file, a conversation, a contact, a row.

    Item model, implemented by the application. The operations other than value(), flag() and
    groupItem() are for the application's own lists; the library does not ask them.
    \par Owner
    The item model; items stay valid for the whole export.
*/
class DATAEXPORT_EXPORT BkAbstractItem
{
public:
    BkAbstractItem() = default;
    virtual ~BkAbstractItem();

    BkAbstractItem(const BkAbstractItem &) = delete;
    BkAbstractItem &operator=(const BkAbstractItem &) = delete;

    /*!
        Text field \a index, empty when there is none. File: 0 the file name. Group of files: 0 its
        name. Conversation: 0 name, 1 phone, 2 e-mail. Bookmark: 0 title, 1 URL.
    */
    virtual QString value(int index) const = 0;

    //! Flag \a index. 0: the phone itself keeps the item as deleted.
    virtual bool flag(int index) const = 0;

    //! Number that tells the item from the others of its set, -1 when the model has none.
    virtual qint64 id() const;

    //! Moment that the item is ordered by; invalid when it has none.
    virtual QDateTime date() const;

    //! Bytes that the item's content takes in the backup, 0 when not known.
    virtual qint64 sizeBytes() const;

    //! Where in the backup the item comes from, for a person; empty when not known.
    virtual QString source() const;

    //! The group that the item belongs to (album, folder, conversation), null for none.
    virtual BkAbstractItem *groupItem() const;
};

#endif
