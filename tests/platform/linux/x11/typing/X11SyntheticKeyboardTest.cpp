#include "platform/linux/x11/typing/X11SyntheticKeyboard.h"

#include "platform/linux/x11/ClipboardPasteboard.h"
#include "platform/linux/x11/OtherProgram.h"
#include "platform/linux/x11/TestClient.h"
#include "platform/qt/QtMainQueue.h"
#include "support/QtPrinters.h"

#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <unistd.h>

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
        ASSERT_TRUE(isInFront(m_editor));
    }

    [[nodiscard]] QString text() const { return m_editor.toPlainText(); }

    /// Waits until @p window has the keyboard, and the window manager says so.
    [[nodiscard]] bool isInFront(const QWidget& window) const
    {
        return TestClient::eventually(
            [&] { return window.isActiveWindow() && m_client.activeWindow() == window.winId(); });
    }

    /// Shows another window of the program, and waits until it is in front.
    [[nodiscard]] RunningApplication inFront(QWidget& window) const
    {
        window.resize(200, 100);
        window.show();
        EXPECT_TRUE(isInFront(window));
        RunningApplication target = m_target;
        target.window = window.winId();
        return target;
    }

    /// Presses the paste shortcut, and waits until it is out or cannot be.
    KeyPosting paste(const RunningApplication& target)
    {
        std::optional<KeyPosting> posting;
        m_keyboard.postPasteShortcut({target}, [&](KeyPosting end) { posting = end; });
        EXPECT_TRUE(TestClient::eventually([&] { return posting.has_value(); }));
        return posting.value_or(KeyPosting::Broken);
    }

    /// Types, and waits until the keys are out or cannot be.
    KeyPosting type(const QString& text, const RunningApplication& target)
    {
        std::optional<KeyPosting> posting;
        m_keyboard.postUnicodeText({text}, target, [&](KeyPosting end) { posting = end; });
        EXPECT_TRUE(
            TestClient::eventually([&] { return posting.has_value(); }, std::chrono::seconds(20)));
        return posting.value_or(KeyPosting::Broken);
    }

    PasteReception reception()
    {
        std::optional<PasteReception> reception;
        m_keyboard.askForPasteReception([&](PasteReception told) { reception = told; });
        EXPECT_TRUE(TestClient::eventually([&] { return reception.has_value(); }));
        return reception.value_or(PasteReception::Unknown);
    }

    /// What another program gets that asks for the clipboard.
    static QByteArray fetchElsewhere()
    {
        QProcess collector;
        collector.start(QStringLiteral("xclip"),
            {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-o")});
        EXPECT_TRUE(
            TestClient::eventually([&] { return collector.state() == QProcess::NotRunning; }));
        return collector.readAllStandardOutput();
    }

    bool eventuallyReceives(PasteReception expected)
    {
        return TestClient::eventually([&] { return reception() == expected; });
    }

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

    /// Until it is pressed again: lifting it does nothing.
    static void keepLeftControlDownOncePressed()
    {
        QProcess xkbcomp;
        xkbcomp.start(QStringLiteral("xkbcomp"),
            {QStringLiteral("-w0"), QStringLiteral("-"), qEnvironmentVariable("DISPLAY")});
        xkbcomp.write(R"xkb(xkb_keymap {
            xkb_keycodes { include "evdev+aliases(qwerty)" };
            xkb_types { include "complete" };
            xkb_compat { include "complete" };
            xkb_symbols {
                include "pc+us+inet(evdev)"
                replace key <LCTL> { locks = yes, symbols[Group1] = [ Control_L ] };
            };
        };)xkb");
        xkbcomp.closeWriteChannel();
        EXPECT_TRUE(xkbcomp.waitForFinished());
        EXPECT_EQ(xkbcomp.exitCode(), 0) << xkbcomp.readAllStandardError().toStdString();
    }

    TestClient m_client;
    QPlainTextEdit m_editor;
    RunningApplication m_target;
    QtMainQueue m_mainQueue;
    ClipboardPasteboard m_pasteboard;
    X11SyntheticKeyboard m_keyboard{m_pasteboard, m_mainQueue};
};

