#pragma once

#include "devcloud/endpoints/Now.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace tavrin::devcloud {

class Database;

/// Removes what nobody needs any more from the database: dead sessions and registrations, old
/// usage. A little at a time, so that requests never wait long for the database. @throws
/// DatabaseError
void removeDead(Database& database, const Now& now);

/// Does so again and again on a thread of its own. When the database fails it says so and goes on.
class Housekeeping {
public:
    /// @param database must outlive this.
    Housekeeping(Database& database, Now now, std::chrono::milliseconds interval);
    ~Housekeeping();
    Housekeeping(const Housekeeping&) = delete;
    Housekeeping& operator=(const Housekeeping&) = delete;

private:
    void work();

    Database& m_database;
    const Now m_now;
    const std::chrono::milliseconds m_interval;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace tavrin::devcloud
