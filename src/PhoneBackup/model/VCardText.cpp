#include "model/VCardText.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaxCardBytes = 64 * 1024; // pictures come last
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

QStringList readTexts(QByteArrayView card, QByteArrayView name, qsizetype atMost)
{
    QStringList texts;
    card = card.first(std::min(card.size(), kMaxCardBytes));
    while (!card.isEmpty() && texts.size() < atMost) {
        const qsizetype end = card.indexOf('\n');
        const QByteArrayView line = end < 0 ? card : card.first(end);
        card = end < 0 ? QByteArrayView() : card.sliced(end + 1);
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0 || !isProperty(line.first(colon), name))
            continue;
        const QByteArrayView value = line.sliced(colon + 1);
        QString text = QString::fromUtf8(value.first(std::min(value.size(), kMaxValueBytes)));
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
