#ifndef PHONEBACKUP_PLIST_PROPERTYLIST_H
#define PHONEBACKUP_PLIST_PROPERTYLIST_H

#include "PhoneBackup/base/Result.h"

#include <QByteArray>
#include <QMetaType>
#include <QVariant>

namespace PhoneBackup {

//! A reference into the object table of a keyed archive.
struct PlistUid
{
    quint64 index = 0;
};

/*!
    \brief A parsed property list, binary or XML.

    Dictionaries become QVariantMap, arrays and sets QVariantList, the rest QString, qint64 (quint64
    where that is too small), double, bool, QByteArray, QDateTime (UTC) and PlistUid. Any shape is
    accepted; asking for what is not there gives an invalid QVariant, and so does a null or a number
    that cannot be read. Texts may hold U+0000 and unpaired surrogates.
    \par Bytes
    Untrusted. What is larger, deeper or of more values than the limits below is no property list,
    nor is one whose shared values, each counted as often as it is met, come to far more than its
    own size.
    \par Cost
    Copies share the values. Time and memory are linear in the size of the list.
*/
class PropertyList
{
public:
    static constexpr qsizetype kMaxBytes = qsizetype(64) << 20;
    static constexpr int kMaxDepth = 128;
    static constexpr int kMaxNodes = 2'000'000;

    //! Parses \a data. What is no property list gives an object that isNull().
    static PropertyList parse(const QByteArray &data);

    //! Reads and parses the file \a path.
    static Result<PropertyList> read(const QString &path);

    bool isNull() const { return !m_root.isValid(); }
    bool isDict() const { return m_root.typeId() == QMetaType::QVariantMap; }

    //! The value of \a key when the root is a dictionary.
    QVariant value(const char *key) const;

    //! The whole tree.
    QVariant toVariant() const { return m_root; }

private:
    QVariant m_root;
};

} // namespace PhoneBackup

Q_DECLARE_METATYPE(PhoneBackup::PlistUid)

#endif
