#ifndef DATAEXPORT_MESSAGE_CSMSTRANSLATE_H
#define DATAEXPORT_MESSAGE_CSMSTRANSLATE_H

#include "DataExport_global.h"

class BkSMSData;
class BkSMSItem;
class CIDataExporter;
class CIProgressCallback;
class QString;

/*!
    \brief Frame: walks the selected conversations and hands each one to a format.

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
class DATAEXPORT_EXPORT CSMSTranslate
{
public:
    //! \a data is borrowed.
    explicit CSMSTranslate(BkSMSData *data);

    CSMSTranslate(const CSMSTranslate &) = delete;
    CSMSTranslate &operator=(const CSMSTranslate &) = delete;

    /*!
        Runs one export under \a title into \a exporter, which is open. \a progress may be null.
        \return false when a step failed: the steps after it are left out.
    */
    bool translate(CIDataExporter *exporter, const QString &title, CIProgressCallback *progress);

    //! First step: the output is to bear \a title.
    virtual bool translateHeader(CIDataExporter *exporter, const QString &title) = 0;

    //! What stands before the conversations.
    virtual bool translateDataBefore(CIDataExporter *exporter) = 0;

    //! What stands after them; also after a cancelled walk.
    virtual bool translateDataAfter(CIDataExporter *exporter) = 0;

    //! One conversation.
    virtual bool translateDataItem(CIDataExporter *exporter, BkSMSItem *item) = 0;

protected:
    ~CSMSTranslate();

    BkSMSData *m_data; //!< What is exported.
};

#endif
