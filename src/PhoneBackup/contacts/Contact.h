#ifndef PHONEBACKUP_CONTACTS_CONTACT_H
#define PHONEBACKUP_CONTACTS_CONTACT_H

#include <QDate>
#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>

#include <vector>

namespace PhoneBackup {

/*!
    \brief What the address book knows of a person or an organization.

    Texts are as they are stored, but for control characters; what is not known is empty. A day of
    the year 1604 is one without a year.
*/
struct Contact
{
    //! The parts of a name, all from one card.
    struct Name
    {
        QString prefix;
        QString given;
        QString middle;
        QString family;
        QString suffix;
        QString spokenGiven;
        QString spokenMiddle;
        QString spokenFamily;
        QString formerFamily; //!< Before a marriage.

        //! Whether none of what the phone puts into a name is there.
        bool isEmpty() const
        {
            return prefix.isEmpty() && given.isEmpty() && middle.isEmpty() && family.isEmpty()
                && suffix.isEmpty() && spokenGiven.isEmpty() && spokenMiddle.isEmpty()
                && spokenFamily.isEmpty();
        }
    };

    //! A number, address, date and the like.
    struct Value
    {
        int kind = 0; //!< \see ContactKind
        QString label; //!< A token such as "_$!<Home>!$_", or the user's own text.
        QString text; //!< Of kinds that are a text.
        QDate day; //!< Of dates.
        QMap<QString, QString> parts; //!< Of addresses and accounts, by "Street", "service" ….
    };

    qint64 row = -1; //!< ROWID of the card that its name is from.
    QString guid; //!< The same in every backup; releases before iOS 7 have none.
    bool isOrganization = false;
    Name name;
    QString nickname;
    QString jobTitle;
    QString department;
    QString organization;
    QString spokenOrganization;
    QDate birthday;
    QString note;
    QDateTime created;
    QDateTime modified;
    std::vector<Value> values; //!< In the phone's order.
    QStringList groups; //!< Names of the groups that it is in.
};

} // namespace PhoneBackup

#endif
