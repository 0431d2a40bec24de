#include "sample/NoteRecord.h"

#include <QtEndian>

#include <zlib.h>

#include <array>
#include <bit>

namespace Sample {

using namespace Qt::StringLiterals;

FieldWriter &FieldWriter::number(quint32 field, quint64 value)
{
    varint(quint64(field) << 3);
    varint(value);
    return *this;
}

FieldWriter &FieldWriter::real(quint32 field, float value)
{
    constexpr quint64 kFixed32 = 5;
    varint(quint64(field) << 3 | kFixed32);
    const auto bits = qToLittleEndian(std::bit_cast<quint32>(value));
    m_message.append(reinterpret_cast<const char *>(&bits), sizeof bits);
    return *this;
}

FieldWriter &FieldWriter::bytes(quint32 field, const QByteArray &value)
{
    constexpr quint64 kLengthDelimited = 2;
    varint(quint64(field) << 3 | kLengthDelimited);
    varint(quint64(value.size()));
    m_message += value;
    return *this;
}

void FieldWriter::varint(quint64 value)
{
    for (; value >= 0x80; value >>= 7)
        m_message += char(uchar(value & 0x7F) | 0x80U);
    m_message += char(uchar(value));
}

namespace {

QByteArray runMessage(const NoteRun &run)
{
    FieldWriter paragraph;
    if (run.style != NoteRun::kPlain)
        paragraph.number(1, quint64(run.style));
    paragraph.number(3, 1);
    if (run.indent > 0)
        paragraph.number(4, quint64(run.indent));
    if (run.style == NoteRun::Checklist) {
        paragraph.bytes(
            5,
            FieldWriter().bytes(1, QByteArray(16, '\x5a')).number(2, run.isDone ? 1 : 0).message());
    }
    if (run.isQuote)
        paragraph.number(8, 1);
    FieldWriter writer;
    writer.number(1, quint64(run.text.size())).bytes(2, paragraph.message());
    if (!run.link.isEmpty())
        writer.text(9, run.link);
    if (!run.attachment.isEmpty())
        writer.bytes(12,
                     FieldWriter().text(1, run.attachment).text(2, run.attachmentType).message());
    return writer.number(13, 1686989700).message() + run.otherFields; // 13: when it was changed
}

// The part that notes and cells of tables have in common.
QByteArray body(const QList<NoteRun> &runs)
{
    QString text;
    for (const NoteRun &run : runs)
        text += run.text;
    FieldWriter writer;
    writer.text(2, text);
    // The history of changes, of which a reader needs nothing.
    writer.bytes(3,
                 FieldWriter()
                     .bytes(1, FieldWriter().number(1, 0).number(2, 0).message())
                     .number(2, 0)
                     .number(5, 1)
                     .message());
    for (const NoteRun &run : runs)
        writer.bytes(5, runMessage(run));
    return writer.message();
}

QByteArray document(const QByteArray &content)
{
    return FieldWriter()
        .number(1, 0)
        .bytes(2, FieldWriter().number(1, 0).number(2, 0).bytes(3, content).message())
        .message();
}

QByteArray uuidOf(int number)
{
    return QByteArray(15, '\x11') + char(number);
}

// Puts the objects of a table together: they refer to each other by number.
class TableWriter
{
public:
    TableWriter(const QList<QStringList> &rows, const TableShape &shape)
    {
        const int columnCount = rows.isEmpty() ? 0 : int(rows.first().size());
        m_objects.append(QByteArray()); // the table itself, once all else has its number
        const Axis rowAxis = axis(int(rows.size()), shape.deletedRow, shape.lostRow);
        const Axis columnAxis = axis(columnCount, TableShape::kNone, TableShape::kNone);
        QByteArray byColumn;
        // Stored from the last to the first: their order is that of the axes alone.
        for (int column = columnCount - 1; column >= 0; --column) {
            QByteArray cells;
            for (int row = int(rows.size()) - 1; row >= 0; --row)
                cells += element(rowAxis.keys[row],
                                 add(FieldWriter().bytes(10, body({ run(rows[row][column]) }))));
            byColumn += element(columnAxis.keys[column], add(FieldWriter().bytes(6, cells)));
        }
        const int cellColumns = add(FieldWriter().bytes(6, byColumn));
        const std::array<std::pair<quint64, int>, 4> parts { {
            { kRowsKey, rowAxis.object },
            { kColumnsKey, columnAxis.object },
            { kCellsKey, cellColumns },
            { kDirectionKey, direction(shape.isRightToLeft) },
        } };
        FieldWriter table;
        table.number(1, kTableType);
        for (const auto &[key, object] : parts)
            table.bytes(3, FieldWriter().number(1, key).bytes(2, reference(object)).message());
        m_objects[0] = FieldWriter().bytes(13, table.message()).message();
    }

