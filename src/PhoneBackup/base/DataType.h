#ifndef PHONEBACKUP_BASE_DATATYPE_H
#define PHONEBACKUP_BASE_DATATYPE_H

//! What a phone keeps, by kind: what problems belong to, and what is asked for.
namespace PhoneBackup::DataType {

enum Code : int {
    WholeBackup = -1, //!< No data type: the backup itself.
    Photos = 0,
    Videos = 1,
    SharedAlbums = 2,
    VoiceMemos = 3,
    Books = 4,
    Music = 5, //!< Ringtones, too.
    Messages = 6,
    MessageAttachments = 7,
    Contacts = 8,
    Notes = 9,
    AppDocuments = 10,
    Whatsapp = 11,
    WhatsappAttachments = 12,
    Reminders = 13,
    Calendar = 14,
    Calls = 15,
    Voicemail = 16,
    Safari = 17,
    NoteAttachments = 18,
};

} // namespace PhoneBackup::DataType

#endif
