#ifndef DATAEXPORT_MESSAGE_CHATCSV_P_H
#define DATAEXPORT_MESSAGE_CHATCSV_P_H

#include <QStringList>

class BkAbstractItem;
class CIDataExporter;
class QDateTime;

//! Writes the CSV lines of one chat; each begins with the same three cells.
class ChatCsv
{
public:
    //! The lines of \a item into \a exporter, which must outlive this.
    ChatCsv(CIDataExporter *exporter, const BkAbstractItem &item);

    //! The line of column names. \return what writing answered.
    static bool writeHeader(CIDataExporter *exporter, const QStringList &names);

    //! One line. \a typeCell is a cell as it stands, the others are texts.
    void write(const QDateTime &date, const QString &typeCell, const QString &content);

private:
    CIDataExporter *m_exporter;
    QString m_line;
    qsizetype m_chatCells; // length of the part that all lines have
};

#endif
