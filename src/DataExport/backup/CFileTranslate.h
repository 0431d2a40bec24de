#ifndef DATAEXPORT_BACKUP_CFILETRANSLATE_H
#define DATAEXPORT_BACKUP_CFILETRANSLATE_H

#include "DataExport_global.h"

class BkData;
class CIDataExporter;
class CIProgressCallback;

/*!
    \brief Exports the file items of one data set through a CFileExporter.

    \par Reads
    The items of recoverFileList(), in its order; what is no BkFileItem is skipped.
    \par Progress
    100 units a file of the caller's range, shared out by bytes. Asked before every file and after
    every chunk of one; an answer of false ends the walk and is no failure.
    \par Errors
    A file that cannot be copied is told to the sink's report and does not fail the set.
*/
class DATAEXPORT_EXPORT CFileTranslate
{
public:
    //! \a data is borrowed.
    explicit CFileTranslate(BkData *data);
    ~CFileTranslate();

    /*!
        Runs the export. \a exporter must be an open CFileExporter; \a progress may be null;
        \a protect lifts the media protection of each file at a path while it is read. \return false
        for another kind of sink or none.
    */
    bool translate(CIDataExporter *exporter, CIProgressCallback *progress, bool protect);

private:
    BkData *m_data;
};

#endif
