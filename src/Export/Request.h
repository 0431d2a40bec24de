#ifndef EXPORT_REQUEST_H
#define EXPORT_REQUEST_H

#include "PhoneBackup/source/MessageFilter.h"

#include <QList>
#include <QString>

namespace Export {

//! What is to be exported, and how.
struct Request
{
    QString backup; //!< Folder of a backup, or one that holds backups.
    QString output; //!< OUTPUT, as the user wrote it.
    QList<int> types; //!< Codes of the selected data types, never empty.
    PhoneBackup::MessageFilter messages; //!< Which messages are wanted, and what was sent in them.
    bool intoExisting = false; //!< OUTPUT may hold files already.
    bool checkSpace = true; //!< Do not start when there is too little room.
    bool convertHeic = false; //!< Write a JPEG beside each HEIC picture that is copied.
};

} // namespace Export

#endif
