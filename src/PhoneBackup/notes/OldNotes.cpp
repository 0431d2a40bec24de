#include "PhoneBackup/notes/OldNotes.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/notes/HtmlBody.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

#include <QHash>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

const QString kNotes = u"ZNOTE"_s;
const QString kBodies = u"ZNOTEBODY"_s;
const QString kFolders = u"ZSTORE"_s;
const QString kAccounts = u"ZACCOUNT"_s;

struct Folder
{
    QString name;
    QString account;
};

using Names = QHash<qint64, QString>;

Names accountsOf(RowDatabase &store)
{
    Names names;
    Table accounts(store, kAccounts);
    const auto name = accounts.column(u"ZNAME"_s);
    accounts.forEach([&](const Table::Row &row) { names.insert(row.id(), row.text(name)); });
    return names;
}

QHash<qint64, Folder> foldersOf(RowDatabase &store)
{
    QHash<qint64, Folder> folders;
    Table table(store, kFolders);
    if (!table.exists())
        return folders;
    const Names accounts = accountsOf(store);
    const auto name = table.column(u"ZNAME"_s);
    const auto account = table.column(u"ZACCOUNT"_s);
    table.forEach([&](const Table::Row &row) {
        folders.insert(row.id(), { row.text(name), accounts.value(row.integer(account)) });
    });
    return folders;
}

// The notes of the store, and where they are by their key and by that of their body.
struct OldNotes
{
    void read(RowDatabase &store);
    void readBodies(RowDatabase &store);

    std::vector<Note> notes;
    QHash<qint64, qsizetype> places;
    QHash<qint64, qsizetype> placesByBody;
};

void OldNotes::read(RowDatabase &store)
{
    const QHash<qint64, Folder> folders = foldersOf(store);
    Table table(store, kNotes);
    const auto guid = table.column(u"ZGUID"_s);
    const auto title = table.column(u"ZTITLE"_s);
    const auto summary = table.column(u"ZSUMMARY"_s);
    const auto inFolder = table.column(u"ZSTORE"_s);
    const auto created = table.column(u"ZCREATIONDATE"_s);
    const auto modified = table.column(u"ZMODIFICATIONDATE"_s);
    const auto deleted = table.column(u"ZDELETEDFLAG"_s);
    const auto hidden = table.column(u"ZISBOOKKEEPINGENTRY"_s);
    const auto body = table.column(u"ZBODY"_s);
    table.forEach([&](const Table::Row &row) {
        if (row.integer(hidden) != 0)
            return;
        Note note;
        note.store = Note::Store::Old;
        note.id = row.id();
        note.identifier = row.text(guid);
        note.title = row.text(title).trimmed();
        note.snippet = row.text(summary).trimmed();
        const Folder folder = folders.value(row.integer(inFolder));
        note.folder = folder.name;
        note.account = folder.account;
        note.created = PhoneTime::since2001(row.number(created));
        note.modified = PhoneTime::since2001(row.number(modified));
        note.deleted = row.integer(deleted) != 0;
        places.insert(note.id, qsizetype(notes.size()));
        if (row.integer(body) != 0)
            placesByBody.insert(row.integer(body), qsizetype(notes.size()));
        notes.push_back(std::move(note));
    });
}

void OldNotes::readBodies(RowDatabase &store)
{
    Table table(store, kBodies);
    const auto [owner, content] = table.columns(u"ZOWNER"_s, u"ZCONTENT"_s);
    table.forEach([&, owner = owner, content = content](const Table::Row &row) {
        const qsizetype place = places.value(row.integer(owner), placesByBody.value(row.id(), -1));
        if (place < 0 || row.bytes(content).isEmpty())
            return;
        Note &note = notes[std::size_t(place)];
        note.attachments.clear();
        note.body = bodyOfHtml(row.text(content), note.attachments);
        note.bodyState = Note::BodyState::Whole;
    });
}

} // namespace

std::vector<Note> readOldNotes(Source &source)
{
    OldNotes notes;
    std::optional<RowDatabase> store = RowDatabase::open(source,
                                                         DataType::Notes,
                                                         "HomeDomain",
                                                         u"Library/Notes/notes.sqlite"_s,
                                                         Notice("notes.mayBeMissing"));
    if (!store)
        return {};
    if (!store->hasTable(kNotes)) {
        store->addLoss(Notice("notes.noTable"));
        return {};
    }
    notes.read(*store);
    if (store->hasTable(kBodies))
        notes.readBodies(*store);
    else
        store->addLoss(Notice("notes.noTexts"));
    return std::move(notes.notes);
}

} // namespace PhoneBackup
