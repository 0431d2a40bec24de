#ifndef DATAEXPORT_CONTACT_CCONTACT2HTMLTRANSLATE_H
#define DATAEXPORT_CONTACT_CCONTACT2HTMLTRANSLATE_H

#include "contact/CContactTranslate.h"

#include <QString>

/*!
    \brief Writes contacts as a page of cards: picture, name, and a table of all properties.

    \par Order
    contactStyle() goes to the sink before it is opened; then translate().
    \par Text
    The table is encoded. The name and the three lines under it stand as they are stored, unless the
    sink is hardened.
    \par Pictures
    Upright, in a square of 136 by 136 pixels, as PNG, numbered through the page; a photo that
    cannot be decoded uses up its number and shows the silhouette.
    \par Report
    Every contact that was written, every photo that cannot be shown, and how many properties of an
    unknown kind a contact has.
    \par Memory
    That of one card.
*/
class DATAEXPORT_EXPORT CContact2HtmlTranslate final : public CContactTranslate
{
public:
    //! \a data is borrowed.
    explicit CContact2HtmlTranslate(BkContactData *data);
    ~CContact2HtmlTranslate();

    //! The style element of the page.
    QString contactStyle() const;

    //! Keeps \a title for the page's heading; writes nothing. \return true.
    bool translateHeader(CIDataExporter *exporter, const QString &title) override;

    //! Hands over the silhouette and the mark of deleted items and opens the column of cards.
    bool translateDataBefore(CIDataExporter *exporter) override;

    //! Closes the column of cards.
    bool translateDataAfter(CIDataExporter *exporter) override;

    //! Writes the card of \a item, in one piece.
    bool translateDataItem(CIDataExporter *exporter, BkContactItem *item) override;

private:
    QString pictureOf(CIDataExporter *exporter, const BkContactItem &item, const QByteArray &photo);

    int m_photoCount = 0; //!< Photos met so far.
    QString m_title;
};

#endif
