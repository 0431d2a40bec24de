#include "PhoneBackup/notes/NoteTableRecord.h"

#include "PhoneBackup/notes/NoteBodyWriter.h"
#include "PhoneBackup/packed/FieldReader.h"

#include <QHash>

#include <algorithm>
#include <limits>
#include <vector>

namespace PhoneBackup {

namespace {

// Fields of the record: where its objects are, and what they are made of.
namespace Field {
constexpr quint32 kDocument = 2;
constexpr quint32 kData = 3;
constexpr quint32 kObject = 3;
constexpr quint32 kKeyName = 4;
constexpr quint32 kTypeName = 5;
constexpr quint32 kIdentifier = 6;
// The kinds of an object.
constexpr quint32 kRegister = 1; // another object, and when it was set
constexpr quint32 kDictionary = 6;
constexpr quint32 kText = 10;
constexpr quint32 kCustom = 13;
constexpr quint32 kOrderedSet = 16;
// The parts of these.
constexpr quint32 kElement = 1; // of a dictionary
constexpr quint32 kKey = 1; // of an element
constexpr quint32 kValue = 2; // likewise
constexpr quint32 kCustomType = 1;
constexpr quint32 kCustomEntry = 3;
constexpr quint32 kOrdering = 1;
constexpr quint32 kArray = 1;
constexpr quint32 kContents = 2;
constexpr quint32 kArrayMember = 2;
constexpr quint32 kMemberIdentifier = 2;
// The kinds of a reference.
constexpr quint32 kNumber = 2;
constexpr quint32 kString = 4;
constexpr quint32 kObjectIndex = 6;
} // namespace Field

constexpr qsizetype kCharactersAPart = 8; // what a block or run counts for in the limit of a table
constexpr quint64 kNone = std::numeric_limits<quint64>::max();

// An object of the record, looked at once: what refers to it may come any number of times.
struct Object
{
    QByteArrayView custom;
    QByteArrayView dictionary;
    QByteArrayView orderedSet;
    QByteArrayView text;
    QByteArrayView reference; // of a register
    quint64 identifier = kNone; // number of the identifier that it stands for
    bool isThere = false; // false: what refers to it leads nowhere
};

Object objectOf(QByteArrayView message)
{
    Object object;
    object.isThere = true;
    FieldReader reader(message);
    while (reader.next()) {
        switch (reader.number()) {
        case Field::kCustom:
            object.custom = reader.bytes();
            break;
        case Field::kDictionary:
            object.dictionary = reader.bytes();
            break;
        case Field::kOrderedSet:
            object.orderedSet = reader.bytes();
            break;
        case Field::kRegister:
            object.reference = FieldReader::find(reader.bytes(), { Field::kContents });
            break;
        case Field::kText:
            object.text = reader.bytes();
            break;
        default:
            break;
        }
    }
    object.identifier =
        FieldReader::value(FieldReader::find(object.custom, { Field::kCustomEntry, Field::kValue }),
                           Field::kNumber,
                           kNone);
    return object;
}

// Rows or columns: the place of each identifier, and how many there are.
struct Axis
{
    static constexpr qsizetype kUnknown = -1;
    static constexpr qsizetype kDeleted = -2; // the phone still knows it, but does not show it

    qsizetype place(quint64 identifier) const { return places.value(identifier, kUnknown); }

    QHash<quint64, qsizetype> places;
    qsizetype count = 0;
    bool isComplete = true;
};

class Objects
{
public:
    explicit Objects(QByteArrayView data)
    {
        FieldReader reader(data);
        while (reader.next()) {
            if (reader.number() == Field::kObject)
                m_objects.push_back(objectOf(reader.bytes()));
            else if (reader.number() == Field::kKeyName)
                m_keys.push_back(reader.bytes());
            else if (reader.number() == Field::kTypeName)
                m_types.push_back(reader.bytes());
            else if (reader.number() == Field::kIdentifier)
                m_identifiers.insert(reader.bytes(), m_identifiers.size());
        }
        m_isDamaged = reader.isDamaged();
    }

    bool isDamaged() const { return m_isDamaged; }

    // The entries of the object that is the table, null when there is none.
    QByteArrayView table() const
    {
        for (const Object &object : m_objects) {
            const quint64 type = FieldReader::value(object.custom, Field::kCustomType, kNone);
            if (type < m_types.size() && m_types[type].endsWith(".ICTable"))
                return object.custom;
        }
        return {};
    }

    // The object in the entry \a key of \a custom, an empty one when there is none.
    Object entry(QByteArrayView custom, QByteArrayView key) const
    {
        FieldReader reader(custom);
        while (reader.next()) {
            if (reader.number() != Field::kCustomEntry)
                continue;
            const quint64 name = FieldReader::value(reader.bytes(), Field::kKey, kNone);
            if (name < m_keys.size() && m_keys[name] == key)
                return object(FieldReader::find(reader.bytes(), { Field::kValue }));
        }
        return {};
    }

    Object object(QByteArrayView reference) const
    {
        const quint64 index = FieldReader::value(reference, Field::kObjectIndex, kNone);
        return index < m_objects.size() ? m_objects[index] : Object();
    }

