#include "PhoneBackup/messages/EditHistory.h"

#include "PhoneBackup/plist/AttributedText.h"
#include "PhoneBackup/plist/KeyedArchive.h"
#include "PhoneBackup/plist/PropertyList.h"
#include "PhoneBackup/source/StoredText.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kTypedStream("\x04\x0bstreamtyped");

// Keys as a binary property list stores them, behind the length: most summaries tell of nothing but
// links, and one that has these keys is worth parsing.
constexpr QByteArrayView kEdited("\x52"
                                 "ec");
constexpr QByteArrayView kUnsent("\x52"
                                 "rp");
constexpr QByteArrayView kTranslated("\x53"
                                     "tmp");

// The text of one version of a part.
QString textOf(QByteArrayView body)
{
    const auto decoded = AttributedText::decode(body);
    return decoded ? decoded->text : AttributedText::salvage(body).value_or(QString());
}

// The parts in "ec" by their number, which is a text there.
std::vector<EditHistory::Part> partsIn(const QVariantMap &stored)
{
    std::vector<EditHistory::Part> parts;
    for (auto part = stored.cbegin(); part != stored.cend(); ++part) {
        EditHistory::Part &added = parts.emplace_back();
        added.number = part.key().toInt();
        const QVariantList versions = part->toList();
        for (const QVariant &entry : versions) {
            const QVariantMap version = entry.toMap();
            const QDateTime date = PhoneTime::since2001(version.value(u"d"_s).toDouble());
            added.versions.push_back({ date.isValid() ? date.toMSecsSinceEpoch() : PhoneTime::kNoMs,
                                       textOf(version.value(u"t"_s).toByteArray()) });
        }
        if (added.versions.empty())
            parts.pop_back();
    }
    std::stable_sort(parts.begin(), parts.end(), [](const auto &a, const auto &b) {
        return a.number < b.number;
    });
    return parts;
}

// Of each part the translations that the phone has made, in an archive of their own.
std::vector<EditHistory::Translation> translationsIn(const QByteArray &archived)
{
    std::vector<EditHistory::Translation> translations;
    const KeyedArchive archive(archived);
    const QVariantMap parts = archive.decode(QVariant(archive.root())).toMap();
    for (auto part = parts.cbegin(); part != parts.cend(); ++part) {
        const QVariantList list = part->toList();
        for (const QVariant &entry : list) {
            const QVariantMap made = entry.toMap();
            const QVariant text = made.value(u"translatedText"_s);
            const QString words = text.typeId() == QMetaType::QString
                ? text.toString()
                : text.toMap().value(u"NSString"_s).toString();
            if (!words.isEmpty())
                translations.push_back({ part.key().toInt(),
                                         StoredText::cleaned(words),
                                         made.value(u"translationLanguage"_s).toString(),
                                         made.value(u"sourceLanguage"_s).toString() });
        }
    }
    return translations;
}

} // namespace

EditHistory EditHistory::read(QByteArrayView summary, bool hasText)
{
    EditHistory history;
    if (hasText && summary.startsWith("bplist") && !summary.contains(kEdited)
        && !summary.contains(kUnsent) && !summary.contains(kTranslated))
        return history;
    const PropertyList list = PropertyList::parse(summary.toByteArray());
    history.isDamaged = !list.isDict();
    for (const QVariant &part : list.value("rp").toList())
        history.unsentParts.push_back(part.toInt());
    std::sort(history.unsentParts.begin(), history.unsentParts.end());
    history.parts = partsIn(list.value("ec").toMap());
    history.translations = translationsIn(list.value("tmp").toByteArray());
    for (const Part &part : history.parts) {
        if (std::binary_search(
                history.unsentParts.cbegin(), history.unsentParts.cend(), part.number))
            continue;
        history.isEdited = true;
        const QString &text = part.versions.back().text;
        history.isDamaged = history.isDamaged || text.isEmpty();
        if (!history.lastText.isEmpty() && !text.isEmpty())
            history.lastText += u'\n';
        history.lastText += text;
    }
    // Where nothing leads to a text, there may be one all the same: what was written last is last.
    const qsizetype last = summary.lastIndexOf(kTypedStream);
    if (!hasText && !history.isUnsent() && history.lastText.isEmpty() && last >= 0) {
        history.isEdited = history.isDamaged = true;
        history.lastText = textOf(summary.sliced(last));
    }
    for (Part &part : history.parts) {
        for (Version &version : part.versions)
            version.text = StoredText::cleaned(version.text);
    }
    return history;
}

} // namespace PhoneBackup
