#include "model/DataTypes.h"

#include "model/AppDocuments.h"
#include "model/Audio.h"
#include "model/Books.h"
#include "model/Calendar.h"
#include "model/CallHistory.h"
#include "model/CameraRoll.h"
#include "model/Contacts.h"
#include "model/MessageFiles.h"
#include "model/Messages.h"
#include "model/Notes.h"
#include "model/Reminders.h"
#include "model/Safari.h"
#include "model/SharedAlbums.h"
#include "model/VoiceMemos.h"
#include "model/Voicemail.h"
#include "model/WhatsappData.h"
#include "model/WhatsappFiles.h"

namespace PhoneBackup {

const QList<DataType> &dataTypeTable()
{
    static const QList<DataType> table {
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
