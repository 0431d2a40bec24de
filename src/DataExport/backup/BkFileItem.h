#ifndef DATAEXPORT_BACKUP_BKFILEITEM_H
#define DATAEXPORT_BACKUP_BKFILEITEM_H

#include "backup/BkAbstractItem.h"

#include <QByteArray>

#include <memory>

class QIODevice;

//! One file of a file data set. Its name is value(0).
class DATAEXPORT_EXPORT BkFileItem : public BkAbstractItem
{
public:
    ~BkFileItem() override;

    //! The content, when it is held in memory; empty when it is the file at filePath().
    virtual QByteArray fileData() const = 0;

    //! Path of the content on disk; asked when fileData() is empty. The file may be missing.
    virtual QString filePath() const = 0;

    //! Whether openStream() is to be asked in place of the two above. False by default.
    virtual bool isStreamed() const;

    /*!
        The content of an item that isStreamed(), open for reading from its beginning to its end; it
        borrows from the item model. When it cannot be read the stream is not open, and its
        errorString() is a sentence that says why. Null by default.
    */
    virtual std::unique_ptr<QIODevice> openStream() const;

    //! Date that a copy of the file is to bear; invalid (as by default) for that of the copying.
    virtual QDateTime fileDate() const;
};

#endif
