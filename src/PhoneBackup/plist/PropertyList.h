#ifndef PHONEBACKUP_PLIST_PROPERTYLIST_H
#define PHONEBACKUP_PLIST_PROPERTYLIST_H

#include "folder/Result.h"

#include <QByteArray>
#include <QMetaType>
#include <QVariant>

#include <memory>

namespace PhoneBackup {

//! A reference into the object table of a keyed archive.
struct PlistUid
{
    quint64 index = 0;
};

/*!
    \brief A parsed property list, binary or XML.

    Dictionaries become QVariantMap, arrays QVariantList, the rest QString, qint64, double, bool,
    QByteArray, QDateTime (UTC) and PlistUid. Any shape is accepted; asking for what is not there
    gives an invalid QVariant.
    \par Bytes
    At most 256 MB; a nesting deeper than 128, and a list that unfolds beyond all measure, is none.
*/
class PropertyList
{
public:
    //! Parses \a data. What is no property list gives an object that isNull().
    static PropertyList parse(const QByteArray &data);

    //! Reads and parses the file \a path.
    static Result<PropertyList> read(const QString &path);

    PropertyList();
    ~PropertyList();
    PropertyList(PropertyList &&other) noexcept;
    PropertyList &operator=(PropertyList &&other) noexcept;

    bool isNull() const;
    bool isDict() const;

    //! The value of \a key when the root is a dictionary. Costs only what the value holds.
    QVariant value(const char *key) const;

    //! The whole tree.
    QVariant toVariant() const;

private:
    struct Release
    {
        void operator()(void *node) const;
    };
    std::unique_ptr<void, Release> m_root;
};

} // namespace PhoneBackup

Q_DECLARE_METATYPE(PhoneBackup::PlistUid)

#endif
