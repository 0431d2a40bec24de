#include "Export/Inventory.h"

#include "Export/HeicToJpeg/HeicToJpeg.h"
#include "Export/Observer.h"
#include "PhoneItems/Backup.h"
#include "backup/BkAbstractItem.h"
#include "backup/BkData.h"
#include "backup/BkDataType.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Export {

namespace {

constexpr qint64 kBlockBytes = 4096;

bool isOfMessages(int code)
{
    return code == BkDataType::Messages || code == BkDataType::MessageAttachments
        || code == BkDataType::Whatsapp || code == BkDataType::WhatsappAttachments;
}

void count(const BkData &data, TypeTotals &totals)
{
    const QList<int> indices = data.recoverList();
    for (const int index : indices) {
        const BkAbstractItem *item = data.at(index, true);
        if (!item)
            continue;
        const qint64 bytes = std::max<qint64>(item->sizeBytes(), 0);
        ++totals.items;
        totals.deleted += item->flag(0) ? 1 : 0;
        totals.sizeBytes += bytes;
        totals.diskBytes += (bytes + kBlockBytes - 1) / kBlockBytes * kBlockBytes;
        totals.heicBytes += HeicToJpeg::isNamedHeic(item->value(0)) ? bytes : 0;
    }
}

} // namespace

QString typeWord(int code)
{
    const BkDataType *type = BkDataType::find(code);
    return type ? QString::fromLatin1(type->word) : QString::number(code);
}

bool TypeTotals::isPage() const
{
    const BkDataType *type = BkDataType::find(code);
    return type && type->isPage();
}

bool holdMessages(const QList<int> &codes)
{
    return std::any_of(codes.begin(), codes.end(), &isOfMessages);
}

bool Inventory::hasMessages() const
{
    return std::any_of(types.begin(), types.end(), [](const TypeTotals &type) {
        return type.items > 0 && isOfMessages(type.code);
    });
}

TypeTotals Inventory::total() const
{
    TypeTotals sum;
    sum.name = u"Total"_s;
    for (const TypeTotals &type : types) {
        sum.items += type.items;
        sum.deleted += type.deleted;
        if (type.messages >= 0)
            sum.messages = std::max<qint64>(sum.messages, 0) + type.messages;
        sum.sizeBytes += type.sizeBytes;
        sum.diskBytes += type.diskBytes;
        sum.heicBytes += type.heicBytes;
    }
    return sum;
}

const TypeTotals *Inventory::find(int code) const
{
    const auto found = std::find_if(
        types.begin(), types.end(), [code](const TypeTotals &type) { return type.code == code; });
    return found == types.end() ? nullptr : &*found;
}

std::optional<Inventory> readInventory(const PhoneItems::Backup &backup,
                                       const QList<int> &codes,
                                       Observer &observer,
                                       const PhoneBackup::KeepGoing &keepGoing)
{
    Inventory inventory;
    for (const int code : codes) {
        TypeTotals totals;
        totals.code = code;
        totals.name = backup.dataTypeName(code);
        observer.readingType(totals.name);
        if (const BkData *data = backup.getBkData(code))
            count(*data, totals);
        totals.messages = backup.messageCount(code);
        // A data set that was cut short by the wish to stop must not pass for a whole one.
        if (!keepGoing())
            return std::nullopt;
        inventory.types += totals;
    }
    return inventory;
}

} // namespace Export
