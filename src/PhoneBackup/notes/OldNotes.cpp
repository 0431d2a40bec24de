#include "PhoneBackup/notes/OldNotes.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/notes/HtmlBody.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/RowDatabase.h"
#include "PhoneBackup/source/Source.h"

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
    if (store.hasTable(kAccounts)) {
        store.query(u"Z_PK, "_s + store.column(kAccounts, u"ZNAME"_s),
                    kAccounts,
                    [&](const Statement &row) { names.insert(row.integer(0), row.text(1)); });
    }
    return names;
}

QHash<qint64, Folder> foldersOf(RowDatabase &store)
{
    QHash<qint64, Folder> folders;
    if (!store.hasTable(kFolders))
        return folders;
    const Names accounts = accountsOf(store);
    store.query(u"Z_PK, %1, %2"_s.arg(store.column(kFolders, u"ZNAME"_s),
                                      store.column(kFolders, u"ZACCOUNT"_s)),
                kFolders,
                [&](const Statement &row) {
                    folders.insert(row.integer(0), { row.text(1), accounts.value(row.integer(2)) });
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
    enum Column { Key, Guid, Title, Summary, InStore, Created, Modified, Deleted, Hidden, Body };
    const QHash<qint64, Folder> folders = foldersOf(store);
    QString columns = u"Z_PK"_s;
    for (const QString &name : { u"ZGUID"_s,
                                 u"ZTITLE"_s,
                                 u"ZSUMMARY"_s,
                                 u"ZSTORE"_s,
                                 u"ZCREATIONDATE"_s,
                                 u"ZMODIFICATIONDATE"_s,
                                 u"ZDELETEDFLAG"_s,
                                 u"ZISBOOKKEEPINGENTRY"_s,
                                 u"ZBODY"_s })
        columns += u", "_s + store.column(kNotes, name);
    store.query(columns, kNotes, [&](const Statement &row) {
        if (row.integer(Hidden) != 0 || places.contains(row.integer(Key)))
            return;
        Note note;
        note.store = Note::Store::Old;
        note.id = row.integer(Key);
        note.identifier = row.text(Guid);
        note.title = row.text(Title).trimmed();
        note.snippet = row.text(Summary).trimmed();
        const Folder folder = folders.value(row.integer(InStore));
        note.folder = folder.name;
        note.account = folder.account;
        note.created = PhoneTime::since2001(row.number(Created));
        note.modified = PhoneTime::since2001(row.number(Modified));
        note.deleted = row.integer(Deleted) != 0;
        places.insert(note.id, qsizetype(notes.size()));
        if (row.integer(Body) != 0)
            placesByBody.insert(row.integer(Body), qsizetype(notes.size()));
        notes.push_back(std::move(note));
    });
}

void OldNotes::readBodies(RowDatabase &store)
{
    store.query(u"Z_PK, %1, %2"_s.arg(store.column(kBodies, u"ZOWNER"_s),
                                      store.column(kBodies, u"ZCONTENT"_s)),
                kBodies,
                [&](const Statement &row) {
                    const qsizetype place =
                        places.value(row.integer(1), placesByBody.value(row.integer(0), -1));
                    if (place < 0 || row.bytes(2).isEmpty())
                        return;
                    Note &note = notes[std::size_t(place)];
                    note.attachments.clear();
                    note.body = bodyOfHtml(row.text(2), note.attachments);
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
