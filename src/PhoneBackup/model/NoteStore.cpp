#include "model/NoteStore.h"

#include "model/MediaKind.h"
#include "model/NoteMedia.h"
#include "model/NoteTable.h"
#include "model/NoteText.h"
#include "model/ObjectStore.h"
#include "model/PathParts.h"
#include "model/PhoneTime.h"
#include "model/RowDatabase.h"
#include "model/Source.h"
#include "platform/Translation_p.h"
#include "record/Gzip.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <array>

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using DataExport::tr;

namespace {

constexpr int kNotes = 9;
constexpr int kNoteFiles = 18;
constexpr qint64 kTrash = 1; // kind of a folder
constexpr int kMostLevels = 32; // of folders in folders, and attachments in attachments
constexpr qsizetype kMaxCharacters = qsizetype(32) << 20;
constexpr qsizetype kMaxRecordBytes = qsizetype(32) << 20; // of one note's text, or one table
constexpr qsizetype kMaxUnpackedBytes = qsizetype(2) << 30; // of all of them

const QString kObjects = u"ZICCLOUDSYNCINGOBJECT"_s;
const QString kData = u"ZICNOTEDATA"_s;
constexpr QLatin1StringView kTableType("com.apple.notes.table");

// What a row of the wide table is read as, in the order of the query.
enum Column {
    Key,
    Entity,
    Identifier,
    Title,
    Title1,
    Title2,
    Snippet,
    InFolder,
    NoteData,
    Parent,
    FolderType,
    Deleted,
    Locked,
    Hint,
    Created,
    Modified,
    OfNote,
    MediumKey,
    OfAttachment,
    InAttachment,
    Type,
    FileName,
    AltText,
    Url,
    Table,
};

struct Folder
{
    QString title;
    qint64 parent = 0;
    bool isTrash = false;
};

struct Draft
{
    Note note;
    qint64 folder = 0;
    QString snippet;
    bool isLocked = false;
    bool hasText = false;
};

struct Attachment
{
    qint64 key = 0;
    qint64 note = 0;
    qint64 medium = 0;
    qint64 parent = 0; // another attachment
    QString identifier;
    QString type;
    QString title;
    QString alternative;
    QString url;
    QString table; // its lines
    QDateTime created;
    bool isDeleted = false;
};

struct Medium
{
    QString identifier;
    QString name;
};

QString firstLine(const QString &text)
{
    constexpr qsizetype kLongest = 100;
    const QString line = text.trimmed().section(u'\n', 0, 0).trimmed();
    if (line.size() <= kLongest)
        return line;
    return line.first(kLongest - (line[kLongest - 1].isHighSurrogate() ? 1 : 0)) + u'…';
}

class NoteStore
{
public:
    NoteStore(Source &source, NoteMedia &media, RowDatabase &store)
        : m_source(source)
        , m_media(media)
        , m_store(store)
    {
    }

    QList<Note> read()
    {
        if (!m_store.hasTable(kObjects))
            m_store.addLoss(tr("It has no table of notes that can be read."));
        m_kinds = ObjectStore::entityNames(m_store);
        readNotesByData();
        const bool isWhole = readObjects();
        readFolderLinks();
        readTexts(!isWhole);
        addFiles();

        QList<Note> notes;
        for (const qint64 key : std::as_const(m_order)) {
            Draft &draft = m_drafts[key];
            complete(draft);
            if (!draft.note.deleted || !draft.note.title.isEmpty() || !draft.note.text.isEmpty())
                notes.append(draft.note);
        }
        return notes;
    }

private:
    QString attribute(const QString &name) const
    {
        return ObjectStore::attribute(m_store, kObjects, name);
    }
    QString column(const QString &name) const { return m_store.column(kObjects, name); }

    // Where no kinds are named, a note is what a text belongs to.
    void readNotesByData()
    {
        if (!m_store.hasTable(kData))
            return;
        m_store.query(
            u"Z_PK, "_s + m_store.column(kData, u"ZNOTE"_s), kData, [this](const Statement &row) {
                if (row.integer(1) != 0)
                    m_noteOfData.insert(row.integer(0), row.integer(1));
            });
        for (const qint64 note : std::as_const(m_noteOfData))
            m_notesWithText.insert(note);
    }

