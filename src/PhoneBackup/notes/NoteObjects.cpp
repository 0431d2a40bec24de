#include "PhoneBackup/notes/NoteObjects.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/source/ObjectStore.h"

#include <QRegularExpression>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

const QString NoteObjects::kObjects = u"ZICCLOUDSYNCINGOBJECT"_s;
const QString NoteObjects::kTexts = u"ZICNOTEDATA"_s;

namespace {

constexpr qint64 kTrash = 1; // kind of a folder

// The text in the phone's list of notes is the title, a line end and the beginning of the text.
QString withoutTitle(const QString &listText, const QString &title)
{
    const qsizetype lineEnd = listText.indexOf(u'\n');
    const QString first = lineEnd < 0 ? listText : listText.first(lineEnd);
    if (first.trimmed() != title)
        return listText.trimmed();
    return lineEnd < 0 ? QString() : listText.sliced(lineEnd).trimmed();
}

QString firstText(const Table::Row &row, std::initializer_list<Table::Column> columns)
{
    for (const Table::Column column : columns) {
        if (const QString text = row.text(column).simplified(); !text.isEmpty())
            return text;
    }
    return {};
}

qint64 sizeOf(const Table::Row &row, Table::Column bytes)
{
    return row.number(bytes) ? row.integer(bytes) : -1;
}

} // namespace

// What is read of the wide table. Attributes that several kinds have bear a number, which differs
// from release to release.
struct NoteObjects::Columns
{
    explicit Columns(RowDatabase &database)
        : store(database)
        , table(database, kObjects)
    {
    }

    RowDatabase &store;
    Table table;
    Table::Column kind = column(u"Z_ENT"_s);
    Table::Column identifier = column(u"ZIDENTIFIER"_s);
    Table::Column accountName = column(u"ZNAME"_s);
    Table::Column title = column(u"ZTITLE"_s);
    Table::Column title1 = column(u"ZTITLE1"_s);
    Table::Column title2 = column(u"ZTITLE2"_s);
    Table::Column snippet = column(u"ZSNIPPET"_s);
    Table::Column listText = column(u"ZWIDGETSNIPPET"_s);
    Table::Column folder = column(u"ZFOLDER"_s);
    Table::Column account = attribute(u"ZACCOUNT"_s);
    Table::Column owner = column(u"ZOWNER"_s);
    Table::Column noteData = column(u"ZNOTEDATA"_s);
    Table::Column parent = column(u"ZPARENT"_s);
    Table::Column folderType = column(u"ZFOLDERTYPE"_s);
    Table::Column deleted = column(u"ZMARKEDFORDELETION"_s);
    Table::Column locked = column(u"ZISPASSWORDPROTECTED"_s);
    Table::Column pinned = column(u"ZISPINNED"_s);
    Table::Column shared = table.expression(table.sql(u"ZSERVERSHAREDATA"_s) + u" IS NOT NULL"_s);
    Table::Column hint = column(u"ZPASSWORDHINT"_s);
    Table::Column created = attribute(u"ZCREATIONDATE"_s);
    Table::Column modified = attribute(u"ZMODIFICATIONDATE"_s);
    Table::Column opened = column(u"ZLASTOPENEDDATE"_s);
    Table::Column note = attribute(u"ZNOTE"_s);
    Table::Column medium = column(u"ZMEDIA"_s);
    Table::Column attachment = attribute(u"ZATTACHMENT"_s);
    Table::Column parentAttachment = column(u"ZPARENTATTACHMENT"_s);
    Table::Column type = attribute(u"ZTYPEUTI"_s);
    Table::Column fileName = column(u"ZFILENAME"_s);
    Table::Column userTitle = column(u"ZUSERTITLE"_s);
    Table::Column altText = column(u"ZALTTEXT"_s);
    Table::Column target = column(u"ZTOKENCONTENTIDENTIFIER"_s);
    Table::Column url = column(u"ZURLSTRING"_s);
    Table::Column summary = attribute(u"ZSUMMARY"_s);
    Table::Column handWriting = column(u"ZHANDWRITINGSUMMARY"_s);
    Table::Column wordsInPicture = column(u"ZOCRSUMMARY"_s);
    Table::Column bytes = attribute(u"ZFILESIZE"_s);
    Table::Column width = attribute(u"ZSIZEWIDTH"_s);
    Table::Column height = attribute(u"ZSIZEHEIGHT"_s);
    Table::Column duration = attribute(u"ZDURATION"_s);
    Table::Column imageGeneration = column(u"ZFALLBACKIMAGEGENERATION"_s);
    Table::Column pdfGeneration = column(u"ZFALLBACKPDFGENERATION"_s);

private:
    Table::Column column(const QString &name) { return table.column(name); }
    Table::Column attribute(const QString &name)
    {
        return table.expression(ObjectStore::attribute(store, kObjects, name));
    }
};

