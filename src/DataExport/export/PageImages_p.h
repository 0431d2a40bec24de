#ifndef DATAEXPORT_EXPORT_PAGEIMAGES_P_H
#define DATAEXPORT_EXPORT_PAGEIMAGES_P_H

#include "export/CIExportReport.h"
#include "platform/OutputFile_p.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/*!
    \brief The images of one page, in the folder "image" beside it.

    Pages of one folder share the images that belong to the program. The pictures of a hardened page
    are its own: they lie in "image" if this page made that folder, otherwise in a numbered folder
    in it. The page says at its end where they are, so that the one that replaces it can remove
    them. Until the page is complete the folder is claimed: when its run is killed, the next one
   that opens a page there removes them.
*/
class PageImages
{
public:
    using Fault = std::optional<CIExportReport::Fault>;

    //! For a page in \a folder. \return what keeps images from being placed there.
    Fault open(const QString &folder, bool hardened);

    //! Copies the file \a source, which other pages may share, as \a name.
    Fault copy(const QString &source, const QString &name);

    //! Writes \a picture, which is this page's, as \a name; \a isOpened: whether a file could be
    //! opened.
    Fault write(const QByteArray &picture, const QString &name, bool &isOpened);

    //! Path of the page's picture \a name, relative to the page.
    QString pathOf(const QString &name) const;

    //! What a hardened page ends with to say where its pictures are; empty when it has none.
    QString mark() const;

    //! The mark that the page \a path, which is to be replaced, ends with.
    static QString markOf(const QString &path);

    //! Removes the pictures of an earlier page that ended with \a mark.
    void removeMarked(const QString &mark) const;

    //! To be called just before the page gets its name: from then on the pictures are in use.
    void complete();

    //! Removes what was placed, and folders that are empty then.
    void discard();

private:
    Fault makeImageFolder();
    Fault makePictureFolder();
    Fault makeFolder(const QString &relative);

    QString m_page; // folder of the page, empty while not open
    QString m_pictures; // folder of the pictures relative to the page's, empty while there is none
    OutputFile m_claim; // on the folder of the pictures
    QStringList m_placed;
    QStringList m_folders; // those that were made
    bool m_hardened = false;
};

#endif
