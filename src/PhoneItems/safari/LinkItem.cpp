#include "PhoneItems/safari/LinkItem.h"

#include "PhoneItems/safari/SafariData.h"
#include "platform/CCommonUtils.h"

namespace PhoneItems {

using namespace Qt::StringLiterals;

namespace {

constexpr int kTitle = 0;
constexpr int kUrl = 1;

} // namespace

LinkItem::LinkItem(const SafariData &data, int index)
    : m_data(data)
    , m_index(index)
{
}

LinkItem::~LinkItem() = default;

QString LinkItem::value(int index) const
{
    if (index != kTitle && index != kUrl)
        return {};
    QString text = m_data.links().cell(m_index, index);
    if (index == kTitle && text.isEmpty())
        text = m_data.links().cell(m_index, kUrl);
    // The page has no place of its own for the last visit.
    const QDateTime visit = index == kTitle ? date() : QDateTime();
    if (visit.isValid())
        text += " ("_L1 + CCommonUtils::datetimeToMinute(visit, true) + u')';
    return text;
}

bool LinkItem::flag(int index) const
{
    return index == 0 && m_data.links().isDeleted(m_index);
}

qint64 LinkItem::id() const
{
    return m_data.links().id(m_index);
}

QDateTime LinkItem::date() const
{
    return m_data.links().date(m_index);
}

QString LinkItem::bookmarkGroup() const
{
    return m_data.group(m_index);
}

} // namespace PhoneItems
