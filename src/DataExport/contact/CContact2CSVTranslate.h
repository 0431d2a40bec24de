#ifndef DATAEXPORT_CONTACT_CCONTACT2CSVTRANSLATE_H
#define DATAEXPORT_CONTACT_CCONTACT2CSVTRANSLATE_H

#include "contact/CContactHelper.h"
#include "contact/CContactTranslate.h"

#include <QStringList>

/*!
    \brief Writes contacts as CSV: a header line, then one line a contact.

    \par Columns
    A fixed set, then numbered ones: as many addresses, phone numbers, e-mail addresses, dates and
    web sites as the contact with the most of them has. Their names are not translated.
    \par Bytes
    Cells go through CUtils::csvEncode(), the header's do not; each line ends in a comma and a line
    feed. In a hardened sink all cells go through CUtils::csvCell(), and lines end in CR LF. Dates
    are days in local time, "yyyy-MM-dd". Several instant-message accounts share a cell, the last
    one first.
    \par Memory
    That of one line.
*/
class DATAEXPORT_EXPORT CContact2CSVTranslate final : public CContactTranslate
{
public:
    //! \a data is borrowed.
    explicit CContact2CSVTranslate(BkContactData *data);
    ~CContact2CSVTranslate();

    //! Counts what all selected contacts have and writes the header line; \a title is not used.
    bool translateHeader(CIDataExporter *exporter, const QString &title) override;

    //! Does nothing. \return true.
    bool translateDataBefore(CIDataExporter *exporter) override;

    //! Does nothing. \return true.
    bool translateDataAfter(CIDataExporter *exporter) override;

    //! Writes the line of \a item. Properties beyond the columns of the header are left out.
    bool translateDataItem(CIDataExporter *exporter, BkContactItem *item) override;

    //! Raises \a max to the number of properties of the kind \a type that \a item has.
    static void
    updatePropCount(const CContactHelper &helper, const BkContactItem *item, int type, int &max);

private:
    QStringList m_columns; //!< Names of the columns, in the order of the cells.
    CContactHelper m_helper;
};

#endif
