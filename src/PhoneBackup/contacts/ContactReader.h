#ifndef PHONEBACKUP_CONTACTS_CONTACTREADER_H
#define PHONEBACKUP_CONTACTS_CONTACTREADER_H

#include "PhoneBackup/contacts/Contact.h"
#include "PhoneBackup/contacts/ContactPhotos.h"
#include "PhoneBackup/source/AddressBook.h"
#include "PhoneBackup/source/Table.h"

#include <QSet>

#include <map>
#include <memory>

namespace PhoneBackup {

/*!
    \brief Reads what the address book knows of one person at a time.

    What a contact has and cannot be told is a problem of the contacts, under the contact's name.
    \par Memory
    The labels, the members of groups, and 16 bytes for each part of an address or account.
*/
class ContactReader
{
public:
    //! \a book has a database.
    ContactReader(Source &source, const AddressBook &book);
    ~ContactReader();

    //! Sets \a contact to what is known of \a person. \return false when none of their cards can be
    //! read.
    bool read(const AddressBook::Person &person, Contact &contact);

    //! The file of the photo of \a person, as it is stored; empty when there is none.
    QByteArray photo(const AddressBook::Person &person) { return m_photos.best(person); }

private:
    using Texts = QHash<qint64, QString>;
    struct Cards;
    struct Values;
    struct Parts;

    void readTexts(const QString &table, const QString &column, Texts &texts);
    void readPartRows();
    void readGroups();
    bool readFields(qint64 card, Contact &contact);
    QDate dayIn(const QString &stored, const char *noDay);
    void readValues(qint64 card, bool isFirst, Contact &contact);
    QMap<QString, QString> readParts(const AddressBook::Value &value);
    void addValue(const AddressBook::Value &stored,
                  const Table::Row &row,
                  bool isFirst,
                  Contact &contact);
    bool isNew(const Contact::Value &value, bool isFirst);
    QString text(const Table::Row &row, Table::Column column);
    void leaveOut(const Notice &what);
    void tellWhatIsLeftOut(const AddressBook::Person &person);

    Source &m_source;
    const AddressBook &m_book;
    RowDatabase m_details; // of the book, for what is read of each person
    ContactPhotos m_photos;
    Texts m_labels;
    Texts m_partKeys;
    QHash<qint64, QStringList> m_groups; // by card
    std::vector<std::pair<qint64, qint64>> m_partRows; // ABMultiValue.UID and ROWID of the part
    std::unique_ptr<Cards> m_cards;
    std::unique_ptr<Values> m_values;
    std::unique_ptr<Parts> m_parts;

    // Of the person that is being read.
    std::vector<Notice> m_leftOut;
    bool m_isCut = false;
    std::map<int, int> m_valueCounts; // by kind
    QSet<QString> m_seenValues;
};

//! Tells \a source that people or values of its address book may be missing, where that is so.
void reportContactLosses(Source &source);

} // namespace PhoneBackup

#endif
