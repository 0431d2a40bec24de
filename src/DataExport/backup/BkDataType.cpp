#include "backup/BkDataType.h"

#include "platform/Translation_p.h"

#include <algorithm>

// In the order in which they are exported, which is also that of the progress. The words are those
// of the program's options and must stay.
const QList<BkDataType> &BkDataType::all()
{
    using enum Code;
    static const QList<BkDataType> types {
        { Photos, Form::Files, "photos", QT_TRANSLATE_NOOP("DataExport", "Photos") },
        { Videos, Form::Files, "videos", QT_TRANSLATE_NOOP("DataExport", "Videos") },
        { SharedAlbums,
          Form::Files,
          "shared-albums",
          QT_TRANSLATE_NOOP("DataExport", "Shared Albums") },
        { Contacts, Form::Contacts, "contacts", QT_TRANSLATE_NOOP("DataExport", "Contacts") },
        { Messages, Form::Messages, "messages", QT_TRANSLATE_NOOP("DataExport", "Messages") },
        { MessageAttachments,
          Form::Files,
          "message-attachments",
          QT_TRANSLATE_NOOP("DataExport", "Message Attachments") },
        { Notes, Form::Table, "notes", QT_TRANSLATE_NOOP("DataExport", "Notes") },
        { Calendar, Form::Table, "calendar", QT_TRANSLATE_NOOP("DataExport", "Calendar") },
        { Reminders, Form::Table, "reminders", QT_TRANSLATE_NOOP("DataExport", "Reminders") },
        { Calls,
          Form::Table,
          "calls",
          QT_TRANSLATE_NOOP("DataExport", "Call History"),
          "call-history" },
        { Voicemail, Form::Files, "voicemail", QT_TRANSLATE_NOOP("DataExport", "Voicemail") },
        { Safari, Form::Bookmarks, "safari", QT_TRANSLATE_NOOP("DataExport", "Safari") },
        { Whatsapp, Form::Whatsapp, "whatsapp", QT_TRANSLATE_NOOP("DataExport", "WhatsApp") },
        { WhatsappAttachments,
          Form::Files,
          "whatsapp-attachments",
          QT_TRANSLATE_NOOP("DataExport", "WhatsApp Attachments") },
        { VoiceMemos, Form::Files, "voice-memos", QT_TRANSLATE_NOOP("DataExport", "Voice Memos") },
        { Books, Form::Files, "books", QT_TRANSLATE_NOOP("DataExport", "Books") },
        { Music,
          Form::Files,
          "music",
          QT_TRANSLATE_NOOP("DataExport", "Ringtones and Music"),
          "ringtones-and-music" },
        { NoteAttachments,
          Form::Files,
          "note-attachments",
          QT_TRANSLATE_NOOP("DataExport", "Note Attachments") },
        { AppDocuments,
          Form::Files,
          "app-documents",
          QT_TRANSLATE_NOOP("DataExport", "App Documents") },
    };
    return types;
}

QString BkDataType::displayName() const
{
    return DataExport::tr(name);
}

const BkDataType *BkDataType::find(int code)
{
    const auto found = std::find_if(
        all().begin(), all().end(), [code](const BkDataType &type) { return type.code == code; });
    return found == all().end() ? nullptr : &*found;
}

QList<CIExportReport::Output> BkDataType::outputs() const
{
    using Output = CIExportReport::Output;
    switch (form) {
    case Form::Files:
        return { Output::Copies };
    case Form::Contacts:
        return { Output::Page, Output::Table, Output::Cards };
    case Form::Messages:
    case Form::Whatsapp:
        return { Output::Page, Output::Table };
    case Form::Table:
    case Form::Bookmarks:
        break;
    }
    return { Output::Page };
}
