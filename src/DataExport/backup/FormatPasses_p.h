#ifndef DATAEXPORT_BACKUP_FORMATPASSES_P_H
#define DATAEXPORT_BACKUP_FORMATPASSES_P_H

#include "backup/SinkSettings_p.h"
#include "platform/CSubProgress.h"
#include "platform/Translation_p.h"

/*!
    The passes over one data set that is exported in several formats. Each format has an equal share
    of the progress, which may be null; a format that failed or was cancelled is the last one.
*/
class FormatPasses
{
public:
    //! For \a count formats, with what the export function was given.
    FormatPasses(int count,
                 const QDir &dir,
                 const QString &owner,
                 const QString &typeName,
                 CIProgressCallback *progress,
                 const CBackupExporter *exporter)
        : m_dir(dir)
        , m_owner(owner)
        , m_typeName(typeName)
        , m_title(DataExport::tr("%1's %2").arg(owner, typeName))
        , m_exporter(exporter)
        , m_progress(progress, progress ? progress->range() / count : 0)
    {
    }

    /*!
        Opens \a sink in the sub-folder \a subDir of the data type's folder, runs \a translator into
        it and finishes it. \return whether the next format is to follow.
    */
    template <class Translator>
    bool run(CIDataExporter &sink, Translator &translator, const QString &subDir = QString())
    {
        constexpr int unitsPerPass = 100;
        m_progress.initRange(unitsPerPass);
        applySettings(m_exporter, sink);
        m_ok = sink.initExporterWithSubDir(m_dir, m_owner, m_typeName, subDir)
            && translator.translate(&sink, m_title, &m_progress);
        sink.finish(m_ok);
        const bool goOn = m_progress.finish(); // asked in either case
        return goOn && m_ok;
    }

    //! Whether pages are hardened, and so need not be byte for byte what they always were.
    bool isHardened() const { return m_exporter && m_exporter->isHardened(); }

    //! Whether the last format that was run succeeded.
    bool succeeded() const { return m_ok; }

private:
    const QDir &m_dir;
    const QString &m_owner;
    const QString &m_typeName;
    const QString m_title;
    const CBackupExporter *m_exporter;
    CSubProgress m_progress;
    bool m_ok = false;
};

#endif
