#ifndef TESTS_PHONEBACKUP_MESSAGEFIXTURE_H
#define TESTS_PHONEBACKUP_MESSAGEFIXTURE_H

#include "BackupFixture.h"
#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSItem.h"
#include "message/BkSMSPiece.h"
#include "sample/MessageSchema.h"

//! A backup with a message database, and what the reader makes of it as lines of text.
class MessageFixture : public BackupFixture
{
public:
    static constexpr int kMessages = 6;
    static constexpr int kFiles = 7;

    //! Adds the tables of a release filled by \a sql.
    void addMessages(const QByteArray &sql, int iosRelease = 18)
    {
        addDatabase(database((Sample::messageTables(iosRelease) + sql).constData()));
    }

    void addDatabase(const QByteArray &image)
    {
        writer.addFile(QStringLiteral("HomeDomain"), QStringLiteral("Library/SMS/sms.db"), image);
    }

    //! Every conversation as "name|phone|email", with "|deleted" behind those that are.
    QStringList conversations()
    {
        QStringList lines;
        const BkData *data = set();
        for (int i = 0; data && i < data->count(1); ++i) {
            const BkAbstractItem *item = data->at(i, true);
            lines.append(item->value(0) + QLatin1Char('|') + item->value(1) + QLatin1Char('|')
                         + item->value(2)
                         + (item->flag(0) ? QStringLiteral("|deleted") : QString()));
        }
        return lines;
    }

    /*!
        The messages of a conversation: "> " before the owner's, else "address: ", then the text
        with "subject / " before it and "{type name}" for each file.
    */
    QStringList messages(int conversation = 0)
    {
        const BkSMSChatGroup *group = content(conversation);
        if (!group)
            return { QStringLiteral("not read") };
        QStringList lines;
        for (const BkSMSChat *chat : group->chats()) {
            QString line =
                chat->isFromMe() ? QStringLiteral("> ") : chat->addr() + QStringLiteral(": ");
            if (!chat->subject().isEmpty())
                line += chat->subject() + QStringLiteral(" / ");
            line += chat->content();
            for (const BkSMSPiece *piece : chat->pieces()) {
                line += piece->pieceType() == QLatin1String("text/plain")
                    ? QLatin1Char('+') + QString::fromUtf8(piece->pieceData())
                    : QStringLiteral("{%1 %2}").arg(piece->pieceType(), piece->pieceLocation());
            }
            lines.append(line.replace(QLatin1Char('\n'), QLatin1Char('|')));
        }
        return lines;
    }

    BkSMSChatGroup *content(int conversation = 0)
    {
        const BkData *data = set();
        auto *item = data ? dynamic_cast<BkSMSItem *>(data->at(conversation, true)) : nullptr;
        return item ? item->detailContent() : nullptr;
    }

    BkData *set(int code = kMessages)
    {
        if (!m_opened)
            m_opened = open();
        return m_opened ? m_opened->getBkData(code) : nullptr;
    }

private:
    PhoneBackup::Backup *m_opened = nullptr;
};

#endif
