#include "PhoneBackup/notes/NoteObjects.h"

#include "PhoneBackup/source/ObjectStore.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/RowDatabase.h"

#include <QRegularExpression>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

const QString NoteObjects::kObjects = u"ZICCLOUDSYNCINGOBJECT"_s;
const QString NoteObjects::kTexts = u"ZICNOTEDATA"_s;

namespace {

constexpr qint64 kTrash = 1; // kind of a folder

// What a row of the wide table is read as, in the order of the query.
enum Column {
    Key,
    Entity,
    Identifier,
    Name,
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
    Pinned,
    Shared,
    Hint,
    Created,
    Modified,
    Opened,
    OfNote,
    MediumKey,
    OfAttachment,
    InAttachment,
    Type,
    FileName,
    UserTitle,
    AltText,
    Target,
    Url,
    Summary,
    HandWriting,
    WordsInPicture,
    Bytes,
    Width,
    Height,
    Duration,
    ImageGeneration,
    PdfGeneration,
};

// The text in the phone's list of notes is the title, a line end and the beginning of the text.
QString withoutTitle(const QString &listText, const QString &title)
{
    const qsizetype lineEnd = listText.indexOf(u'\n');
    const QString first = lineEnd < 0 ? listText : listText.first(lineEnd);
    if (first.trimmed() != title)
        return listText.trimmed();
    return lineEnd < 0 ? QString() : listText.sliced(lineEnd).trimmed();
}

QString firstText(const Statement &row, std::initializer_list<int> columns)
{
    for (const int column : columns) {
        if (const QString text = row.text(column).simplified(); !text.isEmpty())
            return text;
    }
    return {};
}

qint64 sizeOf(const Statement &row)
{
    return row.number(Bytes) ? row.integer(Bytes) : -1;
}

} // namespace

NoteObjects::NoteObjects(RowDatabase &store, NoteDrafts &drafts)
    : m_store(store)
    , m_drafts(drafts)
{
}

QString NoteObjects::column(const QString &name) const
{
    return m_store.column(kObjects, name);
}

// Attributes that several kinds have bear a number, which differs from release to release.
QString NoteObjects::attribute(const QString &name) const
{
    return ObjectStore::attribute(m_store, kObjects, name);
}

bool NoteObjects::read()
{
    if (!m_store.hasTable(kObjects))
        m_store.addLoss(Notice("notes.noTable"));
    m_kinds = ObjectStore::entityNames(m_store);
    readTextKeys();
    const bool isWhole = readTable();
    readFolderLinks();
    return isWhole;
}

// Where no kinds are named, a note is what a text belongs to.
void NoteObjects::readTextKeys()
{
    if (!m_store.hasTable(kTexts))
        return;
    m_store.query(
        u"Z_PK, "_s + m_store.column(kTexts, u"ZNOTE"_s), kTexts, [this](const Statement &row) {
            if (row.integer(1) != 0)
                m_drafts.noteOfText.insert(row.integer(0), row.integer(1));
        });
    for (const qint64 note : std::as_const(m_drafts.noteOfText))
        m_notesWithText.insert(note);
}

bool NoteObjects::readTable()
{
    if (!m_store.hasTable(kObjects))
        return false;
    const QStringList columns {
        u"Z_PK"_s,
        column(u"Z_ENT"_s),
        column(u"ZIDENTIFIER"_s),
        column(u"ZNAME"_s),
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
        column(u"ZISPINNED"_s),
        column(u"ZSERVERSHAREDATA"_s) + u" IS NOT NULL"_s,
        column(u"ZPASSWORDHINT"_s),
        attribute(u"ZCREATIONDATE"_s),
        attribute(u"ZMODIFICATIONDATE"_s),
        column(u"ZLASTOPENEDDATE"_s),
        attribute(u"ZNOTE"_s),
        column(u"ZMEDIA"_s),
        attribute(u"ZATTACHMENT"_s),
        column(u"ZPARENTATTACHMENT"_s),
        attribute(u"ZTYPEUTI"_s),
        column(u"ZFILENAME"_s),
        column(u"ZUSERTITLE"_s),
        column(u"ZALTTEXT"_s),
        column(u"ZTOKENCONTENTIDENTIFIER"_s),
        column(u"ZURLSTRING"_s),
        attribute(u"ZSUMMARY"_s),
        column(u"ZHANDWRITINGSUMMARY"_s),
        column(u"ZOCRSUMMARY"_s),
        attribute(u"ZFILESIZE"_s),
        attribute(u"ZSIZEWIDTH"_s),
        attribute(u"ZSIZEHEIGHT"_s),
        attribute(u"ZDURATION"_s),
        column(u"ZFALLBACKIMAGEGENERATION"_s),
        column(u"ZFALLBACKPDFGENERATION"_s),
    };
    return m_store.query(
        columns.join(u", "_s), kObjects, [this](const Statement &row) { readObject(row); });
}

