#include "PhoneItems/DataTypes.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/whatsapp/WhatsappCalls.h"
#include "PhoneItems/calls/CallTable.h"
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

namespace PhoneItems {

using namespace PhoneBackup;

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

namespace {

// Calls of the phone and of apps are one list.
void readAllCalls(Source &source, DataSets &sets)
{
    readCallTable(source, sets, readWhatsappCalls(source, DataType::Calls));
}

} // namespace

const QList<DataSetReader> &dataTypeTable()
{
    static const QList<DataSetReader> table {
        { DataType::Photos, &readCameraRoll },
        { DataType::Videos, &readCameraRoll },
        { DataType::SharedAlbums, &readSharedAlbums },
        { DataType::VoiceMemos, &readVoiceMemos },
        { DataType::Books, &readBooks },
        { DataType::Music, &readSongs },
        { DataType::Messages, &readMessages },
        { DataType::MessageAttachments, &readMessageFiles },
        { DataType::Contacts, &readContacts },
        { DataType::Notes, &readNotes },
        { DataType::AppDocuments, &readAppDocuments },
        { DataType::Whatsapp, &readWhatsapp },
        { DataType::WhatsappAttachments, &readWhatsappFiles },
        { DataType::Reminders, &readReminderTable },
        { DataType::Calendar, &readEventTable },
        { DataType::Calls, &readAllCalls },
        { DataType::Voicemail, &readVoicemailFiles },
        { DataType::Safari, &readSafari },
        { DataType::NoteAttachments, &readNotes },
    };
    return table;
}

} // namespace PhoneItems
