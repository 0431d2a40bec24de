#ifndef DATAEXPORT_CONTACT_BKCONTACTPRIVATE_H
#define DATAEXPORT_CONTACT_BKCONTACTPRIVATE_H

#include "DataExport_global.h"

#include <QByteArray>
#include <QList>
#include <QString>

class BkContactProperty;

/*!
    \brief The details of a contact: one text a field, and a list of properties.

    Item model, implemented by the application. A field that the contact does not have is empty.
*/
class DATAEXPORT_EXPORT BkContactPrivate
{
public:
    BkContactPrivate() = default;
    virtual ~BkContactPrivate();

    BkContactPrivate(const BkContactPrivate &) = delete;
    BkContactPrivate &operator=(const BkContactPrivate &) = delete;

    virtual QString namePrefix() const = 0; //!< What stands before the name ("Dr.").
    virtual QString givenName() const = 0; //!< First name.
    virtual QString additionalName() const = 0; //!< Middle name.
    virtual QString familyName() const = 0; //!< Last name.
    virtual QString nameSuffix() const = 0; //!< What stands behind the name ("Jr.").
    virtual QString givenNameYomi() const = 0; //!< First name as it is spoken.
    virtual QString familyNameYomi() const = 0; //!< Last name as it is spoken.
    virtual QString nickname() const = 0; //!< Nickname, without quotes.
    virtual QString jobTitle() const = 0; //!< Title in the organization.
    virtual QString department() const = 0; //!< Department of the organization.
    virtual QString organization() const = 0; //!< Company.

    /*!
        Seconds since 2001-01-01 00:00 UTC as a decimal number. A day of the year 1604 is one
        without a year. What is no number counts as 0.
    */
    virtual QString birthday() const = 0;

    virtual QString notes() const = 0; //!< Free text, may hold line breaks.

    /*!
        The photo's file as it is stored, in any image format; empty for none. Asked once by the
        page and once by the vCard, so that a model may read it when it is asked.
    */
    virtual QByteArray photo() const = 0;

    //! Phone numbers, addresses and so on, in the contact's order. They belong to the details.
    virtual QList<BkContactProperty *> properties() const = 0;
};

#endif
