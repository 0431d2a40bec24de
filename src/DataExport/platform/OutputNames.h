#ifndef DATAEXPORT_PLATFORM_OUTPUTNAMES_H
#define DATAEXPORT_PLATFORM_OUTPUTNAMES_H

#include "DataExport_global.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>

/*!
    \brief Names of one output folder, such as every common file system takes them.

    clean() makes any text such a name; an object of this class keeps the names of one folder apart
    where they differ only in case or in Unicode normalisation, too.
    \par Cost
    One look-up per name, whatever the number of equal ones; 12 bytes a name.
*/
class DATAEXPORT_EXPORT OutputNames
{
public:
    static constexpr qsizetype kMaxBytes = 200; //!< Of a whole name, in UTF-8.

    /*!
        \a name without what some system forbids: / \ : " * ? < > | and control characters become
        "_", direction overrides go, and so do dots and white space at its ends. Device names get a
        "_". At most kMaxBytes of UTF-8, the extension kept; never empty.
    */
    static QString clean(const QString &name);

    //! The same for a file whose title and extension (without the dot, may be empty) are known.
    static QString clean(const QString &title, const QString &extension);

    //! Whether the UTF-8 text \a name is one that clean() would not change; may say no to some.
    static bool isClean(QByteArrayView name);

    //! What is to bear a name.
    enum class Kind { File, Folder };

    /*!
        Takes \a name, which clean() made, or the next free of "name (2)", "name (3)" and so on. The
        number goes in front of a file's extension, and behind the whole name of a folder.
    */
    QString take(const QString &name, Kind kind = Kind::File);

    //! Takes \a name when isClean() and still free. \return whether it was taken.
    bool takeClean(QByteArrayView name);

    //! Makes room for \a count names.
    void reserve(qsizetype count) { m_used.reserve(count); }

private:
    // By the hash of the folded name: the last number given to it. That two names share a hash of
    // 64 bits costs one of them a number it did not need.
    QHash<quint64, quint32> m_used;
};

#endif
