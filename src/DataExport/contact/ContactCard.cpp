#include "contact/BkContactItem.h"
#include "contact/ContactCard_p.h"
#include "contact/ContactTypes_p.h"
#include "export/CHtmlExporter.h"
#include "export/CUtils.h"
#include "export/PageText_p.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;
DATAEXPORT_USE_TR(DataExport);

namespace {

QString joined(QStringList parts, const QString &separator)
{
    parts.removeAll(QString());
    return parts.join(separator);
}

} // namespace

ContactCard::ContactCard(const CIDataExporter &page,
                         const BkContactItem &item,
                         const BkContactPrivate &contact,
                         const QString &picture)
    : m_page(page)
    , m_item(item)
    , m_contact(contact)
    , m_picture(picture)
    , m_deleted(item.flag(0))
{
    sortProperties();
}

void ContactCard::sortProperties()
{
    const QList<BkContactProperty *> properties = m_contact.properties();
    for (const BkContactProperty *property : properties) {
        const int type = property ? property->propType() : BkContactKind::Sound;
        if (type == BkContactKind::Sound)
            continue;
        m_groups[type].append(property);
        if (std::find(ContactType::kShown.begin(), ContactType::kShown.end(), type)
            == ContactType::kShown.end())
            ++m_unknownCount;
    }
}

QString ContactCard::write()
{
    m_card = m_deleted ? u"<div class=\"main dc\">"_s : u"<div class=\"main nc\">"_s;
    writeHead();
    m_card += "<table border=0 cellspacing=0 cellpadding=0>"_L1;
    for (const int type : ContactType::kShown) {
        if (type == BkContactKind::Date)
            writeBirthday();
        writeGroup(type);
    }
    const QString notes = m_contact.notes();
    if (!notes.isEmpty()) {
        writeHeading(CContactHelper::groupLabelForNotes());
        writeRow(Row::Last, m_helper.convertLabel(CContactHelper::PROP_KEY_NOTES, true), notes);
    }
    m_card += "</table></div>"_L1;
    return m_card;
}

void ContactCard::writeHead()
{
    m_card += "<div class=\"main-top\"><div class=\"main-pic\"><img src=\""_L1 + m_picture + u'"'
        + PageText::alt(m_page, m_picture.endsWith(kSilhouette) ? QString() : tr("Photo"))
        + " /></div><div class=\"main-text\"><div class=\"main-title\">"_L1;
    if (m_deleted)
        m_card += "<img src='image/"_L1 + CHtmlExporter::DELETE_FLAG_IMG + u'\''
            + PageText::alt(m_page, tr("Deleted")) + u'>';
    m_card += PageText::plain(m_page, m_item.value(0)) + "</div>"_L1;

    const QString nickname = m_contact.nickname();
    const QString work = joined(
        { m_contact.jobTitle(), m_contact.department(), m_contact.organization() }, u" - "_s);
    for (const QString &line : {
             joined({ m_contact.familyNameYomi(), m_contact.givenNameYomi() }, u" "_s),
             nickname.isEmpty() ? nickname : u'"' + nickname + u'"',
             work,
         })
        m_card += "<p>"_L1 + PageText::plain(m_page, line) + "</p>"_L1;
    m_card += "</div></div>"_L1;
}

void ContactCard::writeBirthday()
{
    const QString birthday = m_contact.birthday();
    if (birthday.isEmpty())
        return;
    const QDateTime day = CCommonUtils::buildDateTimeBase2001(birthday.toDouble());
    writeHeading(CContactHelper::groupLabelForBirthday());
    writeRow(Row::Last,
             m_helper.convertLabel(CContactHelper::PROP_KEY_BIRTHDAY, true),
             CContactHelper::getDateDesc(day, nullptr));
}

void ContactCard::writeGroup(int type)
{
    const QList<const BkContactProperty *> properties = m_groups.value(type);
    if (properties.isEmpty())
        return;
    writeHeading(CContactHelper::convertGroupLabel(type));
    for (qsizetype k = 0; k < properties.size(); ++k) {
        const BkContactProperty *property = properties.at(k);
        const bool last = k + 1 == properties.size();
        QMap<QString, QString> extra;
        if (m_deleted)
            CContactHelper::getHiddenProperty(property, extra);
        writeRow(last && extra.isEmpty() ? Row::Last : Row::Inner,
                 m_helper.getPropLabel(property),
                 m_helper.getPropValue(property, u" "_s));
        for (auto entry = extra.constBegin(); entry != extra.constEnd(); ++entry) {
            const bool end = last && std::next(entry) == extra.constEnd();
            writeRow(end ? Row::Last : Row::Inner, entry.key(), entry.value());
        }
    }
}

void ContactCard::writeHeading(const QString &label)
{
    openRow(Row::Heading);
    m_card += "<td colspan='2'>"_L1 + CUtils::htmlEncode(label) + "&nbsp;</td></tr>"_L1;
}

void ContactCard::writeRow(Row kind, const QString &label, const QString &value)
{
    openRow(kind);
    m_card += "<td class=\"first-td\">"_L1 + CUtils::htmlEncode(label)
        + "&nbsp;</td><td class=\"second-td\">"_L1 + CUtils::htmlEncode(value)
        + "&nbsp;</td></tr>"_L1;
}

void ContactCard::openRow(Row kind)
{
    switch (kind) {
    case Row::Heading:
        m_card += "<tr class=\"group\">"_L1;
        break;
    case Row::Inner:
        m_card += "<tr>"_L1;
        break;
    case Row::Last:
        m_card += "<tr class=\"group_end\">"_L1;
        break;
    }
}
