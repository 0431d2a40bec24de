#ifndef DATAEXPORT_MESSAGE_MESSAGEPAGE_P_H
#define DATAEXPORT_MESSAGE_MESSAGEPAGE_P_H

#include <QStringList>

#include <initializer_list>

class BkAbstractItem;
class CIDataExporter;
class QIODevice;
class QTextStream;

//! What all chat pages have in common: style sheet, images, the column around the conversations.
namespace MessagePage {

//! Where the style sheets of the pages differ.
struct Style
{
    QLatin1String heading; //!< Rule of h2.
    QLatin1String line; //!< Rule of the separator and date lines.
    bool hasIMessage = false; //!< Whether there are bubbles of a third colour.
};

//! The whole style element.
QString styleElement(const Style &style);

/*!
    One more, for hardened pages: words are broken only where one is
    longer than a line; a picture in a bubble is no wider than its text, which goes below a picture
    that leaves it no room.
*/
QString fittingStyleElement();

/*!
    Hands the nine parts of each of \a bubbles (by the start of their names), then the files \a
    others, to \a exporter. One that cannot be copied is the sink's to report.
*/
void copyImages(CIDataExporter *exporter,
                std::initializer_list<QLatin1String> bubbles,
                std::initializer_list<QLatin1String> others);

//! Opens the column under the heading \a title. \return what writing answered.
bool open(CIDataExporter *exporter, const QString &title);

//! Closes the column. \return what writing answered.
bool close(CIDataExporter *exporter);

/*!
    Writes the heading of \a item and the line under it. \a patterns are those of its texts 0, 1, 2
    and so on, each with the place %1.
*/
void writeHeading(QTextStream &out, const BkAbstractItem &item, const QStringList &patterns);

//! Writes a centred line that says \a text.
void writeLine(QTextStream &out, const QString &text);

//! Writes who sent the message below; nothing for an empty \a name.
void writeSender(QTextStream &out, const QString &name);

//! What the report calls \a item: the first of its texts that is not empty.
QString nameForReport(const BkAbstractItem &item);

/*!
    The picture in \a source, which is open, as PNG in the size of chat pages; empty when there is
    none to be had, and \a why gets the reason.
*/
QByteArray makePicture(QIODevice &source, QString *why);

//! Tells the report that the picture \a name of \a item cannot be shown, and why.
void reportPicture(CIDataExporter *exporter,
                   const BkAbstractItem &item,
                   const QString &name,
                   const QString &why);

//! Path of the image \a name relative to the page.
QString imagePath(const QString &name);

} // namespace MessagePage

#endif
