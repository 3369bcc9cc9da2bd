#include "platform/linux/desktop/LinuxSystemInfo.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemorySystemInfo.h"

#include <gtest/gtest.h>

#include <memory>

namespace tavrin::testing {
namespace {

std::unique_ptr<SystemInfo> inMemory()
{
    auto info = std::make_unique<InMemorySystemInfo>();
    info->temporaryFolder = QStringLiteral("/tmp");
    info->supportFolder = QStringLiteral("/home/user/.local/share");
    info->environment.insert(QStringLiteral("PATH"), QStringLiteral("/bin"));
    return info;
}

std::unique_ptr<SystemInfo> linux()
{
    return std::make_unique<LinuxSystemInfo>(QStringLiteral("zh-CN"));
}

class SystemInfoContractTest : public ::testing::TestWithParam<std::unique_ptr<SystemInfo> (*)()> {
protected:
    const std::unique_ptr<SystemInfo> m_info = GetParam()();
};

INSTANTIATE_TEST_SUITE_P(InMemory, SystemInfoContractTest, ::testing::Values(inMemory));
INSTANTIATE_TEST_SUITE_P(Linux, SystemInfoContractTest, ::testing::Values(linux));

TEST_P(SystemInfoContractTest, FoldersAreAbsoluteAndHaveNoFinalSlash)
{
    for (const QString& folder :
        {m_info->temporaryDirectory(), m_info->applicationSupportDirectory()}) {
        EXPECT_TRUE(folder.startsWith(u'/')) << folder.toStdString();
        EXPECT_FALSE(folder.endsWith(u'/')) << folder.toStdString();
    }
}

TEST_P(SystemInfoContractTest, TheVersionIsDottedAndTheBuildIsANumber)
{
    EXPECT_GE(m_info->bundleShortVersion().split(u'.').size(), 2);
    bool isNumber = false;
    EXPECT_GT(m_info->bundleVersion().toInt(&isNumber), 0);
    EXPECT_TRUE(isNumber);
}

TEST_P(SystemInfoContractTest, AnUnsetVariableIsEmpty)
{
    EXPECT_FALSE(m_info->environmentVariable(QStringLiteral("PATH")).isEmpty());
    EXPECT_TRUE(m_info->environmentVariable(QStringLiteral("TAVRIN_NO_SUCH_VARIABLE")).isEmpty());
}

TEST_P(SystemInfoContractTest, TheMachineAndTheRecogniserAreKnown)
{
    EXPECT_FALSE(m_info->localizedHostName().isEmpty());
    EXPECT_EQ(m_info->speechLanguage(), QStringLiteral("zh-CN"));
}

} // namespace
} // namespace tavrin::testing
