#ifndef PHONEITEMS_MESSAGES_ATTACHMENTLABEL_H
#define PHONEITEMS_MESSAGES_ATTACHMENTLABEL_H

#include <QString>

namespace PhoneBackup {
struct MessageAttachment;
}

namespace PhoneItems {

/*!
    What a message shows for a file that is neither picture nor video: "[Voice message 0:12]",
    "[Contact: Ann]", "[File: plan.pdf]". \a isVoice: the message was spoken, \a transcription is
    what the phone understood.
*/
QString attachmentLabel(const PhoneBackup::MessageAttachment &attachment,
                        bool isVoice,
                        const QString &transcription);

//! The type of the message's part that the file is: that which the page goes by.
QString attachmentType(const PhoneBackup::MessageAttachment &attachment);

} // namespace PhoneItems

#endif
