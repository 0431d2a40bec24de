#include "model/ContactOrder.h"

#include "model/Source.h"

#include <QCollator>

#include <algorithm>
#include <numeric>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMaxSettingsBytes = 1 << 20;

struct Key
{
    int section;
    QCollatorSortKey name;
    QCollatorSortKey rest;

    bool operator<(const Key &other) const
    {
        if (section != other.section)
            return section < other.section;
        const int byName = name.compare(other.name);
        return byName != 0 ? byName < 0 : rest.compare(other.rest) < 0;
    }
};

int sectionOf(const QString &name)
{
    enum { Letters, Others, Nameless };
    if (name.isEmpty())
        return Nameless;
    const bool isPair = name.size() > 1 && name[0].isHighSurrogate() && name[1].isLowSurrogate();
    const char32_t first =
        isPair ? QChar::surrogateToUcs4(name[0], name[1]) : char32_t(name[0].unicode());
    return QChar::isLetter(first) ? Letters : Others;
}

} // namespace

std::vector<int> contactOrder(const std::vector<AddressBook::Person> &people, const QLocale &locale)
{
    const QCollator collator(locale);
    std::vector<Key> keys;
    keys.reserve(people.size());
    for (const AddressBook::Person &person : people) {
        keys.push_back({ sectionOf(person.sortName),
                         collator.sortKey(person.sortName),
                         collator.sortKey(person.sortRest) });
    }
    std::vector<int> order(people.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&keys](int a, int b) {
        return keys[std::size_t(a)] < keys[std::size_t(b)];
    });
    return order;
}

QLocale phoneLocale(Source &source)
{
    BackupFiles &files = source.files();
    const FileIndex::Row row =
        files.findFile("HomeDomain", u"Library/Preferences/.GlobalPreferences.plist"_s);
    if (row != FileIndex::kNone) {
        const PropertyList settings = PropertyList::parse(files.content(row, kMaxSettingsBytes));
        QString name = settings.value("AppleLanguages").toList().value(0).toString();
        if (name.isEmpty())
            name = settings.value("AppleLocale").toString();
        const QLocale locale(name.replace(u'-', u'_'));
        if (locale.language() != QLocale::C)
            return locale;
    }
    return QLocale(QLocale::English);
}

} // namespace PhoneBackup
