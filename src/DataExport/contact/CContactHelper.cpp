#include "contact/CContactHelper.h"

#include "contact/ContactTypes_p.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QStringList>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
DATAEXPORT_USE_TR(DataExport);

const QString CContactHelper::CATE_MOBILE = u"_$!<Mobile>!$_"_s;
const QString CContactHelper::CATE_IPHONE = u"iPhone"_s;
const QString CContactHelper::CATE_HOME = u"_$!<Home>!$_"_s;
const QString CContactHelper::CATE_WORK = u"_$!<Work>!$_"_s;
const QString CContactHelper::CATE_MAIN = u"_$!<Main>!$_"_s;
const QString CContactHelper::CATE_OTHER = u"_$!<Other>!$_"_s;
const QString CContactHelper::CATE_PAGER = u"_$!<Pager>!$_"_s;
const QString CContactHelper::CATE_HOMEPAGE = u"_$!<HomePage>!$_"_s;
const QString CContactHelper::VALUE_KEY_SERVICE = u"service"_s;
const QString CContactHelper::VALUE_KEY_USER = u"username"_s;
const QString CContactHelper::VALUE_KEY_COUNTRY = u"Country"_s;
const QString CContactHelper::VALUE_KEY_STATE = u"State"_s;
const QString CContactHelper::VALUE_KEY_CITY = u"City"_s;
const QString CContactHelper::VALUE_KEY_STREET = u"Street"_s;
const QString CContactHelper::VALUE_KEY_ZIP = u"ZIP"_s;
const QString CContactHelper::PROP_KEY_BIRTHDAY = u"birthday"_s;
const QString CContactHelper::PROP_KEY_NOTES = u"notes"_s;

