#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/messages/AttachmentFiles.h"
#include "PhoneBackup/messages/MessageSource.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/messages/MessageData.h"
#include "PhoneItems/messages/Messages.h"
#include "PhoneItems/shared/FileData.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

// Folder and stem: what the parts of a picture that moves have in common.
QByteArray stemPath(QByteArrayView path)
{
    return PathParts::folder(path).toByteArray() + '/' + PathParts::stem(path).toByteArray();
}

class MessageFiles
{
public:
    MessageFiles(Source &source, const MessageData &messages)
        : m_source(source)
        , m_messages(messages)
        , m_data(std::make_unique<FileData>(DataType::MessageAttachments, source.files()))
    {
    }

    std::unique_ptr<FileData> read()
    {
        for (int i = 0; i < m_messages.recoverCount() && m_source.keepGoing(); ++i)
            addConversation(m_messages.conversation(i), m_messages.name(i));
        if (m_source.messageFilter().isEmpty()) { // what belongs to no message meets no condition
            addAttachmentsWithoutMessage();
            addFilesWithoutAttachment(AttachmentFiles::kFolder);
            addFilesWithoutAttachment("Library/SMS/Parts/");
        }
        return std::move(m_data);
    }

private:
    void addConversation(const Conversation &conversation, const QString &name)
    {
        m_group = -1;
        m_groupName = name;
        m_inGroup.clear();
        for (const qint64 message : conversation.messages) {
            const QList<MessageAttachment> attachments =
                m_messages.messages()->attachmentsOf(message);
            if (attachments.isEmpty() || !m_messages.isWanted(message))
                continue;
            const bool isDeleted = conversation.deletion(message) != nullptr;
            for (const MessageAttachment &attachment : attachments) {
                m_attached.insert(attachment.row);
                add(attachment, isDeleted, message);
            }
        }
    }

    void addAttachmentsWithoutMessage()
    {
        enterOther();
        if (!m_messages.messages())
            return;
        const QList<qint64> rows = m_messages.messages()->attachmentRows();
        for (const qint64 row : rows) {
            if (!m_attached.contains(row))
                add(m_messages.messages()->attachment(row), false);
        }
    }

    void addFilesWithoutAttachment(QByteArrayView folder)
    {
        const FileIndex &index = m_source.index();
        const FileIndex::Range range = index.walk(AttachmentFiles::kDomain, folder);
        for (FileIndex::Row row = range.first; row < range.last && m_source.keepGoing(); ++row) {
            const QByteArrayView path = index.path(row);
            if (index.kind(row) != FileIndex::Kind::File || m_used.contains(row)
                || path.endsWith(".pluginPayloadAttachment") || PathParts::isHidden(path)
                || PathParts::stem(path).endsWith("-preview"))
                continue;
            // The film of a picture that moves has no row of its own.
            m_group = m_groupOfStem.value(stemPath(path), -1);
            if (m_group < 0)
                enterOther();
            addFile(row, {}, {}, false);
        }
    }

    void enterOther()
    {
        if (!m_isOther)
            m_inGroup.clear();
        m_isOther = true;
        m_groupName = tr("Other");
        m_group = m_other;
    }

    void add(const MessageAttachment &attachment, bool isDeleted, qint64 message = 0)
    {
        const FileIndex::Row row = attachment.file;
        if (attachment.row == 0)
            return;
        if (row == FileIndex::kNone) {
            if (attachment.isForPeople)
                reportMissing(attachment, message);
            return;
        }
        const FileIndex &index = m_source.index();
        if (index.kind(row) == FileIndex::Kind::File) {
            if (attachment.isForPeople)
                addFile(row,
                        attachment.name,
                        PhoneTime::since2001(double(attachment.created)),
                        isDeleted);
            m_used.insert(row); // what is hidden is none of the files without a message
            return;
        }
        // A document that is a folder.
        const QByteArray inside = index.path(row).toByteArray() + '/';
        const FileIndex::Range range = index.walk(index.domain(row), inside);
        for (FileIndex::Row file = range.first; file < range.last; ++file) {
            if (index.kind(file) == FileIndex::Kind::File && attachment.isForPeople)
                addFile(file, {}, {}, isDeleted);
            m_used.insert(file);
        }
    }

    void addFile(FileIndex::Row row, const QString &name, const QDateTime &date, bool isDeleted)
    {
        if (m_inGroup.contains(row))
            return;
        m_inGroup.insert(row);
        m_used.insert(row);
        if (m_group < 0) {
            m_group = m_data->addGroup(m_groupName);
            if (m_isOther)
                m_other = m_group;
        }
        m_groupOfStem.insert(stemPath(m_source.index().path(row)), m_group);
        FileEntry entry;
        entry.row = row;
        entry.group = m_group;
        entry.name = name;
        entry.date = date;
        entry.deleted = isDeleted;
        m_data->add(entry);
    }

    void reportMissing(const MessageAttachment &attachment, qint64 message)
    {
        const QString name = attachment.name.isEmpty() ? attachment.guid : attachment.name;
        // Neither is a failure: the phone itself does not have the file.
        const bool isLeftInCloud = attachment.state() == MessageAttachment::State::NeverDownloaded;
        const bool isExpired =
            !isLeftInCloud && message != 0 && m_messages.messages()->isExpired(message);
        const Notice what = isLeftInCloud ? Notice("messages.neverDownloaded")
            : isExpired                   ? Notice("messages.soundExpired")
                                          : Notice("messages.fileMissing", { attachment.path });
        Problem problem { DataType::MessageAttachments, m_groupName + u'/' + name, what };
        problem.neverDownloaded = isLeftInCloud || isExpired;
        problem.loss = !problem.neverDownloaded;
        problem.row = attachment.row;
        m_source.addProblem(problem);
    }

    Source &m_source;
    const MessageData &m_messages;
    std::unique_ptr<FileData> m_data;
    int m_group = -1; // of the data, -1 until the first file makes it
    int m_other = -1;
    bool m_isOther = false; // the group of files without a message
    QString m_groupName;
    QSet<FileIndex::Row> m_inGroup;
    QSet<FileIndex::Row> m_used;
    QSet<qint64> m_attached; // attachments that a message has
    QHash<QByteArray, int> m_groupOfStem;
};

} // namespace

void readMessageFiles(Source &source, DataSets &sets)
{
    if (sets.find(DataType::Messages) == sets.end())
        readMessages(source, sets);
    const auto *messages = dynamic_cast<const MessageData *>(sets[DataType::Messages].get());
    if (messages)
        sets[DataType::MessageAttachments] = MessageFiles(source, *messages).read();
}

} // namespace PhoneItems