NoteObjects::NoteObjects(RowDatabase &store, NoteDrafts &drafts)
    : m_store(store)
    , m_drafts(drafts)
{
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
    Table texts(m_store, kTexts);
    const auto note = texts.column(u"ZNOTE"_s);
    texts.forEach([this, note](const Table::Row &row) {
        if (row.integer(note) != 0)
            m_drafts.noteOfText.insert(row.id(), row.integer(note));
    });
    for (const qint64 key : std::as_const(m_drafts.noteOfText))
        m_notesWithText.insert(key);
}

bool NoteObjects::readTable()
{
    const Columns columns(m_store);
    return columns.table.exists() && columns.table.forEach([this, &columns](const Table::Row &row) {
        readObject(row, columns);
    });
}

void NoteObjects::readObject(const Table::Row &row, const Columns &columns)
{
    const QString kind = m_kinds.value(row.integer(columns.kind));
    const bool isGuess = m_kinds.isEmpty();
    if (kind == "ICNote"_L1 || (isGuess && m_notesWithText.contains(row.id()))) {
        readNote(row, columns);
        return;
    }
    const QString hint = row.text(columns.hint).trimmed();
    if (kind == "ICAccount"_L1 || !hint.isEmpty())
        m_drafts.accounts.insert(row.id(), { row.text(columns.accountName).trimmed(), hint });
    if (kind == "ICFolder"_L1
        || (isGuess && !row.bytes(columns.title2).isEmpty() && row.bytes(columns.type).isEmpty())) {
        readFolder(row, columns);
    } else if (kind == "ICMedia"_L1
               || (isGuess && !row.bytes(columns.fileName).isEmpty()
                   && row.bytes(columns.type).isEmpty())) {
        m_drafts.attachments.addMedium(row.id(),
                                       { row.text(columns.identifier),
                                         row.text(columns.fileName),
                                         sizeOf(row, columns.bytes) },
                                       row.integer(columns.attachment));
    } else if (!row.bytes(columns.type).isEmpty()) {
        readAttachment(row, columns);
    }
}

void NoteObjects::readNote(const Table::Row &row, const Columns &columns)
{
    const qint64 key = row.id();
    if (m_drafts.drafts.contains(key))
        return;
    NoteDraft draft;
    Note &note = draft.note;
    note.id = key;
    note.identifier = row.text(columns.identifier);
    note.title =
        row.text(row.bytes(columns.title1).isEmpty() ? columns.title : columns.title1).trimmed();
    note.snippet = row.text(columns.snippet).trimmed();
    if (note.snippet.isEmpty())
        note.snippet = withoutTitle(row.text(columns.listText), note.title);
    if (row.integer(columns.locked) != 0)
        note.bodyState = Note::BodyState::Locked;
    note.pinned = row.integer(columns.pinned) != 0;
    note.shared = row.integer(columns.shared) != 0;
    note.deleted = row.integer(columns.deleted) != 0;
    note.hint = row.text(columns.hint).trimmed();
    note.created = PhoneTime::since2001(row.number(columns.created));
    note.modified = PhoneTime::since2001(row.number(columns.modified));
    note.opened = PhoneTime::since2001(row.number(columns.opened));
    draft.folder = row.integer(columns.folder);
    draft.account = row.integer(columns.account);
    if (row.integer(columns.noteData) != 0)
        m_drafts.noteOfText.insert(row.integer(columns.noteData), key);
    m_drafts.drafts.insert(key, draft);
    m_drafts.order.append(key);
}