TEST_F(X11SyntheticKeyboardTest, PastesWithControlV)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("你好, world 😀")));
    EXPECT_EQ(paste(m_target), KeyPosting::Done);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("你好, world 😀"))) << text().toStdString();
    EXPECT_EQ(reception(), PasteReception::Fetched);
}

TEST_F(X11SyntheticKeyboardTest, AProgramThatDoesNothingAboutAPasteIgnoresIt)
{
    QWidget picture;
    const RunningApplication target = inFront(picture);
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("unwanted")));
    EXPECT_EQ(paste(target), KeyPosting::Done);
    EXPECT_TRUE(eventuallyReceives(PasteReception::Ignored));
}

TEST_F(X11SyntheticKeyboardTest, WhatAnotherProgramFetchesAfterTheShortcutIsFetchedElsewhere)
{
    QWidget picture;
    const RunningApplication target = inFront(picture);
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("for the collector")));
    EXPECT_EQ(fetchElsewhere(), "for the collector");
    EXPECT_EQ(paste(target), KeyPosting::Done);
    EXPECT_TRUE(eventuallyReceives(PasteReception::Ignored));
    EXPECT_EQ(fetchElsewhere(), "for the collector");
    EXPECT_EQ(reception(), PasteReception::FetchedElsewhere);
}

TEST_F(X11SyntheticKeyboardTest, AClipboardThatAnotherProgramTookIsTakenBackForThePaste)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("ours")));
    ClipboardPasteboard other;
    ASSERT_TRUE(other.setString(QStringLiteral("theirs")));
    EXPECT_EQ(paste(m_target), KeyPosting::Done);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("ours"))) << text().toStdString();
}

TEST_F(X11SyntheticKeyboardTest, ABusyProgramIsWaitedForAndGetsTheTextOnce)
{
    OtherProgram program(QStringLiteral(TAVRIN_TEST_EDITOR));
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("once")));
    program.pause();
    EXPECT_EQ(paste(program.application()), KeyPosting::Done);
    EXPECT_EQ(reception(), PasteReception::Waiting);
    program.resume();
    EXPECT_TRUE(eventuallyReceives(PasteReception::Fetched));
    EXPECT_TRUE(TestClient::eventually([&] { return program.text() == u"once"; }));
    EXPECT_EQ(type(QStringLiteral("once"), program.application()), KeyPosting::Fetched);
    EXPECT_EQ(program.text(), QStringLiteral("once"));
}

TEST_F(X11SyntheticKeyboardTest, APasteThatComesLateBringsNothingBesideTheTypedText)
{
    OtherProgram program(QStringLiteral(TAVRIN_TEST_EDITOR));
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("twice?")));
    program.pause();
    EXPECT_EQ(paste(program.application()), KeyPosting::Done);
    // Characters of the keyboard's own need no answer of the program before they go out.
    std::optional<KeyPosting> posting;
    m_keyboard.postUnicodeText(
        {QStringLiteral("twice?")}, program.application(), [&](KeyPosting end) { posting = end; });
    EXPECT_FALSE(TestClient::eventually(
        [&] { return posting.has_value(); }, std::chrono::milliseconds(300)));
    program.resume();
    EXPECT_TRUE(TestClient::eventually([&] { return posting.has_value(); }));
    EXPECT_EQ(posting, KeyPosting::Done);
    EXPECT_TRUE(TestClient::eventually([&] { return program.text() == u"twice?"; }));
    // And afterwards it may paste again.
    EXPECT_EQ(paste(program.application()), KeyPosting::Done);
    EXPECT_TRUE(TestClient::eventually([&] { return program.text() == u"twice?twice?"; }));
}

