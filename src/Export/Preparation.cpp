#include "Export/Preparation.h"

#include "Export/HeicToJpeg/HeicToJpeg.h"
#include "Export/Observer.h"
#include "Export/Preflight.h"
#include "Export/Problems.h"
#include "Export/Request.h"

#include <QFileInfo>

namespace Export {

namespace {

qint64 neededBytes(const Inventory &inventory, bool convertHeic)
{
    const TypeTotals total = inventory.total();
    return total.diskBytes + (convertHeic ? HeicToJpeg::roomFor(total.heicBytes) : 0);
}

} // namespace

Preparation::Preparation(const Request &request, const BackupInfo &info)
    : m_request(request)
    , m_info(info)
    , m_output(Preflight::absoluteOutput(request.output))
    , m_isLink(QFileInfo(m_output).isSymLink())
{
}

std::optional<Failure> Preparation::checkOutput() const
{
    if (auto failure = Preflight::checkApart(m_output, { m_info.path, m_request.backup }))
        return failure;
    return Preflight::checkOutput(m_output, m_info.path, m_request.intoExisting);
}

std::variant<Inventory, Failure>
Preparation::prepare(const Backup &backup, Observer &observer, const KeepGoing &keepGoing) const
{
    auto taken = takeInventory(backup, m_request.types, observer, keepGoing);
    const auto *inventory = std::get_if<Inventory>(&taken);
    if (!inventory)
        return taken;
    if (m_request.checkSpace) {
        const qint64 bytes = neededBytes(*inventory, m_request.convertHeic);
        if (auto failure = Preflight::checkSpace(m_output, bytes))
            return *failure;
    }
    if (auto failure = makeOutput())
        return *failure;
    return taken;
}

std::optional<Failure> Preparation::makeOutput() const
{
    if (auto failure = Preflight::createOutput(m_output))
        return failure;
    // Asking for a password and reading the backup take minutes, in which others may have put
    // something in OUTPUT's place.
    if (auto failure = checkOutput())
        return failure;
    if (QFileInfo(m_output).isSymLink() != m_isLink)
        return Preflight::replaced(m_output);
    return std::nullopt;
}

std::variant<Inventory, Failure> takeInventory(const Backup &backup,
                                               const QList<int> &codes,
                                               Observer &observer,
                                               const KeepGoing &keepGoing)
{
    const auto inventory = readInventory(backup, codes, observer, keepGoing);
    if (!inventory)
        return stoppedEarly();
    if (auto failure = temporaryFolderFailure(backup))
        return *failure;
    observer.inventoryRead(*inventory);
    return *inventory;
}

} // namespace Export
