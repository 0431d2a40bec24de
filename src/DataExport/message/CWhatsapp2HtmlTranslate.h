#ifndef DATAEXPORT_MESSAGE_CWHATSAPP2HTMLTRANSLATE_H
#define DATAEXPORT_MESSAGE_CWHATSAPP2HTMLTRANSLATE_H

#include "message/CWhatsappTranslate.h"

#include <QString>

/*!
    \brief Writes WhatsApp chats as a page in the manner of a phone's chat view.

    \par Order
    smsStyle() goes to the sink before it is opened; then translate().
    \par Pictures
    Whatever media file decodes as a picture is shown in its bubble: upright, in at most 250 by 250
    pixels, as PNG, numbered through the whole page. Any other medium shows the icon of its type.
    \par Report
    Every chat that was written, and every picture that is there and cannot be shown.
    \par Memory
    The text of one chat; no picture is decoded at a greater size than its format demands.
*/
class DATAEXPORT_EXPORT CWhatsapp2HtmlTranslate final : public CWhatsappTranslate
{
public:
    //! \a data is borrowed.
    explicit CWhatsapp2HtmlTranslate(BkData *data);
    ~CWhatsapp2HtmlTranslate();

    //! The style element of the page.
    QString smsStyle() const;

    //! Keeps \a title for the page's heading; writes nothing. \return true.
    bool translateHeader(CIDataExporter *exporter, const QString &title) override;

    //! Hands over the images that bubbles need and opens the page's column under its heading.
    bool translateDataBefore(CIDataExporter *exporter) override;

    //! Closes the page's column.
    bool translateDataAfter(CIDataExporter *exporter) override;

    //! Writes one chat, in one piece.
    bool translateDataItem(CIDataExporter *exporter, BkWhatsappItem *item) override;

private:
    int m_imageIndex = 0; //!< Pictures written so far.
    QString m_title;
};

#endif
