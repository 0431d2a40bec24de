#ifndef DATAEXPORT_TABLE_PAGEEXPORT_P_H
#define DATAEXPORT_TABLE_PAGEEXPORT_P_H

#include "backup/SinkSettings_p.h"
#include "export/CHtmlExporter.h"
#include "export/PageText_p.h"
#include "platform/Translation_p.h"

/*!
    Runs \a translator, whose page has the style element \a style, into a page of its own: the
    export function of the data types that are one page and nothing else.
*/
template <typename Translator>
bool exportPage(Translator &translator,
                const QString &style,
                const QDir &dir,
                const QString &owner,
                const QString &typeName,
                CIProgressCallback *progress,
                const CBackupExporter *exporter)
{
    CHtmlExporter page;
    if (exporter && exporter->isOmitted(page.output()))
        return true;
    applySettings(exporter, page);
    page.setStyle(page.isHardened() ? style + PageText::wrappingStyleElement() : style);
    const QString title = DataExport::tr("%1's %2").arg(owner, typeName);
    const bool ok =
        page.initExporter(dir, owner, typeName) && translator.translate(&page, title, progress);
    page.finish(ok);
    return ok;
}

#endif