TEST_F(X11SyntheticKeyboardTest, WhatIsTypedIntoAProgramThatHangsIsThereOnceItGoesOn)
{
    OtherProgram program(QStringLiteral(TAVRIN_TEST_EDITOR));
    program.pause();
    EXPECT_EQ(type(QStringLiteral("plain"), program.application()), KeyPosting::Unanswered);
    program.resume();
    EXPECT_TRUE(TestClient::eventually([&] { return program.text() == u"plain"; }));
}

TEST_F(X11SyntheticKeyboardTest, TheMapStaysUntilAProgramThatHungHasTakenItsKeys)
{
    const auto before = emptyCodes();
    OtherProgram program(QStringLiteral(TAVRIN_TEST_EDITOR));
    const QString text = QStringLiteral("大Ａ").repeated(500);
    std::optional<KeyPosting> posting;
    m_keyboard.postUnicodeText(
        {text}, program.application(), [&](KeyPosting end) { posting = end; });
    ASSERT_TRUE(TestClient::eventually([&] { return !program.text().isEmpty(); }));
    program.pause();
    ASSERT_TRUE(
        TestClient::eventually([&] { return posting.has_value(); }, std::chrono::seconds(20)));
    EXPECT_EQ(posting, KeyPosting::Unanswered);
    EXPECT_NE(emptyCodes(), before);
    program.resume();
    EXPECT_TRUE(TestClient::eventually([&] { return program.text() == text; }));
    EXPECT_TRUE(TestClient::eventually([&] { return emptyCodes() == before; }));
}

TEST_F(X11SyntheticKeyboardTest, AModifierThatStaysDownLetsNothingOut)
{
    const TestLayouts layouts({QStringLiteral("us")});
    keepLeftControlDownOncePressed();
    const auto control = KeyboardMap::read(m_client.connection()).codeOf(keysyms::leftControl);
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("unwanted")));
    m_client.pressKey(*control);
    EXPECT_EQ(paste(m_target), KeyPosting::Refused);
    EXPECT_EQ(type(QStringLiteral("unwanted"), m_target), KeyPosting::Refused);
    m_client.pressKey(*control);
    m_client.releaseKey(*control);
    EXPECT_EQ(type(QStringLiteral("wanted"), m_target), KeyPosting::Done);
    EXPECT_EQ(text(), u"wanted"); // What was refused does not come late.
}

TEST_F(X11SyntheticKeyboardTest, AShortcutOfManyKeysArrivesInEveryLayout)
{
    m_target.bundleIdentifier = QStringLiteral("gvim");
    for (const auto& layout :
        {QStringLiteral("us"), QStringLiteral("de"), QStringLiteral("fr"), QStringLiteral("ru")}) {
        const TestLayouts layouts({layout});
        m_editor.clear();
        EXPECT_EQ(paste(m_target), KeyPosting::Done);
        // To this editor the first two mean nothing.
        EXPECT_TRUE(eventuallyReads(QStringLiteral("\"+gP")))
            << layout.toStdString() << ": " << text().toStdString();
    }
}

TEST_F(X11SyntheticKeyboardTest, TheTitleTellsWhatTheProgramShows)
{
    m_target.bundleIdentifier = QStringLiteral("gvim");
    m_editor.setWindowTitle(QStringLiteral("!bash [运行中] - VIM"));
    EXPECT_EQ(paste(m_target), KeyPosting::Done);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("\"+"))) << text().toStdString();
}

TEST_F(X11SyntheticKeyboardTest, TypesCharactersOfEveryKind)
{
    const QString mixed = QStringLiteral(
        "Hello, 世界! ÀÉ ß € «x» 😀👍🏽 Ωж\nline two\t{a}[b]~^`\"'");
    EXPECT_EQ(type(mixed, m_target), KeyPosting::Done);
    EXPECT_EQ(text(), mixed); // The program has taken all of it by then.
}

