#ifndef DATAEXPORT_PLATFORM_OUTPUTFOLDER_P_H
#define DATAEXPORT_PLATFORM_OUTPUTFOLDER_P_H

#include <QString>

//! Folders of an output.
namespace OutputFolder {

enum class Links { Followed, Refused };

//! How a folder came to be there, or why it did not.
struct Made
{
    int error =
        0; //!< The system's error number; ELOOP: a link that is not followed. 0: it is there.
    bool isNew = false;

    //! The reason, as a sentence about the folder \a path.
    QString reason(const QString &path) const;
};

//! Makes the folder \a path, whose parent is there, unless it is there already.
Made make(const QString &path, Links links);

//! Removes the folder \a path if it is empty.
void removeEmpty(const QString &path);

} // namespace OutputFolder

#endif
