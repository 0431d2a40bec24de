#include "PhoneBackup/notes/NoteStore.h"

#include "PhoneBackup/notes/NoteAttachments.h"
#include "PhoneBackup/notes/NoteFolders.h"
#include "PhoneBackup/notes/NoteMedia.h"
#include "PhoneBackup/notes/NoteTable.h"
#include "PhoneBackup/notes/NoteText.h"
#include "PhoneBackup/packed/Gzip.h"
#include "PhoneBackup/source/ObjectStore.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/RowDatabase.h"
#include "PhoneBackup/source/Source.h"
#include "platform/Translation_p.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNotes = 9;
constexpr int kNoteFiles = 18;
constexpr qint64 kTrash = 1; // kind of a folder
constexpr qsizetype kMaxCharacters = qsizetype(32) << 20;
constexpr qsizetype kMaxRecordBytes = qsizetype(32) << 20; // of one note's text, or one table
constexpr qsizetype kMaxUnpackedBytes = qsizetype(2) << 30; // of all of them

const QString kObjects = u"ZICCLOUDSYNCINGOBJECT"_s;
const QString kData = u"ZICNOTEDATA"_s;

// What a row of the wide table is read as, in the order of the query.
enum Column {
    Key,
    Entity,
    Identifier,
    Title,
    Title1,
    Title2,
    Snippet,
    ListText,
    InFolder,
    InAccount,
    Owner,
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
    UserTitle,
    AltText,
    Url,
    ImageGeneration,
    PdfGeneration,
};

struct Draft
{
    Note note;
    qint64 folder = 0;
    qint64 account = 0;
    QString beginning; // of its text, as the phone's list of notes shows it
    QString hint; // at the password
    bool isLocked = false;
    bool isDamaged = false;
    bool hasText = false;
};

QString firstLine(const QString &text)
{
    constexpr qsizetype kLongest = 100;
    const QString line = text.trimmed().section(u'\n', 0, 0).trimmed();
    if (line.size() <= kLongest)
        return line;
    return line.first(kLongest - (line[kLongest - 1].isHighSurrogate() ? 1 : 0)) + u'…';
}

