#ifndef ARCHIVE_HTML_PAGE_H
#define ARCHIVE_HTML_PAGE_H

#include <QByteArray>
#include <QList>
#include <QString>

namespace Archive {

//! A part of the archive that the bar of every page leads to.
struct Section
{
    const char *folder; //!< In the archive.
    const char *title;
};

//! The sections in the order of the bar.
const QList<Section> &allSections();

//! What all pages share.
struct Frame
{
    QString phone; //!< Its name.
    QList<Section> sections; //!< Those that the archive has.
    QString archiveFolder; //!< Its name in OUTPUT.
};

//! One page.
struct Page
{
    QString title;
    QByteArray section; //!< Folder of the section that it belongs to; empty for none.
    int depth = 1; //!< How many folders below the archive's own; -1 for OUTPUT.
    QByteArray layout = {}; //!< A class for the body.
    QList<QByteArray> scripts = {}; //!< Data, relative to the page.

    //! Leads from the page to the archive's folder, "../../"; and to OUTPUT.
    QByteArray toArchive(const Frame &frame) const;
    QByteArray toOutput() const;

    //! The whole page with \a body.
    QByteArray html(const Frame &frame, const QByteArray &body) const;
};

} // namespace Archive

#endif
