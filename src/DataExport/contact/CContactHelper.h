#ifndef DATAEXPORT_CONTACT_CCONTACTHELPER_H
#define DATAEXPORT_CONTACT_CCONTACTHELPER_H

#include "DataExport_global.h"

#include <QDateTime>
#include <QMap>
#include <QString>

class BkContactPrivate;
class BkContactProperty;

/*!
    \brief Turns the labels and values that an address book stores into what people read.

    Translated means: through QCoreApplication::translate(), context "DataExport"; without a
    translator the English words stand. None of the operations fails.
    \par Owner
    Properties and contacts are borrowed for the call; none may be null.
    \par Thread
    Reentrant, not thread-safe: the tables of one object are filled when they are first needed.
*/
class DATAEXPORT_EXPORT CContactHelper
{
public:
    //! \name Labels as they are stored
    //!\{
    static const QString CATE_MOBILE; //!< "_$!<Mobile>!$_"
    static const QString CATE_IPHONE; //!< "iPhone"
    static const QString CATE_HOME; //!< "_$!<Home>!$_"
    static const QString CATE_WORK; //!< "_$!<Work>!$_"
    static const QString CATE_MAIN; //!< "_$!<Main>!$_"
    static const QString CATE_OTHER; //!< "_$!<Other>!$_"
    static const QString CATE_PAGER; //!< "_$!<Pager>!$_"
    static const QString CATE_HOMEPAGE; //!< "_$!<HomePage>!$_"
    //!\}

    //! \name Keys of values in parts
    //!\{
    static const QString VALUE_KEY_SERVICE; //!< "service": which network an account belongs to.
    static const QString VALUE_KEY_USER; //!< "username": the account's name there.
    static const QString VALUE_KEY_COUNTRY; //!< "Country"
    static const QString VALUE_KEY_STATE; //!< "State"
    static const QString VALUE_KEY_CITY; //!< "City"
    static const QString VALUE_KEY_STREET; //!< "Street", may hold line breaks.
    static const QString VALUE_KEY_ZIP; //!< "ZIP"
    //!\}

    //! \name Labels of the fields that are no properties
    //!\{
    static const QString PROP_KEY_BIRTHDAY; //!< "birthday"
    static const QString PROP_KEY_NOTES; //!< "notes"
    //!\}

    CContactHelper();
    ~CContactHelper();

    /*!
        The words for the stored \a label, translated when \a translate. A label that is not known
        comes back as it is: the user's own.
    */
    QString convertLabel(const QString &label, bool translate);

    //! The translated label of \a prop; that of a social profile is its service, where it has one.
    QString getPropLabel(const BkContactProperty *prop);

    //! Translated heading of the properties of the kind \a propType; null for other kinds.
    static QString convertGroupLabel(int propType);

    static QString groupLabelForBirthday(); //!< Translated "Birthday".
    static QString groupLabelForNotes(); //!< Translated "Notes".

    //! The name of a network by its key, in whatever case; other texts come back as they are.
    QString convertSpecialValue(const QString &value);

    /*!
        The parts of \a prop in one line. An address: street, city, state, ZIP and country, as far
        as there are any, with \a separator between them. An account: its user, with "@" before one
        of twitter, and when \a withService the service in parentheses behind it.
    */
    QString
    buildMultiValue(const BkContactProperty *prop, bool withService, const QString &separator);

    //! The value of any \a prop: its parts as buildMultiValue() joins them, the day of a date, or
    //! the text as it is stored. A social profile shows no service, which its label already names.
    QString getPropValue(const BkContactProperty *prop, const QString &separator);

    //! The part \a key of \a prop, null when there is none.
    static QString getPropValueEntry(const BkContactProperty *prop, const QString &key);

    //! Sets \a hidden to the parts of \a prop that are not shown otherwise. \return whether any.
    static bool getHiddenProperty(const BkContactProperty *prop, QMap<QString, QString> &hidden);

    /*!
        The day of \a dateTime: "MM-dd" in the year 1604, which stands for none; else its UTC day as
        "yyyy-MM-dd" when \a format is null, or its day in local time in \a format.
    */
    static QString getDateDesc(QDateTime dateTime, const char *format);

    //! How many properties of the kind \a propType \a contact has.
    static int getPropCount(const BkContactPrivate *contact, int propType);

private:
    QMap<QString, QString> m_labels; //!< Stored label to English words.
    QMap<QString, const char *> m_services; //!< Key in lower case to the network's name.
};

#endif
