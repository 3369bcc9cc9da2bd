#include "platform/linux/x11/X11SyntheticKeyboard.h"

#include "platform/linux/x11/ClipboardPasteboard.h"
#include "platform/linux/x11/TestClient.h"
#include "support/QtPrinters.h"

#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

/// Counts the presses of keys that reach this program's windows.
class KeyCounter final : public QObject {
public:
    explicit KeyCounter(int ignoredKey)
        : m_ignoredKey(ignoredKey)
    {
        qApp->installEventFilter(this);
    }

    [[nodiscard]] int presses() const { return m_presses; }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress
            && static_cast<QKeyEvent*>(event)->key() != m_ignoredKey)
            ++m_presses;
        return false;
    }

private:
    int m_ignoredKey;
    int m_presses = 0;
};

/// Types into an editor of Qt that stands in for another program.
class X11SyntheticKeyboardTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_editor.resize(600, 400);
        m_editor.show();
        m_target = {QCoreApplication::applicationPid(), QStringLiteral("Editor"),
            QStringLiteral("editor"), m_editor.winId()};
        ASSERT_TRUE(TestClient::eventually([this] { return m_editor.isActiveWindow(); }));
    }

    [[nodiscard]] QString text() const { return m_editor.toPlainText(); }

    [[nodiscard]] bool eventuallyReads(const QString& expected) const
    {
        return TestClient::eventually([&] { return text() == expected; });
    }

    /// The map of the keyboard as it is now.
    [[nodiscard]] std::vector<xcb_keycode_t> emptyCodes() const
    {
        return KeyboardMap::read(m_client.connection()).emptyCodes();
    }

    /// Everything the server knows about the keyboard, as xkbcomp tells it.
    [[nodiscard]] static QByteArray wholeMap()
    {
        QProcess xkbcomp;
        xkbcomp.start(QStringLiteral("xkbcomp"),
            {QStringLiteral("-w0"), qEnvironmentVariable("DISPLAY"), QStringLiteral("-")});
        EXPECT_TRUE(xkbcomp.waitForFinished());
        return xkbcomp.readAllStandardOutput();
    }

    TestClient m_client;
    QPlainTextEdit m_editor;
    RunningApplication m_target;
    ClipboardPasteboard m_pasteboard;
    X11SyntheticKeyboard m_keyboard{m_pasteboard};
};

TEST_F(X11SyntheticKeyboardTest, PastesWithControlV)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("你好, world 😀")));
    m_keyboard.postPasteShortcut(m_target);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("你好, world 😀"))) << text().toStdString();
}

TEST_F(X11SyntheticKeyboardTest, TypesCharactersOfEveryKind)
{
    const QString mixed = QStringLiteral(
        "Hello, 世界! ÀÉ ß € «x» 😀👍🏽 Ωж\nline two\t{a}[b]~^`\"'");
    m_keyboard.postUnicodeText({mixed}, m_target);
    EXPECT_TRUE(eventuallyReads(mixed)) << text().toStdString();
}

TEST_F(X11SyntheticKeyboardTest, TypesMoreDifferentCharactersThanThereAreSpareKeys)
{
    const auto before = emptyCodes();
    QString many;
    for (char16_t unit = 0x4e00; unit < 0x4e00 + 200; ++unit)
        many += QChar(unit);
    m_keyboard.postUnicodeText({many}, m_target);
    EXPECT_TRUE(eventuallyReads(many)) << text().toStdString();
    EXPECT_TRUE(TestClient::eventually([&] { return emptyCodes() == before; }));
    EXPECT_TRUE(
        TestClient::eventually([] { return !QFile::exists(X11SyntheticKeyboard::stateFile()); }));
}

TEST_F(X11SyntheticKeyboardTest, KeysOfManyLayoutsStayAsTheyAre)
{
    const QTemporaryDir folder;
    const QString usual = folder.filePath(QStringLiteral("usual.xkb"));
    const QString display = qEnvironmentVariable("DISPLAY");
    ASSERT_EQ(
        QProcess::execute(QStringLiteral("xkbcomp"), {QStringLiteral("-w0"), display, usual}), 0);
    ASSERT_EQ(QProcess::execute(QStringLiteral("setxkbmap"), {QStringLiteral("us,ru,gr,de")}), 0);
    const QByteArray before = wholeMap();
    ASSERT_TRUE(before.contains("Group4"));

    QString many;
    for (char16_t unit = 0x4e00; unit < 0x4e00 + 100; ++unit)
        many += QChar(unit);
    m_keyboard.postUnicodeText({many}, m_target);

    EXPECT_TRUE(eventuallyReads(many)) << text().toStdString();
    EXPECT_TRUE(TestClient::eventually([&] { return wholeMap() == before; }));
    EXPECT_EQ(
        QProcess::execute(QStringLiteral("xkbcomp"), {QStringLiteral("-w0"), usual, display}), 0);
}

TEST_F(X11SyntheticKeyboardTest, TypesInTheOrderOfTheCalls)
{
    m_keyboard.postUnicodeText({QStringLiteral("一二"), QStringLiteral("三")}, m_target);
    m_keyboard.postUnicodeText({QStringLiteral("four")}, m_target);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("一二三four"))) << text().toStdString();
}