TEST_F(X11SyntheticKeyboardTest, TypesMoreDifferentCharactersThanThereAreSpareKeys)
{
    const auto before = emptyCodes();
    QString many;
    for (char16_t unit = 0x4e00; unit < 0x4e00 + 200; ++unit)
        many += QChar(unit);
    EXPECT_EQ(type(many, m_target), KeyPosting::Done);
    EXPECT_TRUE(eventuallyReads(many)) << text().toStdString();
    EXPECT_TRUE(TestClient::eventually([&] { return emptyCodes() == before; }));
    EXPECT_TRUE(TestClient::eventually([] {
        return !QFile::exists(SpareCodes::fileOf(X11SyntheticKeyboard::stateFile(), thisProcess()));
    }));
}

TEST_F(X11SyntheticKeyboardTest, KeysOfManyLayoutsStayAsTheyAre)
{
    const TestLayouts layouts({QStringLiteral("us,ru,gr,de")});
    const QByteArray before = wholeMap();
    ASSERT_TRUE(before.contains("Group4"));

    QString many;
    for (char16_t unit = 0x4e00; unit < 0x4e00 + 100; ++unit)
        many += QChar(unit);
    EXPECT_EQ(type(many, m_target), KeyPosting::Done);

    EXPECT_TRUE(eventuallyReads(many)) << text().toStdString();
    EXPECT_TRUE(TestClient::eventually([&] { return wholeMap() == before; }));
}

TEST_F(X11SyntheticKeyboardTest, TypesInTheOrderOfTheCalls)
{
    int posted = 0;
    const auto count = [&](KeyPosting) { ++posted; };
    m_keyboard.postUnicodeText({QStringLiteral("一二"), QStringLiteral("三")}, m_target, count);
    m_keyboard.postUnicodeText({QStringLiteral("four")}, m_target, count);
    EXPECT_TRUE(TestClient::eventually([&] { return posted == 2; }));
    EXPECT_TRUE(eventuallyReads(QStringLiteral("一二三four"))) << text().toStdString();
}

TEST_F(X11SyntheticKeyboardTest, HeldModifiersAreReleasedBeforeTyping)
{
    // With Control held, letters are commands.
    const auto control = KeyboardMap::read(m_client.connection()).codeOf(keysyms::leftControl);
    m_client.pressKey(*control);
    EXPECT_EQ(type(QStringLiteral("plain"), m_target), KeyPosting::Done);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("plain"))) << text().toStdString();
    m_client.releaseKey(*control);
}

TEST_F(X11SyntheticKeyboardTest, HeldModifiersAreReleasedBeforeAPaste)
{
    const auto alt = KeyboardMap::read(m_client.connection()).codeOf(keysyms::leftAlt);
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("pasted")));
    m_client.pressKey(*alt);
    EXPECT_EQ(paste(m_target), KeyPosting::Done);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("pasted"))) << text().toStdString();
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
    ASSERT_TRUE(isInFront(window));
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

TEST_F(X11SyntheticKeyboardTest, NothingGoesIntoAnotherProgram)
{
    RunningApplication other = m_target;
    other.processIdentifier = 1;
    other.window = 1;
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("secret")));
    EXPECT_EQ(paste(other), KeyPosting::Refused);
    EXPECT_EQ(type(QStringLiteral("secret"), other), KeyPosting::Refused);
    EXPECT_EQ(type(QStringLiteral("mine"), m_target), KeyPosting::Done);
    EXPECT_TRUE(eventuallyReads(QStringLiteral("mine"))) << text().toStdString();
}

TEST_F(X11SyntheticKeyboardTest, NothingGoesIntoAnotherWindowOfTheProgram)
{
    QPlainTextEdit other;
    other.show();
    ASSERT_TRUE(isInFront(other));
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("secret")));
    EXPECT_EQ(paste(m_target), KeyPosting::Refused);
    EXPECT_EQ(type(QStringLiteral("secret"), m_target), KeyPosting::Refused);
    RunningApplication second = m_target;
    second.window = other.winId();
    EXPECT_EQ(type(QStringLiteral("mine"), second), KeyPosting::Done);
    EXPECT_EQ(other.toPlainText(), QStringLiteral("mine"));
    EXPECT_EQ(text(), QString());
}

