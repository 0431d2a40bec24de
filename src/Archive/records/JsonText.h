#ifndef ARCHIVE_RECORDS_JSONTEXT_H
#define ARCHIVE_RECORDS_JSONTEXT_H

#include <QByteArray>
#include <QStringView>

//! The parts of JSON (RFC 8259), appended to bytes of UTF-8.
namespace Archive::JsonText {

//! \a text in quotes. A surrogate without its partner becomes U+FFFD.
void append(QByteArray &out, QStringView text);

//! A whole number.
void append(QByteArray &out, qint64 number);

//! The shortest number that reads back as \a number, "null" for an infinite one or a NaN.
void append(QByteArray &out, double number);

//! Milliseconds since 1970, UTC, as ISO 8601 in quotes: "2026-01-31T09:30:00.000Z".
void appendMoment(QByteArray &out, qint64 ms);

} // namespace Archive::JsonText

#endif
