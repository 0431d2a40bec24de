#ifndef PHONEBACKUP_NOTES_NOTERUNRECORD_H
#define PHONEBACKUP_NOTES_NOTERUNRECORD_H

#include "PhoneBackup/notes/NoteBody.h"

#include <QByteArrayView>

namespace PhoneBackup {

//! A run as the record of a note has it: what a stretch of its text looks like.
struct NoteRunRecord
{
    static constexpr quint8 kMostLevels = 16;

    quint64 length = 0; //!< In UTF-16 units.
    NoteBlock paragraph; //!< Of kind Paragraph, Title, Heading, Subheading or Code.
    NoteLook look; //!< Without link and attachment.
    QString link;
    QString attachment; //!< Its identifier.
    QString attachmentType;

    //! The run in \a message. Untrusted: what is not known is passed over.
    static NoteRunRecord read(QByteArrayView message);
};

} // namespace PhoneBackup

#endif