    bool readObjects()
    {
        if (!m_store.hasTable(kObjects))
            return false;
        const QString type = attribute(u"ZTYPEUTI"_s);
        const QStringList columns {
            u"Z_PK"_s,
            column(u"Z_ENT"_s),
            column(u"ZIDENTIFIER"_s),
            column(u"ZTITLE"_s),
            column(u"ZTITLE1"_s),
            column(u"ZTITLE2"_s),
            column(u"ZSNIPPET"_s),
            column(u"ZFOLDER"_s),
            column(u"ZNOTEDATA"_s),
            column(u"ZPARENT"_s),
            column(u"ZFOLDERTYPE"_s),
            column(u"ZMARKEDFORDELETION"_s),
            column(u"ZISPASSWORDPROTECTED"_s),
            column(u"ZPASSWORDHINT"_s),
            attribute(u"ZCREATIONDATE"_s),
            attribute(u"ZMODIFICATIONDATE"_s),
            column(u"ZNOTE"_s),
            column(u"ZMEDIA"_s),
            attribute(u"ZATTACHMENT"_s),
            column(u"ZPARENTATTACHMENT"_s),
            type,
            column(u"ZFILENAME"_s),
            column(u"ZALTTEXT"_s),
            column(u"ZURLSTRING"_s),
            // Records of other attachments are long and of no use here.
            u"CASE WHEN %1 = '%2' THEN %3 END"_s.arg(
                type, kTableType, attribute(u"ZMERGEABLEDATA"_s)),
        };
        return m_store.query(
            columns.join(u", "_s), kObjects, [this](const Statement &row) { readObject(row); });
    }

    void readObject(const Statement &row)
    {
        const QString kind = m_kinds.value(row.integer(Entity));
        const bool isGuess = m_kinds.isEmpty();
        if (kind == "ICNote"_L1 || (isGuess && m_notesWithText.contains(row.integer(Key)))) {
            readNote(row);
        } else if (kind == "ICFolder"_L1
                   || (isGuess && !row.bytes(Title2).isEmpty() && row.bytes(Type).isEmpty())) {
            Folder folder;
            folder.title = row.text(Title2).trimmed();
            folder.parent = row.integer(Parent);
            folder.isTrash = row.integer(FolderType) == kTrash
                || row.bytes(Identifier).startsWith("TrashFolder");
            m_folders.insert(row.integer(Key), folder);
        } else if (kind == "ICMedia"_L1
                   || (isGuess && !row.bytes(FileName).isEmpty() && row.bytes(Type).isEmpty())) {
            m_mediaObjects.insert(row.integer(Key), { row.text(Identifier), row.text(FileName) });
            if (row.integer(OfAttachment) != 0)
                m_mediumOfAttachment.insert(row.integer(OfAttachment), row.integer(Key));
        } else if (!row.bytes(Type).isEmpty()) {
            readAttachment(row);
        }
    }

    void readNote(const Statement &row)
    {
        const qint64 key = row.integer(Key);
        if (m_drafts.contains(key))
            return;
        Draft draft;
        draft.note.id = key;
        draft.note.title = row.text(row.bytes(Title1).isEmpty() ? Title : Title1).trimmed();
        draft.note.created = PhoneTime::since2001(row.number(Created));
        draft.note.modified = PhoneTime::since2001(row.number(Modified));
        draft.note.deleted = row.integer(Deleted) != 0;
        draft.folder = row.integer(InFolder);
        draft.snippet = row.text(Snippet).trimmed();
        draft.isLocked = row.integer(Locked) != 0;
        if (draft.isLocked)
            lock(draft, row.text(Hint).trimmed());
        if (row.integer(NoteData) != 0)
            m_noteOfData.insert(row.integer(NoteData), key);
        m_drafts.insert(key, draft);
        m_order.append(key);
    }

    static void lock(Draft &draft, const QString &hint)
    {
        draft.note.text = tr("[Locked note]");
        if (!hint.isEmpty())
            draft.note.text += u'\n' + tr("Hint: %1").arg(hint);
        draft.hasText = true;
    }

