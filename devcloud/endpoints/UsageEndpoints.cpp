#include "devcloud/endpoints/UsageEndpoints.h"

#include "devcloud/api/Messages.h"
#include "devcloud/api/RequestBody.h"
#include "devcloud/store/Database.h"
#include "devcloud/store/Usage.h"

namespace tavrin::devcloud {
namespace {

constexpr std::size_t maxFieldBytes = 256;
constexpr std::int64_t maxCharacters = 100'000'000;
constexpr std::int64_t maxAudioSeconds = std::int64_t{24} * 3600;
constexpr std::int64_t maxLatencyMs = 300'000; // Clients cap what they report at five minutes.

Json totalsAnswer(const UsageTotals& totals)
{
    return {{"requests", totals.requests}, {"inputCharacters", totals.inputCharacters},
        {"outputCharacters", totals.outputCharacters}};
}

} // namespace

UsageEndpoints::UsageEndpoints(Database& database, UpdateOffer update, Now now)
    : m_database(database)
    , m_update(std::move(update))
    , m_now(std::move(now))
{
}

Outcome UsageEndpoints::summary(const SessionOwner& owner)
{
    Transaction transaction(m_database);
    Json answer = totalsAnswer(usageTotals(transaction, owner.account, "server"));
    answer["reported"] = totalsAnswer(usageTotals(transaction, owner.account, "client"));
    return answer;
}

Outcome UsageEndpoints::report(const SessionOwner& owner, const Json& body)
{
    FieldReader fields(body);
    UsageEntry entry;
    entry.requestId = fields.text("requestId", maxFieldBytes);
    entry.source = "client";
    entry.operation = fields.text("operation", maxFieldBytes);
    entry.provider = fields.text("provider", maxFieldBytes);
    entry.model = fields.text("model", maxFieldBytes);
    entry.inputCharacters = fields.count("inputCharacters", maxCharacters);
    entry.outputCharacters = fields.count("outputCharacters", maxCharacters);
    entry.audioSeconds = fields.count("audioSeconds", maxAudioSeconds);
    entry.latencyMs = fields.count("latencyMs", maxLatencyMs);
    entry.status = fields.text("status", maxFieldBytes);
    entry.errorCode = fields.textOr("errorCode", "", maxFieldBytes);
    if (fields.problem())
        return tl::unexpected(*fields.problem());
    if (entry.requestId.empty())
        return refusal(422, messages::requestIdInvalid);

    Transaction transaction(m_database);
    addUsage(transaction, owner.account, entry, m_now());
    transaction.commit();
    return Json::object();
}

Outcome UsageEndpoints::update() const
{
    return Json{{"build", m_update.build}, {"version", m_update.version},
        {"downloadUrl", m_update.downloadUrl}, {"notes", m_update.notes}};
}

} // namespace tavrin::devcloud
