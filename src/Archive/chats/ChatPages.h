#ifndef ARCHIVE_CHATS_CHATPAGES_H
#define ARCHIVE_CHATS_CHATPAGES_H

#include "Archive/chats/Bubble.h"

#include <QSet>
#include <QString>

#include <vector>

namespace Archive {

struct Site;

//! What is told of a conversation as a whole.
struct ChatHead
{
    QByteArray identity; //!< The same from backup to backup; its folder is named after it.
    QString title;
    QString about; //!< Numbers and addresses, members.
    QString service; //!< "iMessage", "WhatsApp group".
    QString avatar; //!< Path of a small picture in the archive; empty for none.
    bool isGroup = false;
    bool isDeleted = false;
};

/*!
    \brief Writes conversations: pages of at most kMessagesPerPage messages, what is told of each as a
    whole, and the list of all.

    A page keeps its number and its messages once another one has followed it.
*/
class ChatPages
{
public:
    static constexpr int kMessagesPerPage = 1000;

    //! \a site is borrowed.
    explicit ChatPages(Site &site);

    //! Starts the next conversation. \return its folder in the archive.
    QString begin(const ChatHead &head);

    //! Adds the next message of it.
    void add(Bubble &&bubble);

    //! Writes the list of all conversations. Nothing is written when there are none.
    void finish();

    //! The page and anchor of the message \a number, from 0, of a conversation.
    static QByteArray pageOf(qint64 number, const QByteArray &anchor);

    //! An anchor for a message with this identity, or else with this row.
    static QByteArray anchorOf(const QByteArray &identity, qint64 row);

    //! "Read 17:31", or with the day where that is another than that of \a sentMs.
    QString timeText(const QString &what, qint64 ms, qint64 sentMs);

private:
    struct Month
    {
        int key; // year * 12 + month from 0
        QByteArray page; // of the first message
        int count;
    };
    struct Shown
    {
        PhoneBackup::FileIndex::Row file;
        Media media;
        QByteArray page;
    };
    struct Entry
    {
        ChatHead head;
        QString folder;
        qint64 count = 0;
        qint64 firstMs;
        qint64 lastMs;
        QString lastText;
        QByteArray lastPage; // "12.html"
        bool hasMedia = false;
    };

    void end();
    void flush(bool isLast);
    QByteArray head(int number, bool isLast);
    void writeMonths();
    void writeOverview();
    void writeMedia();
    QByteArray listed(const Entry &entry, const MediaHtml &media) const;

    Site &m_site;
    std::vector<Entry> m_entries;
    QSet<QString> m_folders;
    bool m_isOpen = false;
    bool m_isFinished = false;
    int m_place = 0; // in the search
    int m_pages = 0; // written of the conversation
    std::vector<Bubble> m_page; // not yet written
    std::vector<Month> m_months;
    std::vector<Shown> m_media;
    qint64 m_messages = 0;
};

} // namespace Archive

#endif
