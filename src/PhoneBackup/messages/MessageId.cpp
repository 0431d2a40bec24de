#include "PhoneBackup/messages/MessageId.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <array>

namespace PhoneBackup {

namespace {

constexpr qsizetype kUuidCharacters = 36;

bool isDashPlace(qsizetype place)
{
    return place == 8 || place == 13 || place == 18 || place == 23;
}

int digit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

bool readUuid(QByteArrayView guid, MessageId &id)
{
    if (guid.size() != kUuidCharacters)
        return false;
    std::array<quint64, 2> halves {};
    int digits = 0;
    for (qsizetype i = 0; i < kUuidCharacters; ++i) {
        if (isDashPlace(i)) {
            if (guid[i] != '-')
                return false;
            continue;
        }
        const int value = digit(guid[i]);
        if (value < 0)
            return false;
        quint64 &half = halves[digits++ < 16 ? 0 : 1];
        half = (half << 4) | quint64(value);
    }
    id = { halves[0], halves[1] };
    return true;
}

} // namespace

MessageId MessageId::of(QByteArrayView guid, bool *isUuid)
{
    MessageId id;
    const bool isRead = guid.isEmpty() || readUuid(guid, id);
    if (isUuid)
        *isUuid = isRead;
    if (isRead)
        return id;
    const QByteArray digest = QCryptographicHash::hash(guid.toByteArray(), QCryptographicHash::Md5);
    return { qFromBigEndian<quint64>(digest.constData()),
             qFromBigEndian<quint64>(digest.constData() + sizeof(quint64)) };
}

QString MessageId::text() const
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    static constexpr qsizetype kLength = 36;
    QString uuid(kLength, u'-');
    QChar *to = uuid.data();
    for (const quint64 half : { high, low }) {
        for (int shift = 60; shift >= 0; shift -= 4) {
            const qsizetype place = to - uuid.constData();
            if (place == 8 || place == 13 || place == 18 || place == 23)
                ++to;
            *to++ = QLatin1Char(kDigits[half >> shift & 0xF]);
        }
    }
    return uuid;
}

} // namespace PhoneBackup
