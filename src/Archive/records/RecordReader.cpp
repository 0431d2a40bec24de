#include "Archive/records/RecordReader.h"

#include "Archive/records/CallFields.h"
#include "Archive/records/ContactFields.h"
#include "Archive/records/MediaFields.h"
#include "Archive/records/MessageFields.h"
#include "Archive/records/NoteFields.h"
#include "Archive/records/PlannerFields.h"
#include "Archive/records/SafariFields.h"
#include "Archive/records/WhatsappFields.h"
#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/calls/CallReader.h"
#include "PhoneBackup/contacts/ContactOrder.h"
#include "PhoneBackup/contacts/ContactReader.h"
#include "PhoneBackup/media/MusicLibrary.h"
#include "PhoneBackup/media/PhotoFacts.h"
#include "PhoneBackup/media/PhotoReader.h"
#include "PhoneBackup/messages/MessageSource.h"
#include "PhoneBackup/notes/Notes.h"
#include "PhoneBackup/planner/Events.h"
#include "PhoneBackup/planner/Reminders.h"
#include "PhoneBackup/safari/Bookmarks.h"
#include "PhoneBackup/safari/BrowserHistory.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/whatsapp/WhatsappCalls.h"
#include "PhoneBackup/whatsapp/WhatsappStore.h"

#include <algorithm>

using namespace PhoneBackup;

namespace Archive {

// Facts that readers tell beside a record.
// NOLINTBEGIN(misc-use-anonymous-namespace): FieldWriter finds these by the namespace of its own,
// and would not look into one without a name.

struct Person
{
    const QString &name;
    const Contact &contact;
};

static void fields(FieldWriter &field, const Person &person)
{
    field("name", person.name);
    fields(field, person.contact);
}

struct WithTranscript
{
    const VoiceMemo *memo;
    const Voicemail *voicemail;
    const QString &transcript;
};

static void fields(FieldWriter &field, const WithTranscript &of)
{
    if (of.memo)
        fields(field, *of.memo);
    else
        fields(field, *of.voicemail);
    field("transcript", of.transcript);
}

struct ChatWithMembers
{
    const WhatsappChat &chat;
    const std::vector<WhatsappMember> &members;
};

static void fields(FieldWriter &field, const ChatWithMembers &of)
{
    fields(field, of.chat);
    field("business", of.chat.store->isBusiness());
    field("picture", File { of.chat.store->picture(of.chat.jid) });
    field("members", of.members);
}

struct FileOfNoNote
{
    FileIndex::Row row;
};

static void fields(FieldWriter &field, const FileOfNoNote &of)
{
    field("file", File { of.row });
}

// NOLINTEND(misc-use-anonymous-namespace)

namespace {

// Gives records to a sink, each in the same bytes.
class Lines
{
public:
    Lines(const FileNames &files, const RecordSink &sink)
        : m_files(files)
        , m_sink(sink)
    {
    }

