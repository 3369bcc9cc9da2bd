#include "platform/linux/audio/ReservedFile.h"

#include "support/FullDisk.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <vector>

namespace tavrin {
namespace {

class ReservedFileTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath("file");

    static bool write(ReservedFile& file, int count)
    {
        const std::vector<std::uint8_t> bytes(static_cast<std::size_t>(count), 7);
        return file.write(bytes.data(), count);
    }
};

TEST_F(ReservedFileTest, WhatWasSetAsideIsCutOffAtTheEnd)
{
    {
        ReservedFile file(path);
        ASSERT_TRUE(file.reserve(100'000));
        EXPECT_GE(QFileInfo(path).size(), 100'000);
        ASSERT_TRUE(write(file, 10));
        file.seek(4);
        ASSERT_TRUE(write(file, 2));
        EXPECT_EQ(file.position(), 6);
        EXPECT_EQ(file.size(), 10);
    }

    EXPECT_EQ(QFileInfo(path).size(), 10);
}

TEST_F(ReservedFileTest, OnlyItsOwnerMayReadItEvenIfItWasOpenToOthers)
{
    QFile before(path);
    ASSERT_TRUE(before.open(QIODevice::WriteOnly));
    before.write("secret");
    before.setPermissions(QFile::permissions(path) | QFile::ReadOther | QFile::WriteOther);

    const ReservedFile file(path);

    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteOther),
        QFile::Permissions());
    EXPECT_EQ(QFileInfo(path).size(), 0);
}

TEST_F(ReservedFileTest, ALinkIsNotFollowed)
{
    QFile target(folder.filePath("target"));
    ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    ASSERT_TRUE(target.link(path));

    EXPECT_FALSE(ReservedFile(path).isOpen());
}

TEST_F(ReservedFileTest, WhatIsReservedCanBeWrittenWhenTheDiskIsFull)
{
    ReservedFile file(path);
    ASSERT_TRUE(file.reserve(1));
    const auto reserved = static_cast<int>(QFileInfo(path).size());
    const testing::FullDisk full(static_cast<rlim_t>(reserved));

    EXPECT_FALSE(file.reserve(reserved + 1));
    EXPECT_TRUE(write(file, reserved));
    EXPECT_FALSE(write(file, 1));
    EXPECT_EQ(file.size(), reserved);
}

TEST_F(ReservedFileTest, AFileThatCannotBeMadeIsNotOpen)
{
    EXPECT_FALSE(ReservedFile(folder.filePath("missing/file")).isOpen());
    EXPECT_FALSE(ReservedFile(folder.path()).isOpen());
}

} // namespace
} // namespace tavrin
