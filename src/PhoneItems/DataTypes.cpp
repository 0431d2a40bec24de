#include "PhoneItems/DataTypes.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/calls/CallHistory.h"
#include "PhoneBackup/calls/Voicemail.h"
#include "PhoneItems/contacts/ContactData.h"
#include "PhoneItems/media/BookData.h"
#include "PhoneItems/media/MediaData.h"
#include "PhoneItems/messages/Messages.h"
#include "PhoneItems/notes/Notes.h"
#include "PhoneItems/planner/EventTable.h"
#include "PhoneItems/planner/ReminderTable.h"
#include "PhoneItems/safari/Safari.h"
#include "PhoneItems/whatsapp/WhatsappData.h"
#include "PhoneItems/whatsapp/WhatsappFiles.h"
#include "backup/BkDataType.h"

namespace PhoneBackup {

// The reader counts as the item model does.
static_assert(DataType::Photos == int(BkDataType::Photos));
static_assert(DataType::Videos == int(BkDataType::Videos));
static_assert(DataType::SharedAlbums == int(BkDataType::SharedAlbums));
static_assert(DataType::VoiceMemos == int(BkDataType::VoiceMemos));
static_assert(DataType::Books == int(BkDataType::Books));
static_assert(DataType::Music == int(BkDataType::Music));
static_assert(DataType::Messages == int(BkDataType::Messages));
static_assert(DataType::MessageAttachments == int(BkDataType::MessageAttachments));
static_assert(DataType::Contacts == int(BkDataType::Contacts));
static_assert(DataType::Notes == int(BkDataType::Notes));
static_assert(DataType::AppDocuments == int(BkDataType::AppDocuments));
static_assert(DataType::Whatsapp == int(BkDataType::Whatsapp));
static_assert(DataType::WhatsappAttachments == int(BkDataType::WhatsappAttachments));
static_assert(DataType::Reminders == int(BkDataType::Reminders));
static_assert(DataType::Calendar == int(BkDataType::Calendar));
static_assert(DataType::Calls == int(BkDataType::Calls));
static_assert(DataType::Voicemail == int(BkDataType::Voicemail));
static_assert(DataType::Safari == int(BkDataType::Safari));
static_assert(DataType::NoteAttachments == int(BkDataType::NoteAttachments));

const QList<DataSetReader> &dataTypeTable()
{
    static const QList<DataSetReader> table {
        { DataType::Photos, &PhoneItems::readCameraRoll },
        { DataType::Videos, &PhoneItems::readCameraRoll },
        { DataType::SharedAlbums, &PhoneItems::readSharedAlbums },
        { DataType::VoiceMemos, &PhoneItems::readVoiceMemos },
        { DataType::Books, &PhoneItems::readBooks },
        { DataType::Music, &PhoneItems::readSongs },
        { DataType::Messages, &PhoneItems::readMessages },
        { DataType::MessageAttachments, &PhoneItems::readMessageFiles },
        { DataType::Contacts, &PhoneItems::readContacts },
        { DataType::Notes, &PhoneItems::readNotes },
        { DataType::AppDocuments, &PhoneItems::readAppDocuments },
        { DataType::Whatsapp, &PhoneItems::readWhatsapp },
        { DataType::WhatsappAttachments, &PhoneItems::readWhatsappFiles },
        { DataType::Reminders, &PhoneItems::readReminderTable },
        { DataType::Calendar, &PhoneItems::readEventTable },
        { DataType::Calls, &readCallHistory },
        { DataType::Voicemail, &readVoicemail },
        { DataType::Safari, &PhoneItems::readSafari },
        { DataType::NoteAttachments, &PhoneItems::readNotes },
    };
    return table;
}

} // namespace PhoneBackup
