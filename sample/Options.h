#ifndef SAMPLE_OPTIONS_H
#define SAMPLE_OPTIONS_H

#include <QList>

namespace Sample {

//! What a sample backup holds. A count of 0 leaves out all that belongs to that kind of data.
struct Options
{
    static constexpr int kShowcase = -1;

    quint64 seed = 1;
    int photos = 24;
    int videos = 3;
    int sharedPhotos = 6;
    int voiceMemos = 5;
    int books = 4;
    int ringtones = 3;
    int appDocuments = 12;
    int voicemails = 5;
    int messages = kShowcase; //!< kShowcase: a few conversations with every kind of message.
    int conversations = 20; //!< For the messages, when they are counted.
    int messagesRelease = 18; //!< iOS release whose tables the messages stand in, 6 to 18.
    int contacts = kShowcase; //!< kShowcase: the people who write, and every kind of entry.
    int contactPhotos = 0; //!< For the contacts, when they are counted; 100 KB each.
    int notes = 9;
    int events = 9;
    int reminders = 8;
    int plannerRelease = 18; //!< iOS release whose stores these three stand in, 6 to 18.
    int whatsappMessages = kShowcase; //!< kShowcase: a few chats with every kind of message.
    int whatsappChats = 20; //!< For WhatsApp's messages, when they are counted.
    int calls = 40;
    int bookmarks = 14; //!< Those of the reading list among them.
    int history = 25; //!< Visited pages.
    int indexRows = 0; //!< Rows of the index on top, folders among them, without content files.
    bool oldStyle = false; //!< Databases of system version 9 where they differ.
    QList<qint64> fileSizesBytes; //!< Of photos and videos, in turn; empty: as they come.
};

} // namespace Sample

#endif
