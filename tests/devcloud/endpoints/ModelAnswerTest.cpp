#include "devcloud/api/Messages.h"
#include "devcloud/model/Prompts.h"
#include "devcloud/support/HeldModel.h"
#include "devcloud/support/ServiceTest.h"

#include <gmock/gmock.h>

#include <thread>

namespace tavrin::devcloud {
namespace {

/// Repeats the whole request, as weak models do.
class RepeatingModel : public LanguageModel {
public:
    std::optional<std::string> answer(const Prompt& prompt) override { return prompt.request; }

    [[nodiscard]] std::string name() const override { return "repeating"; }
};

class ModelAnswerTest : public testing::ServiceTest {
protected:
    Outcome polish(const std::string& transcript = "hello", const std::string& target = "english")
    {
        return call(Endpoint::Polish, {{"transcript", transcript}, {"translation", target}},
            session["accessToken"]);
    }

    Json session = signIn();
};

TEST_F(ModelAnswerTest, RepeatedMarksOfTheFenceNeverReachTheText)
{
    RepeatingModel model;
    restart(&model);
    const std::string text = polish("TO WHOM IT MAY CONCERN").value()["text"];

    EXPECT_THAT(text, ::testing::HasSubstr("TO WHOM IT MAY CONCERN"));
    EXPECT_EQ(text.find("<<<"), std::string::npos) << text;
    EXPECT_EQ(text.find(">>>"), std::string::npos) << text;
    EXPECT_EQ(text.find("TRANSCRIPT"), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("CONCERN")) << text;
}

TEST(WithoutFenceTest, TakesOutTheMarkWithItsNameAndBracketsAlone)
{
    EXPECT_EQ(
        withoutFence("<<<TRANSCRIPT m4rk\nthe text\nTRANSCRIPT m4rk>>>\n", "m4rk"), "the text");
    EXPECT_EQ(withoutFence("TRANSCRIPT m4rk>>>the text", "m4rk"), "the text");
    EXPECT_EQ(withoutFence("the m4rk text", "m4rk"), "the text");
    EXPECT_EQ(withoutFence("m4rk", "m4rk"), "");
    EXPECT_EQ(withoutFence("<<<a>>> TRANSCRIPT b", "m4rk"), "<<<a>>> TRANSCRIPT b");
    EXPECT_EQ(withoutFence(" as it is\n", ""), "as it is");
}

TEST_F(ModelAnswerTest, AnAnswerOfNothingButMarksIsAFailure)
{
    class MarkModel : public LanguageModel {
    public:
        std::optional<std::string> answer(const Prompt& prompt) override
        {
            return "<<<TRANSCRIPT " + prompt.mark + "\n";
        }

        [[nodiscard]] std::string name() const override { return "mark"; }
    };

    MarkModel model;
    restart(&model);
    EXPECT_EQ(statusOf(polish()), 502);
    EXPECT_EQ(polish("um hello", "none").value()["text"], "Hello."); // The rules go on without it.
}

TEST_F(ModelAnswerTest, OneAccountHoldsFourPlacesOfTheModelAndOthersGoOn)
{
    testing::HeldModel model;
    restart(&model);
    Json other = loginBody();
    other["email"] = "other@example.org";
    {
        Transaction transaction(*database);
        addAccount(transaction, "other@example.org", *passwords.hash(password), now);
        transaction.commit();
    }
    const std::string others = call(Endpoint::Login, other).value()["accessToken"];
    std::vector<std::thread> asking;
    asking.reserve(5);
    for (int request = 0; request < 4; ++request)
        asking.emplace_back([this] { EXPECT_EQ(statusOf(polish()), 200); });
    model.awaitQuestions(4);

    const Outcome tooMany = polish();
    EXPECT_EQ(statusOf(tooMany), 429);
    const Problem problem = tooMany ? Problem() : tooMany.error();
    EXPECT_EQ(problem.message, messages::tooManyAtOnce);
    EXPECT_EQ(problem.retryAfter, std::chrono::seconds(1));
    EXPECT_EQ(statusOf(call(Endpoint::Chat, {{"transcript", "why"}}, session["accessToken"])), 429);
    asking.emplace_back([this, &others] {
        EXPECT_EQ(statusOf(call(Endpoint::Chat, {{"transcript", "why"}}, others)), 200);
    });
    model.awaitQuestions(5);

    model.release();
    for (std::thread& each : asking)
        each.join();
    EXPECT_EQ(statusOf(polish()), 200);
}

} // namespace
} // namespace tavrin::devcloud
