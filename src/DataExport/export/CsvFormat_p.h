#ifndef DATAEXPORT_EXPORT_CSVFORMAT_P_H
#define DATAEXPORT_EXPORT_CSVFORMAT_P_H

#include "export/CPlainFileExporter.h"
#include "export/CUtils.h"

#include <QStringList>

//! How tables are written: by the standard into hardened sinks, else as the library always can.
class CsvFormat
{
public:
    explicit CsvFormat(const CIDataExporter &sink)
        : m_isStandard(sink.isHardened())
    {
    }

    //! The codec of \a sink, before it opens.
    static void setCodec(CPlainFileExporter &sink, bool isStandard)
    {
        sink.setCodec(isStandard ? QStringLiteral("UTF-8") : QStringLiteral("UTF16"), true);
    }

    bool isStandard() const { return m_isStandard; }

    //! The cell of \a text.
    QString cell(const QString &text) const
    {
        return m_isStandard ? CUtils::csvCell(text) : CUtils::csvEncode(text);
    }

    //! The cells of \a names, which head the columns, without an end of line.
    QString header(const QStringList &names) const
    {
        QStringList cells = names;
        if (m_isStandard) {
            for (QString &name : cells)
                name = CUtils::csvCell(name);
        }
        return cells.join(QLatin1Char(','));
    }

    //! What ends a line.
    QLatin1String lineEnd() const { return QLatin1String(m_isStandard ? "\r\n" : "\n"); }

private:
    bool m_isStandard;
};

#endif
