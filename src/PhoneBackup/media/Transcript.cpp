#include "PhoneBackup/media/Transcript.h"

#include "PhoneBackup/source/MovieBoxes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kTranscriptKey = "com.apple.VoiceMemos.tsrp";

// A list of keys, as QuickTime files have it: version and count, then size, namespace and key each.
// \return the number of the transcript's, from 1; 0 without one.
quint32 keyNumber(QByteArrayView keys)
{
    constexpr qsizetype kListHeader = 8;
    constexpr qsizetype kKeyHeader = 8;
    quint32 number = 0;
    for (qsizetype at = kListHeader; at + kKeyHeader <= keys.size();) {
        const qsizetype size = qFromBigEndian<quint32>(keys.data() + at);
        if (size < kKeyHeader || size > keys.size() - at)
            return 0;
        ++number;
        if (keys.sliced(at + kKeyHeader, size - kKeyHeader) == kTranscriptKey)
            return number;
        at += size;
    }
    return 0;
}

// The value of the transcript's key in the box "meta"; values are named by the numbers of keys.
QByteArrayView valueInMeta(QByteArrayView meta)
{
    constexpr qsizetype kVersion = 4; // which the boxes of some writers begin with
    constexpr qsizetype kValueHeader = 8; // type and language
    QByteArrayView keys = MovieBoxes::first(meta, "keys");
    if (keys.isEmpty() && meta.size() > kVersion) {
        meta = meta.sliced(kVersion);
        keys = MovieBoxes::first(meta, "keys");
    }
    const quint32 number = keyNumber(keys);
    if (number == 0)
        return {};
    const quint32 name = qToBigEndian(number);
    const QByteArrayView type(reinterpret_cast<const char *>(&name), sizeof name);
    const QByteArrayView value =
        MovieBoxes::first(MovieBoxes::first(MovieBoxes::first(meta, "ilst"), type), "data");
    return value.size() > kValueHeader ? value.sliced(kValueHeader) : QByteArrayView();
}

// Runs are words, numbers of their attributes or the attributes themselves between them.
QString text(QByteArrayView json)
{
    const QJsonValue said =
        QJsonDocument::fromJson(json.toByteArray()).object().value("attributedString"_L1);
    const QJsonArray runs =
        said.isArray() ? said.toArray() : said.toObject().value("runs"_L1).toArray();
    QString words;
    for (const auto &run : runs)
        words += run.toString();
    return words.trimmed();
}

} // namespace

QString recordingTranscript(QByteArrayView movie)
{
    QString found;
    MovieBoxes::forEach(movie, [&found](QByteArrayView type, QByteArrayView track) {
        if (type != "trak" || !found.isEmpty())
            return;
        found = text(MovieBoxes::first(MovieBoxes::first(track, "udta"), "tsrp"));
        if (found.isEmpty())
            found = text(valueInMeta(MovieBoxes::first(track, "meta")));
    });
    return found;
}

} // namespace PhoneBackup
