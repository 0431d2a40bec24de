#ifndef PLUGINS_HEIF_CODEDSIZE_H
#define PLUGINS_HEIF_CODEDSIZE_H

#include <QByteArrayView>
#include <QSize>

//! The largest size of a picture that coded data allows, by its own header; invalid when unclear.
namespace CodedSize {

//! Of HEVC: \a header is a unit with the parameters of a sequence; unclear, too, when these exclude
//! each other.
QSize ofHevc(QByteArrayView header);

//! Of AV1: \a header is the content of a sequence header.
QSize ofAv1(QByteArrayView header);

} // namespace CodedSize

#endif