void NoteObjects::readFolder(const Table::Row &row, const Columns &columns)
{
    NoteFolders::Folder folder;
    folder.title = row.text(columns.title2).trimmed();
    folder.parent = row.integer(columns.parent);
    folder.account = row.integer(row.integer(columns.owner) != 0 ? columns.owner : columns.account);
    folder.isTrash = row.integer(columns.folderType) == kTrash
        || row.bytes(columns.identifier).startsWith("TrashFolder");
    m_drafts.folders.add(row.id(), folder);
}

void NoteObjects::readAttachment(const Table::Row &row, const Columns &columns)
{
    StoredAttachment stored;
    stored.note = row.integer(columns.note);
    stored.medium = row.integer(columns.medium);
    stored.imageGeneration = row.text(columns.imageGeneration);
    stored.pdfGeneration = row.text(columns.pdfGeneration);
    NoteAttachment &attachment = stored.record;
    attachment.id = row.id();
    attachment.identifier = row.text(columns.identifier);
    attachment.type = row.text(columns.type);
    attachment.kind = NoteAttachments::kindOf(attachment.type);
    attachment.deleted = row.integer(columns.deleted) != 0;
    attachment.title = firstText(row, { columns.userTitle, columns.title });
    attachment.text = row.text(columns.altText).simplified();
    attachment.target = row.text(columns.target);
    attachment.url = row.text(columns.url).trimmed();
    attachment.summary = row.text(columns.summary).trimmed();
    attachment.words = firstText(row, { columns.handWriting, columns.wordsInPicture });
    attachment.parent = row.integer(columns.parentAttachment);
    attachment.bytes = sizeOf(row, columns.bytes);
    attachment.size = QSize(int(row.integer(columns.width)), int(row.integer(columns.height)));
    attachment.seconds = row.number(columns.duration).value_or(0);
    attachment.created = PhoneTime::since2001(row.number(columns.created));
    attachment.modified = PhoneTime::since2001(row.number(columns.modified));
    m_drafts.attachments.add(stored);
}

// Until iOS 10 a note could be in several folders: "Z_12NOTES(Z_12FOLDERS, Z_9NOTES)".
void NoteObjects::readFolderLinks()
{
    if (m_store.hasColumn(kObjects, u"ZFOLDER"_s))
        return;
    static const QRegularExpression kLinks(u"^Z_\\d+NOTES$"_s); // the table, and its column
    for (const QString &name : m_store.tableNames().filter(kLinks)) {
        Table table(m_store, name);
        const QString folders = name.chopped(5) + u"FOLDERS"_s;
        const QStringList notes = m_store.columns(name).filter(kLinks);
        if (!table.hasColumn(folders) || notes.isEmpty())
            continue;
        const auto [note, folder] = table.columns(notes.first(), folders);
        table.forEach([this, note = note, folder = folder](const Table::Row &row) {
            const auto draft = m_drafts.drafts.find(row.integer(note));
            const bool isBetter = draft != m_drafts.drafts.end()
                && (draft->folder == 0
                    || (m_drafts.folders.isTrash(draft->folder)
                        && !m_drafts.folders.isTrash(row.integer(folder))));
            if (isBetter)
                draft->folder = row.integer(folder);
        });
    }
}

} // namespace PhoneBackup
