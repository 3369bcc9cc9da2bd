#pragma once

#include "devcloud/api/Problem.h"
#include "devcloud/endpoints/AccountSlots.h"
#include "devcloud/endpoints/Now.h"
#include "devcloud/model/LanguageModel.h"
#include "devcloud/store/Sessions.h"

#include <chrono>
#include <string>

namespace tavrin::devcloud {

class Database;

/// Polishing, translation and chat.
///
/// With a model it does all three; where it fails, polishing goes on with the rules and the others
/// answer 502. Without a model, translation and chat answer 503: rules cannot do either. One
/// account gets 4 of them at the same time from a model, 8 by rules; more are answered 429.
class TextEndpoints {
public:
    /// @param model null for rules only; must outlive the endpoints.
    TextEndpoints(Database& database, LanguageModel* model, Now now);

    Outcome polish(const SessionOwner& owner, const Json& body);
    Outcome chat(const SessionOwner& owner, const Json& body);

private:
    struct Request {
        const SessionOwner& owner;
        const char* operation;
        std::string transcript;
        std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    };

    Outcome polishInPlace(const SessionOwner& owner, const Json& body);
    Outcome chatInPlace(const SessionOwner& owner, const Json& body);
    Outcome answerByModel(const Request& request, const Prompt& prompt);
    Outcome finish(const Request& request, const std::string& text, const std::string& model);

    Database& m_database;
    LanguageModel* m_model;
    Now m_now;
    AccountSlots m_slots;
};

} // namespace tavrin::devcloud
