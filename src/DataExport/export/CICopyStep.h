#ifndef DATAEXPORT_EXPORT_CICOPYSTEP_H
#define DATAEXPORT_EXPORT_CICOPYSTEP_H

#include "DataExport_global.h"
#include "export/CIExportReport.h"

#include <QString>

#include <optional>

class BkFileItem;

/*!
    \brief Something to do with each file that an export copies, such as saving another version of it.

    \par Owner
    The application; it must outlive the export.
    \par Thread
    Called on the thread that called the library.
*/
class DATAEXPORT_EXPORT CICopyStep
{
public:
    virtual ~CICopyStep();

    //! The files that are copied next have the content of \a item. Does nothing by default.
    virtual void itemStarts(const BkFileItem &item);

    /*!
        Called after an item has been copied to the file with the absolute path \a path, which is
        complete and closed. \return what went wrong, if anything: the report gets it through
        CIExportReport::itemFailed() instead of itemExported(). The copy stays.
    */
    virtual std::optional<CIExportReport::Fault> fileCopied(const QString &path) = 0;
};

#endif
