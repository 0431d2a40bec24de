#include "DamagedBackup.h"
#include "PhoneBackup/crypto/Keybag.h"
#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/folder/FileRecord.h"
#include "PhoneBackup/folder/ManifestMbdb.h"
#include "PhoneBackup/notes/HtmlBody.h"
#include "PhoneBackup/notes/NoteTableRecord.h"
#include "PhoneBackup/planner/RepeatRule.h"
#include "PhoneBackup/plist/AttributedText.h"
#include "PhoneBackup/plist/KeyedArchive.h"
#include "PhoneBackup/plist/PropertyList.h"
#include "PhoneBackup/source/VCardText.h"
#include "PhoneItems/notes/NoteBodyText.h"
#include "PhoneItems/planner/RepeatText.h"
#include "export/JpegScans_p.h"
#include "heif/HeifStructure.h"

#include <QBuffer>
#include <QDir>
#include <QTemporaryFile>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

using namespace Qt::StringLiterals;
using namespace PhoneBackup;

namespace {

using Parser = void (*)(const QByteArray &);

// The environment variable BACKUP names the folder.
void backup(const QByteArray &changes)
{
    static const DamagedBackup folder(qEnvironmentVariable("BACKUP"));
    folder.read(changes);
}

void propertyList(const QByteArray &bytes)
{
    // Whoever walks the values meets the shared ones again and again: as far as that goes, too.
    const std::function<qsizetype(const QVariant &)> walk = [&walk](const QVariant &value) {
        qsizetype count = 1;
        for (const QVariant &part : value.toMap())
            count += walk(part);
        for (const QVariant &part : value.toList())
            count += walk(part);
        return count;
    };
    if (walk(PropertyList::parse(bytes).toVariant()) > PropertyList::kMaxNodes)
        std::abort();
}

void keyedArchive(const QByteArray &bytes)
{
    const KeyedArchive archive(bytes);
    archive.decode(archive.root());
}

void typedStream(const QByteArray &bytes)
{
    AttributedText::decode(bytes);
    AttributedText::salvage(bytes);
}

// A note whose text is written, too: what one says of the other has to fit.
struct WrittenNote : Note
{
    NoteText::Insets insets()
    {
        return [this](const QString &name, const QString &type) {
            attachments.emplace_back().identifier = name;
            attachments.back().type = type;
            return NoteText::Inset { qint32(attachments.size()) - 1, nullptr };
        };
    }
};

void note(const QByteArray &bytes)
{
    WrittenNote note;
    note.body = NoteText::read(bytes, note.insets()).body;
    PhoneItems::NoteBodyText::of(note);
    note.body = NoteText::readBody(bytes, note.insets()).body;
    PhoneItems::NoteBodyText::of(note);
}

void noteTable(const QByteArray &bytes)
{
    WrittenNote note;
    if (const auto record = NoteTableRecord::read(bytes, note.insets()))
        PhoneItems::NoteBodyText::of(record->table, note);
}

void noteHtml(const QByteArray &bytes)
{
    Note note;
    note.store = Note::Store::Old;
    note.body = bodyOfHtml(QString::fromUtf8(bytes), note.attachments);
    PhoneItems::NoteBodyText::of(note);
}

void manifestMbdb(const QByteArray &bytes)
{
    const QString inMemory = u"/dev/shm"_s;
    static QTemporaryFile file((QDir(inMemory).exists() ? inMemory : QDir::tempPath())
                               + u"/fuzz-XXXXXX"_s);
    if (!file.open() || !file.resize(0) || file.write(bytes) != bytes.size() || !file.flush())
        std::abort();
    Result<std::unique_ptr<ManifestMbdb>> index = ManifestMbdb::open(file.fileName());
    FileIndex files;
    if (!index || !index.value()->load(files, {}))
        return;
    for (FileIndex::Row row = 0; row < files.count(); ++row)
        index.value()->record(files.recordKey(row)).extendedAttributes();
}

void indexRecord(const QByteArray &bytes)
{
    FileRecord::parse(bytes).extendedAttributes();
}

void keybag(const QByteArray &bytes)
{
    Keybag::parse(bytes);
}

void heif(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    HeifStructure structure(buffer);
    if (structure.isSafe())
        structure.hevcPicture();
}

void jpeg(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    JpegScans::read(buffer);
}

void vCard(const QByteArray &bytes)
{
    vCardText(bytes, "FN");
    vCardTexts(bytes, "TEL");
}

void repeatRule(const QByteArray &bytes)
{
    constexpr qsizetype kFrequencies = 5;
    RepeatRule rule;
    rule.setSpecifier(QString::fromUtf8(bytes), bytes.size() % kFrequencies);
    PhoneItems::repeatText(rule);
}

const std::map<std::string, Parser> kParsers {
    { "backup", backup },
    { "heif", heif },
    { "index-record", indexRecord },
    { "jpeg", jpeg },
    { "keybag", keybag },
    { "keyed-archive", keyedArchive },
    { "manifest-mbdb", manifestMbdb },
    { "note", note },
    { "note-table", noteTable },
    { "note-html", noteHtml },
    { "old-messages", backup },
    { "property-list", propertyList },
    { "repeat-rule", repeatRule },
    { "typed-stream", typedStream },
    { "vcard", vCard },
};

Parser parser = nullptr;

} // namespace

// The parser whose name the environment variable PARSER holds; without one it lists them.
extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    const auto found = kParsers.find(qgetenv("PARSER").toStdString());
    if (found == kParsers.end()) {
        for (const auto &entry : kParsers)
            std::puts(entry.first.c_str());
        std::exit(0); // NOLINT(concurrency-mt-unsafe): there is one thread
    }
    parser = found->second;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    parser(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    return 0;
}
