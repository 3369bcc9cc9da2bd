#include "platform/linux/preferences/JsonPreferences.h"
#include "platform/preferences/Preferences.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/VirtualTime.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

/// Preferences together with whatever they stand on.
class Subject {
public:
    virtual ~Subject() = default;
    [[nodiscard]] virtual Preferences& preferences() = 0;
};

class InMemorySubject final : public Subject {
public:
    [[nodiscard]] Preferences& preferences() override { return m_preferences; }

private:
    InMemoryPreferences m_preferences;
};

class JsonSubject final : public Subject {
public:
    [[nodiscard]] Preferences& preferences() override { return m_preferences; }

private:
    QTemporaryDir m_folder;
    VirtualTime m_time;
    JsonPreferences m_preferences{m_folder.filePath(QStringLiteral("Tavrin/p.json")), m_time};
};

template <class Type>
std::unique_ptr<Subject> make()
{
    return std::make_unique<Type>();
}

struct Case {
    const char* name;
    std::unique_ptr<Subject> (*make)();
};

class PreferencesContractTest : public ::testing::TestWithParam<Case> {
protected:
    Preferences& preferences() { return m_subject->preferences(); }

private:
    std::unique_ptr<Subject> m_subject = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(Implementations, PreferencesContractTest,
    ::testing::Values(Case{"InMemory", make<InMemorySubject>}, Case{"JsonFile", make<JsonSubject>}),
    [](const auto& given) { return given.param.name; });

const QString key = QStringLiteral("outputStyle");

TEST_P(PreferencesContractTest, AnAbsentKeyHasNoValue)
{
    EXPECT_FALSE(preferences().value(key).isValid());
}

TEST_P(PreferencesContractTest, AValueIsReadBackAtOnceAndAfterSynchronising)
{
    preferences().setValue(key, QStringLiteral("casual"));
    EXPECT_EQ(preferences().value(key).toString(), QStringLiteral("casual"));
    preferences().synchronize();
    EXPECT_EQ(preferences().value(key).toString(), QStringLiteral("casual"));
}

TEST_P(PreferencesContractTest, ARemovedKeyHasNoValue)
{
    preferences().setValue(key, 1);
    preferences().synchronize();
    preferences().remove(key);
    EXPECT_FALSE(preferences().value(key).isValid());
    preferences().synchronize();
    EXPECT_FALSE(preferences().value(key).isValid());
    preferences().remove(key);
    EXPECT_FALSE(preferences().value(key).isValid());
}

TEST_P(PreferencesContractTest, KeysAreIndependent)
{
    preferences().setValue(QStringLiteral("a"), 1);
    preferences().setValue(QStringLiteral("b"), 2);
    preferences().remove(QStringLiteral("a"));
    EXPECT_EQ(preferences().value(QStringLiteral("b")).toInt(), 2);
}

TEST_P(PreferencesContractTest, TypesSurvive)
{
    const QVariantMap nested{{QStringLiteral("term"), QStringLiteral("张小明")},
        {QStringLiteral("counts"), QVariantList{1, 2.5, true}}};
    preferences().setValue(QStringLiteral("bool"), true);
    preferences().setValue(QStringLiteral("string"), QStringLiteral("“中文”\n\"x\"\\😀"));
    preferences().setValue(QStringLiteral("double"), 1700000000.25);
    preferences().setValue(QStringLiteral("list"), QVariantList{nested, nested});
    preferences().setValue(QStringLiteral("strings"), QStringList{key, key});
    preferences().synchronize();

    EXPECT_EQ(preferences().value(QStringLiteral("bool")).typeId(), QMetaType::Bool);
    EXPECT_TRUE(preferences().value(QStringLiteral("bool")).toBool());
    EXPECT_EQ(preferences().value(QStringLiteral("string")).toString(),
        QStringLiteral("“中文”\n\"x\"\\😀"));
    EXPECT_EQ(preferences().value(QStringLiteral("double")).typeId(), QMetaType::Double);
    EXPECT_EQ(preferences().value(QStringLiteral("double")).toDouble(), 1700000000.25);
    const QVariantList list = preferences().value(QStringLiteral("list")).toList();
    ASSERT_EQ(list.size(), 2);
    EXPECT_EQ(list[1].toMap().value(QStringLiteral("term")).toString(), QStringLiteral("张小明"));
    const QVariantList counts = list[0].toMap().value(QStringLiteral("counts")).toList();
    ASSERT_EQ(counts.size(), 3);
    EXPECT_EQ(counts[0].toInt(), 1);
    EXPECT_EQ(counts[1].toDouble(), 2.5);
    EXPECT_EQ(counts[2].typeId(), QMetaType::Bool);
    EXPECT_EQ(
        preferences().value(QStringLiteral("strings")).toStringList(), QStringList({key, key}));
}

TEST_P(PreferencesContractTest, IntegersKeepAllTheirBits)
{
    const qlonglong beyondDouble = 9007199254740993; // 2^53 + 1
    preferences().setValue(QStringLiteral("integer"), beyondDouble);
    preferences().synchronize();
    EXPECT_EQ(preferences().value(QStringLiteral("integer")).toLongLong(), beyondDouble);
    EXPECT_EQ(preferences().value(QStringLiteral("integer")).typeId(), QMetaType::LongLong);
}

TEST_P(PreferencesContractTest, AnEmptyListIsAValue)
{
    preferences().setValue(key, QVariantList{});
    preferences().synchronize();
    EXPECT_TRUE(preferences().value(key).isValid());
    EXPECT_TRUE(preferences().value(key).toList().isEmpty());
}

} // namespace
} // namespace tavrin::testing
