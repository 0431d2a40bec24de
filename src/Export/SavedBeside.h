#ifndef EXPORT_SAVEDBESIDE_H
#define EXPORT_SAVEDBESIDE_H

#include <QByteArray>
#include <QString>

namespace Export {

//! A version of a copied file that was saved in its folder.
struct SavedBeside
{
    QString path; //!< Absolute.
    int error = 0; //!< The error number if it could not be written.
};

//! Saves \a bytes beside the file \a original, under its name with \a extension added, or numbered
//! if that is taken. It gets the date of the original.
SavedBeside saveBeside(const QString &original, const QString &extension, const QByteArray &bytes);

} // namespace Export

#endif
