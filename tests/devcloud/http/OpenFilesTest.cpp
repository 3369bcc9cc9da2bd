#include "devcloud/http/OpenFiles.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace tavrin::devcloud {
namespace {

TEST(OpenFilesTest, TheServiceLeavesItselfFilesBesideTheConnections)
{
    EXPECT_EQ(connectionsWithin(4096, 8192), 4096U);
    EXPECT_EQ(connectionsWithin(4096, 2000), 1488U);
    EXPECT_EQ(connectionsWithin(4096, 256), 128U);
    EXPECT_EQ(connectionsWithin(10, 8192), 10U);
}

TEST(OpenFilesTest, TheLimitIsRaisedAsFarAsTheSystemAllows)
{
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit low{100, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &low), 0);

    EXPECT_EQ(allowOpenFiles(50), 50U);
    EXPECT_EQ(allowOpenFiles(200), 200U);
    EXPECT_EQ(allowOpenFiles(before.rlim_max), before.rlim_max);

    rlimit after{};
    getrlimit(RLIMIT_NOFILE, &after);
    EXPECT_EQ(after.rlim_cur, before.rlim_max);
    setrlimit(RLIMIT_NOFILE, &before);
}

} // namespace
} // namespace tavrin::devcloud
