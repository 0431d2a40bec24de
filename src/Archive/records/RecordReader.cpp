#include "Archive/records/RecordReader.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/calls/CallReader.h"
#include "PhoneBackup/calls/Voicemail.h"
#include "PhoneBackup/contacts/ContactOrder.h"
#include "PhoneBackup/contacts/ContactReader.h"
#include "PhoneBackup/media/AppDocuments.h"
#include "PhoneBackup/media/Books.h"
#include "PhoneBackup/media/MusicLibrary.h"
#include "PhoneBackup/media/PhotoFacts.h"
#include "PhoneBackup/media/PhotoReader.h"
#include "PhoneBackup/media/SharedAlbums.h"
#include "PhoneBackup/media/Songs.h"
#include "PhoneBackup/media/VoiceMemos.h"
#include "PhoneBackup/messages/MessageList.h"
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

namespace {

auto to(RecordTaker &taker)
{
    return [&taker](const auto &record) { taker.take(record); };
}

bool isFiltered(const MessageFilter &filter)
{
    return filter.since.isValid() || filter.until.isValid();
}

void readPeople(Source &source, RecordTaker &taker)
{
    const AddressBook &book = source.addressBook();
    reportContactLosses(source);
    if (!book.database())
        return;
    ContactReader reader(source, book);
    for (const int number : contactOrder(book.people(), phoneLocale(source))) {
        const AddressBook::Person &person = book.people()[std::size_t(number)];
        Contact contact;
        if (reader.read(person, contact))
            taker.take(
                Person { person.name, contact, number, [&] { return reader.photo(person); } });
    }
}

void readMessages(Source &source, RecordTaker &taker)
{
    const auto messages = MessageSource::open(source);
    if (!messages)
        return;
    const MessageFilter &filter = source.messageFilter();
    MessageList list;
    for (const Conversation &conversation : messages->takeConversations()) {
        if (!source.keepGoing())
            return;
        if (!filter.chats.isEmpty()
            && !filter.accepts(conversation.names + QStringList(conversation.title),
                               conversation.addresses))
            continue;
        list.clear();
        messages->read(conversation, list);
        const auto isWanted = [&](const Message &message) {
            return !isFiltered(filter) || filter.accepts(PhoneTime::ofMs(message.dateMs));
        };
        if (std::none_of(list.messages().begin(), list.messages().end(), isWanted)
            && !list.messages().empty())
            continue;
        taker.take(ConversationOf { conversation, messages->people() });
        std::vector<bool> isTold(list.messages().size());
        for (const Message &message : list.messages()) {
            if (!message.extras || !isWanted(message))
                continue;
            for (const qsizetype place : message.extras->reactions)
                isTold[std::size_t(place)] = true;
        }
        for (std::size_t i = 0; i < isTold.size(); ++i) {
            const Message &message = list.messages()[i];
            if (!isTold[i] && isWanted(message))
                taker.take(MessageOf { list, message });
        }
    }
}

void readWhatsapp(Source &source, RecordTaker &taker)
{
    const auto stores = WhatsappStore::openAll(source);
    std::vector<WhatsappChat> chats;
    for (const auto &store : stores) {
        std::vector<WhatsappChat> some = store->takeChats();
        std::move(some.begin(), some.end(), std::back_inserter(chats));
    }
    std::stable_sort(chats.begin(), chats.end(), [](const WhatsappChat &a, const WhatsappChat &b) {
        return a.lastDateMs > b.lastDateMs;
    });
    const MessageFilter &filter = source.messageFilter();
    for (const WhatsappChat &chat : chats) {
        if (!source.keepGoing())
            return;
        const bool hasMembers = chat.kind == WhatsappChat::Kind::Group;
        taker.take(ChatOf {
            chat, hasMembers ? chat.store->members(chat) : std::vector<WhatsappMember>() });
        chat.store->reader().read(chat, [&](WhatsappMessage &&message) {
            if (!isFiltered(filter) || filter.accepts(message.date))
                taker.take(message);
        });
    }
}

void readAllCalls(Source &source, RecordTaker &taker)
{
    readCalls(source, readWhatsappCalls(source, DataType::Calls), to(taker));
}

void readAllVoicemail(Source &source, RecordTaker &taker)
{
    for (const Voicemail &voicemail : readVoicemail(source))
        taker.take(Transcribed<Voicemail> { voicemail, transcriptOf(source, voicemail) });
}

void readCameraRoll(Source &source, RecordTaker &taker)
{
    readPhotos(source, to(taker));
}

void readSharedAlbums(Source &source, RecordTaker &taker)
{
    PhotoFacts facts(source, DataType::SharedAlbums);
    for (const SharedAlbum &album : sharedAlbums(source)) {
        taker.take(album);
        for (const FileIndex::Row row : album.files) {
            Photo photo;
            photo.file = row;
            facts.describe(row, photo);
            taker.take(photo);
        }
    }
}

void readVoiceMemos(Source &source, RecordTaker &taker)
{
    for (const VoiceMemo &memo : voiceMemos(source))
        taker.take(Transcribed<VoiceMemo> { memo, transcriptOf(source, memo) });
}

void readBooks(Source &source, RecordTaker &taker)
{
    for (const Book &book : books(source))
        taker.take(book);
}

void readMusic(Source &source, RecordTaker &taker)
{
    const MusicLibrary library(source);
    readSongs(source, [&](Song song) {
        library.describe(song);
        taker.take(song);
    });
}

void readDocuments(Source &source, RecordTaker &taker)
{
    const AppDocuments documents(source);
    for (std::size_t i = 0; i < documents.count(); ++i)
        taker.take(documents.at(i));
}

void readAllNotes(Source &source, RecordTaker &taker)
{
    for (const FileIndex::Row row : readNotes(source, [&](const Note &note) { taker.take(note); }))
        taker.take(FileOfNoNote { row });
}

void readCalendar(Source &source, RecordTaker &taker)
{
    for (const Event &event : readEvents(source))
        taker.take(event);
}

void readAllReminders(Source &source, RecordTaker &taker)
{
    for (const Reminder &reminder : readReminders(source))
        taker.take(reminder);
}

void readAllBookmarks(Source &source, RecordTaker &taker)
{
    readBookmarks(source, to(taker));
}

void readVisits(Source &source, RecordTaker &taker)
{
    BrowserHistory(source).read(to(taker));
}

} // namespace

const QList<RecordKind> &recordKinds()
{
    static const QList<RecordKind> kinds {
        { "people", { DataType::Contacts }, &readPeople },
        { "messages", { DataType::Messages }, &readMessages },
        { "whatsapp", { DataType::Whatsapp }, &readWhatsapp },
        { "calls", { DataType::Calls }, &readAllCalls },
        { "voicemail", { DataType::Voicemail }, &readAllVoicemail },
        { "photos", { DataType::Photos, DataType::Videos }, &readCameraRoll },
        { "albums", { DataType::SharedAlbums }, &readSharedAlbums },
        { "memos", { DataType::VoiceMemos }, &readVoiceMemos },
        { "books", { DataType::Books }, &readBooks },
        { "songs", { DataType::Music }, &readMusic },
        { "documents", { DataType::AppDocuments }, &readDocuments },
        { "notes", { DataType::Notes }, &readAllNotes },
        { "events", { DataType::Calendar }, &readCalendar },
        { "reminders", { DataType::Reminders }, &readAllReminders },
        { "bookmarks", { DataType::Safari }, &readAllBookmarks },
        { "visits", { DataType::Safari }, &readVisits },
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
