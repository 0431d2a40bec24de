#ifndef PHONEBACKUP_CONTACTS_CONTACTPHOTOS_H
#define PHONEBACKUP_CONTACTS_CONTACTPHOTOS_H

#include "PhoneBackup/source/AddressBook.h"
#include "PhoneBackup/source/Table.h"

namespace PhoneBackup {

/*!
    \brief The pictures of contacts, each read from the backup when it is asked for.

    The phone keeps a picture in several sizes. The best is one that every program can show, the
    whole picture before a part of it, and of the parts the largest.
    \par Memory
    32 bytes for each stored picture.
*/
class ContactPhotos
{
public:
    //! Looks what there is, and tells \a source what cannot be read.
    explicit ContactPhotos(Source &source);

    //! The file of the best picture of \a person, empty when there is none.
    QByteArray best(const AddressBook::Person &person);

private:
    struct Form
    {
        qint64 card;
        qint64 bytes;
        qint64 row;
        bool isWhole;
    };

    // The pictures of a table by the numbers of its rows.
    struct Pictures
    {
        Table::Column data;
        Table::Lookup lookup;
    };

    void readForms(bool isWhole);
    QByteArray read(const Form &form);

    Source &m_source;
    std::optional<RowDatabase> m_database;
    std::vector<Form> m_forms;
    std::optional<Pictures> m_whole;
    std::optional<Pictures> m_part;
};

} // namespace PhoneBackup

#endif
