#include "platform/linux/speech/engine/SpeechEngineThread.h"

#include "support/sound/ScriptedSpeechEngine.h"

#include <gtest/gtest.h>

#include <latch>
#include <thread>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

class SpeechEngineThreadTest : public ::testing::Test {
protected:
    testing::ScriptedSpeechEngine* engine =
        new testing::ScriptedSpeechEngine; // The thread owns it.

    /// Waits for at most ten seconds until the engine has rested so often.
    [[nodiscard]] bool hasRested(int times) const
    {
        for (int i = 0; i < 2'000 && engine->notes().rests < times; ++i)
            std::this_thread::sleep_for(5ms);
        return engine->notes().rests == times;
    }

    static void work(SpeechEngineThread& thread)
    {
        std::latch done(1);
        thread.post([&] { done.count_down(); });
        done.wait();
    }
};

TEST_F(SpeechEngineThreadTest, TheEngineRestsOnceAfterEachTimeOfWork)
{
    SpeechEngineThread thread(std::unique_ptr<SpeechEngine>(engine), 30ms);
    work(thread);
    EXPECT_TRUE(hasRested(1));
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(engine->notes().rests, 1);
    work(thread);
    EXPECT_TRUE(hasRested(2));
    EXPECT_EQ(engine->notes().opened, 1);
}

TEST_F(SpeechEngineThreadTest, AsLongAsSomethingIsAskedThereIsNoRest)
{
    SpeechEngineThread thread(std::unique_ptr<SpeechEngine>(engine), 10s);
    for (int i = 0; i < 20; ++i)
        work(thread);
    EXPECT_EQ(engine->notes().rests, 0);
}

TEST_F(SpeechEngineThreadTest, WithoutATimeThereIsNoRest)
{
    SpeechEngineThread thread(std::unique_ptr<SpeechEngine>(engine), 0s);
    work(thread);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(engine->notes().rests, 0);
}

} // namespace
} // namespace tavrin
