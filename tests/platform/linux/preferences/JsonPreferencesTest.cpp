#include "platform/linux/preferences/JsonPreferences.h"

#include "support/QtPrinters.h"
#include "support/ports/VirtualTime.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin::testing {
namespace {

using namespace std::chrono_literals;

const QString style = QStringLiteral("outputStyle");
const QString target = QStringLiteral("translationTarget");

class JsonPreferencesTest : public ::testing::Test {
protected:
    [[nodiscard]] QString folder() const { return m_root.filePath(QStringLiteral("Tavrin")); }

    [[nodiscard]] QString path() const { return folder() + QStringLiteral("/preferences.json"); }

    JsonPreferences& preferences()
    {
        if (!m_preferences)
            m_preferences.emplace(path(), m_time);
        return *m_preferences;
    }

    void quit() { m_preferences.reset(); }

    /// Writes the file as another program does, long enough ago to be whole.
    void write(const QByteArray& text, std::chrono::seconds age = 10s) const
    {
        ASSERT_TRUE(QDir().mkpath(folder()));
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
        file.close();
        setAge(age);
    }

    void setAge(std::chrono::seconds age) const
    {
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME, &now);
        now.tv_sec -= age.count();
        const std::array<timespec, 2> times{now, now};
        ASSERT_EQ(::utimensat(AT_FDCWD, path().toLocal8Bit().constData(), times.data(), 0), 0);
    }

    [[nodiscard]] QByteArray onDisk() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    [[nodiscard]] QStringList setAside() const
    {
        return QDir(folder()).entryList({QStringLiteral("preferences-broken-*.json")});
    }

    VirtualTime m_time;

private:
    QTemporaryDir m_root;
    std::optional<JsonPreferences> m_preferences;
};

/// File permissions bind the superuser too while this lives.
class AsOrdinaryUser {
public:
    AsOrdinaryUser() { apply(::geteuid() == 0 ? 65534 : ::geteuid()); }

    ~AsOrdinaryUser() { apply(::getuid()); }

    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

private:
    static void apply(uid_t user)
    {
        if (::seteuid(user) != 0)
            std::abort();
    }
};

TEST_F(JsonPreferencesTest, AChangeReachesTheDiskWithinASecondWithoutBeingAsked)
{
    preferences().setValue(style, QStringLiteral("casual"));
    m_time.advance(1s);
    EXPECT_EQ(onDisk(), "{\n    \"outputStyle\": \"casual\"\n}\n");
    EXPECT_EQ(m_time.pending(), 0);
}

TEST_F(JsonPreferencesTest, SynchronisingWritesAtOnce)
{
    preferences().setValue(style, QStringLiteral("casual"));
    preferences().synchronize();
    EXPECT_EQ(onDisk(), "{\n    \"outputStyle\": \"casual\"\n}\n");
    EXPECT_EQ(m_time.pending(), 0);
}

TEST_F(JsonPreferencesTest, QuittingWritesWhatIsLeft)
{
    preferences().setValue(style, QStringLiteral("casual"));
    quit();
    EXPECT_EQ(onDisk(), "{\n    \"outputStyle\": \"casual\"\n}\n");
}

TEST_F(JsonPreferencesTest, ReadingWritesNothing)
{
    EXPECT_FALSE(preferences().value(style).isValid());
    preferences().synchronize();
    quit();
    EXPECT_EQ(onDisk(), "(none)");
}

TEST_F(JsonPreferencesTest, SettingTheSameValueAgainLeavesTheFileAlone)
{
    write(R"({"outputStyle":"casual"})");
    preferences().setValue(style, QStringLiteral("casual"));
    preferences().synchronize();
    EXPECT_EQ(onDisk(), R"({"outputStyle":"casual"})");
}

TEST_F(JsonPreferencesTest, AFractionMoreIsAChange)
{
    write(R"({"outputStyle":1})");
    preferences().setValue(style, 1.5);
    preferences().synchronize();
    EXPECT_EQ(onDisk(), "{\n    \"outputStyle\": 1.5\n}\n");
}

