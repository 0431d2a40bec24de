#ifndef ARCHIVE_MEDIA_PERSONS_H
#define ARCHIVE_MEDIA_PERSONS_H

#include <QHash>
#include <QList>
#include <QString>

#include <memory>

namespace PhoneBackup {
class ContactReader;
class Source;
} // namespace PhoneBackup

namespace Archive {

class Thumbnails;

//! What the archive has of the people in the address book: their pictures, and pages about them.
class Persons
{
public:
    struct Mention
    {
        QString title;
        QString path; //!< In the archive, with the anchor.
    };

    //! Both are borrowed.
    Persons(PhoneBackup::Source &source, Thumbnails &thumbnails);
    ~Persons();

    //! The path in the archive of the small picture of whoever is at \a address; empty when there
    //! is none. It is made when it is first asked for.
    QString avatar(const QString &address);

    //! That of a person of the address book.
    QString avatar(int person);

    //! The name for \a address, else the address itself.
    QString name(const QString &address) const;

    //! Remembers that there is a page about whoever is at \a address.
    void mention(const QString &address, const Mention &mention);

    QList<Mention> mentions(int person) const { return m_mentions.value(person); }

private:
    PhoneBackup::Source &m_source;
    Thumbnails &m_thumbnails;
    std::unique_ptr<PhoneBackup::ContactReader> m_reader;
    QHash<int, QString> m_avatars;
    QHash<int, QList<Mention>> m_mentions;
};

} // namespace Archive

#endif
