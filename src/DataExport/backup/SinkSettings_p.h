#ifndef DATAEXPORT_BACKUP_SINKSETTINGS_P_H
#define DATAEXPORT_BACKUP_SINKSETTINGS_P_H

#include "backup/CBackupExporter.h"
#include "export/CIDataExporter.h"

//! Hands on to \a sink what \a exporter, which may be null, was told. Before the output opens.
inline void applySettings(const CBackupExporter *exporter, CIDataExporter &sink)
{
    if (!exporter)
        return;
    sink.setReport(exporter->report());
    sink.setHardened(exporter->isHardened());
}

#endif
