#include "PhoneBackup/notes/NoteBodies.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/notes/NoteObjects.h"
#include "PhoneBackup/notes/NoteTableRecord.h"
#include "PhoneBackup/source/ObjectStore.h"
#include "PhoneBackup/source/Source.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using BodyState = Note::BodyState;

namespace {

constexpr qsizetype kMaxRecordBytes = qsizetype(32) << 20; // of one note's text, or one table
constexpr qsizetype kMaxUnpackedBytes = qsizetype(2) << 30; // of all of them
// Blocks, runs and cells of all notes: a hundred lines in each of thirty thousand notes.
constexpr qsizetype kMaxParts = qsizetype(8) << 20;

// Whether a table shows more than an empty line.
bool showsAnything(const NoteTable &table)
{
    return table.cells.size() > 1
        || (table.cells.size() == 1
            && (table.isRightToLeft || !table.cells.front().text.isEmpty()));
}

} // namespace

NoteBodies::NoteBodies(Source &source, RowDatabase &store, NoteDrafts &drafts)
    : m_source(source)
    , m_store(store)
    , m_drafts(drafts)
    , m_tables(store, NoteObjects::kObjects)
    , m_tableRecord(m_tables.expression(
          ObjectStore::attribute(store, NoteObjects::kObjects, u"ZMERGEABLEDATA"_s)))
    , m_partsLeft(kMaxParts)
    , m_bytesLeft(kMaxUnpackedBytes)
{
}

void NoteBodies::read(bool withoutNote)
{
    const QString &texts = NoteObjects::kTexts;
    if (!m_store.hasTable(texts)) {
        if (!m_drafts.order.isEmpty())
            m_store.addLoss(Notice("notes.noTexts"));
        return;
    }
    Table table(m_store, texts);
    const Table::Column data = table.column(u"ZDATA"_s);
    const Table::Column enciphered = table.expression(u"coalesce(%1, %2) IS NOT NULL"_s.arg(
        table.sql(u"ZCRYPTOTAG"_s), table.sql(u"ZCRYPTOINITIALIZATIONVECTOR"_s)));
    table.forEach([&](const Table::Row &row) {
        const QByteArrayView record = row.bytes(data);
        auto draft = m_drafts.drafts.find(m_drafts.noteOfText.value(row.id()));
        if (draft == m_drafts.drafts.end() && withoutNote && !record.isEmpty()) {
            // What told of this note is lost, but not the note.
            const qint64 lost = ~row.id();
            draft = m_drafts.drafts.insert(lost, {});
            m_drafts.order.append(lost);
        }
        if (draft != m_drafts.drafts.end() && draft->note.bodyState == BodyState::Elsewhere
            && !record.isEmpty())
            setBody(*draft, record, row.integer(enciphered) != 0);
    });
}

// A record may unpack to a thousand times its size: together they have a limit, too.
Unzipped NoteBodies::unpacked(QByteArrayView record)
{
    Unzipped result = unzipped(record, std::min(kMaxRecordBytes, m_bytesLeft));
    m_bytesLeft -= result.data.size();
    return result;
}

bool NoteBodies::takeRoom(const NoteBody &body)
{
    m_charactersLeft -= body.text.size();
    m_partsLeft -= qsizetype(body.blocks.size() + body.runs.size());
    return m_charactersLeft >= 0 && m_partsLeft >= 0;
}

void NoteBodies::setBody(NoteDraft &draft, QByteArrayView record, bool isEnciphered)
{
    Note &note = draft.note;
    const Unzipped unzipped = unpacked(record);
    if (unzipped.state == Unzipped::State::NotGzip) {
        // Newer phones keep a property list of what is enciphered.
        const bool isLocked = isEnciphered || record.startsWith("bplist00");
        note.bodyState = isLocked ? BodyState::Locked : BodyState::Unreadable;
        return;
    }
    QHash<qint32, std::shared_ptr<const NoteTable>> tables; // by place
    NoteText text = NoteText::read(
        unzipped.data, [this, &draft, &tables](const QString &identifier, const QString &type) {
            const qint32 place = m_drafts.placeInText(identifier, type, draft);
            const NoteAttachment &attachment = draft.note.attachments[std::size_t(place)];
            if (attachment.kind != NoteAttachment::Kind::Table)
                return NoteText::Inset { place, nullptr };
            auto known = tables.constFind(place);
            if (known == tables.constEnd())
                known = tables.insert(place, table(attachment.id, draft));
            return NoteText::Inset { place, *known };
        });
    const bool hasRoom = takeRoom(text.body);
    const bool isWhole = text.isComplete && unzipped.state == Unzipped::State::Whole;
    note.bodyState = isWhole && hasRoom ? BodyState::Whole : BodyState::Cut;
    if (hasRoom)
        note.body = std::move(text.body);
}

// Read when it is asked for, once all that may stand in its cells is known.
std::shared_ptr<const NoteTable> NoteBodies::table(qint64 attachment, NoteDraft &draft)
{
    const QByteArray record = tableRecord(attachment);
    if (record.isEmpty())
        return nullptr;
    const Unzipped unzipped = unpacked(record);
    std::optional<NoteTableRecord> read = NoteTableRecord::read(
        unzipped.data, [this, &draft](const QString &identifier, const QString &type) {
            return NoteText::Inset { m_drafts.placeInText(identifier, type, draft), nullptr };
        });
    bool hasRoom = false;
    if (read) {
        m_partsLeft -= qsizetype(read->table.cells.size());
        hasRoom = takeRoom({});
        for (const NoteBody &cell : read->table.cells)
            hasRoom = takeRoom(cell);
    }
    if (!hasRoom || !read->isComplete || unzipped.state != Unzipped::State::Whole) {
        m_source.addProblem(
            { DataType::Notes,
              u"NoteStore.sqlite: %1: table %2"_s.arg(NoteObjects::kObjects).arg(attachment),
              Notice("notes.tableDamaged") });
    }
    if (!hasRoom || !showsAnything(read->table))
        return nullptr;
    return std::make_shared<const NoteTable>(std::move(read->table));
}

QByteArray NoteBodies::tableRecord(qint64 key)
{
    if (!m_tableRecords)
        m_tableRecords = m_tables.lookup();
    const Table::Row *row = m_tableRecords->find(key);
    return row == nullptr ? QByteArray() : row->bytes(m_tableRecord).toByteArray();
}

} // namespace PhoneBackup
