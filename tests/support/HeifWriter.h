#ifndef TESTS_SUPPORT_HEIFWRITER_H
#define TESTS_SUPPORT_HEIFWRITER_H

#include <QByteArray>
#include <QList>
#include <QSize>

//! Writes HEIF files from their parts, whatever sense these make together.
namespace Heif {

using Ids = QList<int>;

struct Item
{
    QByteArray type;
    QByteArray data;
    QByteArrayList properties = {};
    Ids inputs = {}; //!< Items that it is made of.
    int auxiliaryOf = 0; //!< Item that it belongs to; 0: none.
    int thumbnailOf = 0; //!< Item that it is a smaller version of; 0: none.
    int repeats = 1; //!< How often the file says that its data are part of it.
};

//! The lowest bytes of \a value.
inline QByteArray number(qint64 value, int bytes)
{
    QByteArray text(bytes, '\0');
    for (int at = bytes - 1; at >= 0; --at, value >>= 8)
        text[at] = static_cast<char>(value & 0xFF);
    return text;
}

inline QByteArray box(const char *type, const QByteArray &content)
{
    return number(content.size() + 8, 4) + type + content;
}

inline QByteArray versionedBox(const char *type, int version, const QByteArray &content)
{
    return box(type, number(version, 1) + number(0, 3) + content);
}

inline QByteArray sizeProperty(QSize size)
{
    return versionedBox("ispe", 0, number(size.width(), 4) + number(size.height(), 4));
}

inline QByteArray gridData(int rows, int columns, QSize size)
{
    return number(0, 2) + number(rows - 1, 1) + number(columns - 1, 1) + number(size.width(), 2)
        + number(size.height(), 2);
}

inline QByteArray reference(const char *type, int from, const Ids &to)
{
    QByteArray content = number(from, 2) + number(to.size(), 2);
    for (const int id : to)
        content += number(id, 2);
    return box(type, content);
}

//! A file of \a items, numbered from 1; the first is the main picture.
inline QByteArray file(const QList<Item> &items)
{
    QByteArray entries;
    QByteArray references;
    QByteArrayList properties;
    QByteArray associations;
    QByteArray data;
    for (int id = 1; const Item &item : items) {
        entries += versionedBox("infe", 2, number(id, 2) + number(0, 2) + item.type + '\0');
        if (!item.inputs.isEmpty())
            references += reference("dimg", id, item.inputs);
        if (item.auxiliaryOf != 0)
            references += reference("auxl", id, { item.auxiliaryOf });
        if (item.thumbnailOf != 0)
            references += reference("thmb", id, { item.thumbnailOf });
        associations += number(id++, 2) + number(item.properties.size(), 1);
        for (const QByteArray &property : item.properties) {
            properties += property;
            associations += number(properties.size(), 1);
        }
        data += item.data;
    }
    const auto meta = [&](qint64 dataAt) {
        QByteArray locations;
        for (int id = 1; const Item &item : items) {
            locations += number(id++, 2) + number(0, 2) + number(item.repeats, 2)
                + (number(dataAt, 4) + number(item.data.size(), 4)).repeated(item.repeats);
            dataAt += item.data.size();
        }
        return versionedBox(
            "meta",
            0,
            versionedBox("hdlr", 0, number(0, 4) + "pict" + number(0, 13))
                + versionedBox("pitm", 0, number(1, 2))
                + versionedBox("iinf", 0, number(items.size(), 2) + entries)
                + (references.isEmpty() ? QByteArray() : versionedBox("iref", 0, references))
                + box("iprp",
                      box("ipco", properties.join())
                          + versionedBox("ipma", 0, number(items.size(), 4) + associations))
                + versionedBox("iloc", 0, number(0x4400, 2) + number(items.size(), 2) + locations));
    };
    const QByteArray type = box("ftyp", "heic" + number(0, 4) + "mif1heic");
    return type + meta(type.size() + meta(0).size() + 8) + box("mdat", data);
}

//! What is special about a sequence.
struct SequenceTraits
{
    QByteArray handler = "pict"; //!< Of the track.
    QByteArray coding = "hvc1";
    QList<int> matrix = { 1, 0, 0, 1 }; //!< That turns the pictures.
    qint64 dataAt = 0; //!< Where the data are said to be; 0: where they are.
    bool hasLongOffsets = false;
};

//! A file of nothing but a sequence, which has one picture.
inline QByteArray sequence(const QByteArray &data,
                           const QByteArray &configuration,
                           QSize size,
                           const SequenceTraits &traits = {})
{
    const auto fixed = [](int value) { return number(qint64 { value } * 0x10000, 4); };
    const QByteArray entry = number(1, 8) + number(0, 16) + number(size.width(), 2)
        + number(size.height(), 2) + number(0x480000, 4) + number(0x480000, 4) + number(0, 4)
        + number(1, 2) + QByteArray(32, '\0') + number(24, 2) + number(-1, 2) + configuration;
    const QByteArray header = QByteArray(20 + 16, '\0') + fixed(traits.matrix[0])
        + fixed(traits.matrix[1]) + number(0, 4) + fixed(traits.matrix[2]) + fixed(traits.matrix[3])
        + number(0, 12) + number(0x40000000, 4) + fixed(size.width()) + fixed(size.height());
    const auto movie = [&](qint64 dataAt) {
        const QByteArray offsets = traits.hasLongOffsets
            ? versionedBox("co64", 0, number(1, 4) + number(dataAt, 8))
            : versionedBox("stco", 0, number(1, 4) + number(dataAt, 4));
        const QByteArray table = box(
            "stbl",
            versionedBox("stsd", 0, number(1, 4) + box(traits.coding.constData(), entry)) + offsets
                + versionedBox("stsz", 0, number(0, 4) + number(1, 4) + number(data.size(), 4)));
        const QByteArray handler =
            versionedBox("hdlr", 0, number(0, 4) + traits.handler + number(0, 13));
        return box(
            "moov",
            box("trak",
                versionedBox("tkhd", 0, header) + box("mdia", handler + box("minf", table))));
    };
    const QByteArray type = box("ftyp", "msf1" + number(0, 4) + "msf1hevc");
    const qint64 dataAt = type.size() + movie(0).size() + 8;
    return type + movie(traits.dataAt != 0 ? traits.dataAt : dataAt) + box("mdat", data);
}

} // namespace Heif

#endif
