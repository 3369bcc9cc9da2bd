// The program's keyboard alone, for tests on a desktop: presses what it is told into a window, and
// tells which shortcuts it has recognised.
//
// usage: tavrin-test-keyboard
//
// Every line of its standard input is a JSON object: a text to "paste" or to "type", and the
// "process" and "window" that it is for.
// It prints "ready", and for every shortcut a line: "dictation" for Right Option and
// Ctrl+Alt+Space, "translation" for Left Option and Shift+Super+Space, "chat" for Alt+Space.

#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutMonitor.h"
#include "delivery/UnicodeChunks.h"
#include "platform/linux/x11/ClipboardPasteboard.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/linux/x11/keyboard/X11KeyMonitor.h"
#include "platform/linux/x11/typing/X11SyntheticKeyboard.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/qt/QtMainQueue.h"
#include "support/ports/InMemoryPreferences.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <array>
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

void printLine(const QString& line)
{
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

/// Every shortcut once, so that neighbours mean different operations.
void assignShortcuts(Preferences& preferences)
{
    preferences.setValue(
        keys::dictationShortcutIdentifiers, QStringList{u"rightOption"_s, u"controlOptionSpace"_s});
    preferences.setValue(
        keys::translationShortcutIdentifiers, QStringList{u"leftOption"_s, u"commandShiftSpace"_s});
    preferences.setValue(keys::chatShortcutIdentifiers, QStringList{u"optionSpace"_s});
}

/// Carries out what stands in lines.
class Commands {
public:
    explicit Commands(MainQueue& queue)
        : m_keyboard(m_pasteboard, queue)
    {
    }

    void add(const QByteArray& input)
    {
        m_input += input;
        for (qsizetype end = m_input.indexOf('\n'); end >= 0; end = m_input.indexOf('\n')) {
            execute(QJsonDocument::fromJson(m_input.first(end)).object());
            m_input.remove(0, end + 1);
        }
    }

    [[nodiscard]] SyntheticKeyboard& keyboard() { return m_keyboard; }

private:
    void execute(const QJsonObject& command)
    {
        const RunningApplication target{command["process"_L1].toInteger(), u"Field"_s, u"field"_s,
            static_cast<quint32>(command["window"_L1].toInteger())};
        // As before every delivery: what the program has fetched is not typed.
        const bool types =
            command.contains("type"_L1) && m_pasteboard.setString(command["type"_L1].toString());
        if (types)
            m_keyboard.postUnicodeText(
                unicodeChunks(command["type"_L1].toString()), target, tellFailure);
        else if (m_pasteboard.setString(command["paste"_L1].toString()))
            m_keyboard.postPasteShortcut({target}, tellFailure);
    }

    static void tellFailure(KeyPosting posting)
    {
        if (posting != KeyPosting::Done)
            std::fputs("The keys did not go out.\n", stderr);
    }

    QByteArray m_input;
    ClipboardPasteboard m_pasteboard;
    X11SyntheticKeyboard m_keyboard;
};

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    QtMainQueue mainQueue;
    Commands commands(mainQueue);
    testing::InMemoryPreferences preferences;
    assignShortcuts(preferences);
    X11Workspace workspace;
    const Localization localization(preferences, workspace, {});
    Settings settings(preferences, localization);
    X11KeyMonitor monitor;
    ShortcutMonitor shortcuts(monitor, mainQueue, settings,
        {[&] { commands.keyboard().coverModifierKey(); }, [] { return false; }, [] {},
            [](OperationMode mode) { printLine(operationName(mode)); }});
    shortcuts.configureHotKey();

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        std::array<char, 4096> bytes{};
        const ssize_t length = read(STDIN_FILENO, bytes.data(), bytes.size());
        if (length <= 0)
            QGuiApplication::quit();
        else
            commands.add({bytes.data(), length});
    });
    printLine(u"ready"_s);
    return QGuiApplication::exec();
}
