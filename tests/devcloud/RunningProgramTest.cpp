#include "devcloud/support/Program.h"

#include <iterator>
#include <regex>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace tavrin::devcloud {
namespace {

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string withoutDigests(const std::string& bytes)
{
    return std::regex_replace(bytes, std::regex("[0-9a-f]{64}"), "");
}

class RunningProgramTest : public testing::RunningProgramTest {
protected:
    std::string codeInOutbox() const
    {
        const std::filesystem::directory_iterator mails(folder + "/outbox");
        const std::string mail = contentOf(mails->path());
        std::smatch code;
        EXPECT_TRUE(std::regex_search(mail, code, std::regex("[0-9]{6}"))) << mail;
        return code.str();
    }

    /// The database and its companions.
    std::string databaseBytes() const
    {
        std::string bytes;
        int files = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (!entry.path().filename().string().starts_with("devcloud.sqlite"))
                continue;
            bytes += contentOf(entry.path());
            ++files;
        }
        EXPECT_EQ(files, 3);
        return bytes;
    }
};

TEST_F(RunningProgramTest, ANewPasswordEndsTheSessionsThereAre)
{
    const Json session = signIn();
    EXPECT_EQ(meStatus(session), 200);

    setPasswordByCommand(email, "another horse");

    EXPECT_EQ(meStatus(session), 401);
    EXPECT_EQ(refreshStatus(session), 401);
    const auto login = [this](const std::string& typed) {
        return testing::statusIn(
            ask("POST /v1/auth/login", {{"email", email}, {"password", typed}}));
    };
    EXPECT_EQ(login(password), 401);
    EXPECT_EQ(login("another horse"), 200);
}

TEST_F(RunningProgramTest, ARevokedSessionIsRefusedAtOnceAndTheOthersGoOn)
{
    const std::vector<Json> sessions{signIn(), signIn(), signIn()};
    const auto statuses = [&] {
        return std::vector{
            meStatus(sessions.at(0)), meStatus(sessions.at(1)), meStatus(sessions.at(2))};
    };
    EXPECT_THAT(statuses(), ElementsAre(200, 200, 200));

    EXPECT_EQ(run({"revoke", email, "2"}), "1 session ended\n");
    EXPECT_THAT(statuses(), ElementsAre(200, 401, 200));
    EXPECT_EQ(refreshStatus(sessions.at(1)), 401);

    EXPECT_EQ(run({"revoke", email}), "2 sessions ended\n");
    EXPECT_THAT(statuses(), ElementsAre(401, 401, 401));

    const Json last = signIn();
    EXPECT_EQ(meStatus(last), 200);
    EXPECT_EQ(run({"revoke", "--all"}), "1 session ended\n");
    EXPECT_EQ(meStatus(last), 401);
    EXPECT_EQ(refreshStatus(last), 401);
}

TEST_F(RunningProgramTest, TheDatabaseHoldsNoSecretAndNothingOfWhatPeopleSay)
{
    std::string invite = run({"invite"});
    invite.pop_back();
    const std::string newcomer = "grace@example.org";
    const std::string newPassword = "a quiet pelican";
    Json secrets{password, newPassword, invite};
    const auto answered = [this](
                              const std::string& line, const Json& body, const Json& token = "") {
        const std::string answer = ask(line, body, token);
        EXPECT_EQ(testing::statusIn(answer), 200) << line;
        return Json::parse(testing::bodyIn(answer));
    };
    answered("POST /v1/auth/registration/start", {{"email", newcomer}, {"inviteCode", invite}});
    const std::string code = codeInOutbox();
    const Json verified =
        answered("POST /v1/auth/registration/verify", {{"email", newcomer}, {"code", code}});
    secrets.push_back(verified["registrationToken"]);
    // Without its last step, which would remove the traces of the ones before.
    const Json session = signIn();
    const Json fresh =
        answered("POST /v1/auth/refresh", {{"refreshToken", session["refreshToken"]}});
    for (const Json& pair : {session, fresh}) {
        secrets.push_back(pair["accessToken"]);
        const std::string token = pair["refreshToken"];
        secrets.push_back(token.substr(0, token.find('.')));
        secrets.push_back(token.substr(token.find('.') + 1));
    }
    const Json written = answered("POST /v1/text/polish",
        {{"transcript", "um the walrus sings, \u6d77\u8c61\u5728\u5531\u6b4c"},
            {"application", {{"name", "Sea Notes"}, {"windowHint", "my secret diary"}}}},
        fresh["accessToken"]);
    EXPECT_THAT(written["text"].get<std::string>(), HasSubstr("walrus"));
    for (const char* said : {"walrus", "\u6d77\u8c61", "Sea Notes", "secret diary"})
        secrets.push_back(said);
    ask("POST /v1/text/chat", {{"transcript", "why do penguins march"}, {"context", "Sea Notes"}},
        fresh["accessToken"]);
    secrets.push_back("penguins");
    ask("POST /v1/auth/login", {{"email", email}, {"password", "a wrong ostrich"}});
    secrets.push_back("ostrich");

    const std::string kept = databaseBytes();
    EXPECT_THAT(kept, HasSubstr(email)); // They are the right files, and nothing is hidden in them.
    EXPECT_THAT(kept, HasSubstr(newcomer));
    for (const Json& secret : secrets)
        EXPECT_THAT(kept, Not(HasSubstr(secret.get<std::string>()))) << secret;
    // Six digits come by chance in a digest.
    EXPECT_THAT(withoutDigests(kept), Not(HasSubstr(code)));
}

} // namespace
} // namespace tavrin::devcloud
