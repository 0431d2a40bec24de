#ifndef DATAEXPORT_CONTACT_CCONTACTTRANSLATE_H
#define DATAEXPORT_CONTACT_CCONTACTTRANSLATE_H

#include "DataExport_global.h"

class BkContactData;
class BkContactItem;
class CIDataExporter;
class CIProgressCallback;
class QString;

/*!
    \brief Frame: walks the selected contacts and hands each one to a format.

    \par Reads
    The items of recoverList(), in its order; null items, items of another class and contacts
    without details are skipped. Each of the others is an item of the sink, called like the contact;
    one that the sink refuses is left out.
    \par Progress
    One call an index, before its item is looked at, skipped items included; each is worth range() /
    count. An answer of false ends the walk; the output is still completed and the result is that of
    translateDataAfter().
    \par Report
    Told of each contact once in all formats, by the page's pass: exported, or without details.
    \par Owner
    Data, sink and progress belong to the caller and must outlive translate(). One object serves one
    pass. Translators are destroyed through their own class.
*/
class DATAEXPORT_EXPORT CContactTranslate
{
public:
    //! \a data is borrowed.
    explicit CContactTranslate(BkContactData *data);

    CContactTranslate(const CContactTranslate &) = delete;
    CContactTranslate &operator=(const CContactTranslate &) = delete;

    /*!
        Runs one export under \a title into \a exporter, which is open. \a progress may be null.
        \return false when a step failed: the steps after it are left out.
    */
    bool translate(CIDataExporter *exporter, const QString &title, CIProgressCallback *progress);

    //! First step: the output is to bear \a title.
    virtual bool translateHeader(CIDataExporter *exporter, const QString &title) = 0;

    //! What stands before the contacts.
    virtual bool translateDataBefore(CIDataExporter *exporter) = 0;

    //! What stands after them; also after a cancelled walk.
    virtual bool translateDataAfter(CIDataExporter *exporter) = 0;

    //! One contact, which has details.
    virtual bool translateDataItem(CIDataExporter *exporter, BkContactItem *item) = 0;

protected:
    ~CContactTranslate();

    //! What the report calls \a item.
    static QString nameForReport(const BkContactItem &item);

    BkContactData *m_data; //!< What is exported.
    bool m_tellsReport = false; //!< Whether this is the pass that tells the report of each contact.

private:
    bool translateItem(CIDataExporter *exporter, BkContactItem *item);
};

#endif