// The text in the phone's list of notes is the title, a line end and the beginning of the text.
QString withoutTitle(const QString &listText, const QString &title)
{
    const qsizetype lineEnd = listText.indexOf(u'\n');
    const QString first = lineEnd < 0 ? listText : listText.first(lineEnd);
    if (first.trimmed() != title)
        return listText.trimmed();
    return lineEnd < 0 ? QString() : listText.sliced(lineEnd).trimmed();
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
        const QStringList columns {
            u"Z_PK"_s,
            column(u"Z_ENT"_s),
            column(u"ZIDENTIFIER"_s),
            column(u"ZTITLE"_s),
            column(u"ZTITLE1"_s),
            column(u"ZTITLE2"_s),
            column(u"ZSNIPPET"_s),
            column(u"ZWIDGETSNIPPET"_s),
            column(u"ZFOLDER"_s),
            attribute(u"ZACCOUNT"_s),
            column(u"ZOWNER"_s),
            column(u"ZNOTEDATA"_s),
            column(u"ZPARENT"_s),
            column(u"ZFOLDERTYPE"_s),
            column(u"ZMARKEDFORDELETION"_s),
            column(u"ZISPASSWORDPROTECTED"_s),
            column(u"ZPASSWORDHINT"_s),
            attribute(u"ZCREATIONDATE"_s),
            attribute(u"ZMODIFICATIONDATE"_s),
            attribute(u"ZNOTE"_s),
            column(u"ZMEDIA"_s),
            attribute(u"ZATTACHMENT"_s),
            column(u"ZPARENTATTACHMENT"_s),
            attribute(u"ZTYPEUTI"_s),
            column(u"ZFILENAME"_s),
            column(u"ZUSERTITLE"_s),
            column(u"ZALTTEXT"_s),
            column(u"ZURLSTRING"_s),
            column(u"ZFALLBACKIMAGEGENERATION"_s),
            column(u"ZFALLBACKPDFGENERATION"_s),
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
            return;
        }
        if (const QString hint = row.text(Hint).trimmed(); !hint.isEmpty())
            m_hintOfAccount.insert(row.integer(Key), hint);
        if (kind == "ICFolder"_L1
            || (isGuess && !row.bytes(Title2).isEmpty() && row.bytes(Type).isEmpty())) {
            NoteFolders::Folder folder;
            folder.title = row.text(Title2).trimmed();
            folder.parent = row.integer(Parent);
            folder.account = row.integer(row.integer(Owner) != 0 ? Owner : InAccount);
            folder.isTrash = row.integer(FolderType) == kTrash
                || row.bytes(Identifier).startsWith("TrashFolder");
            m_folders.add(row.integer(Key), folder);
        } else if (kind == "ICMedia"_L1
                   || (isGuess && !row.bytes(FileName).isEmpty() && row.bytes(Type).isEmpty())) {
            m_attachments.addMedium(row.integer(Key),
                                    { row.text(Identifier), row.text(FileName) },
                                    row.integer(OfAttachment));
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
        draft.account = row.integer(InAccount);
        draft.beginning = row.text(Snippet).trimmed();
        if (draft.beginning.isEmpty())
            draft.beginning = withoutTitle(row.text(ListText), draft.note.title);
        draft.isLocked = row.integer(Locked) != 0;
        draft.hint = row.text(Hint).trimmed();
        if (row.integer(NoteData) != 0)
            m_noteOfData.insert(row.integer(NoteData), key);
        m_drafts.insert(key, draft);
        m_order.append(key);
    }

    void readAttachment(const Statement &row)
    {
        NoteAttachment attachment;
        attachment.key = row.integer(Key);
        attachment.note = row.integer(OfNote);
        attachment.medium = row.integer(MediumKey);
        attachment.parent = row.integer(InAttachment);
        attachment.identifier = row.text(Identifier);
        attachment.type = row.text(Type);
        attachment.title = row.text(UserTitle).simplified();
        if (attachment.title.isEmpty())
            attachment.title = row.text(Title).simplified();
        attachment.alternative = row.text(AltText).simplified();
        attachment.url = row.text(Url).trimmed();
        attachment.imageGeneration = row.text(ImageGeneration);
        attachment.pdfGeneration = row.text(PdfGeneration);
        attachment.created = PhoneTime::since2001(row.number(Created));
        attachment.isDeleted = row.integer(Deleted) != 0;
        m_attachments.add(attachment);
    }

    // A record may unpack to a thousand times its size: together they have a limit, too.
    Unzipped unpacked(QByteArrayView record)
    {
        Unzipped result = unzipped(record, std::min(kMaxRecordBytes, m_bytesLeft));
        m_bytesLeft -= result.data.size();
        return result;
    }

    // The lines of the table \a attachment, which stands in \a note; read when they are asked for,
    // once all that may stand in its cells is known.
    QString tableText(const NoteAttachment &attachment, qint64 note)
    {
        const auto known = m_tables.constFind(attachment.key);
        if (known != m_tables.constEnd())
            return *known;
        QString text;
        const QByteArray record = tableRecord(attachment.key);
        if (!record.isEmpty()) {
            const Unzipped unzipped = unpacked(record);
            const std::optional<NoteTable> table = NoteTable::read(
                unzipped.data, [this, note](const QString &identifier, const QString &type) {
                    m_attachments.place(identifier, note);
                    const NoteAttachment found = m_attachments.find(identifier, type);
                    return NoteText::Inset { m_attachments.label(found), false };
                });
            if (table)
                text = table->text();
            m_charactersLeft -= text.size();
            if (!table || !table->isComplete || unzipped.state != Unzipped::State::Whole
                || m_charactersLeft < 0) {
                report(u"%1: table %2"_s.arg(kObjects).arg(attachment.key),
                       tr("The table is damaged, locked or too long; cells of it may be missing."));
            }
            if (m_charactersLeft < 0)
                text.clear();
        }
        m_tables.insert(attachment.key, text);
        return text;
    }

    QByteArray tableRecord(qint64 key)
    {
        if (!m_tableRecord) {
            m_tableRecord = m_store.prepare(u"SELECT %1 FROM %2 WHERE ROWID = ?1"_s.arg(
                attribute(u"ZMERGEABLEDATA"_s), kObjects));
        }
        if (!m_tableRecord)
            return {};
        m_tableRecord->reset();
        m_tableRecord->bind(1, key);
        const Statement::Step step = m_tableRecord->step();
        QByteArray record;
        if (step == Statement::Step::Row)
            record = m_tableRecord->bytes(0).toByteArray();
        else if (step == Statement::Step::Failed)
            m_store.addLoss(tr("It is damaged: %1.").arg(m_tableRecord->error()));
        m_tableRecord->reset();
        return record;
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
                    && (draft->folder == 0
                        || (m_folders.isTrash(draft->folder)
                            && !m_folders.isTrash(row.integer(1))));
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
        const QString cipher =
            u"coalesce(%1, %2)"_s.arg(m_store.column(kData, u"ZCRYPTOTAG"_s),
                                      m_store.column(kData, u"ZCRYPTOINITIALIZATIONVECTOR"_s));
        m_store.query(u"Z_PK, %1, %2 IS NOT NULL"_s.arg(m_store.column(kData, u"ZDATA"_s), cipher),
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
                          if (draft != m_drafts.end() && !draft->isLocked && !draft->hasText
                              && !record.isEmpty())
                              setText(*draft, record, row.integer(2) != 0);
                      });
    }

    void setText(Draft &draft, QByteArrayView record, bool isEnciphered)
    {
        const Unzipped unzipped = unpacked(record);
        draft.hasText = true;
        if (unzipped.state == Unzipped::State::NotGzip) {
            // Newer phones keep a property list of what is enciphered.
            draft.isLocked = isEnciphered || record.startsWith("bplist00");
            draft.isDamaged = !draft.isLocked;
            if (draft.isDamaged)
                reportText(draft, tr("The text of the note is damaged and cannot be read."));
            return;
        }
        const qint64 note = draft.note.id;
        NoteText text = NoteText::read(
            unzipped.data, [this, note](const QString &identifier, const QString &type) {
                m_attachments.place(identifier, note);
                const NoteAttachment attachment = m_attachments.find(identifier, type);
                const QString table = attachment.kind() == NoteAttachment::Kind::Table
                    ? tableText(attachment, note)
                    : QString();
                return table.isEmpty() ? NoteText::Inset { m_attachments.label(attachment), false }
                                       : NoteText::Inset { table, true };
            });
        const bool isTooMuch = text.text.size() > m_charactersLeft;
        if (isTooMuch)
            text.text.truncate(std::max<qsizetype>(m_charactersLeft, 0));
        m_charactersLeft -= text.text.size();
        if (isTooMuch || !text.isComplete || unzipped.state != Unzipped::State::Whole) {
            draft.isDamaged = text.text.isEmpty();
            reportText(draft,
                       tr("The record of the note is damaged or too long; the end of its text may "
                          "be missing."));
        }
        draft.note.text = text.text;
    }

    void addFiles()
    {
        for (const NoteAttachment &attachment : m_attachments.all()) {
            const NoteAttachments::Medium medium = m_attachments.mediumOf(attachment);
            const auto draft = m_drafts.find(m_attachments.noteOf(attachment));
            if (draft == m_drafts.end())
                continue; // its file, if any, is one without a note
            if (draft->isLocked) {
                m_media.leaveOut(medium.identifier);
                m_media.leaveOut(attachment.identifier);
                if (!medium.identifier.isEmpty() || attachment.isKeptAsRendering()) {
                    reportFile(*draft,
                               attachment,
                               tr("Files of locked notes cannot be read and are left out."),
                               false);
                }
                continue;
            }
            const bool hasMedium = !medium.identifier.isEmpty()
                && addFile(
                    *draft, attachment, m_media.take(medium.identifier, medium.name), medium.name);
            // What was drawn over a file shows in its rendering alone.
            const bool hasRendering =
                (medium.identifier.isEmpty() || attachment.isKeptAsRendering())
                && addRendering(*draft, attachment);
            const bool hasFile = !medium.identifier.isEmpty() || attachment.isKeptAsRendering();
            if (hasFile && !hasMedium && !hasRendering && !attachment.isDeleted) {
                reportFile(
                    *draft, attachment, tr("The file was never downloaded to the phone."), true);
            }
        }
    }

    bool addRendering(Draft &draft, const NoteAttachment &attachment)
    {
        const FileIndex::Row picture = m_media.takeRendering(
            NoteMedia::Rendering::Picture, attachment.identifier, attachment.imageGeneration);
        const FileIndex::Row pdf = m_media.takeRendering(
            NoteMedia::Rendering::Pdf, attachment.identifier, attachment.pdfGeneration);
        const bool isDrawing = attachment.kind() == NoteAttachment::Kind::Drawing;
        const bool isPdf = pdf != FileIndex::kNone && (!isDrawing || picture == FileIndex::kNone);
        const FileIndex::Row row = isPdf ? pdf : picture;
        if (row == FileIndex::kNone)
            return false;
        const QString extension = PathParts::text(PathParts::extension(m_source.index().path(row)));
        return addFile(draft, attachment, row, m_attachments.renderingName(attachment, extension));
    }

    static bool
    addFile(Draft &draft, const NoteAttachment &attachment, FileIndex::Row row, const QString &name)
    {
        if (row == FileIndex::kNone)
            return false;
        draft.note.files.append({ row, name, attachment.key, attachment.created });
        return true;
    }

    void complete(Draft &draft) const
    {
        Note &note = draft.note;
        const bool isUnreadable = draft.isLocked || draft.isDamaged;
        if (draft.isLocked)
            note.text = lockedText(draft);
        else if (draft.isDamaged)
            note.text = tr("[Damaged note]") + beginning(draft);
        else if (!draft.hasText)
            note.text = draft.beginning; // the rest of it is in the cloud only
        if (note.title.isEmpty() && !isUnreadable)
            note.title = firstLine(note.text);
        note.folder = m_folders.path(draft.folder);
        note.deleted = note.deleted || m_folders.isTrash(draft.folder);
    }

    // The lock hides the text, but neither the hint nor what the phone's list shows.
    QString lockedText(const Draft &draft) const
    {
        QString hint = draft.hint;
        if (hint.isEmpty())
            hint = m_hintOfAccount.value(draft.account);
        if (hint.isEmpty())
            hint = m_hintOfAccount.value(m_folders.account(draft.folder));
        return tr("[Locked note]") + (hint.isEmpty() ? QString() : u'\n' + tr("Hint: %1").arg(hint))
            + beginning(draft);
    }

    static QString beginning(const Draft &draft)
    {
        return draft.beginning.isEmpty() ? QString()
                                         : u'\n' + tr("Beginning: %1").arg(draft.beginning);
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
                    const NoteAttachment &attachment,
                    const QString &what,
                    bool neverDownloaded) const
    {
        Problem problem { kNoteFiles,
                          u"%1/%2 (%3)"_s.arg(draft.note.title,
                                              m_attachments.label(attachment),
                                              QString::number(attachment.key)),
                          what };
        problem.loss = false;
        problem.neverDownloaded = neverDownloaded;
        m_source.addProblem(problem);
    }

    Source &m_source;
    NoteMedia &m_media;
    RowDatabase &m_store;
    QHash<qint64, QString> m_kinds;
    QSet<qint64> m_notesWithText;
    QHash<qint64, qint64> m_noteOfData;
    NoteFolders m_folders;
    QHash<qint64, Draft> m_drafts;
    QList<qint64> m_order; // of the drafts in the store
    QHash<qint64, QString> m_hintOfAccount;
    NoteAttachments m_attachments;
    QHash<qint64, QString> m_tables; // their lines
    std::unique_ptr<Statement> m_tableRecord;
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
