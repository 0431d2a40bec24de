#ifndef TESTS_SUPPORT_RECORDINGSINK_H
#define TESTS_SUPPORT_RECORDINGSINK_H

#include "export/CIDataExporter.h"

#include <QMap>
#include <QStringList>

//! Sink that keeps all that it is handed, in memory.
class RecordingSink final : public CIDataExporter
{
public:
    bool exportData(const QString &text, const QString & /*name*/) override
    {
        writes.append(text);
        return accepts && writes.size() != refusedWrite + 1;
    }
    using CIDataExporter::exportData;
    bool exportDepends(const QString &srcPath, const QString &name) override
    {
        copied.append(name);
        sources.append(srcPath);
        return true;
    }
    bool exportDepends(const QByteArray &data, const QString &name) override
    {
        images.insert(name, data);
        return true;
    }
    bool openExporter(const QDir & /*outDir*/) override { return true; }
    bool closeExporter(bool /*ok*/) override { return true; }

    QString text() const { return writes.join(QString()); }

    QStringList writes;
    QStringList copied;
    QStringList sources;
    QMap<QString, QByteArray> images;
    bool accepts = true; //!< What writing answers.
    qsizetype refusedWrite = -1; //!< Number of a write that fails all the same.
};

#endif
