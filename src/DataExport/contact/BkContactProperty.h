#ifndef DATAEXPORT_CONTACT_BKCONTACTPROPERTY_H
#define DATAEXPORT_CONTACT_BKCONTACTPROPERTY_H

#include "DataExport_global.h"

#include <QMap>
#include <QString>

/*!
    \brief One property of a contact: a phone number, an address, a date and so on.

    Item model, implemented by the application. A property has a plain value or parts, not both.
*/
class DATAEXPORT_EXPORT BkContactProperty
{
public:
    BkContactProperty() = default;
    virtual ~BkContactProperty();

    BkContactProperty(const BkContactProperty &) = delete;
    BkContactProperty &operator=(const BkContactProperty &) = delete;

    //! Its kind: a BkContactKind::Code. One of another kind is left out and the report told.
    virtual int propType() const = 0;

    //! The label as it is stored: a token like "_$!<Home>!$_", or the user's own text.
    virtual QString propLabel() const = 0;

    //! The plain value. A date is the decimal number of seconds since 2001-01-01 00:00 UTC.
    virtual QString propValue() const = 0;

    /*!
        The parts of an address ("Street", "City", "State", "ZIP", "Country") or account ("service",
        "username"); other keys are shown for deleted contacts only. Empty for a plain value.
    */
    virtual QMap<QString, QString> propValueEntry() const = 0;
};

#endif
