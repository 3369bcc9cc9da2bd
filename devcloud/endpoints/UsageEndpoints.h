#pragma once

#include "devcloud/api/Problem.h"
#include "devcloud/endpoints/Now.h"
#include "devcloud/store/Sessions.h"

#include <cstdint>
#include <string>

namespace tavrin::devcloud {

class Database;

/// The newest client, as offered to all. The default offers nothing newer than the first build.
struct UpdateOffer {
    std::int64_t build = 1;
    std::string version = "0.8.0";
    std::string downloadUrl;
    std::string notes;
};

/// Usage totals and reports, and the newest client.
class UsageEndpoints {
public:
    UsageEndpoints(Database& database, UpdateOffer update, Now now);

    /// What the service answered itself, and beside it what clients reported.
    Outcome summary(const SessionOwner& owner);
    Outcome report(const SessionOwner& owner, const Json& body);
    [[nodiscard]] Outcome update() const;

private:
    Database& m_database;
    UpdateOffer m_update;
    Now m_now;
};

} // namespace tavrin::devcloud
