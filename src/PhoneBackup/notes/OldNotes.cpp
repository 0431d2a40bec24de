#include "PhoneBackup/notes/OldNotes.h"

#include "PhoneBackup/notes/HtmlText.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/RowDatabase.h"
#include "PhoneBackup/source/Source.h"
#include "platform/Translation_p.h"

#include <QHash>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNotes = 9;
const QString kNote = u"ZNOTE"_s;
const QString kBody = u"ZNOTEBODY"_s;
const QString kStore = u"ZSTORE"_s;

} // namespace

QList<Note> readOldNotes(Source &source)
{
    QList<Note> notes;
    std::optional<RowDatabase> store = RowDatabase::open(
        source, kNotes, "HomeDomain", u"Library/Notes/notes.sqlite"_s, tr("Notes may be missing."));
    if (!store)
        return notes;
    if (!store->hasTable(kNote)) {
        store->addLoss(tr("It has no table of notes that can be read."));
        return notes;
    }

    QHash<qint64, QString> folders;
    if (store->hasTable(kStore)) {
        store->query(u"Z_PK, "_s + store->column(kStore, u"ZNAME"_s),
                     kStore,
                     [&](const Statement &row) { folders.insert(row.integer(0), row.text(1)); });
    }
    QHash<qint64, qsizetype> places; // of a note in the list, by its number
    QHash<qint64, qsizetype> placesByBody;
    const auto column = [&](const QString &name) { return store->column(kNote, name); };
    store->query(u"Z_PK, %1, %2, %3, %4, %5, %6, %7, %8"_s.arg(column(u"ZTITLE"_s),
                                                               column(u"ZSUMMARY"_s),
                                                               column(u"ZSTORE"_s),
                                                               column(u"ZCREATIONDATE"_s),
                                                               column(u"ZMODIFICATIONDATE"_s),
                                                               column(u"ZDELETEDFLAG"_s),
                                                               column(u"ZISBOOKKEEPINGENTRY"_s),
                                                               column(u"ZBODY"_s)),
                 kNote,
                 [&](const Statement &row) {
                     if (row.integer(7) != 0 || places.contains(row.integer(0)))
                         return;
                     Note note;
                     note.id = row.integer(0);
                     note.title = row.text(1).trimmed();
                     note.text = row.text(2).trimmed(); // until its body is found
                     note.folder = folders.value(row.integer(3));
                     note.created = PhoneTime::since2001(row.number(4));
                     note.modified = PhoneTime::since2001(row.number(5));
                     note.deleted = row.integer(6) != 0;
                     places.insert(note.id, notes.size());
                     if (row.integer(8) != 0)
                         placesByBody.insert(row.integer(8), notes.size());
                     notes.append(note);
                 });
    if (!store->hasTable(kBody)) {
        store->addLoss(tr("It has no table of texts that can be read."));
        return notes;
    }
    store->query(u"Z_PK, %1, %2"_s.arg(store->column(kBody, u"ZOWNER"_s),
                                       store->column(kBody, u"ZCONTENT"_s)),
                 kBody,
                 [&](const Statement &row) {
                     const qsizetype place =
                         places.value(row.integer(1), placesByBody.value(row.integer(0), -1));
                     if (place >= 0 && !row.bytes(2).isEmpty())
                         notes[place].text = textOfHtml(row.text(2));
                 });
    return notes;
}

} // namespace PhoneBackup
