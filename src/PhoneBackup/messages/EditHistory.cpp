#include "PhoneBackup/messages/EditHistory.h"

#include "PhoneBackup/plist/AttributedText.h"
#include "PhoneBackup/plist/PropertyList.h"

#include <QMap>
#include <QSet>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kTypedStream("\x04\x0bstreamtyped");

// The text of one version of a part.
QString textOf(QByteArrayView body)
{
    const auto decoded = AttributedText::decode(body);
    return decoded ? decoded->text : AttributedText::salvage(body).value_or(QString());
}

} // namespace

EditHistory EditHistory::read(QByteArrayView summary, bool hasText)
{
    EditHistory history;
    // Most summaries tell of nothing but links: one that has these keys is worth parsing.
    constexpr QByteArrayView kEdited("\x52"
                                     "ec");
    constexpr QByteArrayView kUnsent("\x52"
                                     "rp");
    if (hasText && summary.startsWith("bplist") && !summary.contains(kEdited)
        && !summary.contains(kUnsent))
        return history;
    const PropertyList list = PropertyList::parse(summary.toByteArray());
    history.isDamaged = !list.isDict();
    QSet<int> unsent;
    for (const QVariant &part : list.value("rp").toList())
        unsent.insert(part.toInt());
    history.unsent = !unsent.isEmpty();
    const QVariantMap stored = list.value("ec").toMap();
    QMap<int, QByteArray> current; // versions by the number of the part, which is a text
    for (auto part = stored.cbegin(); part != stored.cend(); ++part) {
        const int number = part.key().toInt();
        const QVariantList versions = part->toList();
        if (!versions.isEmpty() && !unsent.contains(number))
            current.insert(number, versions.last().toMap().value(u"t"_s).toByteArray());
    }
    history.edited = !current.isEmpty();
    for (const QByteArray &version : std::as_const(current)) {
        const QString text = textOf(version);
        history.isDamaged = history.isDamaged || text.isEmpty();
        if (!history.lastText.isEmpty() && !text.isEmpty())
            history.lastText += u'\n';
        history.lastText += text;
    }
    // Where nothing leads to a text, there may be one all the same: what was written last is last.
    const qsizetype version = summary.lastIndexOf(kTypedStream);
    if (!hasText && !history.unsent && history.lastText.isEmpty() && version >= 0) {
        history.edited = history.isDamaged = true;
        history.lastText = textOf(summary.sliced(version));
    }
    return history;
}

} // namespace PhoneBackup
