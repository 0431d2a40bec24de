#ifndef DATAEXPORT_EXPORT_CUTILS_H
#define DATAEXPORT_EXPORT_CUTILS_H

#include "DataExport_global.h"

#include <QString>

/*!
    \brief Text encoders: one for each format that text is written into. Pure functions; none fails.

    \par Cost
    One pass a replaced character; a text that needs no change is not copied.
*/
class DATAEXPORT_EXPORT CUtils
{
public:
    //! Replaces each of / \ : " * ? < > | by "_". Changes nothing else: no trimming, no length
    //! limit.
    static QString safeFileName(const QString &s);

    //! Escapes < > & and the double quote for HTML, then turns each line feed into "<br>".
    static QString htmlEncode(const QString &s);

    /*!
        Escapes < > & and both quotes, for the value of an attribute; line feeds stay. For pages
        that take no text as it is.
    */
    static QString attributeEncode(const QString &s);

    /*!
        One CSV field: double quotes are doubled, and a field with a comma, a carriage return or a
        line feed is enclosed in double quotes. A field with quotes alone is not enclosed.
    */
    static QString csvEncode(const QString &s);

    /*!
        One CSV field as RFC 4180 has it: one with a quote, a comma or a line break is enclosed in
        double quotes, and quotes in it are doubled. A text that a spreadsheet would take for a
        formula gets an apostrophe in front: one that begins with =, @, a tab or a carriage return,
        or with + or - unless it is a number as people write phone numbers. U+0000 is left out.
    */
    static QString csvCell(const QString &s);
};

#endif