TEST_F(X11SyntheticKeyboardTest, NothingIsPressedWhileAnotherProgramHoldsTheFocusItself)
{
    // A menu or a lock takes the focus without the window manager's knowledge.
    OtherProgram menu(QStringLiteral(TAVRIN_TEST_EDITOR), {QStringLiteral("--unmanaged")});
    ASSERT_TRUE(TestClient::eventually([&] { return menu.window() != XCB_WINDOW_NONE; }));
    xcb_connection_t* const server = m_client.connection().get();
    xcb_set_input_focus(server, XCB_INPUT_FOCUS_PARENT, menu.window(), XCB_CURRENT_TIME);
    xcb_flush(server);
    // The window manager tells of the focus late: here it is made to tell the old one for long.
    TestClient::eventually(
        [&] { return m_client.activeWindow() != m_editor.winId(); }, std::chrono::seconds(1));
    m_client.setProperty(
        m_client.connection().root(), "_NET_ACTIVE_WINDOW", static_cast<quint32>(m_editor.winId()));
    ASSERT_EQ(m_client.activeWindow(), m_editor.winId());
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("secret")));
    EXPECT_EQ(paste(m_target), KeyPosting::Refused);
    EXPECT_EQ(type(QStringLiteral("secret"), m_target), KeyPosting::Refused);
    EXPECT_EQ(menu.text(), QString());
    EXPECT_EQ(text(), QString());
}

TEST_F(X11SyntheticKeyboardTest, StopsWhenAnotherWindowTakesTheKeyboard)
{
    const auto before = emptyCodes();
    const QString endless = QStringLiteral("字").repeated(3000);
    std::optional<KeyPosting> posting;
    m_keyboard.postUnicodeText({endless}, m_target, [&](KeyPosting end) { posting = end; });
    ASSERT_TRUE(TestClient::eventually([this] { return text().size() > 20; }));
    EXPECT_FALSE(posting.has_value());
    QPlainTextEdit other;
    other.show();
    ASSERT_TRUE(isInFront(other));
    EXPECT_TRUE(TestClient::eventually([&] { return emptyCodes() == before; }));
    EXPECT_TRUE(TestClient::eventually([&] { return posting.has_value(); }));
    EXPECT_EQ(posting, KeyPosting::Broken);
    EXPECT_LT(text().size(), endless.size());
    EXPECT_EQ(other.toPlainText(), QString());
}

TEST_F(X11SyntheticKeyboardTest, TypingGoesOnWhenAPartOfTheWindowTakesTheKeyboard)
{
    // As programs of GTK do it some time after their window has become the active one.
    xcb_connection_t* server = m_client.connection().get();
    const xcb_window_t window =
        m_client.createWindow("bare", "Bare", static_cast<quint32>(::getpid()));
    const quint32 keys = XCB_EVENT_MASK_KEY_PRESS;
    xcb_change_window_attributes(server, window, XCB_CW_EVENT_MASK, &keys);
    const xcb_window_t part = xcb_generate_id(server);
    xcb_create_window(server, XCB_COPY_FROM_PARENT, part, window, 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &keys);
    xcb_map_window(server, part);
    xcb_flush(server);
    m_target.window = window;
    std::optional<KeyPosting> posting;
    m_keyboard.postUnicodeText(
        {QStringLiteral("a").repeated(400)}, m_target, [&](KeyPosting end) { posting = end; });

    int presses = 0;
    const auto countPresses = [&] {
        while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(server)})
            presses += (event->response_type & 0x7f) == XCB_KEY_PRESS ? 1 : 0;
        return presses;
    };
    ASSERT_TRUE(TestClient::eventually([&] { return countPresses() > 20; }));
    xcb_set_input_focus(server, XCB_INPUT_FOCUS_PARENT, part, XCB_CURRENT_TIME);
    xcb_flush(server);
    EXPECT_TRUE(TestClient::eventually([&] { return posting.has_value(); }));
    EXPECT_EQ(posting, KeyPosting::Done);
    EXPECT_TRUE(TestClient::eventually([&] { return countPresses() == 400; })) << presses;
    m_client.destroyWindow(window);
}

