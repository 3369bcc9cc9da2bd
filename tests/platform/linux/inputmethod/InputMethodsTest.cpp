#include "platform/linux/inputmethod/InputMethods.h"

#include "support/QtPrinters.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <thread>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

/// What the test sees of an input method, and how it behaves.
struct Behaviour {
    QString name;
    std::optional<QString> engine = {};
    bool hangs = false; ///< Answers nobody in time.
    bool stays = false; ///< Answers, and does not let itself be switched off.
    QString note = {}; ///< The file looked for when it is switched off.
    bool wasNoted = false;
    int questions = 0;
    QStringList switches = {};
};

class ScriptedInputMethod final : public InputMethod {
public:
    explicit ScriptedInputMethod(Behaviour& behaviour)
        : m_behaviour(behaviour)
    {
    }

    [[nodiscard]] QString name() const override { return m_behaviour.name; }

    [[nodiscard]] std::optional<QString> engine(Deadline deadline) override
    {
        ++m_behaviour.questions;
        if (!m_behaviour.hangs)
            return m_behaviour.engine;
        std::this_thread::sleep_until(deadline);
        return std::nullopt;
    }

    [[nodiscard]] bool letsKeysPass(const QString& engine) const override
    {
        return engine == u"plain"_s;
    }

    [[nodiscard]] bool deactivate(Deadline /*deadline*/) override
    {
        m_behaviour.switches.append(u"off"_s);
        m_behaviour.wasNoted = QFile::exists(m_behaviour.note);
        return !m_behaviour.stays;
    }

    [[nodiscard]] bool activate(const QString& engine, Deadline /*deadline*/) override
    {
        m_behaviour.switches.append(engine);
        return !m_behaviour.hangs;
    }

private:
    Behaviour& m_behaviour;
};

class InputMethodsTest : public ::testing::Test {
protected:
    [[nodiscard]] InputMethods make()
    {
        std::vector<std::unique_ptr<InputMethod>> known;
        known.push_back(std::make_unique<ScriptedInputMethod>(m_first));
        known.push_back(std::make_unique<ScriptedInputMethod>(m_second));
        return {std::move(known), m_file, std::chrono::milliseconds(20)};
    }

    void leaveNote(const QByteArray& inputMethod)
    {
        QFile file(m_file);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("1\n1\n" + inputMethod + "\npinyin\n"); // Of an earlier process of that number.
    }

    QTemporaryDir m_folder;
    QString m_file = m_folder.filePath(u"note"_s);
    Behaviour m_first{.name = u"first"_s, .note = m_file};
    Behaviour m_second{.name = u"second"_s, .note = m_file};
    InputMethods m_methods = make();
};

TEST_F(InputMethodsTest, WhereNoneRunsNothingIsSwitched)
{
    EXPECT_TRUE(m_methods.setAside());
    EXPECT_FALSE(m_methods.waitForKeys());
    m_methods.putBack();
    EXPECT_EQ(m_first.switches + m_second.switches, QStringList());
    EXPECT_FALSE(QFile::exists(m_file));
}

TEST_F(InputMethodsTest, AnEngineThatLetsKeysPassIsLeftAlone)
{
    m_first.engine = u"plain"_s;
    EXPECT_TRUE(m_methods.setAside());
    EXPECT_TRUE(m_methods.waitForKeys()); // They take its road all the same.
    m_methods.putBack();
    EXPECT_EQ(m_first.switches, QStringList());
}

TEST_F(InputMethodsTest, TheEngineIsOffUntilItIsPutBack)
{
    m_second.engine = u"pinyin"_s;
    EXPECT_TRUE(m_methods.setAside());
    EXPECT_EQ(m_second.switches, QStringList{u"off"_s});
    m_methods.putBack();
    EXPECT_EQ(m_second.switches, (QStringList{u"off"_s, u"pinyin"_s}));
    m_methods.putBack();
    EXPECT_EQ(m_second.switches.size(), 2);
}

TEST_F(InputMethodsTest, TheFirstOneThatRunsDecides)
{
    m_first.engine = u"plain"_s;
    m_second.engine = u"pinyin"_s;
    EXPECT_TRUE(m_methods.setAside());
    EXPECT_EQ(m_second.questions, 0);
    EXPECT_EQ(m_second.switches, QStringList());
}

TEST_F(InputMethodsTest, AnEndedCompositionLeavesTheEngineOn)
{
    m_first.engine = u"pinyin"_s;
    m_methods.endComposition();
    EXPECT_EQ(m_first.switches, (QStringList{u"off"_s, u"pinyin"_s}));
    EXPECT_FALSE(QFile::exists(m_file));
}

TEST_F(InputMethodsTest, ItIsNotedBeforeItIsSwitchedOffAndUntilItIsOn)
{
    m_first.engine = u"pinyin"_s;
    EXPECT_TRUE(m_methods.setAside());
    EXPECT_TRUE(m_first.wasNoted);
    EXPECT_TRUE(QFile::exists(m_file));
    m_methods.putBack();
    EXPECT_FALSE(QFile::exists(m_file));
}

TEST_F(InputMethodsTest, OneThatHangsIsPutBackLater)
{
    m_first.engine = u"pinyin"_s;
    EXPECT_TRUE(m_methods.setAside());
    m_first.hangs = true;
    m_methods.putBack();
    EXPECT_TRUE(QFile::exists(m_file));
    m_first.hangs = false;
    m_methods.putBack();
    EXPECT_EQ(m_first.switches, (QStringList{u"off"_s, u"pinyin"_s, u"pinyin"_s}));
    EXPECT_FALSE(QFile::exists(m_file));
}

TEST_F(InputMethodsTest, OneThatStaysOnIsTold)
{
    m_first.engine = u"pinyin"_s;
    m_first.stays = true;
    EXPECT_FALSE(m_methods.setAside());
}

TEST_F(InputMethodsTest, OneThatDoesNotAnswerIsNotTakenForAbsent)
{
    m_first.engine = u"pinyin"_s;
    m_first.hangs = true;
    EXPECT_FALSE(m_methods.setAside());
}

TEST_F(InputMethodsTest, WhatACrashLeftIsPutBackByTheNextStart)
{
    leaveNote("second");
    m_methods.recover();
    EXPECT_EQ(m_second.switches, QStringList{u"pinyin"_s});
    EXPECT_EQ(m_first.switches, QStringList());
    EXPECT_FALSE(QFile::exists(m_file));
}

TEST_F(InputMethodsTest, AnotherInstanceLeavesOneThatIsTypingAlone)
{
    m_first.engine = u"pinyin"_s;
    EXPECT_TRUE(m_methods.setAside());
    InputMethods other = make();
    other.recover();
    EXPECT_EQ(m_first.switches, QStringList{u"off"_s});
    EXPECT_TRUE(QFile::exists(m_file));
}

TEST_F(InputMethodsTest, ANoteOfAnUnknownInputMethodIsThrownAway)
{
    leaveNote("third");
    m_methods.recover();
    EXPECT_EQ(m_first.switches + m_second.switches, QStringList());
    EXPECT_FALSE(QFile::exists(m_file));
}

} // namespace
} // namespace tavrin::testing