    void readAttachment(const Statement &row)
    {
        Attachment attachment;
        attachment.key = row.integer(Key);
        if (m_attachments.contains(attachment.key))
            return;
        attachment.note = row.integer(OfNote);
        attachment.medium = row.integer(MediumKey);
        attachment.parent = row.integer(InAttachment);
        attachment.identifier = row.text(Identifier);
        attachment.type = row.text(Type);
        attachment.title = row.text(Title).simplified();
        attachment.alternative = row.text(AltText).simplified();
        attachment.url = row.text(Url).trimmed();
        attachment.created = PhoneTime::since2001(row.number(Created));
        attachment.isDeleted = row.integer(Deleted) != 0;
        if (attachment.type == kTableType)
            readTable(attachment, row.bytes(Table));
        m_attachmentByIdentifier.insert(attachment.identifier, attachment.key);
        m_attachmentOrder.append(attachment.key);
        m_attachments.insert(attachment.key, attachment);
    }

    // A record may unpack to a thousand times its size: together they have a limit, too.
    Unzipped unpacked(QByteArrayView record)
    {
        Unzipped result = unzipped(record, std::min(kMaxRecordBytes, m_bytesLeft));
        m_bytesLeft -= result.data.size();
        return result;
    }

    void readTable(Attachment &attachment, QByteArrayView record)
    {
        if (record.isEmpty())
            return;
        const Unzipped unzipped = unpacked(record);
        const std::optional<NoteTable> table = NoteTable::read(unzipped.data);
        if (table)
            attachment.table = table->text();
        m_charactersLeft -= attachment.table.size();
        if (!table || !table->isComplete || unzipped.state != Unzipped::State::Whole
            || m_charactersLeft < 0) {
            report(u"%1: table %2"_s.arg(kObjects).arg(attachment.key),
                   tr("The table is damaged, locked or too long; cells of it may be missing."));
        }
        if (m_charactersLeft < 0)
            attachment.table.clear();
    }

    // Until iOS 10 a note could be in several folders: "Z_12NOTES(Z_12FOLDERS, Z_9NOTES)".
    void readFolderLinks()
    {
        if (m_store.hasColumn(kObjects, u"ZFOLDER"_s))
            return;
        static const QRegularExpression kLinks(u"^Z_\\d+NOTES$"_s); // the table, and its column
        QStringList tables;
        m_store.query(u"name"_s, u"sqlite_master"_s, [&tables](const Statement &row) {
            if (kLinks.match(row.text(0)).hasMatch())
                tables.append(row.text(0));
        });
        for (const QString &table : std::as_const(tables)) {
            const QStringList columns = m_store.columns(table);
            const QString folders = table.chopped(5) + u"FOLDERS"_s;
            const qsizetype notes = columns.indexOf(kLinks);
            if (!columns.contains(folders) || notes < 0)
                continue;
            m_store.query(columns[notes] + u", "_s + folders, table, [this](const Statement &row) {
                const auto draft = m_drafts.find(row.integer(0));
                const bool isBetter = draft != m_drafts.end()
                    && (draft->folder == 0 || (isTrash(draft->folder) && !isTrash(row.integer(1))));
                if (isBetter)
                    draft->folder = row.integer(1);
            });
        }
    }

    void readTexts(bool withoutNote)
    {
        if (!m_store.hasTable(kData)) {
            if (!m_order.isEmpty())
                m_store.addLoss(tr("It has no table of texts that can be read."));
            return;
        }
        m_store.query(u"Z_PK, "_s + m_store.column(kData, u"ZDATA"_s),
                      kData,
                      [this, withoutNote](const Statement &row) {
                          const QByteArrayView record = row.bytes(1);
                          const qint64 key = m_noteOfData.value(row.integer(0));
                          auto draft = m_drafts.find(key);
                          if (draft == m_drafts.end() && withoutNote && !record.isEmpty()) {
                              // What told of this note is lost, but not the note.
                              const qint64 lost = ~row.integer(0);
                              draft = m_drafts.insert(lost, {});
                              m_order.append(lost);
                          }
                          if (draft != m_drafts.end() && !draft->hasText && !record.isEmpty())
                              setText(*draft, record);
                      });
    }

