#pragma once

#include "devcloud/Service.h"
#include "devcloud/api/RequestBody.h"
#include "devcloud/security/Secrets.h"
#include "devcloud/store/Accounts.h"
#include "devcloud/store/Database.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>
#include <vector>

namespace tavrin::devcloud::testing {

/// Steers what a language model answers and keeps what it was asked.
class ScriptedModel : public LanguageModel {
public:
    std::optional<std::string> answer(const Prompt& prompt) override
    {
        prompts.push_back(prompt);
        return nextAnswer;
    }

    [[nodiscard]] std::string name() const override { return "scripted"; }

    std::optional<std::string> nextAnswer;
    std::vector<Prompt> prompts;
};

/// A service on a database in memory, with a clock and a mail box in the test's hand.
class ServiceTest : public ::testing::Test {
protected:
    ServiceTest()
    {
        EXPECT_TRUE(initializeSecrets());
        restart(nullptr);
    }

    /// Begins anew on the same database, as after a restart of the program.
    void restart(LanguageModel* model)
    {
        service.emplace(ServiceParts{*database, passwords,
            [this](const Mail& mail) {
                mails.push_back(mail);
                return mailWorks;
            },
            model, lives, {}, [this] { return now.load(); }});
    }

    Outcome call(Endpoint endpoint, const Json& body, const std::string& accessToken = {})
    {
        return callRaw(endpoint, body.dump(), accessToken);
    }

    Outcome callRaw(Endpoint endpoint, const std::string& body, const std::string& accessToken = {})
    {
        const std::string authorization =
            accessToken.empty() ? std::string() : "Bearer " + accessToken;
        return service->answer({endpoint, authorization, body, address});
    }

    void addTestAccount()
    {
        Transaction transaction(*database);
        addAccount(transaction, email, *passwords.hash(password), now);
        transaction.commit();
    }

    std::string addTestInvite()
    {
        std::string code = newInviteCode();
        Transaction transaction(*database);
        addInvite(transaction, digest(code), now);
        transaction.commit();
        return code;
    }

    Json loginBody() const
    {
        return {{"email", email}, {"password", password}, {"deviceId", "D"}, {"deviceName", "Desk"},
            {"clientVersion", "0.8.0"}};
    }

    /// Signs in with a fresh account; the answer with both tokens.
    Json signIn()
    {
        addTestAccount();
        return call(Endpoint::Login, loginBody()).value();
    }

    static int statusOf(const Outcome& outcome) { return outcome ? 200 : outcome.error().status; }

    const std::string email = "ada@example.org";
    const std::string password = "correct horse";
    std::string address = "127.0.0.1";
    std::atomic<std::int64_t> now = 1'700'000'000;
    std::vector<Mail> mails;
    bool mailWorks = true;
    TokenLives lives;
    std::unique_ptr<Database> database = Database::inMemory();
    Passwords passwords{PasswordCost::least()};
    std::optional<Service> service;
};

} // namespace tavrin::devcloud::testing
