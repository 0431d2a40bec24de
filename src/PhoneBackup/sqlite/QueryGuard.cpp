#include "PhoneBackup/sqlite/QueryGuard.h"

#include <sqlite3.h>

#include <utility>

namespace PhoneBackup {

namespace {

constexpr int kStepsPerTick = 10'000; // about a millisecond

// Reading each row of a whole table takes less than one step a byte; see docs/performance.md.
constexpr qint64 kStepsPerByte = 16;
constexpr qint64 kTicksOfTheSmallest = 100;

} // namespace

QueryGuard::QueryGuard(qint64 bytes, KeepGoing keepGoing)
    : m_maxTicks(kTicksOfTheSmallest + bytes / kStepsPerTick * kStepsPerByte)
    , m_keepGoing(std::move(keepGoing))
    , m_running(&m_setup)
{
}

void QueryGuard::attach(sqlite3 *database)
{
    sqlite3_progress_handler(database, kStepsPerTick, &QueryGuard::tick, this);
}

void QueryGuard::refuse(sqlite3 *database, const QSet<QByteArray> &tables)
{
    m_refused = tables;
    sqlite3_set_authorizer(database, &QueryGuard::authorize, this);
}

int QueryGuard::step(sqlite3_stmt *query, Share &share)
{
    m_running = &share;
    const int code = sqlite3_step(query);
    m_running = &m_setup;
    return code;
}

int QueryGuard::tick(void *guard)
{
    const auto *self = static_cast<QueryGuard *>(guard);
    Share &share = *self->m_running;
    // SQLite counts on when a query is run again: the first tick may come early, and a query that
    // is done within one is never cut short.
    if (++share.ticks > 1 && self->m_keepGoing && !self->m_keepGoing())
        share.stopped = true;
    else if (share.ticks > self->m_maxTicks)
        share.exhausted = true;
    return share.stopped || share.exhausted ? 1 : 0;
}

int QueryGuard::authorize(void *guard,
                          int action,
                          const char *table,
                          const char *column,
                          const char *database,
                          const char *view)
{
    Q_UNUSED(column)
    Q_UNUSED(database)
    Q_UNUSED(view)
    const auto *self = static_cast<const QueryGuard *>(guard);
    return action == SQLITE_READ && self->m_refused.contains(QByteArray(table)) ? SQLITE_DENY
                                                                                : SQLITE_OK;
}

} // namespace PhoneBackup