TEST_F(JsonPreferencesTest, FileAndFolderBelongToTheUserAlone)
{
    preferences().setValue(style, 1);
    preferences().synchronize();

    struct stat status { };

    ASSERT_EQ(::stat(path().toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat(folder().toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(JsonPreferencesTest, AFileOpenToOthersIsClosedWhenWritten)
{
    write("{}");
    ASSERT_EQ(::chmod(path().toLocal8Bit().constData(), 0644), 0);
    preferences().setValue(style, 1);
    preferences().synchronize();

    struct stat status { };

    ASSERT_EQ(::stat(path().toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(JsonPreferencesTest, AChangeMadeByHandIsSeenOnTheNextRead)
{
    write(R"({"outputStyle":"casual"})");
    EXPECT_EQ(preferences().value(style).toString(), QStringLiteral("casual"));
    write(R"({"outputStyle":"prose!"})");
    EXPECT_EQ(preferences().value(style).toString(), QStringLiteral("prose!"));
}

TEST_F(JsonPreferencesTest, TwoChangesOfTheSameSizeInQuickSuccessionAreBothSeen)
{
    for (int i = 10; i < 60; ++i) {
        write(QByteArray(R"({"outputStyle":)") + QByteArray::number(i) + '}', 0s);
        ASSERT_EQ(preferences().value(style).toInt(), i);
    }
}

TEST_F(JsonPreferencesTest, ARemovedFileMeansDefaults)
{
    write(R"({"outputStyle":"casual"})");
    EXPECT_TRUE(preferences().value(style).isValid());
    ASSERT_TRUE(QFile::remove(path()));
    EXPECT_FALSE(preferences().value(style).isValid());
}

TEST_F(JsonPreferencesTest, KeysThatSomebodyElseChangedBeforeOurWriteKeepTheirNewValues)
{
    write(R"({"outputStyle":"casual","translationTarget":"french","other":[1]})");
    preferences().setValue(style, QStringLiteral("meeting"));
    write(R"({"outputStyle":"casual","translationTarget":"german","added":{"a":1.0}})");
    preferences().synchronize();
    EXPECT_EQ(onDisk(),
        "{\n    \"added\": {\n        \"a\": 1\n    },\n    \"outputStyle\": \"meeting\",\n"
        "    \"translationTarget\": \"german\"\n}\n");
    EXPECT_EQ(preferences().value(target).toString(), QStringLiteral("german"));
}

TEST_F(JsonPreferencesTest, ABrokenFileIsSetAsideAtTheStartAndDefaultsHold)
{
    const QByteArray broken = R"({"outputStyle":"casual",})";
    write(broken, 0s);
    EXPECT_FALSE(preferences().value(style).isValid());
    ASSERT_EQ(setAside().size(), 1);
    QFile kept(folder() + u'/' + setAside().first());
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), broken);

    preferences().setValue(style, QStringLiteral("meeting"));
    preferences().synchronize();
    EXPECT_EQ(preferences().value(style).toString(), QStringLiteral("meeting"));
    EXPECT_EQ(setAside().size(), 1);
}

TEST_F(JsonPreferencesTest, EveryBrokenFileIsKept)
{
    for (int i = 0; i < 3; ++i) {
        write("{");
        EXPECT_FALSE(preferences().value(style).isValid());
        quit();
    }
    EXPECT_EQ(setAside().size(), 3);
}

TEST_F(JsonPreferencesTest, AFileBrokenWhileRunningCostsNoSetting)
{
    write(R"({"outputStyle":"casual"})");
    EXPECT_TRUE(preferences().value(style).isValid());
    write(R"({"outputStyle":"mee)");
    EXPECT_EQ(preferences().value(style).toString(), QStringLiteral("casual"));
    preferences().setValue(target, QStringLiteral("french"));
    m_time.advance(2s);
    EXPECT_EQ(setAside().size(), 1);
    EXPECT_EQ(onDisk(),
        "{\n    \"outputStyle\": \"casual\",\n    \"translationTarget\": \"french\"\n}\n");
}

TEST_F(JsonPreferencesTest, AFileThatSeemsHalfWrittenIsGivenTime)
{
    write(R"({"outputStyle":"casual"})");
    EXPECT_TRUE(preferences().value(style).isValid());
    write(R"({"outputStyle":"mee)", 0s);
    preferences().setValue(target, QStringLiteral("french"));
    m_time.advance(300ms);
    EXPECT_TRUE(setAside().isEmpty());
    write(R"({"outputStyle":"meeting"})", 0s);
    m_time.advance(1s);
    EXPECT_TRUE(setAside().isEmpty());
    EXPECT_EQ(onDisk(),
        "{\n    \"outputStyle\": \"meeting\",\n    \"translationTarget\": \"french\"\n}\n");
}

class BrokenFileTest : public JsonPreferencesTest,
                       public ::testing::WithParamInterface<const char*> { };

INSTANTIATE_TEST_SUITE_P(Texts, BrokenFileTest,
    ::testing::Values("", " ", "[]", "1", "null", "\"text\"", "{", "{\"a\"}", "{\"a\":}",
        "{\"a\":1,}", "{a:1}", "{'a':1}", "{\"a\":1}x", "{\"a\":1}{}", "{\"a\":01}", "{\"a\":+1}",
        "{\"a\":-}", "{\"a\":1e}", "{\"a\":1e999}", "{\"a\":tru}", "{\"a\":\"\\u12g4\"}",
        "{\"a\":\"\\u12", "{\"a\":\"open", "{\"a\":\"\\", "{\"a\":[1,2}", "{\"a\":\"\xff\"}",
        "{\"a\":\"\xed\xa0\x80\"}", "{\"\xc3\":1}"));

TEST_P(BrokenFileTest, IsSetAside)
{
    write(GetParam());
    EXPECT_FALSE(preferences().value(QStringLiteral("a")).isValid());
    EXPECT_EQ(setAside().size(), 1);
}

TEST_F(JsonPreferencesTest, DeepNestingIsRefusedWithoutHarm)
{
    constexpr int levels = 1'000'000;
    write("{\"a\":" + QByteArray(levels, '[') + QByteArray(levels, ']') + '}');
    EXPECT_FALSE(preferences().value(QStringLiteral("a")).isValid());
    EXPECT_EQ(setAside().size(), 1);
}

TEST_F(JsonPreferencesTest, AByteOrderMarkIsSkippedAndOfDuplicateKeysTheLastHolds)
{
    write("\xef\xbb\xbf {\"outputStyle\":1, \"outputStyle\":2}");
    EXPECT_EQ(preferences().value(style).toInt(), 2);
    EXPECT_TRUE(setAside().isEmpty());
}

TEST_F(JsonPreferencesTest, EveryKindOfTextSurvivesTheFile)
{
    const QString odd =
        QStringLiteral("a\0b\x01\x7f\"\\/\n\t😀") + QStringLiteral("x") + QChar(0x2028);
    preferences().setValue(style, odd);
    quit();
    EXPECT_EQ(preferences().value(style).toString(), odd);
}

TEST_F(JsonPreferencesTest, HalfACharacterCostsNothingElse)
{
    preferences().setValue(
        style, QString(QStringLiteral("a") + QChar(0xd83d) + QStringLiteral("b")));
    preferences().setValue(target, QStringLiteral("french"));
    quit();
    EXPECT_TRUE(preferences().value(style).toString().startsWith(u'a'));
    EXPECT_EQ(preferences().value(target).toString(), QStringLiteral("french"));
    EXPECT_TRUE(setAside().isEmpty());
}

TEST_F(JsonPreferencesTest, NumbersAtTheirLimitsSurviveTheFile)
{
    const QList<QVariant> numbers{std::numeric_limits<qlonglong>::min(),
        std::numeric_limits<qlonglong>::max(), 1e300, -0.1, 5e-324};
    preferences().setValue(style, numbers);
    quit();
    const QVariantList read = preferences().value(style).toList();
    ASSERT_EQ(read.size(), numbers.size());
    for (qsizetype i = 0; i < read.size(); ++i) {
        EXPECT_EQ(read[i], numbers[i]) << i;
        EXPECT_EQ(read[i].typeId(), numbers[i].typeId()) << i;
    }
}

TEST_F(JsonPreferencesTest, WhatJsonCannotHoldIsRefusedAndTheOldValueStays)
{
    preferences().setValue(style, 1);
    preferences().setValue(style, std::numeric_limits<double>::quiet_NaN());
    preferences().setValue(style, QVariantList{std::numeric_limits<double>::infinity()});
    preferences().setValue(style, QByteArray("bytes"));
    QVariant deep = 1;
    for (int i = 0; i < 300; ++i)
        deep = QVariantList{deep};
    preferences().setValue(style, deep);
    EXPECT_EQ(preferences().value(style), QVariant(1));
}

TEST_F(JsonPreferencesTest, TenMegabytesAreReadOnceAndKeptWhole)
{
    const QString text(qsizetype{10} * 1024 * 1024, u'字');
    preferences().setValue(style, text);
    quit();
    setAge(10s);
    for (int i = 0; i < 2000; ++i)
        ASSERT_EQ(preferences().value(style).toString().size(), text.size());
}

TEST_F(JsonPreferencesTest, AFolderThatCannotBeMadeLeavesEverythingWorkingInMemory)
{
    QFile inTheWay(folder());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    inTheWay.close();
    preferences().setValue(style, QStringLiteral("casual"));
    preferences().synchronize();
    m_time.advance(10s);
    EXPECT_EQ(preferences().value(style).toString(), QStringLiteral("casual"));

    ASSERT_TRUE(inTheWay.remove());
    preferences().synchronize();
    EXPECT_EQ(onDisk(), "{\n    \"outputStyle\": \"casual\"\n}\n");
}

TEST_F(JsonPreferencesTest, AReadOnlyFolderKeepsItsFileAndWeOurChanges)
{
    write(R"({"translationTarget":"french"})");
    ASSERT_EQ(::chmod(path().toLocal8Bit().constData(), 0644), 0);
    ASSERT_EQ(::chmod(folder().toLocal8Bit().constData(), 0555), 0);
    ASSERT_EQ(::chmod(QFileInfo(folder()).path().toLocal8Bit().constData(), 0755), 0);
    {
        const AsOrdinaryUser user;
        preferences().setValue(style, QStringLiteral("casual"));
        preferences().synchronize();
        EXPECT_EQ(preferences().value(style).toString(), QStringLiteral("casual"));
        EXPECT_EQ(preferences().value(target).toString(), QStringLiteral("french"));
        EXPECT_EQ(onDisk(), R"({"translationTarget":"french"})");
    }
    ASSERT_EQ(::chmod(folder().toLocal8Bit().constData(), 0700), 0);
}

TEST_F(JsonPreferencesTest, AFolderThatBecomesUnreadableCostsNothing)
{
    write(R"({"translationTarget":"french"})");
    EXPECT_TRUE(preferences().value(target).isValid());
    ASSERT_EQ(::chmod(folder().toLocal8Bit().constData(), 0000), 0);
    {
        const AsOrdinaryUser user;
        preferences().setValue(style, QStringLiteral("casual"));
        preferences().synchronize();
        EXPECT_EQ(preferences().value(target).toString(), QStringLiteral("french"));
        EXPECT_EQ(preferences().value(style).toString(), QStringLiteral("casual"));
    }
    ASSERT_EQ(::chmod(folder().toLocal8Bit().constData(), 0700), 0);
    preferences().synchronize();
    EXPECT_EQ(onDisk(),
        "{\n    \"outputStyle\": \"casual\",\n    \"translationTarget\": \"french\"\n}\n");
}

TEST_F(JsonPreferencesTest, AFileThatCannotBeReadIsNotWrittenOver)
{
    write(R"({"translationTarget":"french"})");
    ASSERT_EQ(::chmod(folder().toLocal8Bit().constData(), 0777), 0);
    ASSERT_EQ(::chmod(path().toLocal8Bit().constData(), 0000), 0);
    ASSERT_EQ(::chmod(QFileInfo(folder()).path().toLocal8Bit().constData(), 0755), 0);
    {
        const AsOrdinaryUser user;
        preferences().setValue(style, QStringLiteral("casual"));
        preferences().synchronize();
        EXPECT_EQ(preferences().value(style).toString(), QStringLiteral("casual"));
    }
    EXPECT_EQ(onDisk(), R"({"translationTarget":"french"})");
}

} // namespace
} // namespace tavrin::testing
