#include "model/DataTypes.h"

#include "model/AppDocuments.h"
#include "model/Audio.h"
#include "model/Books.h"
#include "model/CameraRoll.h"
#include "model/Contacts.h"
#include "model/MessageFiles.h"
#include "model/Messages.h"
#include "model/SharedAlbums.h"
#include "model/VoiceMemos.h"
#include "model/Voicemail.h"

namespace PhoneBackup {

const QList<DataType> &dataTypeTable()
{
    static const QList<DataType> table {
        { 0, &readCameraRoll },    { 1, &readCameraRoll },   { 2, &readSharedAlbums },
        { 3, &readVoiceMemos },    { 4, &readBooks },        { 5, &readAudio },
        { 6, &readMessages },      { 7, &readMessageFiles }, { 8, &readContacts },
        { 10, &readAppDocuments }, { 16, &readVoicemail },
    };
    return table;
}

} // namespace PhoneBackup
