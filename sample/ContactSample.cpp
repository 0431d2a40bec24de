#include "sample/ContactSample.h"

#include "sample/ContactDatabase.h"
#include "sample/ContactShowcase.h"
#include "sample/InventedText.h"
#include "sample/MediaPool.h"
#include "sample/People.h"
#include "sample/SampleDates.h"

#include <algorithm>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostNamedWriters = 500; // The others write from numbers without a name.
constexpr qint64 kPhotoBytes = 100'000;

// Somebody who has now this and now that, by the number in the list.
void addSomebody(ContactDatabase &database, Random &random, int index)
{
    using Db = ContactDatabase;
    const Person somebody = person(index);
    const auto has = [index](int every) { return index % every == every - 1; };
    Card card;
    card.first = somebody.first;
    card.last = somebody.last;
    card.organization = somebody.organization;
    card.isOrganization = somebody.first.isEmpty();
    if (has(4)) {
        // Each twentieth without a year.
        const QDate day(has(20) ? 1604 : 1940 + index % 70, 1 + index % 12, 1 + index % 28);
        card.birthday =
            QString::number(cocoaSeconds(QDateTime(day, QTime(12, 0), Qt::UTC)), 'f', 6);
    }
    if (has(6)) {
        card.organization = u"Tide & Timber"_s;
        card.jobTitle = u"Boatbuilder"_s;
    }
    if (has(10))
        card.note = inventedText(random, 2);
    const qint64 row = database.addCard(card);
    if (!somebody.numberAsTyped.isEmpty())
        database.addValue(row, Db::kPhone, u"Mobile"_s, somebody.numberAsTyped);
    if (has(3))
        database.addValue(row, Db::kPhone, u"Work"_s, inventedPhoneNumber(random));
    if (!has(5)) {
        database.addValue(row, Db::kEmail, u"Home"_s, u"contact%1@example.org"_s.arg(index));
    }
    if (has(2)) {
        database.addParts(row,
                          Db::kAddress,
                          u"Home"_s,
                          { { u"Street"_s, u"%1 Harbour Lane"_s.arg(index % 300 + 1) },
                            { u"ZIP"_s, QString::number(10000 + index % 90000) },
                            { u"City"_s, u"Exampleton"_s },
                            { u"Country"_s, u"United States"_s } });
    }
    if (has(12))
        database.addValue(row, Db::kUrl, u"HomePage"_s, u"https://example.org/%1"_s.arg(index));
    if (has(15)) {
        database.addParts(
            row,
            Db::kSocialProfile,
            {},
            { { u"service"_s, u"twitter"_s }, { u"username"_s, u"sailor%1"_s.arg(index) } });
    }
}

void addMany(ContactDatabase &database, const Options &options, Random &random)
{
    for (int i = 0; i < options.contacts; ++i)
        addSomebody(database, random, i);
    if (options.contactPhotos == 0)
        return;
    Options sized = options;
    sized.fileSizesBytes = { kPhotoBytes };
    MediaPool pool(sized, "contact photos");
    const int photos = std::min(options.contactPhotos, options.contacts);
    for (int i = 0; i < photos; ++i) {
        const qint64 card = 1 + static_cast<qint64>(i) * options.contacts / photos;
        database.addPhoto(
            card, pool.jpeg(sampleStart()), { { ContactDatabase::kSmall, pool.thumbnail() } });
    }
}

// The people who write the many messages.
void addWriters(ContactDatabase &database, const Options &options)
{
    const int named = std::min(kMostNamedWriters, options.conversations * 2 / 3);
    for (auto i = static_cast<int>(people().size()); i < named; ++i) {
        const Person writer = person(i);
        Card card;
        card.first = writer.first;
        card.last = writer.last;
        database.addValue(
            database.addCard(card), ContactDatabase::kPhone, u"Mobile"_s, writer.numberAsTyped);
    }
}

} // namespace

void addContacts(BackupWriter &writer, const Options &options)
{
    if (options.contacts == 0)
        return;
    Random random(options.seed, "contacts");
    ContactDatabase database(writer);
    if (options.contacts != Options::kShowcase) {
        addMany(database, options, random);
    } else {
        addContactShowcase(database, random);
        if (options.messages > 0)
            addWriters(database, options);
    }
    database.finish();
}

} // namespace Sample
