#include "Archive/html/LocalClock.h"

#include <QLocale>

#include <array>
#include <cmath>

namespace Archive {

using namespace Qt::StringLiterals;

namespace {

// No zone changes its clocks but at a quarter of an hour.
constexpr qint64 kMinuteMs = 60'000;
constexpr qint64 kBlockMs = 15 * kMinuteMs;
constexpr qint64 kDayMs = qint64(24) * 60 * kMinuteMs;

qint64 floorDiv(qint64 a, qint64 b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

} // namespace

QByteArray LocalClock::Time::clock() const
{
    const int hour = minute / 60;
    const int rest = minute % 60;
    const std::array text { char('0' + hour / 10),
                            char('0' + hour % 10),
                            ':',
                            char('0' + rest / 10),
                            char('0' + rest % 10) };
    return { text.data(), qsizetype(text.size()) };
}

LocalClock::Time LocalClock::at(qint64 ms)
{
    const qint64 block = floorDiv(ms, kBlockMs);
    if (block != m_block) {
        m_block = block;
        m_offsetMs = qint64(QDateTime::fromMSecsSinceEpoch(ms).offsetFromUtc()) * 1000;
    }
    const qint64 local = ms + m_offsetMs;
    const qint64 day = floorDiv(local, kDayMs);
    return { day, int((local - day * kDayMs) / kMinuteMs) };
}

int LocalClock::month(qint64 ms)
{
    const Time time = at(ms);
    if (time.day != m_day) {
        m_day = time.day;
        m_month = time.date().year() * 12 + time.date().month() - 1;
    }
    return m_month;
}

QString LocalClock::day(qint64 ms)
{
    return dayText(at(ms).date());
}

QString LocalClock::dayAndTime(qint64 ms)
{
    const Time time = at(ms);
    return dayText(time.date()) + u", "_s + QString::fromLatin1(time.clock());
}

QString LocalClock::dayAndTime(const QDateTime &moment)
{
    return moment.isValid() ? dayAndTime(moment.toMSecsSinceEpoch()) : QString();
}

QString dayText(const QDate &date)
{
    return QLocale::c().toString(date, u"d MMMM yyyy"_s);
}

QString weekdayText(const QDate &date)
{
    return QLocale::c().toString(date, u"dddd, d MMMM yyyy"_s);
}

QString monthText(const QDate &date)
{
    return QLocale::c().toString(date, u"MMMM yyyy"_s);
}

QString lengthText(double seconds)
{
    const auto whole = qint64(std::llround(std::max(0.0, seconds)));
    const QString rest = u":%1"_s.arg(whole % 60, 2, 10, QLatin1Char('0'));
    if (whole < 3600)
        return QString::number(whole / 60) + rest;
    return u"%1:%2"_s.arg(whole / 3600).arg(whole / 60 % 60, 2, 10, QLatin1Char('0')) + rest;
}

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

} // namespace Archive
