#ifndef DATAEXPORT_MESSAGE_CWHATSAPP2CSVTRANSLATE_H
#define DATAEXPORT_MESSAGE_CWHATSAPP2CSVTRANSLATE_H

#include "message/CWhatsappTranslate.h"

/*!
    \brief Writes WhatsApp chats as CSV: a header line, then one line a message that holds text.

    \par Bytes
    Chat, name, phone, date in local time to the minute, type ("Group Event", "Fail" for what was
    not delivered, "Received" or "Sent") and content, each through CUtils::csvEncode(); lines end in
    a line feed. Pictures, videos and audio have no line, whatever their caption.
    \par Bytes in a hardened sink
    Cells go through CUtils::csvCell(), lines end in CR LF. Before the content stands the group's
    member who wrote it, behind it "Picture", "Video" or "Audio" for such a message, which has a
    line with its caption.
    \par Memory
    That of one line.
*/
class DATAEXPORT_EXPORT CWhatsapp2CSVTranslate final : public CWhatsappTranslate
{
public:
    //! \a data is borrowed.
    explicit CWhatsapp2CSVTranslate(BkData *data);
    ~CWhatsapp2CSVTranslate();

    //! Writes the header line; \a title is not used.
    bool translateHeader(CIDataExporter *exporter, const QString &title) override;

    //! Does nothing. \return true.
    bool translateDataBefore(CIDataExporter *exporter) override;

    //! Does nothing. \return true.
    bool translateDataAfter(CIDataExporter *exporter) override;

    //! Writes the lines of one chat. \return true.
    bool translateDataItem(CIDataExporter *exporter, BkWhatsappItem *item) override;
};

#endif
