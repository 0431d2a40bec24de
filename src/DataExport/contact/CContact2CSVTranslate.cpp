#include "contact/CContact2CSVTranslate.h"

#include "contact/BkContactData.h"
#include "contact/BkContactItem.h"
#include "contact/ContactTypes_p.h"
#include "export/CIDataExporter.h"
#include "export/CsvFormat_p.h"
#include "platform/CCommonUtils.h"

#include <QHash>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String kAccountSeparator(" ::: ");

// Each line of a table that is not standard has an empty cell more.
QString lineEnd(const CsvFormat &format)
{
    return format.isStandard() ? format.lineEnd() : u',' + format.lineEnd();
}

// Column names with a number in the place of %1, per kind of property in the header's order.
struct NumberedColumns
{
    int type;
    QStringList names;
};

const std::array<NumberedColumns, 5> &numberedColumns()
{
    static const std::array<NumberedColumns, 5> columns { {
        { BkContactKind::Address,
          { u"Address %1 - Type"_s,
            u"Address %1 - City"_s,
            u"Address %1 - Street"_s,
            u"Address %1 - Postal Code"_s,
            u"Address %1 - Country"_s } },
        { BkContactKind::Phone, { u"Phone %1 - Type"_s, u"Phone %1 - Value"_s } },
        { BkContactKind::Email, { u"E-mail %1 - Type"_s, u"E-mail %1 - Value"_s } },
        { BkContactKind::Date, { u"Event %1 - Type"_s, u"Event %1 - Value"_s } },
        { BkContactKind::Url, { u"Website %1 - Type"_s, u"Website %1 - Value"_s } },
    } };
    return columns;
}

QStringList fixedColumns()
{
    return { u"Family Name"_s,
             u"Additional Name"_s,
             u"Given Name"_s,
             u"Family Name Yomi"_s,
             u"Additional Name Yomi"_s,
             u"Given Name Yomi"_s,
             u"Notes"_s,
             u"Birthday"_s,
             u"Nickname"_s,
             u"Name Suffix"_s,
             u"Name Prefix"_s,
             u"Organization 1 - Name"_s,
             u"Organization 1 - Type"_s,
             u"Organization 1 - Department"_s,
             u"Organization 1 - Title"_s,
             u"IM 1 - Value"_s,
             u"IM 1 - Service"_s };
}

QString dayOf(const QString &secondsSince2001)
{
    return CContactHelper::getDateDesc(
        CCommonUtils::buildDateTimeBase2001(secondsSince2001.toDouble()), "yyyy-MM-dd");
}

QString inOneLine(QString text)
{
    return text.replace(u'\n', u' ');
}

// Collects the cells of one contact by the names of their columns.
class RowBuilder
{
public:
    RowBuilder(CContactHelper &helper, const BkContactPrivate &contact)
        : m_helper(helper)
        , m_contact(contact)
    {
        addFields();
        for (const NumberedColumns &columns : numberedColumns())
            addNumbered(columns);
        addAccounts();
    }

    QString cell(const QString &column) const { return m_cells.value(column); }

private:
    void addFields()
    {
        addContactEntry(u"Given Name"_s, m_contact.givenName());
        addContactEntry(u"Additional Name"_s, m_contact.additionalName());
        addContactEntry(u"Family Name"_s, m_contact.familyName());
        addContactEntry(u"Given Name Yomi"_s, m_contact.givenNameYomi());
        addContactEntry(u"Family Name Yomi"_s, m_contact.familyNameYomi());
        addContactEntry(u"Name Prefix"_s, m_contact.namePrefix());
        addContactEntry(u"Name Suffix"_s, m_contact.nameSuffix());
        addContactEntry(u"Nickname"_s, m_contact.nickname());
        addContactEntry(u"Organization 1 - Name"_s, m_contact.organization());
        addContactEntry(u"Organization 1 - Department"_s, m_contact.department());
        addContactEntry(u"Organization 1 - Title"_s, m_contact.jobTitle());
        addContactEntry(u"Notes"_s, m_contact.notes());
        const QString birthday = m_contact.birthday();
        if (!birthday.isEmpty())
            addContactEntry(u"Birthday"_s, dayOf(birthday));
    }