    void setText(Draft &draft, QByteArrayView record)
    {
        const Unzipped unzipped = unpacked(record);
        if (unzipped.state == Unzipped::State::NotGzip) {
            lock(draft, {});
            reportText(draft, tr("The text of the note is locked or damaged."));
            return;
        }
        draft.hasText = true;
        NoteText text =
            NoteText::read(unzipped.data, [this](const QString &identifier, const QString &type) {
                Attachment attachment =
                    m_attachments.value(m_attachmentByIdentifier.value(identifier));
                if (attachment.type.isEmpty())
                    attachment.type = type;
                return attachment.table.isEmpty() ? NoteText::Inset { label(attachment), false }
                                                  : NoteText::Inset { attachment.table, true };
            });
        const bool isTooMuch = text.text.size() > m_charactersLeft;
        if (isTooMuch)
            text.text.truncate(std::max<qsizetype>(m_charactersLeft, 0));
        m_charactersLeft -= text.text.size();
        if (isTooMuch || !text.isComplete || unzipped.state != Unzipped::State::Whole) {
            reportText(draft,
                       tr("The record of the note is damaged or too long; the end of its text may "
                          "be missing."));
        }
        draft.note.text = text.text;
    }

    QString label(const Attachment &attachment) const
    {
        if (!attachment.alternative.isEmpty() && attachment.type.contains("inlinetext"_L1))
            return attachment.alternative; // a hashtag, a person
        const Medium medium = mediumOf(attachment);
        const QString name = medium.name.isEmpty() ? attachment.title : medium.name;
        const auto named = [&name](const QString &with, const QString &without) {
            return name.isEmpty() ? without : QString(with).arg(name);
        };
        if (attachment.type == "public.url"_L1) {
            const QString link = attachment.title.isEmpty() || attachment.url.isEmpty()
                ? attachment.title + attachment.url
                : attachment.title + u": "_s + attachment.url;
            return link.isEmpty() ? tr("[Link]") : tr("[Link: %1]").arg(link);
        }
        if (attachment.type == kTableType)
            return named(tr("[Table: %1]"), tr("[Table]"));
        if (attachment.type.contains("drawing"_L1) || attachment.type.contains("paper"_L1))
            return named(tr("[Drawing: %1]"), tr("[Drawing]"));
        if (attachment.type.contains("gallery"_L1))
            return named(tr("[Scan: %1]"), tr("[Scan]"));
        switch (mediaKind(name.toUtf8())) {
        case MediaKind::Picture:
            return tr("[Picture: %1]").arg(name);
        case MediaKind::Video:
            return tr("[Video: %1]").arg(name);
        case MediaKind::Audio:
            return tr("[Audio: %1]").arg(name);
        default:
            break;
        }
        static constexpr std::array<QLatin1StringView, 7> kPictures {
            "image"_L1, "jpeg"_L1, "png"_L1, "heic"_L1, "heif"_L1, "tiff"_L1, "gif"_L1
        };
        const auto isOf = [&attachment](QLatin1StringView word) {
            return attachment.type.contains(word);
        };
        if (std::any_of(kPictures.begin(), kPictures.end(), isOf))
            return named(tr("[Picture: %1]"), tr("[Picture]"));
        if (isOf("movie"_L1) || isOf("video"_L1) || isOf("mpeg-4"_L1))
            return named(tr("[Video: %1]"), tr("[Video]"));
        if (isOf("audio"_L1))
            return named(tr("[Audio: %1]"), tr("[Audio]"));
        return named(tr("[File: %1]"), tr("[File]"));
    }

    Medium mediumOf(const Attachment &attachment) const
    {
        const qint64 key =
            attachment.medium != 0 ? attachment.medium : m_mediumOfAttachment.value(attachment.key);
        return m_mediaObjects.value(key);
    }

    // Pages of a scan belong to the note of the scan.
    qint64 noteOf(Attachment attachment) const
    {
        for (int level = 0; level < kMostLevels && attachment.note == 0; ++level)
            attachment = m_attachments.value(attachment.parent);
        return attachment.note;
    }

