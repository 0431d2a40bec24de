#ifndef DATAEXPORT_EXPORT_CICOPYSTEP_H
#define DATAEXPORT_EXPORT_CICOPYSTEP_H

#include "DataExport_global.h"
#include "export/CIExportReport.h"

#include <QString>

#include <optional>

/*!
    \brief More to do with each file that an export copies, such as another version to put beside it.

    \par Owner
    The application; it must outlive the export.
    \par Thread
    Called on the thread that called the library.
*/
class DATAEXPORT_EXPORT CICopyStep
{
public:
    virtual ~CICopyStep();

    /*!
        An item was copied to the file \a path, an absolute one, which is complete and closed.
        \return what went wrong, which the report hears in place of CIExportReport::itemExported();
        the copy stays. Nothing when all went well, or there was nothing to do.
    */
    virtual std::optional<CIExportReport::Fault> fileCopied(const QString &path) = 0;
};

#endif
