#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPNAMES_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPNAMES_H

#include <QHash>
#include <QString>

namespace PhoneBackup {

class AddressBook;
class Jid;
class RowDatabase;
class Source;
class WhatsappDatabase;
struct WhatsappPlace;

/*!
    \brief Who is behind WhatsApp's identifiers.

    Asked in this order: the phone's address book, the app's own list of contacts, what the caller
    knows, and the name that a person chose. Private identifiers are led back to numbers where the
    app knows them.
*/
class WhatsappNames
{
public:
    //! Reads what the databases in \a place tell, \a chats among them, which may be null. Those
    //! that cannot be read are a loss of \a dataType.
    WhatsappNames(Source &source,
                  const WhatsappPlace &place,
                  WhatsappDatabase *chats,
                  int dataType);

    //! The number of the person \a jid, with "+"; empty when it is not known.
    QString number(const Jid &jid) const;

    /*!
        The name of \a jid, empty when nobody tells one. \a known is a name that counts less than
        those of the contacts, and more than the one that the person chose.
    */
    QString name(const Jid &jid, const QString &known = {}) const;

    //! name(), else \a chosen, else the number, else "Unknown".
    QString nameOrNumber(const Jid &jid, const QString &chosen = {}) const;

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
};

} // namespace PhoneBackup

#endif
