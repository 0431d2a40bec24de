#include "PhoneBackup/source/PackedTexts.h"

namespace PhoneBackup {

namespace {

// Neither byte is ever part of UTF-8.
constexpr char kEndOfText = char(0xFE);
constexpr char kEndOfRow = char(0xFF);

} // namespace

qsizetype PackedTexts::add(const QStringList &texts)
{
    const qsizetype place = m_bytes.size();
    for (const QString &text : texts)
        m_bytes.append(text.toUtf8()).append(kEndOfText);
    m_bytes.append(kEndOfRow);
    return place;
}

QString PackedTexts::text(qsizetype place, int number) const
{
    for (int before = 0;; ++before) {
        if (m_bytes.at(place) == kEndOfRow)
            return {};
        const qsizetype end = m_bytes.indexOf(kEndOfText, place);
        if (before == number)
            return QString::fromUtf8(m_bytes.constData() + place, end - place);
        place = end + 1;
    }
}

} // namespace PhoneBackup
