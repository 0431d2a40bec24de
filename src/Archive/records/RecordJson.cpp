#include "Archive/records/RecordJson.h"

#include "Archive/records/CallFields.h"
#include "Archive/records/ContactFields.h"
#include "Archive/records/MediaFields.h"
#include "Archive/records/MessageFields.h"
#include "Archive/records/NoteFields.h"
#include "Archive/records/PlannerFields.h"
#include "Archive/records/SafariFields.h"
#include "Archive/records/WhatsappFields.h"
#include "PhoneBackup/whatsapp/WhatsappStore.h"

using namespace PhoneBackup;

namespace Archive {

// Facts that readers tell beside a record.
// NOLINTBEGIN(misc-use-anonymous-namespace): FieldWriter finds these by the namespace of its own,
// and would not look into one without a name.

static void fields(FieldWriter &field, const Person &person)
{
    field("name", person.name);
    fields(field, person.contact);
}

template <class Recording>
static void fields(FieldWriter &field, const Transcribed<Recording> &of)
{
    fields(field, of.recording);
    field("transcript", of.transcript);
}

static void fields(FieldWriter &field, const ConversationOf &of)
{
    fields(field, of.conversation);
}

static void fields(FieldWriter &field, const ChatOf &of)
{
    fields(field, of.chat);
    field("business", of.chat.store->isBusiness());
    field("picture", File { of.chat.store->picture(of.chat.jid) });
    field("members", of.members);
}

static void fields(FieldWriter &field, const FileOfNoNote &of)
{
    field("file", File { of.row });
}

// NOLINTEND(misc-use-anonymous-namespace)

namespace {

qint64 msOf(const QDateTime &date)
{
    return date.isValid() ? date.toMSecsSinceEpoch() : PhoneTime::kNoMs;
}

// What records of a kind are ordered by in their file, where that is a date.
template <class OfKind>
qint64 dateOf(const OfKind & /*record*/)
{
    return PhoneTime::kNoMs;
}

template <>
qint64 dateOf(const Call &call)
{
    return msOf(call.date);
}

template <>
qint64 dateOf(const Transcribed<Voicemail> &of)
{
    return msOf(of.recording.date);
}

template <>
qint64 dateOf(const Photo &photo)
{
    return msOf(photo.taken);
}

template <>
qint64 dateOf(const Transcribed<VoiceMemo> &of)
{
    return msOf(of.recording.date);
}

template <>
qint64 dateOf(const Note &note)
{
    return msOf(note.created);
}

template <>
qint64 dateOf(const Event &event)
{
    return msOf(event.start.moment());
}

template <>
qint64 dateOf(const Reminder &reminder)
{
    return msOf(reminder.due.isValid() ? reminder.due.moment() : reminder.created);
}

template <>
qint64 dateOf(const VisitedPage &page)
{
    return msOf(page.visited);
}

} // namespace

RecordJson::RecordJson(const FileNames &files, Sink sink)
    : m_files(files)
    , m_sink(std::move(sink))
{
}

void RecordJson::takeRecord(const Record &record)
{
    std::visit(
        [this](const auto *one) {
            m_record.line.resize(0);
            m_record.dateMs = dateOf(*one);
            FieldWriter(m_record.line, m_files).put(*one);
        },
        record);
    m_sink(m_record);
}

} // namespace Archive
