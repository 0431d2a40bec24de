#ifndef PHONEBACKUP_CONTACTS_CONTACTREADER_H
#define PHONEBACKUP_CONTACTS_CONTACTREADER_H

#include "PhoneBackup/contacts/ContactPhotos.h"
#include "PhoneBackup/source/AddressBook.h"

#include <QSet>

#include <map>
#include <memory>

namespace PhoneBackup {

class ContactDetails;

/*!
    \brief Reads what the address book knows of one person at a time.

    What a contact has and cannot be shown is a problem of data type 8, under the contact's name.
    \par Memory
    The labels, and 16 bytes for each part of an address or account.
*/
class ContactReader
{
public:
    static constexpr int kContacts = 8;

    //! \a book has a database.
    ContactReader(Source &source, const AddressBook &book);

    //! Sets \a details to those of \a person. \return false when none of their cards can be read.
    bool read(const AddressBook::Person &person, ContactDetails &details);

private:
    using Texts = QHash<qint64, QString>;

    void readTexts(const QString &table, Texts &texts);
    void readPartRows();
    void prepareStatements();
    bool readFields(qint64 card, ContactDetails &details);
    void addBirthday(const QString &stored, ContactDetails &details);
    void readValues(qint64 card, bool isFirst, ContactDetails &details);
    QMap<QString, QString> readParts(const AddressBook::Value &value);
    void addValue(const AddressBook::Value &value, bool isFirst, ContactDetails &details);
    bool isNew(int kind, const QString &value, const QMap<QString, QString> &parts, bool isFirst);
    QString text(const Statement &row, int column);
    bool step(Statement &statement, qint64 row);
    void leaveOut(const QString &what);
    void tellWhatIsLeftOut(const AddressBook::Person &person);

    Source &m_source;
    const AddressBook &m_book;
    RowDatabase &m_database;
    ContactPhotos m_photos;
    Texts m_labels;
    Texts m_partKeys;
    std::vector<std::pair<qint64, qint64>> m_partRows; // ABMultiValue.UID and ROWID of the part
    std::unique_ptr<Statement> m_person;
    std::unique_ptr<Statement> m_value;
    std::unique_ptr<Statement> m_part;

    // Of the person that is being read.
    QStringList m_leftOut;
    bool m_isCut = false;
    std::map<int, int> m_valueCounts; // by kind
    QSet<QString> m_seenValues;
};

} // namespace PhoneBackup

#endif
