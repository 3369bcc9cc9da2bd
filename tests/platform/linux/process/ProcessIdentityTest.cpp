#include "platform/linux/process/ProcessIdentity.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace tavrin::testing {
namespace {

TEST(ProcessIdentityTest, ALivingProcessIsAlwaysTheSame)
{
    EXPECT_EQ(thisProcess().number, ::getpid());
    EXPECT_GT(thisProcess().birth, 0U);
    EXPECT_EQ(processWithNumber(::getpid()), thisProcess());
    EXPECT_NE(processWithNumber(::getppid()), thisProcess());
}

TEST(ProcessIdentityTest, AProcessThatHasEndedIsNoneAndNeitherIsItsCorpse)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(processWithNumber(child), std::nullopt);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_EQ(processWithNumber(child), std::nullopt);
    EXPECT_EQ(processWithNumber(0), std::nullopt);
}

} // namespace
} // namespace tavrin::testing
