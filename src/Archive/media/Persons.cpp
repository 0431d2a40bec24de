#include "Archive/media/Persons.h"

#include "Archive/media/Thumbnails.h"
#include "PhoneBackup/contacts/ContactReader.h"
#include "PhoneBackup/source/Source.h"

namespace Archive {

using namespace PhoneBackup;

Persons::Persons(Source &source, Thumbnails &thumbnails)
    : m_source(source)
    , m_thumbnails(thumbnails)
{
}

Persons::~Persons() = default;

QString Persons::avatar(const QString &address)
{
    return avatar(m_source.addressBook().person(address));
}

QString Persons::avatar(int person)
{
    const AddressBook &book = m_source.addressBook();
    if (person == AddressBook::kNobody || !book.database())
        return {};
    if (const auto known = m_avatars.constFind(person); known != m_avatars.cend())
        return *known;
    if (!m_reader)
        m_reader = std::make_unique<ContactReader>(m_source, book);
    const QByteArray photo = m_reader->photo(book.people()[std::size_t(person)]);
    const QString path = photo.isEmpty() ? QString() : m_thumbnails.ofBytes(photo, "person").path;
    m_avatars.insert(person, path);
    return path;
}

QString Persons::name(const QString &address) const
{
    const QString name = m_source.addressBook().name(address);
    return name.isEmpty() ? address : name;
}

void Persons::mention(const QString &address, const Mention &mention)
{
    const int person = m_source.addressBook().person(address);
    if (person != AddressBook::kNobody)
        m_mentions[person].append(mention);
}

} // namespace Archive
