#ifndef PHONEBACKUP_PLIST_KEYEDARCHIVE_H
#define PHONEBACKUP_PLIST_KEYEDARCHIVE_H

#include <QByteArray>
#include <QVariant>

namespace PhoneBackup {

/*!
    \brief The object graph that a keyed archiver wrote into a property list.

    The graph is untrusted: references may lead nowhere, or in a circle. Whatever cannot be followed
    is an invalid QVariant; nothing fails.
*/
class KeyedArchive
{
public:
    //! Parses \a data; isValid() tells whether it is a keyed archive.
    explicit KeyedArchive(const QByteArray &data);

    bool isValid() const { return m_valid; }

    //! The root object as it is stored: the values of its keys may be references.
    QVariantMap root() const;

    //! What \a value refers to; \a value itself when it is no reference. Nil is invalid.
    QVariant resolve(const QVariant &value) const;

    /*!
        \a value with every reference followed: dictionaries, arrays, sets, strings, data, dates and
        URLs as values of their own, other objects as a QVariantMap of their keys. An object inside
        itself is left out. Stops at a nesting of 64, and at 100,000 values or four for each byte of
        the archive, whichever comes first.
    */
    QVariant decode(const QVariant &value) const;

private:
    struct Walk;
    QVariant decode(const QVariant &value, Walk &walk) const;
    QVariant decodeList(const QVariant &value, Walk &walk) const;
    QVariant decodeObject(const QVariantMap &object, Walk &walk) const;

    QVariantList m_objects;
    QVariant m_root;
    qsizetype m_maxValues = 0;
    bool m_valid = false;
};

} // namespace PhoneBackup

#endif
