#ifndef DATAEXPORT_EXPORT_CIEXPORTREPORT_H
#define DATAEXPORT_EXPORT_CIEXPORTREPORT_H

#include "DataExport_global.h"

#include <QString>

/*!
    \brief Told, item by item, what an export wrote and what it could not write as it should.

    An export without a report writes the same bytes. All names are those that the item model gave.
    \par Owner
    The application; it must outlive the export.
    \par Thread
    Called on the thread that called the library. An implementation that wants to stop the export
    answers false at the next call of its progress callback.
*/
class DATAEXPORT_EXPORT CIExportReport
{
public:
    //! Where the fault lies, and so what a person can do about it.
    enum class Cause {
        Source, //!< The item's content is missing or unreadable in the backup.
        Target, //!< The output could not be opened or written (disk full, no permission).
        Content, //!< The content was read but could not be understood (a broken picture).
    };

    virtual ~CIExportReport();

    /*!
        An item could not be exported as it should. \a typeName is the data type's display name,
        \a itemName the item with its group ("100APPLE/IMG_0001.HEIC"), empty when the fault
       concerns the data type as a whole; \a reason is a sentence for a person.
    */
    virtual void itemFailed(const QString &typeName,
                            const QString &itemName,
                            Cause cause,
                            const QString &reason) = 0;

    /*!
        The item was copied to the file \a path, an absolute one, which is complete and closed; said
        before itemExported(). Does nothing by default.
    */
    virtual void fileWritten(const QString &typeName, const QString &itemName, const QString &path);

    //! An item is completely in the output. Names as in itemFailed(). Does nothing by default.
    virtual void itemExported(const QString &typeName, const QString &itemName);
};

#endif
