#ifndef EXPORT_REQUEST_H
#define EXPORT_REQUEST_H

#include "Export/Formats.h"
#include "PhoneBackup/source/MessageFilter.h"

#include <QList>
#include <QString>

namespace Export {

//! What to export, and how.
struct Request
{
    QString backup; //!< Folder of a backup, or a folder that contains one.
    QString output; //!< OUTPUT; may be relative.
    QList<int> types; //!< Codes of the selected data types; must not be empty.
    PhoneBackup::MessageFilter messages; //!< Limits messages and the files sent in them.
    Formats formats;
    bool intoExisting = false; //!< Allow an OUTPUT that contains files.
    bool checkSpace = true; //!< Do not start if there is too little space.
    bool convertHeic = false; //!< Also save each HEIC picture as a JPEG.
    bool convertAudio = false; //!< Also save sound that browsers cannot play as one that they can.
};

} // namespace Export

#endif
