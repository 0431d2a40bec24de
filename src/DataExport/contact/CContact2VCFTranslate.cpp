#include "contact/CContact2VCFTranslate.h"

#include "contact/BkContactItem.h"
#include "contact/CContactHelper.h"
#include "contact/ContactTypes_p.h"
#include "contact/StandardCard_p.h"
#include "export/CIDataExporter.h"
#include "platform/CCommonUtils.h"

#include <QStringList>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String kLineEnd("\r\n");
constexpr QLatin1String kInUtf8(";CHARSET=utf-8:");

// The card's word for a stored label; of several in one label the last counts.
QLatin1String itemType(const QString &label)
{
    constexpr std::array kTypes { "home"_L1, "work"_L1, "other"_L1, "pager"_L1 };
    QLatin1String type = "home"_L1;
    for (const QLatin1String known : kTypes) {
        if (label.contains(known, Qt::CaseInsensitive))
            type = known;
    }
    return type;
}

// Composes the card of one contact, line by line, from values as they are stored.
class CardWriter
{
public:
    CardWriter(const BkContactItem &item, const BkContactPrivate &contact)
        : m_item(item)
        , m_contact(contact)
    {
    }

    QString write()
    {
        m_card = "BEGIN:VCARD\r\nVERSION:2.1\r\n"_L1;
        writeField("FN"_L1, m_item.value(0));
        writeBasics();
        forEachProperty(m_contact,
                        BkContactKind::Address,
                        [this](const BkContactProperty &address) { writeAddress(address); });
        forEachProperty(m_contact, BkContactKind::Phone, [this](const BkContactProperty &phone) {
            writePhone(phone);
        });
        forEachProperty(m_contact, BkContactKind::Email, [this](const BkContactProperty &email) {
            writeLine("EMAIL;TYPE=internet"_L1, email.propValue());
        });
        writePhoto();
        forEachProperty(m_contact, BkContactKind::Url, [this](const BkContactProperty &url) {
            writeLine("URL;TYPE="_L1 + itemType(url.propLabel()), url.propValue());
        });
        forEachProperty(m_contact,
                        BkContactKind::InstantMessage,
                        [this](const BkContactProperty &account) { writeAccount(account); });
        m_card += "END:VCARD\r\n\r\n\r\n"_L1;
        return m_card;
    }

private:
    void writeBasics()
    {
        writeField("N"_L1,
                   joined({ m_contact.namePrefix(),
                            m_contact.givenName(),
                            m_contact.additionalName(),
                            m_contact.familyName(),
                            m_contact.nameSuffix() }));
        writeField("TITLE"_L1, m_contact.jobTitle());
        writeField("ORG"_L1, joined({ m_contact.organization(), m_contact.department() }));
        writeField("NICKNAME"_L1, m_contact.nickname());
        const QString birthday = m_contact.birthday();
        if (!birthday.isEmpty()) {
            const QDateTime day = CCommonUtils::buildDateTimeBase2001(birthday.toDouble());
            writeLine("BDAY"_L1, CContactHelper::getDateDesc(day, nullptr));
        }
        const QString notes = m_contact.notes();
        if (!notes.isEmpty())
            m_card += "NOTE"_L1 + kInUtf8 + notes + kLineEnd;
    }

    void writeAddress(const BkContactProperty &address)
    {
        // The post-office box and the extended address are never there.
        QString value = ";;"_L1 + m_helper.getPropValue(&address, u";"_s);
        value.replace(u'\n', u' ');
        writeLine("ADR;TYPE="_L1 + itemType(address.propLabel()), value);
    }

    void writePhone(const BkContactProperty &phone)
    {
        const QString label = phone.propLabel();
        const QLatin1String type = itemType(label);
        QString name = "TEL;"_L1 + (type == "other"_L1 ? "home"_L1 : type);
        if (label.contains("fax"_L1, Qt::CaseInsensitive))
            name += ";fax"_L1;
        writeLine(name, phone.propValue());
    }

    void writePhoto()
    {
        const QByteArray photo = m_contact.photo();
        if (!photo.isEmpty()) {
            m_card +=
                "PHOTO;TYPE=JPEG;ENCODING=BASE64:"_L1 + QLatin1String(photo.toBase64()) + kLineEnd;
        }
    }

    void writeAccount(const BkContactProperty &account)
    {
        const QMap<QString, QString> entry = account.propValueEntry();
        const QString user = entry.value(CContactHelper::VALUE_KEY_USER);
        const QString service = entry.value(CContactHelper::VALUE_KEY_SERVICE);
        if (!service.isEmpty() && !user.isEmpty())
            m_card += "X-"_L1 + service.toUpper() + u';' + user + kLineEnd;
    }

    void writeField(QLatin1String name, const QString &value)
    {
        if (!value.isEmpty())
            writeLine(name, value);
    }

    void writeLine(const QString &name, const QString &value)
    {
        m_card += name + kInUtf8 + value + kLineEnd;
    }

    static QString joined(QStringList parts)
    {
        parts.removeAll(QString());
        return parts.join(u';');
    }

    const BkContactItem &m_item;
    const BkContactPrivate &m_contact;
    CContactHelper m_helper;
    QString m_card;
};

} // namespace

CContact2VCFTranslate::CContact2VCFTranslate(BkContactData *data)
    : CContactTranslate(data)
{
}

CContact2VCFTranslate::~CContact2VCFTranslate() = default;

bool CContact2VCFTranslate::translateHeader(CIDataExporter * /*exporter*/,
                                            const QString & /*title*/)
{
    return true;
}

bool CContact2VCFTranslate::translateDataBefore(CIDataExporter * /*exporter*/)
{
    return true;
}

bool CContact2VCFTranslate::translateDataAfter(CIDataExporter * /*exporter*/)
{
    return true;
}

bool CContact2VCFTranslate::translateDataItem(CIDataExporter *exporter, BkContactItem *item)
{
    if (!item->detailContent())
        return true;
    const BkContactPrivate &contact = *item->detailContent();
    return exporter->exportData(exporter->isHardened() ? StandardCard::write(*item, contact)
                                                       : CardWriter(*item, contact).write());
}
