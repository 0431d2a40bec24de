#include "PhoneItems/DataTypes.h"

#include "PhoneBackup/calls/CallHistory.h"
#include "PhoneBackup/calls/Voicemail.h"
#include "PhoneBackup/contacts/Contacts.h"
#include "PhoneBackup/media/AppDocuments.h"
#include "PhoneBackup/media/Audio.h"
#include "PhoneBackup/media/Books.h"
#include "PhoneBackup/media/CameraRoll.h"
#include "PhoneBackup/media/SharedAlbums.h"
#include "PhoneBackup/media/VoiceMemos.h"
#include "PhoneBackup/messages/MessageFiles.h"
#include "PhoneBackup/messages/Messages.h"
#include "PhoneBackup/notes/Notes.h"
#include "PhoneBackup/planner/Calendar.h"
#include "PhoneBackup/planner/Reminders.h"
#include "PhoneBackup/safari/Safari.h"
#include "PhoneBackup/whatsapp/WhatsappFiles.h"
#include "PhoneItems/whatsapp/WhatsappData.h"

namespace PhoneBackup {

const QList<DataSetReader> &dataTypeTable()
{
    static const QList<DataSetReader> table {
        { 0, &readCameraRoll },     { 1, &readCameraRoll },    { 2, &readSharedAlbums },
        { 3, &readVoiceMemos },     { 4, &readBooks },         { 5, &readAudio },
        { 6, &readMessages },       { 7, &readMessageFiles },  { 8, &readContacts },
        { 9, &readNotes },          { 10, &readAppDocuments }, { 11, &readWhatsapp },
        { 12, &readWhatsappFiles }, { 13, &readReminders },    { 14, &readCalendar },
        { 15, &readCallHistory },   { 16, &readVoicemail },    { 17, &readSafari },
        { 18, &readNotes },
    };
    return table;
}

} // namespace PhoneBackup
