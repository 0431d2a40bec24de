#ifndef DATAEXPORT_MESSAGE_CSMS2CSVTRANSLATE_H
#define DATAEXPORT_MESSAGE_CSMS2CSVTRANSLATE_H

#include "message/CSMSTranslate.h"

/*!
    \brief Writes conversations as CSV: a header line, then one line a message that holds text.

    \par Bytes
    Name, phone, e-mail, date in local time to the minute, type ("Sent", "Received", or "Unknown"
    for what was not delivered) and content, each through CUtils::csvEncode(); lines end in a line
    feed. The content is subject, text and text parts, joined by blanks.
    \par Bytes in a hardened sink
    Cells go through CUtils::csvCell(), lines end in CR LF. Before the content stands the sender of
    what was received in a group, behind it the names of the files that came along, with semicolons
    between them; a message of files alone has a line, too.
    \par Memory
    That of one line.
*/
class DATAEXPORT_EXPORT CSMS2CSVTranslate final : public CSMSTranslate
{
public:
    //! \a data is borrowed.
    explicit CSMS2CSVTranslate(BkSMSData *data);
    ~CSMS2CSVTranslate();

    //! Writes the header line; \a title is not used.
    bool translateHeader(CIDataExporter *exporter, const QString &title) override;

    //! Does nothing. \return true.
    bool translateDataBefore(CIDataExporter *exporter) override;

    //! Does nothing. \return true.
    bool translateDataAfter(CIDataExporter *exporter) override;

    //! Writes the lines of one conversation. \return true.
    bool translateDataItem(CIDataExporter *exporter, BkSMSItem *item) override;
};

#endif
