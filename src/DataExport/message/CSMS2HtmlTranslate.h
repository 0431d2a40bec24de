#ifndef DATAEXPORT_MESSAGE_CSMS2HTMLTRANSLATE_H
#define DATAEXPORT_MESSAGE_CSMS2HTMLTRANSLATE_H

#include "message/CSMSTranslate.h"

#include <QString>

/*!
    \brief Writes conversations as a page in the manner of a phone's chat view.

    \par Order
    smsStyle() goes to the sink before it is opened; then translate().
    \par Pictures
    Upright, in at most 250 by 250 pixels, as PNG, numbered through the whole page. What cannot be
    decoded, or holds more pixels than a camera makes, shows a placeholder.
    \par Report
    Every conversation that was written, and every picture that shows a placeholder.
    \par Memory
    The text of one conversation; no picture is decoded at a greater size than its format demands.
*/
class DATAEXPORT_EXPORT CSMS2HtmlTranslate final : public CSMSTranslate
{
public:
    //! \a data is borrowed.
    explicit CSMS2HtmlTranslate(BkSMSData *data);
    ~CSMS2HtmlTranslate();

    //! The style element of the page.
    QString smsStyle() const;

    //! Keeps \a title for the page's heading; writes nothing. \return true.
    bool translateHeader(CIDataExporter *exporter, const QString &title) override;

    //! Hands over the images that bubbles need and opens the page's column under its heading.
    bool translateDataBefore(CIDataExporter *exporter) override;

    //! Closes the page's column.
    bool translateDataAfter(CIDataExporter *exporter) override;

    //! Writes one conversation, in one piece.
    bool translateDataItem(CIDataExporter *exporter, BkSMSItem *item) override;

private:
    int m_imageIndex = 0; //!< Pictures written so far.
    QString m_title;
};

#endif
