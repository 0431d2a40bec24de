#include "sample/SampleBackup.h"

#include "sample/AppDocumentSample.h"
#include "sample/BookSample.h"
#include "sample/CallSample.h"
#include "sample/CameraRollSample.h"
#include "sample/ContactSample.h"
#include "sample/IndexRowsSample.h"
#include "sample/MessageSample.h"
#include "sample/NoteSample.h"
#include "sample/PlannerSample.h"
#include "sample/RingtoneSample.h"
#include "sample/SafariSample.h"
#include "sample/SystemSample.h"
#include "sample/VoiceMemoSample.h"
#include "sample/VoicemailSample.h"
#include "sample/WhatsappSample.h"

namespace Sample {

void addSampleContents(BackupWriter &writer, const Options &options)
{
    addSystemFiles(writer, options);
    addCameraRoll(writer, options);
    addVoiceMemos(writer, options);
    addBooks(writer, options);
    addRingtones(writer, options);
    addAppDocuments(writer, options);
    addVoicemails(writer, options);
    addMessages(writer, options);
    addContacts(writer, options);
    addNotes(writer, options);
    addPlanner(writer, options);
    addWhatsapp(writer, options);
    addCalls(writer, options);
    addBrowserData(writer, options);
    addIndexRows(writer, options);
}

} // namespace Sample
