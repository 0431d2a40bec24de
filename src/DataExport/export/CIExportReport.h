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
        Resource, //!< An image of the application itself is missing or unreadable.
    };

    //! What went wrong with one item.
    struct Fault
    {
        Cause cause = Cause::Target; //!< Where it lies.
        QString reason; //!< Whole sentences for a person, full stops included.
        int systemError = 0; //!< The system's error number (ENOSPC, EACCES, …); 0: none is known.
    };

    //! What a data type is written as. Some are written as several of these, one after the other.
    enum class Output {
        Page, //!< A page with its images.
        Table, //!< A CSV file.
        Cards, //!< Text files, one for each item.
        Copies, //!< Copied files.
    };

    //! How an output of a data type ended.
    enum class End {
        Complete, //!< Every item was tried, and what was written is in place and closed.
        Stopped, //!< The progress callback asked to stop before every item had come through.
        Failed, //!< It did not open, or could not be written to its end; of cards, any of them.
        NotStarted, //!< An earlier output of the same data type was the last one.
    };

    virtual ~CIExportReport();

    /*!
        The export of data type \a code with the display name \a typeName starts: everything
        reported until the next call belongs to it. Called by CBackupExporter::exportBackup() for
        each data type with items. Does nothing by default.
    */
    virtual void typeStarts(int code, const QString &typeName);

    /*!
        An item could not be exported as it should. \a typeName is the data type's display name,
        \a itemName the item with its group ("100APPLE/IMG_0001.HEIC"), empty when the fault
        concerns the data type as a whole.
    */
    virtual void
    itemFailed(const QString &typeName, const QString &itemName, const Fault &fault) = 0;

    //! An item is completely in the output. Names as in itemFailed(). Does nothing by default.
    virtual void itemExported(const QString &typeName, const QString &itemName);

    /*!
        Nothing more is written to \a output of the data type; said once for each output of each
        data type that the export came to. Items that failed on their own do not keep an output
        from being complete: itemFailed() told of them. An output that fails may take those with it
        that the same data type completed before, unless the export is hardened. Does nothing by
        default.
    */
    virtual void outputEnded(const QString &typeName, Output output, End end);
};

#endif