    void addFiles()
    {
        for (const qint64 key : std::as_const(m_attachmentOrder)) {
            const Attachment attachment = m_attachments.value(key);
            const Medium medium = mediumOf(attachment);
            const auto draft = m_drafts.find(noteOf(attachment));
            if (draft == m_drafts.end())
                continue; // its file, if any, is one without a note
            if (draft->isLocked) {
                m_media.leaveOut(medium.identifier);
                reportFile(*draft,
                           attachment,
                           tr("Files of locked notes cannot be read and are left out."),
                           false);
                continue;
            }
            NoteFile file;
            file.id = attachment.key;
            file.created = attachment.created;
            if (!medium.identifier.isEmpty()) {
                file.file = m_media.take(medium.identifier, medium.name);
                file.name = medium.name;
                if (file.file == FileIndex::kNone && !attachment.isDeleted) {
                    reportFile(*draft,
                               attachment,
                               tr("The file is not in the backup; it may be in the cloud only."),
                               true);
                }
            } else {
                file.file = m_media.takeDrawing(attachment.identifier);
                if (file.file != FileIndex::kNone)
                    file.name = drawingName(attachment, file.file);
            }
            if (file.file != FileIndex::kNone)
                draft->note.files.append(file);
        }
    }

    QString drawingName(const Attachment &attachment, FileIndex::Row row) const
    {
        const QString extension = PathParts::text(PathParts::extension(m_source.index().path(row)));
        const QString stem = attachment.title.isEmpty() ? tr("Drawing") : attachment.title;
        return extension.isEmpty() ? stem : stem + u'.' + extension;
    }

    void complete(Draft &draft) const
    {
        Note &note = draft.note;
        if (!draft.hasText)
            note.text = draft.snippet; // the beginning of a text that is in the cloud only
        if (note.title.isEmpty() && !draft.isLocked)
            note.title = firstLine(note.text);
        note.folder = folderPath(draft.folder);
        note.deleted = note.deleted || isTrash(draft.folder);
    }

    QString folderPath(qint64 key) const
    {
        QStringList names;
        QSet<qint64> seen;
        for (int level = 0; level < kMostLevels && !seen.contains(key); ++level) {
            const auto folder = m_folders.constFind(key);
            if (folder == m_folders.constEnd())
                break;
            seen.insert(key);
            names.prepend(folder->title);
            key = folder->parent;
        }
        return names.join(u'/');
    }

    bool isTrash(qint64 key) const
    {
        for (int level = 0; level < kMostLevels; ++level) {
            const auto folder = m_folders.constFind(key);
            if (folder == m_folders.constEnd())
                return false;
            if (folder->isTrash)
                return true;
            key = folder->parent;
        }
        return false;
    }

    void report(const QString &part, const QString &what)
    {
        m_source.addProblem({ kNotes, u"NoteStore.sqlite: "_s + part, what, true });
    }
    void reportText(const Draft &draft, const QString &what)
    {
        report(tr("note “%1” (%2)").arg(draft.note.title, QString::number(draft.note.id)), what);
    }
    void reportFile(const Draft &draft,
                    const Attachment &attachment,
                    const QString &what,
                    bool isLoss) const
    {
        m_source.addProblem({ kNoteFiles,
                              u"%1/%2 (%3)"_s.arg(draft.note.title,
                                                  label(attachment),
                                                  QString::number(attachment.key)),
                              what,
                              isLoss });
    }

    Source &m_source;
    NoteMedia &m_media;
    RowDatabase &m_store;
    QHash<qint64, QString> m_kinds;
    QSet<qint64> m_notesWithText;
    QHash<qint64, qint64> m_noteOfData;
    QHash<qint64, Folder> m_folders;
    QHash<qint64, Draft> m_drafts;
    QList<qint64> m_order; // of the drafts in the store
    QHash<qint64, Attachment> m_attachments;
    QList<qint64> m_attachmentOrder;
    QHash<QString, qint64> m_attachmentByIdentifier;
    QHash<qint64, Medium> m_mediaObjects;
    QHash<qint64, qint64> m_mediumOfAttachment;
    qsizetype m_charactersLeft = kMaxCharacters;
    qsizetype m_bytesLeft = kMaxUnpackedBytes;
};

} // namespace

QList<Note> readNoteStore(Source &source, NoteMedia &media)
{
    std::optional<RowDatabase> store = RowDatabase::open(
        source, kNotes, NoteMedia::kDomain, u"NoteStore.sqlite"_s, tr("Notes may be missing."));
    return store ? NoteStore(source, media, *store).read() : QList<Note>();
}

} // namespace PhoneBackup
