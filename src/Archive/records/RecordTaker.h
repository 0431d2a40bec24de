#ifndef ARCHIVE_RECORDS_RECORDTAKER_H
#define ARCHIVE_RECORDS_RECORDTAKER_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <variant>
#include <vector>

namespace PhoneBackup {
class MessageList;
class People;
class WhatsappStore;
struct AppDocument;
struct Book;
struct Bookmark;
struct Call;
struct Contact;
struct Conversation;
struct Event;
struct Message;
struct Note;
struct Photo;
struct Reminder;
struct SharedAlbum;
struct Song;
struct VisitedPage;
struct VoiceMemo;
struct Voicemail;
struct WhatsappChat;
struct WhatsappMember;
struct WhatsappMessage;
} // namespace PhoneBackup

namespace Archive {

//! Somebody in the address book.
struct Person
{
    const QString &name; //!< As lists show it.
    const PhoneBackup::Contact &contact;
    int number; //!< In the address book.
    std::function<QByteArray()> photo; //!< Reads the file of the photo; empty without one.
};

//! A conversation, before its messages.
struct ConversationOf
{
    const PhoneBackup::Conversation &conversation;
    const PhoneBackup::People &people;
};

//! A message in its conversation: what others say of it stands with it.
struct MessageOf
{
    const PhoneBackup::MessageList &list;
    const PhoneBackup::Message &message;
};

//! A chat, before its messages.
struct ChatOf
{
    const PhoneBackup::WhatsappChat &chat;
    const std::vector<PhoneBackup::WhatsappMember> &members;
};

//! A voice memo or a voicemail, with what the phone understood of it.
template <class Recording>
struct Transcribed
{
    const Recording &recording;
    const QString &transcript;
};

//! A file of the notes that belongs to no note.
struct FileOfNoNote
{
    PhoneBackup::FileIndex::Row row;
};

//! Any record. What it refers to lasts until the call that gives it returns.
using Record = std::variant<const Person *,
                            const ConversationOf *,
                            const MessageOf *,
                            const ChatOf *,
                            const PhoneBackup::WhatsappMessage *,
                            const PhoneBackup::Call *,
                            const Transcribed<PhoneBackup::Voicemail> *,
                            const PhoneBackup::Photo *,
                            const PhoneBackup::SharedAlbum *,
                            const Transcribed<PhoneBackup::VoiceMemo> *,
                            const PhoneBackup::Book *,
                            const PhoneBackup::Song *,
                            const PhoneBackup::AppDocument *,
                            const PhoneBackup::Note *,
                            const FileOfNoNote *,
                            const PhoneBackup::Event *,
                            const PhoneBackup::Reminder *,
                            const PhoneBackup::Bookmark *,
                            const PhoneBackup::VisitedPage *>;

//! Takes records as they are read, in the order of their reader.
class RecordTaker
{
public:
    RecordTaker() = default;
    virtual ~RecordTaker();

    RecordTaker(const RecordTaker &) = delete;
    RecordTaker &operator=(const RecordTaker &) = delete;

    virtual void takeRecord(const Record &record) = 0;

    //! Takes a record of any kind.
    template <class OfKind>
    void take(const OfKind &record)
    {
        takeRecord(&record);
    }
};

//! A \a Taker that has a function take() for each kind of record that it wants.
template <class Taker>
class TakerOf : public RecordTaker
{
public:
    void takeRecord(const Record &record) final
    {
        auto &taker = static_cast<Taker &>(*this);
        std::visit(
            [&taker](const auto *one) {
                if constexpr (requires { taker.take(*one); })
                    taker.take(*one);
            },
            record);
    }
};

} // namespace Archive

#endif
