#ifndef PHONEBACKUP_SOURCE_ADDRESSBOOK_H
#define PHONEBACKUP_SOURCE_ADDRESSBOOK_H

#include "PhoneBackup/base/Problem.h"
#include "PhoneBackup/source/PhoneAddress.h"
#include "PhoneBackup/source/RowDatabase.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <limits>
#include <vector>

namespace PhoneBackup {

class Source;

/*!
    \brief The people in the phone's address book, and who a number or e-mail address belongs to.

    Read once; without an address book, or with a damaged one, it knows nobody or fewer people.
    Cards that the phone shows as one are one person.
    \par Cost
    A look-up tests the few people whose numbers end alike; an answer is kept.
    \par Memory
    Names and numbers, and the places of everything else that is known of people.
*/
class AddressBook
{
public:
    static constexpr int kNobody = -1;

    //! What tells where people stand in a list.
    struct SortKeys
    {
        static constexpr qint64 kNoAlphabet = std::numeric_limits<qint32>::max();

        QString name; //!< The family name, where there is one.
        QString rest; //!< What orders those of equal names.
        //! The keys by which the phone orders its own list, and of one address book only; compared
        //! in this order, as bytes. The last one is empty when the phone has none.
        qint64 alphabet = kNoAlphabet;
        QByteArray section;
        QByteArray key;
    };

    struct Person
    {
        QString name; //!< In one line; empty when there is none.
        SortKeys sort; //!< What lists are ordered by.
        std::vector<qint64> cards; //!< ROWIDs; that of the name comes first.
        qint64 imageCard = -1; //!< Whose picture is shown, -1 for any of them.

        //! \a what of them is lost, under their name and what tells them from others of it.
        Problem loss(const Notice &what) const;
    };

    //! Where a value of a card stands.
    struct Value
    {
        qint64 card;
        int kind;
        int place; //!< Among those of its kind and card.
        qint64 row;
    };
    using Values = std::vector<Value>;

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

    //! All people; their numbers are their places.
    const std::vector<Person> &people() const { return m_people; }

    //! The values of \a card of all kinds that people are shown, in the phone's order.
    std::pair<Values::const_iterator, Values::const_iterator> values(qint64 card) const;

    //! Number of values whose kind is not known.
    int unknownValueCount() const { return m_unknownValues; }

    //! Where all of this comes from; null when there is none that can be opened.
    RowDatabase *database() const { return m_database.get(); }

    //! "domain/path" of the address book, for a person.
    static QString place();

    //! Why there may be more people than are known, for a person; empty when there are not.
    Notice loss() const;

private:
    struct Entry
    {
        PhoneAddress address;
        int person;
    };
    struct Link
    {
        qint64 nameCard;
        qint64 imageCard;
        int person = kNobody;
    };
    struct Card
    {
        qint64 row;
        Link *link;
        bool isPreferred;
        Person person;
    };

    void readPeople();
    void addCard(Card &&card);
    void readValues();
    void addAddress(int person, const QString &text);
    int find(const PhoneAddress &address) const;

    std::unique_ptr<RowDatabase> m_database;
    Notice m_openError;
    std::vector<Person> m_people;
    QHash<qint64, int> m_personOfCard; // while it is read
    QSet<int> m_settledNames; // likewise
    Values m_values;
    int m_unknownValues = 0;
    std::vector<Entry> m_entries;
    QMultiHash<QString, int> m_buckets; // PhoneAddress::bucket() to indices of entries
    mutable QHash<QString, int> m_known;
};

} // namespace PhoneBackup

#endif