    template <class Record>
    void operator()(const Record &record)
    {
        m_line.resize(0);
        FieldWriter(m_line, m_files).put(record);
        m_sink(m_line);
    }

private:
    const FileNames &m_files;
    const RecordSink &m_sink;
    QByteArray m_line;
};

void readPeople(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    const AddressBook &book = source.addressBook();
    reportContactLosses(source);
    if (!book.database())
        return;
    ContactReader reader(source, book);
    for (const int number : contactOrder(book.people(), phoneLocale(source))) {
        const AddressBook::Person &person = book.people()[std::size_t(number)];
        Contact contact;
        if (reader.read(person, contact))
            line(Person { person.name, contact });
    }
}

void readMessages(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    const auto messages = MessageSource::open(source);
    if (!messages)
        return;
    MessageList list;
    for (const Conversation &conversation : messages->takeConversations()) {
        line(conversation);
        list.clear();
        messages->read(conversation, list);
        std::vector<bool> isTold(list.messages().size());
        for (const Message &message : list.messages()) {
            if (!message.extras)
                continue;
            for (const qsizetype place : message.extras->reactions)
                isTold[std::size_t(place)] = true;
        }
        for (std::size_t i = 0; i < isTold.size(); ++i) {
            if (!isTold[i])
                line(MessageOf { list, list.messages()[i] });
        }
    }
}

void readWhatsapp(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    const auto stores = WhatsappStore::openAll(source);
    std::vector<WhatsappChat> chats;
    for (const auto &store : stores) {
        std::vector<WhatsappChat> some = store->takeChats();
        std::move(some.begin(), some.end(), std::back_inserter(chats));
    }
    std::stable_sort(chats.begin(), chats.end(), [](const WhatsappChat &a, const WhatsappChat &b) {
        return a.lastDateMs > b.lastDateMs;
    });
    for (const WhatsappChat &chat : chats) {
        const bool hasMembers = chat.kind == WhatsappChat::Kind::Group;
        line(ChatWithMembers {
            chat, hasMembers ? chat.store->members(chat) : std::vector<WhatsappMember>() });
        chat.store->reader().read(chat, [&](WhatsappMessage &&message) { line(message); });
    }
}

void readAllCalls(Source &source, const FileNames &files, const RecordSink &sink)
{
    readCalls(source, readWhatsappCalls(source, DataType::Calls), Lines(files, sink));
}

void readAllVoicemail(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    for (const Voicemail &voicemail : readVoicemail(source))
        line(WithTranscript { nullptr, &voicemail, transcriptOf(source, voicemail) });
}

void readCameraRoll(Source &source, const FileNames &files, const RecordSink &sink)
{
    readPhotos(source, Lines(files, sink));
}

void readSharedAlbums(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    PhotoFacts facts(source, DataType::SharedAlbums);
    for (const SharedAlbum &album : sharedAlbums(source)) {
        line(album);
        for (const FileIndex::Row row : album.files) {
            Photo photo;
            photo.file = row;
            facts.describe(row, photo);
            line(photo);
        }
    }
}

void readVoiceMemos(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    for (const VoiceMemo &memo : voiceMemos(source))
        line(WithTranscript { &memo, nullptr, transcriptOf(source, memo) });
}

void readBooks(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    for (const Book &book : books(source))
        line(book);
}

void readMusic(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    const MusicLibrary library(source);
    readSongs(source, [&](Song song) {
        library.describe(song);
        line(song);
    });
}

void readDocuments(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    const AppDocuments documents(source);
    for (std::size_t i = 0; i < documents.count(); ++i)
        line(documents.at(i));
}

void readAllNotes(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    for (const FileIndex::Row row : readNotes(source, [&](const Note &note) { line(note); }))
        line(FileOfNoNote { row });
}

void readCalendar(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    for (const Event &event : readEvents(source))
        line(event);
}

void readAllReminders(Source &source, const FileNames &files, const RecordSink &sink)
{
    Lines line(files, sink);
    for (const Reminder &reminder : readReminders(source))
        line(reminder);
}

void readAllBookmarks(Source &source, const FileNames &files, const RecordSink &sink)
{
    readBookmarks(source, Lines(files, sink));
}

void readVisits(Source &source, const FileNames &files, const RecordSink &sink)
{
    BrowserHistory(source).read(Lines(files, sink));
}

} // namespace

const QList<RecordKind> &recordKinds()
{
    static const QList<RecordKind> kinds {
        { "people", &readPeople },
        { "messages", &readMessages },
        { "whatsapp", &readWhatsapp },
        { "calls", &readAllCalls },
        { "voicemail", &readAllVoicemail },
        { "photos", &readCameraRoll },
        { "albums", &readSharedAlbums },
        { "memos", &readVoiceMemos },
        { "books", &readBooks },
        { "songs", &readMusic },
        { "documents", &readDocuments },
        { "notes", &readAllNotes },
        { "events", &readCalendar },
        { "reminders", &readAllReminders },
        { "bookmarks", &readAllBookmarks },
        { "visits", &readVisits },
    };
    return kinds;
}

const RecordKind *recordKind(QByteArrayView name)
{
    const auto found = std::find_if(recordKinds().begin(),
                                    recordKinds().end(),
                                    [name](const RecordKind &kind) { return kind.name == name; });
    return found == recordKinds().end() ? nullptr : &*found;
}

} // namespace Archive
