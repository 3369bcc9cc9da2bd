#include "devcloud/Housekeeping.h"

#include "devcloud/store/Database.h"
#include "devcloud/store/Registrations.h"
#include "devcloud/store/Sessions.h"
#include "devcloud/store/Usage.h"

#include <cstdio>

namespace tavrin::devcloud {
namespace {

constexpr std::int64_t rowsAtATime = 1000;

int removeSome(Database& database, std::int64_t now)
{
    Transaction transaction(database);
    const int removed = removeDeadSessions(transaction, now, rowsAtATime)
        + removeDeadRegistrations(transaction, now, rowsAtATime)
        + removeOldUsage(transaction, now, rowsAtATime);
    transaction.commit();
    return removed;
}

} // namespace

void removeDead(Database& database, const Now& now)
{
    while (removeSome(database, now()) > 0) { }
}

Housekeeping::Housekeeping(Database& database, Now now, std::chrono::milliseconds interval)
    : m_database(database)
    , m_now(std::move(now))
    , m_interval(interval)
    , m_thread([this] { work(); })
{
}

Housekeeping::~Housekeeping()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void Housekeeping::work()
{
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, m_interval, [this] { return m_isEnding; })) {
        lock.unlock();
        try {
            removeDead(m_database, m_now);
        } catch (const DatabaseError& error) {
            std::fprintf(stderr, "tavrin-devcloud: %s\n", error.what());
        }
        lock.lock();
    }
}

} // namespace tavrin::devcloud
