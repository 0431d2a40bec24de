#ifndef PHONEITEMS_MESSAGES_ATTACHMENTLABEL_H
#define PHONEITEMS_MESSAGES_ATTACHMENTLABEL_H

#include <QString>

namespace PhoneBackup {

class BackupFiles;
struct MessageAttachment;

/*!
    What a message shows for a file that is neither picture nor video: "[Voice message 0:12]",
    "[Contact: Ann]", "[File: plan.pdf]". Its content, which may be missing in \a files, tells
    length and name. \a isVoice: the message was spoken, \a transcription is what the phone
    understood.
*/
QString attachmentLabel(const MessageAttachment &attachment,
                        BackupFiles &files,
                        bool isVoice,
                        const QString &transcription);

//! The type of the message's part that the file is: that which the page goes by.
QString attachmentType(const MessageAttachment &attachment);

} // namespace PhoneBackup

#endif
