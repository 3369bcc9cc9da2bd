#include "platform/linux/inputmethod/AsideNote.h"

#include "platform/linux/process/ProcessIdentity.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace tavrin::testing {
namespace {

class AsideNoteTest : public ::testing::Test {
protected:
    void leave(const QByteArray& content)
    {
        QFile file(m_file);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    [[nodiscard]] QByteArray content() const
    {
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
    QString m_file = m_folder.filePath(QStringLiteral("note"));
    AsideNote m_note{m_file};
    AsideEngine m_engine{QStringLiteral("ibus"), QStringLiteral("libpinyin")};
};

TEST_F(AsideNoteTest, NothingIsLeftBehindWhileTheOwnerRuns)
{
    m_note.write(m_engine);
    EXPECT_TRUE(content().contains("libpinyin"));
    EXPECT_EQ(m_note.leftBehind(), std::nullopt);
}

TEST_F(AsideNoteTest, WhatAnotherProcessOfTheSameNumberLeftIsLeftBehind)
{
    m_note.write(m_engine);
    const QByteArray own = '\n' + QByteArray::number(thisProcess().birth) + '\n';
    ASSERT_TRUE(content().contains(own));
    leave(content().replace(own, "\n1\n"));
    EXPECT_EQ(m_note.leftBehind(), m_engine);
}

TEST_F(AsideNoteTest, WhatAnEndedProcessLeftIsLeftBehind)
{
    const pid_t child = ::fork();
    if (child == 0) {
        m_note.write(m_engine);
        ::_exit(0);
    }
    siginfo_t end{};
    ::waitid(P_PID, static_cast<id_t>(child), &end, WEXITED | WNOWAIT); // Its corpse stays.
    EXPECT_EQ(m_note.leftBehind(), m_engine);
    ::waitpid(child, nullptr, 0);
}

TEST_F(AsideNoteTest, ARemovedNoteTellsNothing)
{
    leave("1\n1\nibus\nlibpinyin\n");
    ASSERT_EQ(m_note.leftBehind(), m_engine);
    m_note.remove();
    EXPECT_EQ(m_note.leftBehind(), std::nullopt);
    EXPECT_FALSE(QFile::exists(m_file));
}

TEST_F(AsideNoteTest, ANoteWithoutSenseTellsNothing)
{
    for (const QByteArray& content : {QByteArray(), QByteArray("\n\n\n\n"), QByteArray("ibus"),
             QByteArray("1\n1\nibus\n"), QByteArray("x\n1\nibus\nlibpinyin\n"),
             QByteArray("1\n\nibus\nlibpinyin\n"), QByteArray(100'000, '1')}) {
        leave(content);
        EXPECT_EQ(m_note.leftBehind(), std::nullopt) << content.left(40).constData();
    }
}

TEST_F(AsideNoteTest, WithoutAPlaceNothingIsNoted)
{
    const AsideNote note((QString()));
    note.write(m_engine);
    EXPECT_EQ(note.leftBehind(), std::nullopt);
    note.remove();
}

} // namespace
} // namespace tavrin::testing
