#ifndef TESTS_SUPPORT_FAKESMS_H
#define TESTS_SUPPORT_FAKESMS_H

#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSData.h"
#include "message/BkSMSItem.h"
#include "message/BkSMSPiece.h"

#include <memory>
#include <vector>

class FakeSMSPiece : public BkSMSPiece
{
public:
    const QString &pieceType() const override { return type; }
    const QByteArray &pieceData() const override
    {
        ++timesAsked;
        return data;
    }
    const QString &pieceLocation() const override { return location; }
    QString fault() const override { return toBlame; }

    QString type;
    QByteArray data;
    QString location;
    QString toBlame;
    mutable int timesAsked = 0;
};

//! A received and delivered SMS, unless it is told otherwise.
class FakeSMSChat : public BkSMSChat
{
public:
    bool isFromMe() const override { return fromMe; }
    bool isSentDone() const override { return done; }
    bool isNormalSMS() const override { return sms; }
    QDateTime msgDate() const override { return date; }
    const QString &addr() const override { return address; }
    const QString &subject() const override { return title; }
    const QString &content() const override { return text; }
    const QList<BkSMSPiece *> &pieces() const override { return m_pieces; }

    FakeSMSPiece &addPiece(const QString &type, const QByteArray &data, const QString &location)
    {
        m_owned.push_back(std::make_unique<FakeSMSPiece>());
        FakeSMSPiece &piece = *m_owned.back();
        piece.type = type;
        piece.data = data;
        piece.location = location;
        m_pieces.append(&piece);
        return piece;
    }
    void addNullPiece() { m_pieces.append(nullptr); }

    bool fromMe = false;
    bool done = true;
    bool sms = true;
    QDateTime date;
    QString address;
    QString title;
    QString text;

private:
    std::vector<std::unique_ptr<FakeSMSPiece>> m_owned;
    QList<BkSMSPiece *> m_pieces;
};

class FakeSMSItem : public BkSMSItem, public BkSMSChatGroup
{
public:
    FakeSMSItem(const QString &name, const QString &phone, const QString &email)
        : m_values { name, phone, email }
    {
    }
    QString value(int index) const override { return m_values.value(index); }
    bool flag(int index) const override { return index == 0 && deleted; }
    BkSMSChatGroup *detailContent() const override
    {
        return readable ? const_cast<FakeSMSItem *>(this) : nullptr;
    }
    const QList<BkSMSChat *> &chats() const override { return m_chats; }
    const QMap<QString, QString> &addrIds() const override { return members; }

    FakeSMSChat &addChat(const QString &text)
    {
        m_owned.push_back(std::make_unique<FakeSMSChat>());
        FakeSMSChat &chat = *m_owned.back();
        chat.text = text;
        m_chats.append(&chat);
        return chat;
    }
    void addNullChat() { m_chats.append(nullptr); }

    bool deleted = false;
    bool readable = true; //!< false: there is no detailContent().
    QMap<QString, QString> members;

private:
    QStringList m_values;
    std::vector<std::unique_ptr<FakeSMSChat>> m_owned;
    QList<BkSMSChat *> m_chats;
};

//! Message set that owns its conversations; all entries are selected, in their order.
class FakeSMSData : public BkSMSData
{
public:
    int dataType() const override { return 6; }
    int recoverCount() const override { return static_cast<int>(m_items.size()); }
    QList<int> recoverList() const override
    {
        QList<int> all;
        for (int i = 0; i < recoverCount(); ++i)
            all.append(i);
        return all;
    }
    BkAbstractItem *at(int index, bool original) const override
    {
        return original ? m_items.value(index) : nullptr;
    }
    int count(int /*kind*/) const override { return recoverCount(); }
    bool recover(BkAbstractItem *item) const override { return m_items.contains(item); }

    FakeSMSItem &
    addConversation(const QString &name, const QString &phone = {}, const QString &email = {})
    {
        m_owned.push_back(std::make_unique<FakeSMSItem>(name, phone, email));
        m_items.append(m_owned.back().get());
        return *m_owned.back();
    }
    //! An entry that is null or of another class; borrowed.
    void addForeign(BkAbstractItem *item) { m_items.append(item); }

private:
    std::vector<std::unique_ptr<FakeSMSItem>> m_owned;
    QList<BkAbstractItem *> m_items;
};

#endif