TEST_F(X11SyntheticKeyboardTest, HeldModifiersAreReleasedFirst)
{
    const auto alt = KeyboardMap::read(m_client.connection()).codeOf(keysyms::leftAlt);
    m_client.pressKey(*alt);
    m_keyboard.postUnicodeText({QStringLiteral("plain")}, m_target);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("plain"))) << text().toStdString();
    m_client.releaseKey(*alt);
}

TEST_F(X11SyntheticKeyboardTest, ACoveredAltOpensNoMenu)
{
    QMainWindow window;
    window.menuBar()->addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("New"));
    auto* const editor = new QPlainTextEdit;
    window.setCentralWidget(editor);
    window.show();
    editor->setFocus();
    ASSERT_TRUE(TestClient::eventually([&] { return window.isActiveWindow(); }));
    const auto alt = KeyboardMap::read(m_client.connection()).codeOf(keysyms::rightAlt);
    ASSERT_TRUE(alt);

    m_client.pressKey(*alt);
    m_client.releaseKey(*alt);
    EXPECT_TRUE(TestClient::eventually([&] { return window.menuBar()->hasFocus(); }));
    m_client.tap(keysyms::escape);
    ASSERT_TRUE(TestClient::eventually([&] { return editor->hasFocus(); }));

    KeyCounter others(Qt::Key_Alt);
    m_client.pressKey(*alt);
    m_keyboard.coverModifierKey();
    EXPECT_TRUE(TestClient::eventually([&] { return others.presses() > 0; }));
    m_client.releaseKey(*alt);
    m_client.tap(keysyms::v); // Would call an item of an open menu bar.
    EXPECT_TRUE(TestClient::eventually([&] { return editor->toPlainText() == u"v"; }));
    EXPECT_TRUE(editor->hasFocus());
}

TEST_F(X11SyntheticKeyboardTest, PastesNothingIntoAnotherProgram)
{
    RunningApplication other = m_target;
    other.processIdentifier = 1;
    other.window = 1;
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("secret")));
    m_keyboard.postPasteShortcut(other);
    m_keyboard.postUnicodeText({QStringLiteral("mine")}, m_target);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("mine"))) << text().toStdString();
}

TEST_F(X11SyntheticKeyboardTest, TypesNothingIntoAnotherProgram)
{
    RunningApplication other = m_target;
    other.processIdentifier = 1;
    other.window = 1;
    m_keyboard.postUnicodeText({QStringLiteral("secret")}, other);
    m_keyboard.postUnicodeText({QStringLiteral("mine")}, m_target);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("mine"))) << text().toStdString();
}

TEST_F(X11SyntheticKeyboardTest, StopsWhenAnotherWindowTakesTheKeyboard)
{
    const auto before = emptyCodes();
    const QString endless = QStringLiteral("字").repeated(3000);
    m_keyboard.postUnicodeText({endless}, m_target);
    ASSERT_TRUE(TestClient::eventually([this] { return text().size() > 20; }));
    QPlainTextEdit other;
    other.show();
    ASSERT_TRUE(TestClient::eventually([&] { return other.isActiveWindow(); }));
    EXPECT_TRUE(TestClient::eventually([&] { return emptyCodes() == before; }));
    EXPECT_LT(text().size(), endless.size());
    EXPECT_EQ(other.toPlainText(), QString());
}

TEST_F(X11SyntheticKeyboardTest, CancellingLeavesNoKeyPressedOrRemapped)
{
    const auto before = emptyCodes();
    m_keyboard.postUnicodeText({QStringLiteral("大Ａ").repeated(2000)}, m_target);
    ASSERT_TRUE(TestClient::eventually([this] { return text().size() > 20; }));
    m_keyboard.cancelTyping();
    EXPECT_TRUE(TestClient::eventually([&] { return emptyCodes() == before; }));
    EXPECT_LT(text().size(), 4000);
    const XcbPointer<xcb_query_keymap_reply_t> keys(xcb_query_keymap_reply(
        m_client.connection().get(), xcb_query_keymap(m_client.connection().get()), nullptr));
    for (const quint8 eight : keys->keys)
        EXPECT_EQ(eight, 0);
}

TEST_F(X11SyntheticKeyboardTest, WhatACrashLeftBehindIsPutBackByTheNextStart)
{
    const auto before = emptyCodes();
    ASSERT_GE(before.size(), 2U);
    {
        SpareCodes crashed(m_client.connection(), X11SyntheticKeyboard::stateFile());
        crashed.assign({{before[0], 0x0100'4e00, 0x0100'4e01}, {before[1], 0x0100'4e02, 0}});
    }
    ASSERT_NE(emptyCodes(), before);
    const X11SyntheticKeyboard next(m_pasteboard);
    EXPECT_TRUE(TestClient::eventually([&] { return emptyCodes() == before; }));
    EXPECT_TRUE(
        TestClient::eventually([] { return !QFile::exists(X11SyntheticKeyboard::stateFile()); }));
}

} // namespace
} // namespace tavrin::testing
