#include "sample/KeyedArchive.h"

#include "sample/PropertyList.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

class Archiver
{
public:
    QVariant add(const QVariant &value)
    {
        if (value.typeId() != QMetaType::QVariantMap)
            return append(value);
        const QVariantMap map = value.toMap();
        const qsizetype place = m_objects.size();
        m_objects.append(QVariant());
        m_objects[place] = map.contains(kArchivedClass) ? object(map) : dictionary(map);
        return reference(place);
    }

    const QVariantList &objects() const { return m_objects; }

private:
    static QVariant reference(qsizetype index)
    {
        return QVariant::fromValue(PlistUid { static_cast<quint64>(index) });
    }

    QVariant append(const QVariant &value)
    {
        m_objects.append(value);
        return reference(m_objects.size() - 1);
    }

    QVariantMap object(const QVariantMap &map)
    {
        QVariantMap made;
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            made.insert(it.key(),
                        it.key() == kArchivedClass ? classOf(it.value().toString())
                                                   : add(it.value()));
        }
        return made;
    }

    QVariantMap dictionary(const QVariantMap &map)
    {
        QVariantList keys;
        QVariantList values;
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            keys.append(add(it.key()));
            values.append(add(it.value()));
        }
        return { { u"NS.keys"_s, keys },
                 { u"NS.objects"_s, values },
                 { kArchivedClass, classOf(u"NSDictionary"_s) } };
    }

    QVariant classOf(const QString &name)
    {
        if (!m_classes.contains(name)) {
            m_classes.insert(
                name,
                append(QVariantMap { { u"$classes"_s, QStringList { name, u"NSObject"_s } },
                                     { u"$classname"_s, name } }));
        }
        return m_classes.value(name);
    }

    QVariantList m_objects { u"$null"_s };
    QVariantMap m_classes;
};

} // namespace

QByteArray keyedArchive(const QVariantMap &root)
{
    Archiver archiver;
    const QVariant top = archiver.add(root);
    return binaryPropertyList(QVariantMap {
        { u"$version"_s, 100000 },
        { u"$archiver"_s, u"NSKeyedArchiver"_s },
        { u"$top"_s, QVariantMap { { u"root"_s, top } } },
        { u"$objects"_s, archiver.objects() },
    });
}

} // namespace Sample
