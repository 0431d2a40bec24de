#ifndef DATAEXPORT_MESSAGE_BKSMSPIECE_H
#define DATAEXPORT_MESSAGE_BKSMSPIECE_H

#include "DataExport_global.h"

#include <QByteArray>
#include <QString>

/*!
    \brief One part of a message: a text, a picture, a video or something else.

    Item model, implemented by the application. References live as long as the piece.
*/
class DATAEXPORT_EXPORT BkSMSPiece
{
public:
    BkSMSPiece() = default;
    virtual ~BkSMSPiece();

    BkSMSPiece(const BkSMSPiece &) = delete;
    BkSMSPiece &operator=(const BkSMSPiece &) = delete;

    /*!
        Its type, like a MIME type. Holding "text" it is a text, else "image" a picture, else
        "video" a video; the letters' case counts.
    */
    virtual const QString &pieceType() const = 0;

    /*!
        The bytes: UTF-8 of a text, the file of a picture; empty when the backup lacks them. Asked
        of texts, and once of each picture, so that a model may map the file when it is asked.
    */
    virtual const QByteArray &pieceData() const = 0;

    //! Name of the part inside the message; names it in the report.
    virtual const QString &pieceLocation() const = 0;

    //! Whether the phone had left the picture in the cloud, so that its bytes being empty is no
    //! fault, and not reported. false by default.
    virtual bool neverDownloaded() const;

    /*!
        What the backup is to blame for when a picture cannot be shown, as sentences for the report;
        asked after pieceData(), only of such pictures. Empty by default, and when there is nothing
        to tell: then the report has what decoding met, or that the picture is missing.
    */
    virtual QString fault() const;
};

#endif
