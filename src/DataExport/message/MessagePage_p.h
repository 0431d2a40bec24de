#ifndef DATAEXPORT_MESSAGE_MESSAGEPAGE_P_H
#define DATAEXPORT_MESSAGE_MESSAGEPAGE_P_H

#include <QString>

#include <initializer_list>

class CIDataExporter;

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

//! Path of the image \a name relative to the page.
QString imagePath(const QString &name);

} // namespace MessagePage

#endif
