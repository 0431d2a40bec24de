#ifndef DATAEXPORT_MESSAGE_CWHATSAPPTRANSLATE_H
#define DATAEXPORT_MESSAGE_CWHATSAPPTRANSLATE_H

#include "DataExport_global.h"

class BkData;
class BkWhatsappItem;
class CIDataExporter;
class CIProgressCallback;
class QString;

/*!
    \brief Frame: walks the selected WhatsApp chats and hands each one to a format.

    \par Reads
    The items of recoverList(), in its order; null items and items of another class are skipped.
    \par Progress
    One call an index, before its item is looked at, skipped items included; each is worth range() /
    count. An answer of false ends the walk; the output is still completed and the result is that of
    translateDataAfter().
    \par Owner
    Data, sink and progress belong to the caller and must outlive translate(). One object serves one
    pass. Translators are destroyed through their own class.
*/
class DATAEXPORT_EXPORT CWhatsappTranslate
{
public:
    //! \a data is borrowed; a set of any class.
    explicit CWhatsappTranslate(BkData *data);

    CWhatsappTranslate(const CWhatsappTranslate &) = delete;
    CWhatsappTranslate &operator=(const CWhatsappTranslate &) = delete;

    /*!
        Runs one export under \a title into \a exporter, which is open. \a progress may be null.
        \return false when a step failed: the steps after it are left out.
    */
    bool translate(CIDataExporter *exporter, const QString &title, CIProgressCallback *progress);

    //! First step: the output is to bear \a title.
    virtual bool translateHeader(CIDataExporter *exporter, const QString &title) = 0;

    //! What stands before the chats.
    virtual bool translateDataBefore(CIDataExporter *exporter) = 0;

    //! What stands after them; also after a cancelled walk.
    virtual bool translateDataAfter(CIDataExporter *exporter) = 0;

    //! One chat.
    virtual bool translateDataItem(CIDataExporter *exporter, BkWhatsappItem *item) = 0;

protected:
    ~CWhatsappTranslate();

    BkData *m_data; //!< What is exported.
};

#endif