TEST_F(X11SyntheticKeyboardTest, CancellingLeavesNoKeyPressedOrRemapped)
{
    const auto before = emptyCodes();
    std::optional<KeyPosting> posting;
    m_keyboard.postUnicodeText(
        {QStringLiteral("大Ａ").repeated(2000)}, m_target, [&](KeyPosting end) { posting = end; });
    ASSERT_TRUE(TestClient::eventually([this] { return text().size() > 20; }));
    m_keyboard.cancelTyping();
    EXPECT_TRUE(TestClient::eventually([&] { return posting.has_value(); }));
    EXPECT_EQ(posting, KeyPosting::Broken);
    EXPECT_TRUE(TestClient::eventually([&] { return emptyCodes() == before; }));
    EXPECT_LT(text().size(), 4000);
    const XcbPointer<xcb_query_keymap_reply_t> keys(xcb_query_keymap_reply(
        m_client.connection().get(), xcb_query_keymap(m_client.connection().get()), nullptr));
    for (const quint8 eight : keys->keys)
        EXPECT_EQ(eight, 0);
}

/// What a process has lent that is not this one.
class LentCodesTest : public X11SyntheticKeyboardTest {
protected:
    const std::vector<xcb_keycode_t> before = emptyCodes();
    const QString stateFile = X11SyntheticKeyboard::stateFile();

    /// @p owner lends two codes, and gives none back.
    void lend(const ProcessIdentity& owner)
    {
        ASSERT_GE(before.size(), 2U);
        SpareCodes other(m_client.connection(), stateFile, owner);
        other.assign({{before[0], 0x0100'4e00, 0x0100'4e01}, {before[1], 0x0100'4e02, 0}});
        ASSERT_NE(emptyCodes(), before);
    }

    void recover() { SpareCodes(m_client.connection(), stateFile).recover(); }

    /// As somebody else would, without a note.
    void assign(const CodeAssignment& code)
    {
        SpareCodes(m_client.connection(), QString()).assign({code});
    }
};

TEST_F(LentCodesTest, WhatACrashLeftBehindIsPutBackByTheNextStart)
{
    constexpr ProcessIdentity gone{4'000'000, 1};
    lend(gone);
    // Nobody has to type for it.
    const X11SyntheticKeyboard next(m_pasteboard, m_mainQueue, Seconds(0.05));
    EXPECT_TRUE(TestClient::eventually([&] { return emptyCodes() == before; }));
    EXPECT_TRUE(TestClient::eventually(
        [&] { return !QFile::exists(SpareCodes::fileOf(stateFile, gone)); }));
}

TEST_F(LentCodesTest, WhatALivingProcessHasLentIsLeftAlone)
{
    const ProcessIdentity alive = *processWithNumber(::getppid());
    lend(alive);
    const auto lent = emptyCodes();
    recover();
    EXPECT_EQ(emptyCodes(), lent);
    EXPECT_TRUE(QFile::exists(SpareCodes::fileOf(stateFile, alive)));

    // Its number, given to another process since.
    QFile::remove(SpareCodes::fileOf(stateFile, alive));
    lend({alive.number, alive.birth + 1});
    recover();
    EXPECT_EQ(emptyCodes(), before);
}

TEST_F(LentCodesTest, ACodeThatSomebodyElseHasTakenSinceIsLeftToThem)
{
    lend({4'000'000, 1});
    assign({before[1], 0x0100'5000, 0x0100'5001});
    recover();
    EXPECT_EQ(emptyCodes().size(), before.size() - 1);
    assign({before[1], 0, 0});
    EXPECT_EQ(emptyCodes(), before);
}

} // namespace
} // namespace tavrin::testing
