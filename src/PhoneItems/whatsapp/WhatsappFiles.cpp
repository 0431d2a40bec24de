#include "PhoneItems/whatsapp/WhatsappFiles.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/whatsapp/WhatsappStore.h"
#include "PhoneItems/shared/FileData.h"
#include "PhoneItems/whatsapp/WhatsappData.h"
#include "PhoneItems/whatsapp/WhatsappWords.h"
#include "platform/OutputNames.h"
#include "platform/Translation_p.h"

#include <QMimeDatabase>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace Qt::StringLiterals;
using namespace PhoneBackup;

namespace {

using Kind = WhatsappMessage::Kind;

// What a file without a name of its own is called; empty for kinds that have a file only by the
// way, such as the picture of a link.
QString kindName(Kind kind)
{
    switch (kind) {
    case Kind::Picture:
        return tr("Photo");
    case Kind::Video:
    case Kind::VideoNote:
        return tr("Video");
    case Kind::Audio:
        return tr("Audio");
    case Kind::Gif:
        return tr("GIF");
    case Kind::Sticker:
        return tr("Sticker");
    case Kind::Document:
        return tr("Document");
    default:
        return {};
    }
}

// A title may well have a point in it: "Report v1.2".
bool hasExtension(const QString &title, const QString &extension)
{
    return extension.isEmpty() || title.endsWith(u'.' + extension, Qt::CaseInsensitive)
        || !QMimeDatabase().suffixForFileName(title).isEmpty();
}

class WhatsappFiles
{
public:
    explicit WhatsappFiles(Source &source)
        : m_source(source)
        , m_data(std::make_unique<FileData>(DataType::WhatsappAttachments, source.files()))
    {
    }

    std::unique_ptr<FileData> read(const WhatsappData &chats)
    {
        for (int i = 0; i < chats.recoverCount() && m_source.keepGoing(); ++i)
            addChat(chats.chat(i));
        return std::move(m_data);
    }

private:
    void addChat(const WhatsappChat &chat)
    {
        int group = -1;
        QSet<FileIndex::Row> inGroup;
        for (const qint64 row : chat.withMedia) {
            const WhatsappMessage message = chat.store->reader().file(row);
            const WhatsappFile &file = message.details().file;
            if (file.path.isEmpty()) {
                if (isFileKind(message.kind))
                    reportNeverDownloaded(chat, message);
                continue;
            }
            FileEntry entry;
            entry.row = file.file;
            if (entry.row == FileIndex::kNone) {
                reportMissing(chat, file);
                continue;
            }
            if (inGroup.contains(entry.row)) // sent on within the chat
                continue;
            inGroup.insert(entry.row);
            if (group < 0)
                group = m_data->addGroup(WhatsappWords::title(chat));
            entry.group = group;
            const QByteArrayView path = m_source.index().path(entry.row);
            entry.name = nameOf(message, PathParts::text(PathParts::extension(path)));
            entry.date = message.date;
            entry.id = row;
            entry.deleted = chat.isRemoved;
            m_data->add(entry);
        }
    }

    static QString nameOf(const WhatsappMessage &message, const QString &extension)
    {
        return whatsappFileName(
            message.kind, message.details().file.title, message.date, extension);
    }

    void reportMissing(const WhatsappChat &chat, const WhatsappFile &file)
    {
        Problem problem { DataType::WhatsappAttachments,
                          WhatsappWords::title(chat) + u'/' + file.path.section(u'/', -1),
                          Notice("whatsapp.fileMissing", { file.path }) };
        problem.row = file.row;
        m_source.addProblem(problem);
    }

    void reportNeverDownloaded(const WhatsappChat &chat, const WhatsappMessage &message)
    {
        const QString name = nameOf(message, QString());
        Problem problem { DataType::WhatsappAttachments,
                          WhatsappWords::title(chat) + u'/'
                              + (name.isEmpty() ? kindName(message.kind) : name),
                          Notice("whatsapp.neverDownloaded") };
        problem.loss = false;
        problem.neverDownloaded = true;
        problem.row = message.details().file.row;
        m_source.addProblem(problem);
    }

    Source &m_source;
    std::unique_ptr<FileData> m_data;
};

} // namespace

QString
whatsappFileName(Kind kind, const QString &title, const QDateTime &date, const QString &extension)
{
    if (kind == Kind::Document && !title.isEmpty()) {
        return hasExtension(title, extension) ? OutputNames::clean(title)
                                              : OutputNames::clean(title, extension);
    }
    const QString word = kindName(kind);
    if (!date.isValid() || word.isEmpty())
        return {};
    return OutputNames::clean(date.toLocalTime().toString(u"yyyy-MM-dd hh-mm "_s) + word,
                              extension);
}

void readWhatsappFiles(Source &source, DataSets &sets)
{
    if (sets.find(DataType::Whatsapp) == sets.end())
        readWhatsapp(source, sets);
    const auto *chats = dynamic_cast<const WhatsappData *>(sets[DataType::Whatsapp].get());
    if (chats)
        sets[DataType::WhatsappAttachments] = WhatsappFiles(source).read(*chats);
}

} // namespace PhoneItems
