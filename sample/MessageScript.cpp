#include "sample/MessageScript.h"

#include "sample/BackupWriter.h"
#include "sample/PropertyList.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"

#include <algorithm>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFirstWithEvents = 8;
constexpr int kFirstWithReactions = 10;
constexpr int kFirstWithReplies = 14;
constexpr int kFirstWithEditing = 16;
constexpr int kFirstWithDeleted = 16;
constexpr int kReaction = 2000;
constexpr int kWithdrawn = 3000;
constexpr int kWithEmoji = 6;
constexpr QChar kPlaceOfAFile(0xfffc);

QVariantMap version(const QString &text, const QDateTime &date)
{
    return { { u"d"_s, cocoaSeconds(date) }, { u"t"_s, attributedBody(text) } };
}

} // namespace

MessageScript::MessageScript(MessageDatabase &database, BackupWriter &writer, Random &random)
    : m_database(database)
    , m_writer(writer)
    , m_random(random)
{
}

void MessageScript::enter(qint64 chat, const QString &service, const QDateTime &start)
{
    m_chat = chat;
    m_service = service;
    m_now = start;
    m_deleted = QDateTime();
}

void MessageScript::wait(int minutes)
{
    m_now = m_now.addSecs(qint64(minutes) * 60);
}

MessageRow MessageScript::line(qint64 handle, const QString &text) const
{
    MessageRow row;
    row.handle = handle;
    row.fromMe = handle == 0;
    row.text = text;
    row.service = m_service;
    row.delivered = m_service != "SMS"_L1;
    return row;
}

QString MessageScript::put(MessageRow row, const QList<SentFile> &files)
{
    if (m_deleted.isValid() && m_database.iosRelease() < kFirstWithDeleted)
        return QString(); // was gone at once
    m_now = m_now.addSecs(m_random.between(8, 70));
    row.guid = m_random.uuid();
    row.date = m_now;
    row.hasAttachments = !files.isEmpty();

    QList<AttachmentRow> stored;
    for (const SentFile &file : files)
        stored.append(store(file));
    if (!files.isEmpty() && row.runs.isEmpty()) {
        // Every file and every stretch of text between files is a bubble of its own.
        qsizetype file = 0;
        for (const QChar c : std::as_const(row.text)) {
            const bool isFile = c == kPlaceOfAFile && file < stored.size();
            if (isFile || row.runs.isEmpty() || !row.runs.last().attachmentGuid.isEmpty()) {
                const auto part = static_cast<int>(row.runs.size());
                row.runs.append({ 0, part, isFile ? stored[file++].guid : QString(), {}, {} });
            }
            ++row.runs.last().lengthUtf16;
        }
    }
    const qint64 message = m_database.addMessage(row);
    for (const AttachmentRow &attachment : stored)
        m_database.addAttachment(message, attachment, row.date);
    if (m_deleted.isValid())
        m_database.addDeletedToChat(m_chat, message, m_deleted);
    else if (m_chat != 0)
        m_database.addToChat(m_chat, message, row.date);
    return row.guid;
}

QString MessageScript::say(qint64 handle, const QString &text, TextStore store)
{
    MessageRow row = line(handle, text);
    row.store = store;
    return put(row);
}

QString MessageScript::reply(qint64 handle, const QString &to, const QString &text)
{
    MessageRow row = line(handle, text);
    if (m_database.iosRelease() >= kFirstWithReplies)
        row.threadOriginator = to;
    return put(row);
}

QString MessageScript::send(qint64 handle, const QString &text, const QList<SentFile> &files)
{
    return put(line(handle, text), files);
}

void MessageScript::react(qint64 handle, int kind, const QString &to, const QString &emoji)
{
    addReaction(handle, kReaction + kind, to, emoji);
}

void MessageScript::withdraw(qint64 handle, int kind, const QString &to)
{
    addReaction(handle, kWithdrawn + kind, to, QString());
}

void MessageScript::addReaction(qint64 handle, int type, const QString &to, const QString &emoji)
{
    if (m_database.iosRelease() < kFirstWithReactions)
        return;
    MessageRow row = line(handle, u"Reacted to a message"_s);
    row.associatedGuid = u"p:0/"_s + to;
    row.associatedType = type;
    if (type % 1000 == kWithEmoji)
        row.associatedEmoji = emoji;
    put(row);
}

QString MessageScript::edit(qint64 handle, const QStringList &texts)
{
    MessageRow row = line(handle, texts.last());
    if (m_database.iosRelease() >= kFirstWithEditing) {
        QVariantList history;
        for (qsizetype i = 0; i < texts.size(); ++i)
            history.append(version(texts[i], m_now.addSecs(60 + 40 * i)));
        const QVariantMap original { { u"lo"_s, 0 }, { u"le"_s, texts.first().size() } };
        row.edited = m_now.addSecs(60 + 40 * texts.size());
        row.summary =
            binaryPropertyList(QVariantMap { { u"ust"_s, true },
                                             { u"amc"_s, 0 },
                                             { u"otr"_s, QVariantMap { { u"0"_s, original } } },
                                             { u"ec"_s, QVariantMap { { u"0"_s, history } } },
                                             { u"ep"_s, QVariantList { 0 } } });
    }
    return put(row);
}

QString MessageScript::unsend(qint64 handle)
{
    if (m_database.iosRelease() < kFirstWithEditing)
        return QString();
    MessageRow row = line(handle, QString());
    row.retracted = m_now.addSecs(90);
    row.summary = binaryPropertyList(
        QVariantMap { { u"ust"_s, true }, { u"amc"_s, 0 }, { u"rp"_s, QVariantList { 0 } } });
    return put(row);
}

void MessageScript::event(
    qint64 handle, int itemType, int action, qint64 other, const QString &title)
{
    if (m_database.iosRelease() < kFirstWithEvents)
        return;
    MessageRow row = line(handle, QString());
    row.itemType = itemType;
    row.groupAction = action;
    row.otherHandle = other;
    row.groupTitle = title;
    put(row);
}

AttachmentRow MessageScript::store(const SentFile &file)
{
    AttachmentRow row;
    row.guid = m_random.uuid();
    row.name = file.name;
    row.mimeType = file.mimeType;
    row.uti = file.uti;
    row.sizeBytes = file.content.size();
    row.isHidden = file.isHidden;
    if (file.where == SentFile::Where::NeverFetched)
        return row;
    const QString path =
        u"Library/SMS/Attachments/%1/%2/%3/%4"_s.arg(m_random.below(256), 2, 16, QLatin1Char('0'))
            .arg(m_random.below(16), 2, 10, QLatin1Char('0'))
            .arg(row.guid, file.name);
    row.path = u"~/"_s + path;
    if (file.where == SentFile::Where::InBackup) {
        FileTraits traits;
        traits.modified = m_now;
        m_writer.addFile(u"MediaDomain"_s, path, file.content, traits);
    }
    return row;
}

} // namespace Sample
