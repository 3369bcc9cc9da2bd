#include "devcloud/endpoints/TextEndpoints.h"

#include "devcloud/api/Messages.h"
#include "devcloud/api/RequestBody.h"
#include "devcloud/model/Prompts.h"
#include "devcloud/model/TargetLanguages.h"
#include "devcloud/polish/Polish.h"
#include "devcloud/polish/Style.h"
#include "devcloud/security/Secrets.h"
#include "devcloud/store/Database.h"
#include "devcloud/store/Usage.h"
#include "devcloud/text/Ascii.h"
#include "devcloud/text/Utf8.h"

#include <cstdio>

namespace tavrin::devcloud {
namespace {

constexpr std::size_t maxTranscriptBytes = std::size_t{256} * 1024; // Some seven hours of speech.
constexpr std::size_t maxContextBytes = std::size_t{16} * 1024;
constexpr std::size_t maxIdentifierBytes = 256;
constexpr auto rulesName = "rules";
constexpr std::size_t modelRequestsPerAccount = 4;
constexpr std::size_t ruleRequestsPerAccount = 8;

std::int64_t length(const std::string& text)
{
    return static_cast<std::int64_t>(countUtf16(text));
}

Problem tooManyAtOnce()
{
    return {429, messages::tooManyAtOnce, std::chrono::seconds(1)};
}

} // namespace

TextEndpoints::TextEndpoints(Database& database, LanguageModel* model, Now now)
    : m_database(database)
    , m_model(model)
    , m_now(std::move(now))
    , m_slots(model ? modelRequestsPerAccount : ruleRequestsPerAccount)
{
}

Outcome TextEndpoints::polish(const SessionOwner& owner, const Json& body)
{
    const AccountSlots::Place place(m_slots, owner.account);
    return place.isTaken() ? polishInPlace(owner, body) : tl::unexpected(tooManyAtOnce());
}

Outcome TextEndpoints::chat(const SessionOwner& owner, const Json& body)
{
    const AccountSlots::Place place(m_slots, owner.account);
    return place.isTaken() ? chatInPlace(owner, body) : tl::unexpected(tooManyAtOnce());
}

Outcome TextEndpoints::polishInPlace(const SessionOwner& owner, const Json& body)
{
    FieldReader fields(body);
    Request request{owner, "polish", fields.text("transcript", maxTranscriptBytes)};
    const Application application = readApplication(fields);
    const Style style = styleFor(fields.textOr("style", "professional", maxIdentifierBytes));
    const std::string target = fields.textOr("translation", "none", maxIdentifierBytes);
    if (fields.problem())
        return tl::unexpected(*fields.problem());
    if (trimmedAscii(request.transcript).empty())
        return refusal(422, messages::transcriptEmpty);

    if (target != "none") {
        const auto language = targetLanguage(target);
        if (!language)
            return refusal(422, messages::targetUnknown);
        if (!m_model)
            return refusal(503, messages::translationNeedsModel);
        request.operation = "translation";
        return answerByModel(
            request, translationPrompt(request.transcript, application, style, *language));
    }
    if (m_model) {
        const Prompt prompt = polishPrompt(request.transcript, application, style);
        if (auto answer = answerByModel(request, prompt))
            return answer;
    }
    return finish(request, devcloud::polish(request.transcript, style), rulesName);
}

Outcome TextEndpoints::chatInPlace(const SessionOwner& owner, const Json& body)
{
    FieldReader fields(body);
    const Request request{owner, "chat", fields.text("transcript", maxTranscriptBytes)};
    const std::string context = fields.textOr("context", "", maxContextBytes);
    if (fields.problem())
        return tl::unexpected(*fields.problem());
    if (trimmedAscii(request.transcript).empty())
        return refusal(422, messages::transcriptEmpty);
    if (!m_model)
        return refusal(503, messages::chatNeedsModel);
    return answerByModel(request, chatPrompt(request.transcript, context));
}

Outcome TextEndpoints::answerByModel(const Request& request, const Prompt& prompt)
{
    const auto answer = m_model->answer(prompt);
    const std::string text = answer ? withoutFence(*answer, prompt.mark) : std::string();
    if (text.empty())
        return refusal(502, messages::modelFailed);
    return finish(request, text, m_model->name());
}

Outcome TextEndpoints::finish(
    const Request& request, const std::string& text, const std::string& model)
{
    using std::chrono::milliseconds;
    UsageEntry entry;
    entry.requestId = newToken();
    entry.source = "server";
    entry.operation = request.operation;
    entry.provider = "devcloud";
    entry.model = model;
    entry.inputCharacters = length(request.transcript);
    entry.outputCharacters = length(text);
    entry.latencyMs =
        std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - request.start)
            .count();
    entry.status = "success";
    try {
        Transaction transaction(m_database);
        addUsage(transaction, request.owner.account, entry, m_now());
        transaction.commit();
    } catch (const DatabaseError& error) {
        // What was said must not be lost because it cannot be counted.
        std::fprintf(stderr, "tavrin-devcloud: %s\n", error.what());
    }
    return Json{{"text", text}};
}

} // namespace tavrin::devcloud
