#ifndef PHONEBACKUP_SOURCE_PHONEADDRESS_H
#define PHONEBACKUP_SOURCE_PHONEADDRESS_H

#include <QString>

namespace PhoneBackup {

/*!
    \brief A phone number, e-mail address or sender's word in the form in which two of them compare.

    "+49 (0)30 123-4567", "0049301234567" and "030 1234567" are one number; a number with "+" or
    "00" names its country, and two such match only when they are equal.
*/
class PhoneAddress
{
public:
    enum class Kind {
        None, //!< Nothing that could be compared.
        Email,
        Word, //!< Letters: a sender such as "MyBank", a business chat.
        Number,
    };

    PhoneAddress() = default;
    explicit PhoneAddress(const QString &text);

    Kind kind() const { return m_kind; }

    //! Digits of a number without its country mark; else the whole in one case.
    const QString &text() const { return m_text; }

    //! Equal for everything that could match: what an index is made over.
    QString bucket() const;

    /*!
        How well they match: 0 not at all, else the number of equal digits or characters counted
        from the end; equal ones match best.
    */
    static int match(const PhoneAddress &a, const PhoneAddress &b);

    //! Whether both are numbers with their country, and different.
    static bool areApart(const PhoneAddress &a, const PhoneAddress &b);

    bool isInternational() const { return m_international; }

private:
    void setNumber(const QString &text);

    Kind m_kind = Kind::None;
    bool m_international = false;
    QString m_text;
};

} // namespace PhoneBackup

#endif