void NoteObjects::readObject(const Statement &row)
{
    const QString kind = m_kinds.value(row.integer(Entity));
    const bool isGuess = m_kinds.isEmpty();
    if (kind == "ICNote"_L1 || (isGuess && m_notesWithText.contains(row.integer(Key)))) {
        readNote(row);
        return;
    }
    const QString hint = row.text(Hint).trimmed();
    if (kind == "ICAccount"_L1 || !hint.isEmpty())
        m_drafts.accounts.insert(row.integer(Key), { row.text(Name).trimmed(), hint });
    if (kind == "ICFolder"_L1
        || (isGuess && !row.bytes(Title2).isEmpty() && row.bytes(Type).isEmpty())) {
        readFolder(row);
    } else if (kind == "ICMedia"_L1
               || (isGuess && !row.bytes(FileName).isEmpty() && row.bytes(Type).isEmpty())) {
        m_drafts.attachments.addMedium(row.integer(Key),
                                       { row.text(Identifier), row.text(FileName), sizeOf(row) },
                                       row.integer(OfAttachment));
    } else if (!row.bytes(Type).isEmpty()) {
        readAttachment(row);
    }
}

void NoteObjects::readNote(const Statement &row)
{
    const qint64 key = row.integer(Key);
    if (m_drafts.drafts.contains(key))
        return;
    NoteDraft draft;
    Note &note = draft.note;
    note.id = key;
    note.identifier = row.text(Identifier);
    note.title = row.text(row.bytes(Title1).isEmpty() ? Title : Title1).trimmed();
    note.snippet = row.text(Snippet).trimmed();
    if (note.snippet.isEmpty())
        note.snippet = withoutTitle(row.text(ListText), note.title);
    if (row.integer(Locked) != 0)
        note.bodyState = Note::BodyState::Locked;
    note.pinned = row.integer(Pinned) != 0;
    note.shared = row.integer(Shared) != 0;
    note.deleted = row.integer(Deleted) != 0;
    note.hint = row.text(Hint).trimmed();
    note.created = PhoneTime::since2001(row.number(Created));
    note.modified = PhoneTime::since2001(row.number(Modified));
    note.opened = PhoneTime::since2001(row.number(Opened));
    draft.folder = row.integer(InFolder);
    draft.account = row.integer(InAccount);
    if (row.integer(NoteData) != 0)
        m_drafts.noteOfText.insert(row.integer(NoteData), key);
    m_drafts.drafts.insert(key, draft);
    m_drafts.order.append(key);
}

void NoteObjects::readFolder(const Statement &row)
{
    NoteFolders::Folder folder;
    folder.title = row.text(Title2).trimmed();
    folder.parent = row.integer(Parent);
    folder.account = row.integer(row.integer(Owner) != 0 ? Owner : InAccount);
    folder.isTrash =
        row.integer(FolderType) == kTrash || row.bytes(Identifier).startsWith("TrashFolder");
    m_drafts.folders.add(row.integer(Key), folder);
}

void NoteObjects::readAttachment(const Statement &row)
{
    StoredAttachment stored;
    stored.note = row.integer(OfNote);
    stored.medium = row.integer(MediumKey);
    stored.imageGeneration = row.text(ImageGeneration);
    stored.pdfGeneration = row.text(PdfGeneration);
    NoteAttachment &attachment = stored.record;
    attachment.id = row.integer(Key);
    attachment.identifier = row.text(Identifier);
    attachment.type = row.text(Type);
    attachment.kind = NoteAttachments::kindOf(attachment.type);
    attachment.deleted = row.integer(Deleted) != 0;
    attachment.title = firstText(row, { UserTitle, Title });
    attachment.text = row.text(AltText).simplified();
    attachment.target = row.text(Target);
    attachment.url = row.text(Url).trimmed();
    attachment.summary = row.text(Summary).trimmed();
    attachment.words = firstText(row, { HandWriting, WordsInPicture });
    attachment.parent = row.integer(InAttachment);
    attachment.bytes = sizeOf(row);
    attachment.size = QSize(int(row.integer(Width)), int(row.integer(Height)));
    attachment.seconds = row.number(Duration).value_or(0);
    attachment.created = PhoneTime::since2001(row.number(Created));
    attachment.modified = PhoneTime::since2001(row.number(Modified));
    m_drafts.attachments.add(stored);
}

// Until iOS 10 a note could be in several folders: "Z_12NOTES(Z_12FOLDERS, Z_9NOTES)".
void NoteObjects::readFolderLinks()
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
            const auto draft = m_drafts.drafts.find(row.integer(0));
            const bool isBetter = draft != m_drafts.drafts.end()
                && (draft->folder == 0
                    || (m_drafts.folders.isTrash(draft->folder)
                        && !m_drafts.folders.isTrash(row.integer(1))));
            if (isBetter)
                draft->folder = row.integer(1);
        });
    }
}

} // namespace PhoneBackup
