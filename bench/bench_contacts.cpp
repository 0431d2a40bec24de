// What contacts cost in all three formats: bench_contacts [CONTACTS PHOTOS], as a rule 20000 2000
#include "backup/CBackupExporter.h"
#include "bench/Usage.h"
#include "contact/BkContactData.h"
#include "contact/BkContactItem.h"
#include "contact/BkContactPrivate.h"
#include "contact/BkContactProperty.h"
#include "contact/CContactHelper.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

class BenchProperty : public BkContactProperty
{
public:
    BenchProperty(int type,
                  const QString &label,
                  const QString &value,
                  const QMap<QString, QString> &parts = {})
        : m_type(type)
        , m_label(label)
        , m_value(value)
        , m_parts(parts)
    {
    }
    int propType() const override { return m_type; }
    QString propLabel() const override { return m_label; }
    QString propValue() const override { return m_value; }
    QMap<QString, QString> propValueEntry() const override { return m_parts; }

private:
    int m_type;
    QString m_label;
    QString m_value;
    QMap<QString, QString> m_parts;
};

class BenchContact : public BkContactItem, public BkContactPrivate
{
public:
    BenchContact()
    {
        using H = CContactHelper;
        add(3, H::CATE_MOBILE, u"+1 555 0100"_s);
        add(3, H::CATE_HOME, u"+1 555 0101"_s);
        add(4, H::CATE_WORK, u"ada@example.org"_s);
        add(22, H::CATE_HOMEPAGE, u"http://example.org/ada"_s);
        add(5,
            H::CATE_WORK,
            {},
            { { H::VALUE_KEY_STREET, u"1 Example Way\nFloor 2"_s },
              { H::VALUE_KEY_CITY, u"Exampleton"_s },
              { H::VALUE_KEY_ZIP, u"12345"_s } });
        add(12, u"_$!<Anniversary>!$_"_s, u"456494400"_s);
        add(13, {}, {}, { { H::VALUE_KEY_SERVICE, u"skype"_s }, { H::VALUE_KEY_USER, u"ada"_s } });
    }
    QString value(int index) const override { return index == 0 ? name : QString(); }
    bool flag(int /*index*/) const override { return false; }
    BkContactPrivate *detailContent() const override { return const_cast<BenchContact *>(this); }
    QString namePrefix() const override { return {}; }
    QString givenName() const override { return u"Ada"_s; }
    QString additionalName() const override { return {}; }
    QString familyName() const override { return u"Example"_s; }
    QString nameSuffix() const override { return {}; }
    QString givenNameYomi() const override { return {}; }
    QString familyNameYomi() const override { return {}; }
    QString nickname() const override { return u"Addy"_s; }
    QString jobTitle() const override { return u"Engineer"_s; }
    QString department() const override { return {}; }
    QString organization() const override { return u"Acme, Inc."_s; }
    QString birthday() const override { return u"-335361600"_s; }
    QString notes() const override { return u"A note of <some> words.\nAnd another."_s; }
    QByteArray photo() const override { return picture; }
    QList<BkContactProperty *> properties() const override { return m_properties; }

    QString name;
    QByteArray picture;

private:
    void add(int type,
             const QString &label,
             const QString &value,
             const QMap<QString, QString> &parts = {})
    {
        m_owned.push_back(std::make_unique<BenchProperty>(type, label, value, parts));
        m_properties.append(m_owned.back().get());
    }

    std::vector<std::unique_ptr<BenchProperty>> m_owned;
    QList<BkContactProperty *> m_properties;
};

// Holds one contact, which it fills anew for every index, as a reader with bounded memory does.
class BenchData : public BkContactData
{
public:
    BenchData(int contacts, int photos, bool sameName, const QByteArray &photo)
        : m_contacts(contacts)
        , m_photos(photos)
        , m_sameName(sameName)
        , m_photo(photo)
    {
    }
    int dataType() const override { return 8; }
    int recoverCount() const override { return m_contacts; }
    QList<int> recoverList() const override
    {
        QList<int> all(m_contacts);
        for (int i = 0; i < m_contacts; ++i)
            all[i] = i;
        return all;
    }
    BkAbstractItem *at(int index, bool /*original*/) const override
    {
        m_contact.name = m_sameName ? u"Ada Example"_s : u"Ada Example %1"_s.arg(index);
        // Spread over the set; a copy of its own, as bytes that were read are.
        const bool hasPhoto = m_photos > 0 && index % std::max(1, m_contacts / m_photos) == 0;
        m_contact.picture =
            hasPhoto ? QByteArray(m_photo.constData(), m_photo.size()) : QByteArray();
        return &m_contact;
    }
    int count(int /*kind*/) const override { return m_contacts; }
    bool recover(BkAbstractItem * /*item*/) const override { return true; }

private:
    int m_contacts;
    int m_photos;
    bool m_sameName;
    QByteArray m_photo;
    mutable BenchContact m_contact;
};

// A grainy picture of about 100 KB, as phones keep of a contact.
QByteArray photograph()
{
    constexpr int kSidePx = 640;
    QImage image(kSidePx, kSidePx, QImage::Format_RGB32);
    std::minstd_rand random(1);
    for (int y = 0; y < kSidePx; ++y) {
        for (int x = 0; x < kSidePx; ++x) {
            const int grain = static_cast<int>(random() % 24);
            image.setPixel(x, y, qRgb(x / 4 + grain, y / 4 + grain, (x + y) / 8 + grain));
        }
    }
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG", 85);
    return jpeg;
}

void run(const char *what, int contacts, int photos, bool sameName, const QByteArray &photo)
{
    const QTemporaryDir dir;
    BenchData data(contacts, photos, sameName, photo);
    const double start = Bench::cpuSeconds();
    const bool ok = CBackupExporter::exportContact(
        &data, QDir(dir.path()), u"Ann"_s, u"Contacts"_s, nullptr, nullptr);
    const double seconds = Bench::cpuSeconds() - start;
    const auto cards = QDir(dir.filePath(u"Contacts/VCF"_s)).entryList(QDir::Files).size();
    std::printf("%s: %d contacts, %d photos: %.2f s (%.0f us each), %lld cards, peak %.0f MB%s\n",
                what,
                contacts,
                photos,
                seconds,
                seconds * 1e6 / contacts,
                static_cast<long long>(cards),
                Bench::peakMemoryMb(),
                ok ? "" : ", failed");
}

} // namespace

int main(int argc, char *argv[])
{
    const int contacts = argc == 3 ? std::atoi(argv[1]) : 20000;
    const int photos = argc == 3 ? std::atoi(argv[2]) : 2000;
    if (contacts < 4 || photos < 0 || photos > contacts) {
        std::fputs("usage: bench_contacts [CONTACTS PHOTOS]\n", stderr);
        return 2;
    }
    const QByteArray photo = photograph();
    std::printf("a photo has %.0f KB\n", double(photo.size()) / 1000);
    run("a quarter", contacts / 4, photos / 4, false, photo);
    run("all", contacts, photos, false, photo);
    run("a quarter of one name", contacts / 4, 0, true, photo);
    run("all of one name", contacts, 0, true, photo);
    return 0;
}
