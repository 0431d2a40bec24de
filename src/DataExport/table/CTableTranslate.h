#ifndef DATAEXPORT_TABLE_CTABLETRANSLATE_H
#define DATAEXPORT_TABLE_CTABLETRANSLATE_H

#include "DataExport_global.h"

class BkData;
class CIDataExporter;
class CIProgressCallback;
class QString;

/*!
    \brief Writes a data set of rows and named columns as a page with one table.

    \par Order
    tableStyle() goes to the sink before it is opened; then translate(), once an object.
    \par Reads
    Columns, and the cells of recoverList(), in its order; null items are skipped. The fourth column
    of data type 15 (calls), which holds the date, does not wrap at its blanks; on a hardened page
    nowhere.
    \par Progress
    One call a row, before it is looked at, each worth range() / count. An answer of false ends the
    table, which is still completed: that is no failure.
    \par Text
    All of it is encoded.
    \par Report
    Every row that was written, by its first cell; a set without columns.
    \par Memory
    That of one row.
*/
class DATAEXPORT_EXPORT CTableTranslate
{
public:
    //! \a data is borrowed.
    explicit CTableTranslate(BkData *data);
    ~CTableTranslate();

    CTableTranslate(const CTableTranslate &) = delete;
    CTableTranslate &operator=(const CTableTranslate &) = delete;

    //! The style element of the page.
    QString tableStyle() const;

    /*!
        Writes the table under \a title into \a exporter, which is open and writes a page. \a
        progress may be null.
        \return false when a step failed, or when the set has no columns: then nothing is written.
    */
    bool translate(CIDataExporter *exporter, const QString &title, CIProgressCallback *progress);

private:
    BkData *m_data;
};

#endif
