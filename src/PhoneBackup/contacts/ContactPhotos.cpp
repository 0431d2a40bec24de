#include "PhoneBackup/contacts/ContactPhotos.h"

#include "Files/PictureFormat.h"
#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/Source.h"

#include <algorithm>
#include <tuple>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMaxPhotoBytes = 16 << 20;

constexpr qint64 kPhoto = 1; // keeps its problem apart from those of the details

QString table(bool isWhole)
{
    return isWhole ? u"ABFullSizeImage"_s : u"ABThumbnailImage"_s;
}

// What every program can show.
bool isCommonPicture(QByteArrayView bytes)
{
    const QByteArrayView format = PictureFormat::of(bytes);
    return format == "jpeg" || format == "png";
}

} // namespace

ContactPhotos::ContactPhotos(Source &source)
    : m_source(source)
{
    m_database = RowDatabase::open(source,
                                   DataType::Contacts,
                                   "HomeDomain",
                                   u"Library/AddressBook/AddressBookImages.sqlitedb"_s,
                                   Notice("contacts.photosMayBeMissing"));
    if (!m_database)
        return;
    if (!m_database->hasTable(table(true)) && !m_database->hasTable(table(false)))
        m_database->addLoss(Notice("contacts.noPictures"));
    readForms(true);
    readForms(false);
    std::sort(m_forms.begin(), m_forms.end(), [](const Form &a, const Form &b) {
        return std::tie(a.card, b.isWhole, b.bytes, a.row)
            < std::tie(b.card, a.isWhole, a.bytes, b.row);
    });
}

void ContactPhotos::readForms(bool isWhole)
{
    Table list(*m_database, table(isWhole));
    if (!list.hasColumn(u"record_id"_s) || !list.hasColumn(u"data"_s))
        return;
    const auto card = list.column(u"record_id"_s);
    const auto bytes = list.expression(u"length(data)"_s);
    list.forEach([&, this](const Table::Row &row) {
        if (row.integer(bytes) > 0)
            m_forms.push_back({ row.integer(card), row.integer(bytes), row.id(), isWhole });
    });
    Table pictures(*m_database, table(isWhole));
    const Table::Column data = pictures.column(u"data"_s);
    (isWhole ? m_whole : m_part).emplace(Pictures { data, pictures.lookup() });
}

QByteArray ContactPhotos::best(const AddressBook::Person &person)
{
    // The card whose picture the phone shows goes before the others.
    std::vector<qint64> cards = person.cards;
    std::stable_partition(
        cards.begin(), cards.end(), [&](qint64 card) { return card == person.imageCard; });
    QByteArray other; // a picture that not every program can show
    bool isStored = false;
    for (const qint64 card : cards) {
        auto form = std::lower_bound(m_forms.cbegin(),
                                     m_forms.cend(),
                                     card,
                                     [](const Form &f, qint64 wanted) { return f.card < wanted; });
        for (; form != m_forms.cend() && form->card == card; ++form) {
            isStored = true;
            const QByteArray photo = read(*form);
            if (isCommonPicture(photo))
                return photo;
            if (other.isEmpty())
                other = photo;
        }
    }
    if (isStored && other.isEmpty()) {
        Problem problem = person.loss(Notice("contacts.photoUnreadable"));
        problem.row = kPhoto;
        m_source.addProblem(problem);
    }
    return other;
}

// Empty for what is no picture.
QByteArray ContactPhotos::read(const Form &form)
{
    std::optional<Pictures> &pictures = form.isWhole ? m_whole : m_part;
    if (!pictures || form.bytes > kMaxPhotoBytes)
        return {};
    const Table::Row *row = pictures->lookup.find(form.row);
    const QByteArrayView bytes = row ? row->bytes(pictures->data) : QByteArrayView();
    return PictureFormat::of(bytes) ? bytes.toByteArray() : QByteArray();
}

} // namespace PhoneBackup
