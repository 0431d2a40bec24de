#ifndef DATAEXPORT_EXPORT_CPLAINFILEEXPORTER_H
#define DATAEXPORT_EXPORT_CPLAINFILEEXPORTER_H

#include "export/CIDataExporter.h"
#include "platform/OutputNames.h"

#include <QMap>

#include <memory>
#include <optional>

class TextFile;

/*!
    \brief Sink: writes text files through a codec, either one for the export or one per item.

    \par Order
    setCodec() before the file opens. Per item: text only between itemExportBegin() and
    itemExportEnd().
    \par Bytes
    Text as it is, in the codec that was set; UTF-8 without one.
    \par Files
    One file is called "<owner>'s <data type>"; files of items after their item, numbered when
    taken. Names are made safe with CUtils::safeFileName(), lose leading dots, which would hide the
    file, and are cut to the 255 bytes that file systems take; without any name it is "_". Hardened,
    names follow the rules of OutputNames, as those of copied files should, and a file gets its name
    when it is complete.
    \par Errors
    A file that a full disk cut short is removed, and the report is told.
*/
class DATAEXPORT_EXPORT CPlainFileExporter : public CIDataExporter
{
public:
    //! \a suffix with its dot; \a perItem true: one file per item.
    CPlainFileExporter(const QString &suffix, bool perItem);
    ~CPlainFileExporter() override;

    /*!
        Codec by name ("UTF-8", "UTF16") and whether a byte-order mark is written, from the next
        file on. A file does not open under a name that is no codec's.
    */
    void setCodec(const QString &codec, bool bom);

    //! Opens the file of \a itemName when there is one per item.
    bool itemExportBegin(const QString &itemName) override;

    //! Appends \a text as it is; \a name is ignored. \return true.
    bool exportData(const QString &text, const QString &name) override;
    using CIDataExporter::exportData;

    //! Does nothing: text has no images. \return true.
    bool exportDepends(const QString &srcPath, const QString &name) override;
    //! Does nothing: text has no images. \return true.
    bool exportDepends(const QByteArray &data, const QString &name) override;

    //! Closes the item's file. \return true.
    bool itemExportEnd() override;

    //! Opens the one file. \return whether it opened; true when there is one per item.
    bool openExporter(const QDir &outDir) override;

    //! Closes the one file, and removes it unless \a ok. Hardened, it returns when the disk has
    //! what was written. \return true.
    bool closeExporter(bool ok) override;

private:
    bool openFile(const QString &baseName);
    bool closeFile(bool ok);
    QString uniqFileName(const QString &baseName);
    CIExportReport::Fault openFault() const;

    std::optional<QDir> m_curDir;
    QString m_baseName; //!< What the open file is called after.
    bool m_hasWritten = false;
    QString m_suffix;
    bool m_perItem;
    QString m_codec;
    bool m_bom = false;
    std::unique_ptr<TextFile> m_file;
    OutputNames m_namesTaken; // when hardened
    QMap<QString, int> m_usedNames; //!< Base name to the last number given to it.
};

#endif
