#ifndef PHONEBACKUP_MESSAGES_PEOPLE_H
#define PHONEBACKUP_MESSAGES_PEOPLE_H

#include "PhoneBackup/source/PhoneAddress.h"

#include <QHash>
#include <QString>

namespace PhoneBackup {

class AddressBook;

/*!
    \brief Tells which addresses belong to one person: those that the address book gives to one, and
    those that match each other. Numbers with their country are best asked for first.
*/
class People
{
public:
    explicit People(const AddressBook &addressBook);

    //! A number for the person at \a address, the same for all of their addresses.
    int number(const QString &address);

    //! Makes \a address and \a other those of one person, unless the address book knows both.
    void join(const QString &address, const QString &other);

    //! The name for \a address: that of the address book, else the address itself.
    QString name(const QString &address) const;

private:
    struct Known
    {
        PhoneAddress address;
        int person;
    };

    int stranger(const PhoneAddress &address);

    const AddressBook &m_addressBook;
    int m_strangers = 0; // people that are not in the address book
    QMultiHash<QString, Known> m_buckets; // by PhoneAddress::bucket()
    QHash<QString, int> m_known;
};

} // namespace PhoneBackup

#endif