    QByteArray data() const
    {
        FieldWriter writer;
        for (const QByteArray &object : m_objects)
            writer.bytes(3, object);
        for (const char *key : { "identity",
                                 "UUIDIndex",
                                 "crRows",
                                 "crColumns",
                                 "cellColumns",
                                 "crTableColumnDirection",
                                 "self" })
            writer.bytes(4, key);
        for (const char *type : { "com.apple.CRDT.NSNumber",
                                  "com.apple.CRDT.NSString",
                                  "com.apple.CRDT.NSUUID",
                                  "com.apple.notes.CRTable",
                                  "com.apple.notes.ICTable" })
            writer.bytes(5, type);
        for (int number = 0; number < m_uuids; ++number)
            writer.bytes(6, uuidOf(number));
        return writer.message();
    }

private:
    static constexpr quint64 kUuidKey = 1;
    static constexpr quint64 kRowsKey = 2;
    static constexpr quint64 kColumnsKey = 3;
    static constexpr quint64 kCellsKey = 4;
    static constexpr quint64 kDirectionKey = 5;
    static constexpr quint64 kSelfKey = 6;
    static constexpr quint64 kTextType = 1;
    static constexpr quint64 kUuidType = 2;
    static constexpr quint64 kTableType = 4;

    struct Axis
    {
        int object;
        QList<int> keys; // what cells name the rows or columns by
    };

    static NoteRun run(const QString &cell)
    {
        if (!cell.startsWith(QChar::ObjectReplacementCharacter))
            return { cell };
        NoteRun run { cell.first(1) };
        run.attachment = cell.sliced(1);
        run.attachmentType = u"public.jpeg"_s;
        return run;
    }

    int add(const FieldWriter &writer)
    {
        m_objects.append(writer.message());
        return int(m_objects.size()) - 1;
    }

    static QByteArray reference(int object)
    {
        return FieldWriter().number(6, quint64(object)).message();
    }

    static QByteArray element(int key, int value)
    {
        return FieldWriter()
            .bytes(1, FieldWriter().bytes(1, reference(key)).bytes(2, reference(value)).message())
            .message();
    }

    int addCustom(quint64 type, quint64 key, const QByteArray &value)
    {
        return add(FieldWriter().bytes(
            13,
            FieldWriter()
                .number(1, type)
                .bytes(3, FieldWriter().number(1, key).bytes(2, value).message())
                .message()));
    }

    int addUuid()
    {
        return addCustom(
            kUuidType, kUuidKey, FieldWriter().number(2, quint64(m_uuids++)).message());
    }

    int direction(bool isRightToLeft)
    {
        const QString value =
            u"CRTableColumnDirection"_s + (isRightToLeft ? u"RightToLeft"_s : u"LeftToRight"_s);
        const int text = addCustom(kTextType, kSelfKey, FieldWriter().text(4, value).message());
        return add(FieldWriter().bytes(1, FieldWriter().bytes(2, reference(text)).message()));
    }

    Axis axis(int count, int deleted, int lost)
    {
        Axis axis;
        QByteArray contents;
        FieldWriter array;
        array.bytes(1, FieldWriter().text(2, QString(count, QChar(0xFFFC))).message());
        for (int i = 0; i < count; ++i) {
            const int ordered = m_uuids;
            const int place = addUuid();
            axis.keys.append(addUuid());
            if (i != deleted && i != lost)
                array.bytes(
                    2, FieldWriter().number(1, quint64(i)).bytes(2, uuidOf(ordered)).message());
            if (i != lost)
                contents += element(place, axis.keys.last());
        }
        axis.object = add(FieldWriter().bytes(
            16,
            FieldWriter()
                .bytes(1, FieldWriter().bytes(1, array.message()).bytes(2, contents).message())
                .message()));
        return axis;
    }

    QList<QByteArray> m_objects;
    int m_uuids = 0;
};

} // namespace

QByteArray noteDocument(const QList<NoteRun> &runs)
{
    return document(body(runs));
}

QByteArray tableDocument(const QList<QStringList> &rows, const TableShape &shape)
{
    return document(TableWriter(rows, shape).data());
}

QByteArray gzipped(const QByteArray &bytes)
{
    constexpr int kGzip = 16 + MAX_WBITS;
    constexpr int kMemory = 8;
    z_stream stream {};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, kGzip, kMemory, Z_DEFAULT_STRATEGY)
        != Z_OK)
        return {};
    QByteArray packed(qsizetype(deflateBound(&stream, uLong(bytes.size()))), '\0');
    QByteArray input = bytes; // zlib wants bytes that may be changed
    stream.next_in = reinterpret_cast<Bytef *>(input.data());
    stream.avail_in = uInt(input.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = uInt(packed.size());
    deflate(&stream, Z_FINISH);
    packed.truncate(qsizetype(stream.total_out));
    deflateEnd(&stream);
    return packed;
}

} // namespace Sample
