#include "PhoneBackup/whatsapp/WhatsappFiles.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/whatsapp/WhatsappStore.h"
#include "PhoneItems/shared/FileData.h"
#include "PhoneItems/whatsapp/WhatsappData.h"
#include "platform/Translation_p.h"

#include <QMimeDatabase>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kWhatsappFiles = 12;
constexpr qint64 kDocument = 8;

// What a file without a name of its own is called, by its message's stored type; empty for types
// that have a file only by the way, such as the picture of a link.
QString kindName(qint64 storedType)
{
    switch (storedType) {
    case 1:
    case 38:
        return tr("Photo");
    case 2:
    case 39:
    case 54:
        return tr("Video");
    case 3:
    case 53:
        return tr("Audio");
    case 11:
        return tr("GIF");
    case 15:
        return tr("Sticker");
    case kDocument:
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
        , m_data(std::make_unique<FileData>(kWhatsappFiles, source.files()))
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
        for (const qint64 message : chat.withMedia) {
            const WhatsappSentFile file = chat.store->reader().file(message);
            if (file.item.path.isEmpty()) {
                if (!kindName(file.storedType).isEmpty())
                    reportNeverDownloaded(chat, file);
                continue;
            }
            FileEntry entry;
            entry.row = chat.store->media().find(file.item.path);
            if (entry.row == FileIndex::kNone) {
                reportMissing(chat, file);
                continue;
            }
            if (inGroup.contains(entry.row)) // sent on within the chat
                continue;
            inGroup.insert(entry.row);
            if (group < 0)
                group = m_data->addGroup(chat.name);
            entry.group = group;
            const QByteArrayView path = m_source.index().path(entry.row);
            entry.name = nameOf(file, PathParts::text(PathParts::extension(path)));
            entry.date = file.date;
            entry.id = message;
            entry.deleted = chat.isRemoved;
            m_data->add(entry);
        }
    }

    static QString nameOf(const WhatsappSentFile &file, const QString &extension)
    {
        return whatsappFileName(file.storedType, file.item.title, file.date, extension);
    }

    void reportMissing(const WhatsappChat &chat, const WhatsappSentFile &file)
    {
        Problem problem { kWhatsappFiles,
                          chat.name + u'/' + file.item.path.section(u'/', -1),
                          tr("The file “%1” is missing in the backup.").arg(file.item.path) };
        problem.row = file.item.row;
        m_source.addProblem(problem);
    }

    void reportNeverDownloaded(const WhatsappChat &chat, const WhatsappSentFile &file)
    {
        const QString name = nameOf(file, QString());
        Problem problem { kWhatsappFiles,
                          chat.name + u'/' + (name.isEmpty() ? kindName(file.storedType) : name),
                          tr("The file was never downloaded to the phone.") };
        problem.loss = false;
        problem.neverDownloaded = true;
        problem.row = file.item.row;
        m_source.addProblem(problem);
    }

    Source &m_source;
    std::unique_ptr<FileData> m_data;
};

} // namespace

QString whatsappFileName(qint64 storedType,
                         const QString &title,
                         const QDateTime &date,
                         const QString &extension)
{
    if (storedType == kDocument && !title.isEmpty()) {
        return hasExtension(title, extension) ? OutputNames::clean(title)
                                              : OutputNames::clean(title, extension);
    }
    const QString kind = kindName(storedType);
    if (!date.isValid() || kind.isEmpty())
        return {};
    return OutputNames::clean(date.toLocalTime().toString(u"yyyy-MM-dd hh-mm "_s) + kind,
                              extension);
}

void readWhatsappFiles(Source &source, DataSets &sets)
{
    if (sets.find(WhatsappDatabase::kChats) == sets.end())
        readWhatsapp(source, sets);
    const auto *chats = dynamic_cast<const WhatsappData *>(sets[WhatsappDatabase::kChats].get());
    if (chats)
        sets[kWhatsappFiles] = WhatsappFiles(source).read(*chats);
}

} // namespace PhoneBackup
