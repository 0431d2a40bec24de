#ifndef DATAEXPORT_BACKUP_FORMATPASSES_P_H
#define DATAEXPORT_BACKUP_FORMATPASSES_P_H

#include "backup/SinkSettings_p.h"
#include "platform/CSubProgress.h"
#include "platform/Translation_p.h"

/*!
    The passes over one data set that is exported in several formats. Each format has an equal share
    of the progress, which may be null. Once the work was cancelled no other format is started, nor
    after one that failed; only hardened the failure of one leaves the others alone.
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
        it and finishes it; or tells the report that this format is not started.
    */
    template <class Translator>
    void run(CIDataExporter &sink, Translator &translator, const QString &subDir = QString())
    {
        if (m_exporter && m_exporter->isOmitted(sink.output()))
            return;
        constexpr int unitsPerPass = 100;
        applySettings(m_exporter, sink);
        if (m_isOver) {
            sink.skip(m_typeName);
            return;
        }
        m_progress.initRange(unitsPerPass);
        const bool ok = sink.initExporterWithSubDir(m_dir, m_owner, m_typeName, subDir)
            && translator.translate(&sink, m_title, &m_progress);
        sink.finish(ok);
        m_succeeded &= ok;
        m_isOver = !m_progress.finish() || (!ok && !isHardened());
    }

    //! Whether pages are hardened: made for the browsers of today, at the price of other bytes.
    bool isHardened() const { return m_exporter && m_exporter->isHardened(); }

    //! Whether every format that was started succeeded.
    bool succeeded() const { return m_succeeded; }

private:
    const QDir &m_dir;
    const QString &m_owner;
    const QString &m_typeName;
    const QString m_title;
    const CBackupExporter *m_exporter;
    CSubProgress m_progress;
    bool m_succeeded = true;
    bool m_isOver = false;
};

#endif
