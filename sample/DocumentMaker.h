#ifndef SAMPLE_DOCUMENTMAKER_H
#define SAMPLE_DOCUMENTMAKER_H

#include <QByteArray>
#include <QList>
#include <QString>

namespace Sample {

//! A file inside an archive or a folder of files.
struct DocumentPart
{
    QString path;
    QByteArray content;
};

//! A PDF file of one page: \a title, and \a text broken into lines. Characters outside Latin-1,
//! but for the dash, become '?'.
QByteArray pdfDocument(const QString &title, const QString &text);

//! The files that make up an EPUB book, in the order that the format asks for.
QList<DocumentPart> epubParts(const QString &title, const QString &author, const QString &text);

//! A ZIP archive with \a parts stored as they are.
QByteArray zipArchive(const QList<DocumentPart> &parts);

} // namespace Sample

#endif
