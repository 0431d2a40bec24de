#include "PhoneBackup/source/VCardText.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaxValueBytes = 1024;
constexpr qsizetype kMaxValues = 100;

bool isProperty(QByteArrayView label, QByteArrayView name)
{
    const qsizetype group = label.lastIndexOf('.', label.indexOf(';'));
    QByteArrayView own = label.sliced(group + 1);
    const qsizetype parameters = own.indexOf(';');
    if (parameters >= 0)
        own = own.first(parameters);
    return own.compare(name, Qt::CaseInsensitive) == 0;
}

QByteArrayView takeLine(QByteArrayView &card)
{
    const qsizetype end = card.indexOf('\n');
    QByteArrayView line = end < 0 ? card : card.first(end);
    card = end < 0 ? QByteArrayView() : card.sliced(end + 1);
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

// A value that begins with \a first, and goes on in the next lines of \a card: behind a blank, or,
// in quoted-printable, after an equals sign.
QByteArray takeValue(QByteArrayView first, QByteArrayView &card, bool isQuoted)
{
    QByteArray value = first.first(std::min(first.size(), kMaxValueBytes)).toByteArray();
    while (!card.isEmpty()) {
        const bool isFolded = card.startsWith(' ') || card.startsWith('\t');
        const bool isBroken = isQuoted && value.endsWith('=');
        if (!isFolded && !isBroken)
            break;
        QByteArrayView line = takeLine(card);
        if (isBroken)
            value.chop(1);
        else
            line = line.sliced(1);
        value += line.first(
            std::min(line.size(), kMaxValueBytes - std::min(value.size(), kMaxValueBytes)));
    }
    return isQuoted ? QByteArray::fromPercentEncoding(value, '=') : value;
}

QStringList readTexts(QByteArrayView card, QByteArrayView name, qsizetype atMost)
{
    QStringList texts;
    while (!card.isEmpty() && texts.size() < atMost) {
        const QByteArrayView line = takeLine(card);
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0 || !isProperty(line.first(colon), name))
            continue;
        const bool isQuoted =
            line.first(colon).toByteArray().toUpper().contains("QUOTED-PRINTABLE");
        QString text = QString::fromUtf8(takeValue(line.sliced(colon + 1), card, isQuoted));
        text.replace("\\,"_L1, ","_L1).replace("\\;"_L1, ";"_L1).replace("\\n"_L1, " "_L1);
        text = text.simplified();
        if (!text.isEmpty())
            texts.append(text);
    }
    return texts;
}

} // namespace

QString vCardText(QByteArrayView card, QByteArrayView name)
{
    return readTexts(card, name, 1).value(0);
}

QStringList vCardTexts(QByteArrayView card, QByteArrayView name)
{
    return readTexts(card, name, kMaxValues);
}

} // namespace PhoneBackup
