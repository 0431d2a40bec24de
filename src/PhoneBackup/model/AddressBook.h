#ifndef PHONEBACKUP_MODEL_ADDRESSBOOK_H
#define PHONEBACKUP_MODEL_ADDRESSBOOK_H

#include "model/PhoneAddress.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

namespace PhoneBackup {

class Database;
class Source;

/*!
    \brief Who a phone number or e-mail address belongs to.

    Read once from the phone's address book; without one, or with a damaged one, it knows nobody or
    fewer people. Cards that the phone shows as one are one person.
    \par Cost
    A look-up tests the few people whose numbers end alike; an answer is kept.
*/
class AddressBook
{
public:
    static constexpr int kNobody = -1;

    //! Reads the address book of \a source, and tells it what could not be read.
    explicit AddressBook(Source &source);

    /*!
        The person that \a address belongs to, kNobody when it is nobody's, and when people of
        different names have equal claims to it.
    */
    int person(const QString &address) const;

    //! The name of \a person, empty when they have none.
    QString personName(int person) const;

    //! The name for \a address, empty when it is not known.
    QString name(const QString &address) const { return personName(person(address)); }

private:
    struct Entry
    {
        PhoneAddress address;
        int person;
    };

    void readPeople(Source &source, const Database &database);
    void readAddresses(Source &source, const Database &database);
    int find(const PhoneAddress &address) const;

    QStringList m_names; // of each person
    QHash<qint64, int> m_personOfCard;
    std::vector<Entry> m_entries;
    QMultiHash<QString, int> m_buckets; // PhoneAddress::bucket() to indices of entries
    mutable QHash<QString, int> m_known;
};

} // namespace PhoneBackup

#endif
