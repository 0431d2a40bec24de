#ifndef DATAEXPORT_MESSAGE_CHATCSV_P_H
#define DATAEXPORT_MESSAGE_CHATCSV_P_H

#include "export/CsvFormat_p.h"

#include <QDateTime>

class BkAbstractItem;

//! Writes the CSV lines of one chat; each begins with the same three cells.
class ChatCsv
{
public:
    //! The lines of \a item into \a exporter, which must outlive this.
    ChatCsv(CIDataExporter *exporter, const BkAbstractItem &item);

    //! The line of column names; \a names end with that of the content. \return what writing
    //! answered.
    static bool writeHeader(CIDataExporter *exporter, QStringList names);

    //! Whether lines have the columns for senders and attachments, as in hardened sinks.
    bool hasAllColumns() const { return m_format.isStandard(); }

    //! The cell of a text that many lines have.
    QString cell(const QString &text) const { return m_format.cell(text); }

    //! What one line says of a message: texts, and a type that cell() made.
    struct Line
    {
        QDateTime date;
        QString typeCell;
        QString content;
        QString sender;
        QString attachments;
    };

    void write(const Line &line);

private:
    CIDataExporter *m_exporter;
    const CsvFormat m_format;
    QString m_line;
    qsizetype m_chatCells; // length of the part that all lines have
};

#endif