namespace {

constexpr int kYearOfDaysWithoutYear = 1604;

QMap<QString, QString> labelTable()
{
    struct Label
    {
        QString stored;
        const char *words;
    };
    using H = CContactHelper;
    const Label labels[] = {
        { H::CATE_MOBILE, QT_TRANSLATE_NOOP("DataExport", "mobile") },
        { H::CATE_IPHONE, QT_TRANSLATE_NOOP("DataExport", "iPhone") },
        { H::CATE_HOME, QT_TRANSLATE_NOOP("DataExport", "home") },
        { H::CATE_WORK, QT_TRANSLATE_NOOP("DataExport", "work") },
        { u"_$!<Anniversary>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "anniversary") },
        { H::CATE_OTHER, QT_TRANSLATE_NOOP("DataExport", "other") },
        { H::CATE_MAIN, QT_TRANSLATE_NOOP("DataExport", "main") },
        { u"_$!<OtherFAX>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "other fax") },
        { u"_$!<HomeFAX>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "home fax") },
        { u"_$!<WorkFAX>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "work fax") },
        { H::CATE_PAGER, QT_TRANSLATE_NOOP("DataExport", "pager") },
        { H::CATE_HOMEPAGE, QT_TRANSLATE_NOOP("DataExport", "home page") },
        { u"_$!<Mother>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "mother") },
        { u"_$!<Father>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "father") },
        { u"_$!<Parent>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "parent") },
        { u"_$!<Brother>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "brother") },
        { u"_$!<Sister>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "sister") },
        { u"_$!<Child>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "child") },
        { u"_$!<Friend>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "friend") },
        { u"_$!<Spouse>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "spouse") },
        { u"_$!<Partner>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "partner") },
        { u"_$!<Assistant>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "assistant") },
        { u"_$!<Manager>!$_"_s, QT_TRANSLATE_NOOP("DataExport", "manager") },
        { u"twitter"_s, QT_TRANSLATE_NOOP("DataExport", "Twitter") },
        { u"facebook"_s, QT_TRANSLATE_NOOP("DataExport", "Facebook") },
        { u"flickr"_s, QT_TRANSLATE_NOOP("DataExport", "Flickr") },
        { u"linkedin"_s, QT_TRANSLATE_NOOP("DataExport", "LinkedIn") },
        { u"myspace"_s, QT_TRANSLATE_NOOP("DataExport", "Myspace") },
        { u"sinaweibo"_s, QT_TRANSLATE_NOOP("DataExport", "Sina Weibo") },
        { H::PROP_KEY_BIRTHDAY, QT_TRANSLATE_NOOP("DataExport", "birthday") },
        { H::PROP_KEY_NOTES, QT_TRANSLATE_NOOP("DataExport", "notes") },
    };
    QMap<QString, QString> table;
    for (const Label &label : labels)
        table.insert(label.stored, QString::fromUtf8(label.words));
    return table;
}

QMap<QString, const char *> serviceTable()
{
    return {
        { u"google"_s, "Google Talk" },
        { u"googletalk"_s, "Google Talk" },
        { u"yahoo"_s, "Yahoo!" },
        { u"msn"_s, "MSN" },
        { u"icq"_s, "ICQ" },
        { u"jabber"_s, "Jabber" },
        { u"skype"_s, "Skype" },
        { u"qq"_s, "QQ" },
        { u"facebook"_s, "Facebook" },
        { u"gadu"_s, "GaduGadu" },
        { u"aim"_s, "AIM" },
    };
}

} // namespace

CContactHelper::CContactHelper() = default;

CContactHelper::~CContactHelper() = default;

QString CContactHelper::convertLabel(const QString &label, bool translate)
{
    if (m_labels.isEmpty())
        m_labels = labelTable();
    const auto known = m_labels.constFind(label);
    if (known == m_labels.constEnd())
        return label;
    return translate ? tr(known->toUtf8().constData()) : *known;
}

QString CContactHelper::getPropLabel(const BkContactProperty *prop)
{
    QString label = prop->propLabel();
    if (prop->propType() == BkContactKind::SocialProfile) {
        const QString service = prop->propValueEntry().value(VALUE_KEY_SERVICE);
        if (!service.isEmpty())
            label = service;
    }
    return convertLabel(label, true);
}

QString CContactHelper::convertGroupLabel(int propType)
{
    static constexpr std::array<const char *, ContactType::kShown.size()> kLabels {
        QT_TRANSLATE_NOOP("DataExport", "Phone"),
        QT_TRANSLATE_NOOP("DataExport", "Email"),
        QT_TRANSLATE_NOOP("DataExport", "URL"),
        QT_TRANSLATE_NOOP("DataExport", "Address"),
        QT_TRANSLATE_NOOP("DataExport", "Date"),
        QT_TRANSLATE_NOOP("DataExport", "Related Name"),
        QT_TRANSLATE_NOOP("DataExport", "Social Profile"),
        QT_TRANSLATE_NOOP("DataExport", "Instant Message"),
    };
    for (std::size_t i = 0; i < kLabels.size(); ++i) {
        if (ContactType::kShown[i] == propType)
            return tr(kLabels[i]);
    }
    return {};
}

QString CContactHelper::groupLabelForBirthday()
{
    return tr("Birthday");
}

QString CContactHelper::groupLabelForNotes()
{
    return tr("Notes");
}

QString CContactHelper::convertSpecialValue(const QString &value)
{
    if (m_services.isEmpty())
        m_services = serviceTable();
    const auto known = m_services.constFind(value.toLower());
    return known == m_services.constEnd() ? value : QString::fromUtf8(*known);
}

QString CContactHelper::buildMultiValue(const BkContactProperty *prop,
                                        bool withService,
                                        const QString &separator)
{
    const QMap<QString, QString> entry = prop->propValueEntry();
    if (!entry.contains(VALUE_KEY_SERVICE) && !entry.contains(VALUE_KEY_USER)) {
        QStringList parts;
        for (const QString &key : { VALUE_KEY_STREET,
                                    VALUE_KEY_CITY,
                                    VALUE_KEY_STATE,
                                    VALUE_KEY_ZIP,
                                    VALUE_KEY_COUNTRY })
            parts.append(entry.value(key));
        parts.removeAll(QString());
        return parts.join(separator);
    }
    const QString service = entry.value(VALUE_KEY_SERVICE);
    QString user = entry.value(VALUE_KEY_USER);
    if (service == "twitter"_L1)
        user.prepend(u'@');
    if (withService && !service.isEmpty())
        user += u" (%1)"_s.arg(convertSpecialValue(service));
    return user;
}

QString CContactHelper::getPropValue(const BkContactProperty *prop, const QString &separator)
{
    const int type = prop->propType();
    if (!prop->propValueEntry().isEmpty())
        return buildMultiValue(prop, type != BkContactKind::SocialProfile, separator);
    QString value = prop->propValue();
    if (type != BkContactKind::Date)
        return value;
    return getDateDesc(CCommonUtils::buildDateTimeBase2001(value.toDouble()), nullptr);
}

QString CContactHelper::getPropValueEntry(const BkContactProperty *prop, const QString &key)
{
    return prop->propValueEntry().value(key);
}

bool CContactHelper::getHiddenProperty(const BkContactProperty *prop,
                                       QMap<QString, QString> &hidden)
{
    hidden = prop->propValueEntry();
    for (const QString &known : { VALUE_KEY_COUNTRY,
                                  VALUE_KEY_STREET,
                                  VALUE_KEY_ZIP,
                                  VALUE_KEY_CITY,
                                  VALUE_KEY_STATE,
                                  u"CountryCode"_s,
                                  VALUE_KEY_USER,
                                  VALUE_KEY_SERVICE,
                                  u"url"_s })
        hidden.remove(known);
    return !hidden.isEmpty();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is frozen
QString CContactHelper::getDateDesc(QDateTime dateTime, const char *format)
{
    if (dateTime.date().year() == kYearOfDaysWithoutYear)
        return dateTime.toString(u"MM-dd"_s);
    if (!format)
        return CCommonUtils::dateToString(dateTime, true);
    return dateTime.toTimeSpec(Qt::LocalTime).date().toString(QString::fromUtf8(format));
}

int CContactHelper::getPropCount(const BkContactPrivate *contact, int propType)
{
    int count = 0;
    forEachProperty(*contact, propType, [&count](const BkContactProperty &) { ++count; });
    return count;
}
