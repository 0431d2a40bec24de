#include "PhoneItems/calls/CallTable.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/calls/CallReader.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/DurationText.h"
#include "PhoneItems/shared/TableData.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace Qt::StringLiterals;
using PhoneBackup::Call;

namespace {

// Longer ones are damaged.
constexpr double kLongestCallSeconds = 1000.0 * 3600;

QString lengthText(std::optional<double> seconds)
{
    if (seconds && *seconds >= 0 && *seconds <= kLongestCallSeconds) // both false of a NaN
        return durationText(qint64(*seconds));
    return {};
}

QString typeText(const Call &call)
{
    const QString type = call.direction == Call::Direction::Outgoing ? tr("Outgoing")
        : call.direction == Call::Direction::Unknown                 ? tr("Call")
        : call.isMissed                                              ? tr("Missed")
                                                                     : tr("Incoming");
    if (!call.app.startsWith("net.whatsapp."_L1, Qt::CaseInsensitive))
        return type;
    return (call.isVideo ? tr("%1 (WhatsApp video)") : tr("%1 (WhatsApp)")).arg(type);
}

// Empty when none of them is in the address book.
QString nameInAddressBook(PhoneBackup::Source &source, const QStringList &addresses)
{
    QStringList names;
    bool anyKnown = false;
    for (const QString &address : addresses) {
        const QString name = source.addressBook().name(address);
        anyKnown |= !name.isEmpty();
        names.append(name.isEmpty() ? address : name);
    }
    return anyKnown ? names.join(u", "_s) : QString();
}

QString nameInLog(const Call &call)
{
    QStringList names = call.names;
    for (QString &name : names) {
        if (name.isEmpty())
            name = tr("Unknown");
    }
    const QString people = names.join(u", "_s);
    if (call.group.isEmpty())
        return people;
    return people.isEmpty() ? call.group : u"%1 (%2)"_s.arg(call.group, people);
}

QString nameOf(PhoneBackup::Source &source, const Call &call)
{
    if (call.isOfLog)
        return nameInLog(call);
    const QString known = nameInAddressBook(source, call.addresses);
    return known.isEmpty() ? call.names.join(u", "_s) : known;
}

} // namespace

void readCallTable(PhoneBackup::Source &source, DataSets &sets, std::vector<Call> ofLogs)
{
    auto table = std::make_unique<TableData>(
        PhoneBackup::DataType::Calls,
        QStringList { tr("Name"), tr("Number"), tr("Type"), tr("Date"), tr("Duration") });
    PhoneBackup::readCalls(source, std::move(ofLogs), [&](const Call &call) {
        const QString name = nameOf(source, call);
        Row row;
        row.id = call.row;
        row.date = call.date;
        row.cells = QStringList { name.isEmpty() && call.addresses.isEmpty() ? tr("Unknown") : name,
                                  call.addresses.join(u", "_s),
                                  typeText(call),
                                  CCommonUtils::datetimeToMinute(call.date, true),
                                  lengthText(call.seconds) };
        table->add(row);
    });
    table->sortNewestFirst();
    sets[PhoneBackup::DataType::Calls] = std::move(table);
}

} // namespace PhoneItems
