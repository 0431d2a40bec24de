#ifndef DATAEXPORT_EXPORT_PAGETEXT_P_H
#define DATAEXPORT_EXPORT_PAGETEXT_P_H

#include <QString>

class CIDataExporter;

/*!
    Text of strangers in places where pages take it as it is. On a hardened page none of it becomes
    mark-up; on any other it stands there byte for byte.
*/
namespace PageText {

//! \a text between tags.
QString plain(const CIDataExporter &page, const QString &text);

//! \a value between the quotes, of either kind, of an attribute.
QString attribute(const CIDataExporter &page, const QString &value);

//! The attribute of an image that says \a words instead of it; nothing on a page not hardened.
QString alt(const CIDataExporter &page, const QString &words);

//! \a target as the value of a link's attribute, without characters that no address has.
QString linkTarget(const CIDataExporter &page, const QString &target);

/*!
    Whether \a page may make a link to \a target: a hardened one only to the web, to files on
    servers and to people, told by the scheme as a browser would find it. What is no link is shown
    as text.
*/
bool mayLink(const CIDataExporter &page, const QString &target);

/*!
    What the style of a hardened page of tables has besides: an address or a word that is too long
    for its column is broken, instead of widening the page. Columns stay wide enough for a date.
*/
QString wrappingStyleElement();

} // namespace PageText

#endif
