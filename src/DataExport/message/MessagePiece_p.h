#ifndef DATAEXPORT_MESSAGE_MESSAGEPIECE_P_H
#define DATAEXPORT_MESSAGE_MESSAGEPIECE_P_H

#include "message/BkSMSPiece.h"

enum class PieceKind { Text, Picture, Video, Other };

//! What a piece is, by its type; the first of text, picture and video that the type names.
inline PieceKind pieceKind(const BkSMSPiece &piece)
{
    const QString &type = piece.pieceType();
    if (type.contains(QLatin1String("text")))
        return PieceKind::Text;
    if (type.contains(QLatin1String("image")))
        return PieceKind::Picture;
    return type.contains(QLatin1String("video")) ? PieceKind::Video : PieceKind::Other;
}

#endif
