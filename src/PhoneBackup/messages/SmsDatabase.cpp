#include "PhoneBackup/messages/SmsDatabase.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargestSeconds = 1'000'000'000'000; // beyond it a value counts nanoseconds

qint64 floorDivide(qint64 value, qint64 by)
{
    return value / by - (value % by < 0 ? 1 : 0);
}

} // namespace

std::unique_ptr<SmsDatabase> SmsDatabase::open(Source &source)
{
    std::optional<RowDatabase> database = RowDatabase::open(source,
                                                            DataType::Messages,
                                                            "HomeDomain",
                                                            u"Library/SMS/sms.db"_s,
                                                            Notice("messages.mayBeMissing"));
    return database ? std::make_unique<SmsDatabase>(std::move(*database)) : nullptr;
}

SmsDatabase::SmsDatabase(RowDatabase &&database)
    : RowDatabase(std::move(database))
{
}

qint64 SmsDatabase::dateMs(qint64 value)
{
    const bool isSeconds = value <= kLargestSeconds && value >= -kLargestSeconds;
    if (value == 0)
        return PhoneTime::kNoMs;
    const qint64 since2001Ms = isSeconds ? value * 1000 : floorDivide(value, 1'000'000);
    return PhoneTime::momentMs(PhoneTime::kYear2001 * 1000 + since2001Ms);
}

} // namespace PhoneBackup
