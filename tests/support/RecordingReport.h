#ifndef TESTS_SUPPORT_RECORDINGREPORT_H
#define TESTS_SUPPORT_RECORDINGREPORT_H

#include "export/CIExportReport.h"

#include <QList>
#include <QStringList>

//! Report that keeps what it was told.
class RecordingReport final : public CIExportReport
{
public:
    struct Failure
    {
        QString type;
        QString item;
        Cause cause;
        QString reason;
    };

    void itemFailed(const QString &typeName,
                    const QString &itemName,
                    Cause cause,
                    const QString &reason) override
    {
        failures.append({ typeName, itemName, cause, reason });
    }
    void itemExported(const QString &typeName, const QString &itemName) override
    {
        exported.append(typeName + QLatin1String(": ") + itemName);
    }

    void
    fileWritten(const QString & /*typeName*/, const QString &itemName, const QString &path) override
    {
        files.append(itemName + QLatin1String(" -> ") + path);
    }

    QList<Failure> failures;
    QStringList exported;
    QStringList files;
};

#endif