    void addNumbered(const NumberedColumns &columns)
    {
        int number = 1;
        forEachProperty(m_contact, columns.type, [&](const BkContactProperty &property) {
            const QString label = m_helper.convertLabel(property.propLabel(), false);
            const QStringList cells = QStringList { label } + valuesOf(property);
            for (qsizetype i = 0; i < cells.size(); ++i)
                addContactEntry(columns.names.at(i).arg(number), cells.at(i));
            ++number;
        });
    }

    static QStringList valuesOf(const BkContactProperty &property)
    {
        if (property.propType() == BkContactKind::Date)
            return { dayOf(property.propValue()) };
        if (property.propType() != BkContactKind::Address)
            return { property.propValue() };
        const auto part = [&property](const QString &key) {
            return inOneLine(CContactHelper::getPropValueEntry(&property, key));
        };
        QStringList city { part(CContactHelper::VALUE_KEY_CITY),
                           part(CContactHelper::VALUE_KEY_STATE) };
        city.removeAll(QString());
        return { city.join(u' '),
                 part(CContactHelper::VALUE_KEY_STREET),
                 part(CContactHelper::VALUE_KEY_ZIP),
                 part(CContactHelper::VALUE_KEY_COUNTRY) };
    }

    void addAccounts()
    {
        QStringList services;
        QStringList users;
        forEachProperty(
            m_contact, BkContactKind::InstantMessage, [&](const BkContactProperty &account) {
                const QMap<QString, QString> entry = account.propValueEntry();
                services.prepend(
                    m_helper.convertSpecialValue(entry.value(CContactHelper::VALUE_KEY_SERVICE)));
                users.prepend(entry.value(CContactHelper::VALUE_KEY_USER));
            });
        addContactEntry(u"IM 1 - Service"_s, services.join(kAccountSeparator));
        addContactEntry(u"IM 1 - Value"_s, users.join(kAccountSeparator));
    }

    void addContactEntry(const QString &column, const QString &text)
    {
        if (!text.isEmpty())
            m_cells.insert(column, text);
    }

    CContactHelper &m_helper;
    const BkContactPrivate &m_contact;
    QHash<QString, QString> m_cells;
};

} // namespace

CContact2CSVTranslate::CContact2CSVTranslate(BkContactData *data)
    : CContactTranslate(data)
{
}

CContact2CSVTranslate::~CContact2CSVTranslate() = default;

void CContact2CSVTranslate::updatePropCount(const CContactHelper &helper,
                                            const BkContactItem *item,
                                            int type,
                                            int &max)
{
    if (const BkContactPrivate *contact = item->detailContent())
        max = std::max(max, helper.getPropCount(contact, type));
}

bool CContact2CSVTranslate::translateHeader(CIDataExporter *exporter, const QString & /*title*/)
{
    const auto &numbered = numberedColumns();
    std::array<int, 5> most {};
    const int count = m_data->count(1);
    for (int index = 0; index < count; ++index) {
        auto *item = dynamic_cast<BkContactItem *>(m_data->at(index, true));
        if (!item || !m_data->recover(item))
            continue;
        for (std::size_t i = 0; i < numbered.size(); ++i)
            updatePropCount(m_helper, item, numbered[i].type, most[i]);
    }
    m_columns = fixedColumns();
    for (std::size_t i = 0; i < numbered.size(); ++i) {
        for (int number = 1; number <= most[i]; ++number) {
            for (const QString &name : numbered[i].names)
                m_columns.append(name.arg(number));
        }
    }
    const CsvFormat format(*exporter);
    return exporter->exportData(format.header(m_columns) + lineEnd(format));
}

bool CContact2CSVTranslate::translateDataBefore(CIDataExporter * /*exporter*/)
{
    return true;
}

bool CContact2CSVTranslate::translateDataAfter(CIDataExporter * /*exporter*/)
{
    return true;
}

bool CContact2CSVTranslate::translateDataItem(CIDataExporter *exporter, BkContactItem *item)
{
    if (!item->detailContent())
        return true;
    const CsvFormat format(*exporter);
    const RowBuilder row(m_helper, *item->detailContent());
    QStringList cells;
    cells.reserve(m_columns.size());
    for (const QString &column : m_columns)
        cells.append(format.cell(row.cell(column)));
    return exporter->exportData(cells.join(u',') + lineEnd(format));
}