    // The text in the entry \a key of \a custom, which may be kept in a register.
    QByteArrayView string(QByteArrayView custom, QByteArrayView key) const
    {
        Object holder = entry(custom, key);
        if (!holder.reference.isNull())
            holder = object(holder.reference);
        return FieldReader::find(holder.custom,
                                 { Field::kCustomEntry, Field::kValue, Field::kString });
    }

    // The number of the identifier that the object in field \a part of \a element stands for.
    quint64 identifier(QByteArrayView element, quint32 part) const
    {
        return object(FieldReader::find(element, { part })).identifier;
    }

    Axis axis(const Object &object) const
    {
        Axis axis;
        const QByteArrayView ordering = FieldReader::find(object.orderedSet, { Field::kOrdering });
        FieldReader members(FieldReader::find(ordering, { Field::kArray }));
        while (members.next() && axis.count < NoteTableRecord::kMaxCells) {
            if (members.number() != Field::kArrayMember)
                continue;
            const auto known = m_identifiers.constFind(
                FieldReader::find(members.bytes(), { Field::kMemberIdentifier }));
            if (known == m_identifiers.constEnd())
                axis.isComplete = false;
            else if (!axis.places.contains(quint64(*known)))
                axis.places.insert(quint64(*known), axis.count++);
        }
        // Cells name a row or column by another identifier, which stands for the one above.
        QHash<quint64, qsizetype> others;
        FieldReader elements(FieldReader::find(ordering, { Field::kContents }));
        while (elements.next()) {
            const quint64 ordered = identifier(elements.bytes(), Field::kKey);
            const quint64 other = identifier(elements.bytes(), Field::kValue);
            if (elements.number() == Field::kElement && ordered != kNone && other != kNone)
                others.insert(other, axis.places.value(ordered, Axis::kDeleted));
        }
        for (auto it = others.cbegin(); it != others.cend(); ++it) {
            if (!axis.places.contains(it.key()))
                axis.places.insert(it.key(), it.value());
        }
        return axis;
    }

private:
    std::vector<Object> m_objects;
    std::vector<QByteArrayView> m_keys;
    std::vector<QByteArrayView> m_types;
    QHash<QByteArrayView, qsizetype> m_identifiers;
    bool m_isDamaged = false;
};

} // namespace

std::optional<NoteTableRecord> NoteTableRecord::read(QByteArrayView document,
                                                     const NoteText::Insets &insets)
{
    const Objects objects(FieldReader::find(document, { Field::kDocument, Field::kData }));
    const QByteArrayView root = objects.table();
    if (root.isNull())
        return std::nullopt;
    const Axis rows = objects.axis(objects.entry(root, "crRows"));
    const Axis columns = objects.axis(objects.entry(root, "crColumns"));
    NoteTableRecord result;
    NoteTable &table = result.table;
    table.isRightToLeft = objects.string(root, "crTableColumnDirection").endsWith("RightToLeft");
    table.columns = columns.count;
    const qsizetype rowCount =
        columns.count == 0 ? 0 : std::min(rows.count, kMaxCells / columns.count);
    result.isComplete = !objects.isDamaged() && rows.isComplete && columns.isComplete
        && (columns.count == 0 || rowCount == rows.count);
    table.cells.resize(std::size_t(rowCount * columns.count));

    // Columns may share their cells in a hostile record: what is looked at has a limit, and so has
    // what is kept.
    qsizetype bytesLeft = 2 * document.size();
    qsizetype charactersLeft = NoteBodyWriter::kMaxCharacters;
    FieldReader byColumn(objects.entry(root, "cellColumns").dictionary);
    while (byColumn.next()) {
        const qsizetype column = columns.place(objects.identifier(byColumn.bytes(), Field::kKey));
        if (byColumn.number() != Field::kElement || column == Axis::kDeleted)
            continue;
        const Object cells = objects.object(FieldReader::find(byColumn.bytes(), { Field::kValue }));
        result.isComplete = result.isComplete && cells.isThere;
        FieldReader byRow(cells.dictionary);
        while (byRow.next()) {
            const QByteArrayView element = byRow.bytes();
            const QByteArrayView text =
                objects.object(FieldReader::find(element, { Field::kValue })).text;
            bytesLeft -= element.size() + text.size() + 1;
            if (bytesLeft < 0 || charactersLeft < 0) {
                result.isComplete = false;
                return result;
            }
            const qsizetype row = rows.place(objects.identifier(element, Field::kKey));
            if (byRow.number() != Field::kElement || row == Axis::kDeleted)
                continue;
            NoteText cell = NoteText::readBody(text, insets);
            charactersLeft -= cell.body.text.size()
                + kCharactersAPart * qsizetype(cell.body.blocks.size() + cell.body.runs.size());
            const bool hasPlace = column >= 0 && row >= 0 && row < rowCount;
            if (text.isNull() || !cell.isComplete || (!hasPlace && !cell.body.text.isEmpty()))
                result.isComplete = false;
            if (hasPlace)
                table.cells[std::size_t(row * columns.count + column)] = std::move(cell.body);
        }
        result.isComplete = result.isComplete && !byRow.isDamaged();
    }
    result.isComplete = result.isComplete && !byColumn.isDamaged();
    return result;
}

} // namespace PhoneBackup
