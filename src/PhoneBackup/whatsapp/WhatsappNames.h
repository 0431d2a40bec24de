#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPNAMES_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPNAMES_H

#include "PhoneBackup/whatsapp/WhatsappPerson.h"

#include <QHash>
#include <QSet>

namespace PhoneBackup {

class AddressBook;
class RowDatabase;
class Source;
class WhatsappDatabase;
struct WhatsappHome;

/*!
    \brief Who is behind WhatsApp's identifiers.

    Asked in this order: the phone's address book, the app's own list of contacts, what the caller
    knows, and the name that a person chose. Private identifiers are led back to numbers where the
    app knows them.
*/
class WhatsappNames
{
public:
    //! Reads what the databases in \a home tell, \a chats among them, which may be null. Those
    //! that cannot be read are a loss of \a dataType.
    WhatsappNames(Source &source, const WhatsappHome &home, WhatsappDatabase *chats, int dataType);

    //! The number of the person \a jid, with "+"; empty when it is not known.
    QString number(const Jid &jid) const;

    /*!
        The name of \a jid, empty when nobody tells one. \a known is a name that counts less than
        those of the contacts, and more than the one that the person chose.
    */
    QString name(const Jid &jid, const QString &known = {}) const;

    //! Equal for the same person, whichever identifier names them.
    QString key(const Jid &jid) const;

    //! Says that \a jid is the phone's owner; there may be several such identifiers.
    void addOwner(const Jid &jid);
    bool isOwner(const Jid &jid) const;

    //! The person \a jid; \a known as for name().
    WhatsappPerson person(const Jid &jid, const QString &known = {}) const;

    //! Remembers that the private identifier \a jid is the person \a phone, if nothing better is
    //! known.
    void learn(const Jid &jid, const Jid &phone);

    //! \a name in one line, without the marks that steer the direction of text.
    static QString cleaned(const QString &name);

    //! cleaned(), and empty for what is no name but encoded data.
    static QString chosen(const QString &pushName);

private:
    struct NumberColumns;

    void readNumbers(const QList<RowDatabase *> &databases);
    void readNumbers(RowDatabase &database, const NumberColumns &columns);
    void readContacts(RowDatabase &database);
    void readChosenNames(RowDatabase &database);

    const AddressBook &m_addressBook;
    QHash<QString, QString> m_numbers; // of private identifiers, by their user part
    QHash<QString, QString> m_contacts; // by Jid::key()
    QHash<QString, QString> m_chosen; // by Jid::key()
    QSet<QString> m_owner; // by key()
};

} // namespace PhoneBackup

#endif
