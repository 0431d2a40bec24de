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
        int systemError;
    };

    void typeStarts(int code, const QString &typeName) override
    {
        starts.append(QString::number(code) + QLatin1String(": ") + typeName);
    }
    void itemFailed(const QString &typeName, const QString &itemName, const Fault &fault) override
    {
        failures.append({ typeName, itemName, fault.cause, fault.reason, fault.systemError });
    }
    void itemExported(const QString &typeName, const QString &itemName) override
    {
        exported.append(typeName + QLatin1String(": ") + itemName);
    }

    void outputEnded(const QString &typeName, Output output, End end) override
    {
        static const QStringList kOutputs { QStringLiteral("page"),
                                            QStringLiteral("table"),
                                            QStringLiteral("cards"),
                                            QStringLiteral("copies") };
        static const QStringList kEnds { QStringLiteral("complete"),
                                         QStringLiteral("stopped"),
                                         QStringLiteral("failed"),
                                         QStringLiteral("not started") };
        ends.append(typeName + QLatin1String(": ") + kOutputs.at(static_cast<int>(output))
                    + QLatin1Char(' ') + kEnds.at(static_cast<int>(end)));
    }

    QList<Failure> failures;
    QStringList ends; //!< "Photos: copies complete".
    QStringList exported;
    QStringList starts; //!< "0: Photos".
};

#endif
