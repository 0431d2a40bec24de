#include "PhoneBackup/contacts/ContactOrder.h"

#include "PhoneBackup/source/Source.h"

#include <QCollator>

#include <algorithm>
#include <tuple>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMaxSettingsBytes = 1 << 20;

// Where a name stands among others.
struct NameKey
{
    int section;
    QCollatorSortKey name;
    QCollatorSortKey rest;

    bool operator<(const NameKey &other) const
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
    const auto sort = [&people](int person) -> const AddressBook::SortKeys & {
        return people[std::size_t(person)].sort;
    };
    std::vector<int> byPhone;
    std::vector<int> byName;
    for (int person = 0; person < int(people.size()); ++person)
        (sort(person).key.isEmpty() ? byName : byPhone).push_back(person);
    std::stable_sort(byPhone.begin(), byPhone.end(), [&sort](int a, int b) {
        return std::tie(sort(a).alphabet, sort(a).section, sort(a).key)
            < std::tie(sort(b).alphabet, sort(b).section, sort(b).key);
    });
    if (byName.empty())
        return byPhone;

    const QCollator collator(locale);
    std::vector<NameKey> names;
    names.reserve(people.size());
    for (const AddressBook::Person &person : people) {
        names.push_back({ sectionOf(person.sort.name),
                          collator.sortKey(person.sort.name),
                          collator.sortKey(person.sort.rest) });
    }
    const auto isBefore = [&names](int a, int b) {
        return names[std::size_t(a)] < names[std::size_t(b)];
    };
    std::stable_sort(byName.begin(), byName.end(), isBefore);
    // No std::merge(): the phone's order and that of words only resemble each other.
    std::vector<int> order;
    order.reserve(people.size());
    auto next = byName.cbegin();
    for (const int person : byPhone) {
        for (; next != byName.cend() && isBefore(*next, person); ++next)
            order.push_back(*next);
        order.push_back(person);
    }
    order.insert(order.end(), next, byName.cend());
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
