// The status item in a tray of the newer kind, which draws item and menu itself and speaks D-Bus.

#include "support/QtPrinters.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

constexpr int patience = 20'000; // Milliseconds; the machine may be busy.

bool eventually(const std::function<bool()>& condition)
{
    QElapsedTimer waited;
    waited.start();
    while (!condition() && waited.elapsed() < patience)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    return condition();
}

/// Says that there is a tray, and takes the items that announce themselves.
class Watcher final : public QDBusVirtualObject {
public:
    QStringList items; ///< The bus names of those who announced one.

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const QVariantMap properties{{u"IsStatusNotifierHostRegistered"_s, true},
            {u"ProtocolVersion"_s, 0}, {u"RegisteredStatusNotifierItems"_s, items}};
        if (message.member() == "RegisterStatusNotifierItem"_L1) {
            items.append(message.service());
            return connection.send(message.createReply());
        }
        if (message.member() == "Get"_L1) {
            const QVariant value = properties.value(message.arguments().value(1).toString());
            return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
        }
        return message.member() == "GetAll"_L1
            && connection.send(message.createReply(QVariant(properties)));
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override
    {
        return uR"(<interface name="org.kde.StatusNotifierWatcher">
            <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
            <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
            <property name="ProtocolVersion" type="i" access="read"/>
            <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
            </interface>)"_s;
    }
};

struct MenuItem {
    int id = 0;
    QString label;
    bool isMenu = false;
};

class TrayTest : public ::testing::Test {
protected:
    /// What stands in the preferences besides, as members of a JSON object.
    [[nodiscard]] virtual QByteArray moreSettings() const { return {}; }

    void SetUp() override
    {
        ASSERT_TRUE(m_bus.registerVirtualObject(u"/StatusNotifierWatcher"_s, &m_watcher));
        ASSERT_TRUE(m_bus.registerService(u"org.kde.StatusNotifierWatcher"_s));
        ASSERT_TRUE(QDir(m_folder.path()).mkpath(u"config/Tavrin"_s));
        QFile preferences(m_folder.filePath(u"config/Tavrin/preferences.json"_s));
        ASSERT_TRUE(preferences.open(QIODevice::WriteOnly));
        preferences.write(R"({"interfaceLanguage": "en", "tavrinBetaOnboardingSeen": true,)"
                          R"( "cloudAccessToken": "access", "cloudRefreshToken": "refresh",)"
                          R"( "tavrinLastUpdateCheckAt": )"
            + QByteArray::number(QDateTime::currentSecsSinceEpoch()) + moreSettings() + '}');
        preferences.close();

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.filePath(u"config"_s));
        environment.insert(u"XDG_DATA_HOME"_s, m_folder.filePath(u"data"_s));
        environment.insert(u"TMPDIR"_s, m_folder.path()); // Where a recording is left behind.
        m_program.setProcessEnvironment(environment);
        m_program.setProcessChannelMode(QProcess::ForwardedChannels);
        m_program.start(QStringLiteral(TAVRIN_PROGRAM), QStringList());
        ASSERT_TRUE(eventually([this] { return !m_watcher.items.isEmpty(); }));
    }

    void TearDown() override
    {
        m_program.kill();
        m_program.waitForFinished();
        m_bus.unregisterService(u"org.kde.StatusNotifierWatcher"_s);
    }

    /// Calls the item without keeping it from calling back.
    [[nodiscard]] QVariant ask(const QString& path, const QString& interface, const QString& method,
        const QVariantList& arguments)
    {
        QDBusMessage call =
            QDBusMessage::createMethodCall(m_watcher.items.first(), path, interface, method);
        call.setArguments(arguments);
        const QDBusPendingCall answer = m_bus.asyncCall(call);
        EXPECT_TRUE(eventually([&] { return answer.isFinished(); }));
        EXPECT_FALSE(answer.isError()) << answer.error().message().toStdString();
        return answer.reply().arguments().value(method == "GetLayout"_L1 ? 1 : 0);
    }

    [[nodiscard]] QVariant property(const QString& name)
    {
        const QVariant answer = ask(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s,
            u"Get"_s, {u"org.kde.StatusNotifierItem"_s, name});
        return qvariant_cast<QDBusVariant>(answer).variant();
    }

    /// The pixels of the first size that the icon comes in.
    [[nodiscard]] QByteArray icon()
    {
        const auto icons = qvariant_cast<QDBusArgument>(property(u"IconPixmap"_s));
        int width = 0;
        int height = 0;
        QByteArray pixels;
        icons.beginArray();
        if (icons.atEnd())
            return {};
        icons.beginStructure();
        icons >> width >> height >> pixels;
        icons.endStructure();
        icons.endArray();
        EXPECT_EQ(pixels.size(), qsizetype{width} * height * 4);
        return pixels;
    }

    /// How many menus of the program are open: windows that the window manager leaves alone.
    [[nodiscard]] static int openMenus()
    {
        int open = 0;
        for (const QByteArray& line : xwininfo({u"-root"_s, u"-tree"_s}).split('\n')) {
            if (!line.contains("\"tavrin\""))
                continue;
            const QByteArray id = line.trimmed().split(' ').first();
            const QByteArray window = xwininfo({u"-id"_s, QString::fromLatin1(id)});
            open += window.contains("IsViewable") && window.contains("Redirect State: yes") ? 1 : 0;
        }
        return open;
    }

    [[nodiscard]] static QByteArray xwininfo(const QStringList& arguments)
    {
        QProcess process;
        process.start(u"xwininfo"_s, arguments);
        EXPECT_TRUE(process.waitForFinished(patience));
        return process.readAllStandardOutput();
    }

    /// The lines of the menu; a separator has no label.
    [[nodiscard]] QList<MenuItem> menu()
    {
        const QString path = qvariant_cast<QDBusObjectPath>(property(u"Menu"_s)).path();
        const auto layout = qvariant_cast<QDBusArgument>(
            ask(path, menuInterface, u"GetLayout"_s, {0, 1, QStringList()}));
        QList<MenuItem> items;
        int root = 0;
        QVariantMap properties;
        layout.beginStructure();
        layout >> root >> properties;
        layout.beginArray();
        while (!layout.atEnd()) {
            QDBusVariant child;
            layout >> child;
            const auto line = qvariant_cast<QDBusArgument>(child.variant());
            MenuItem item;
            line.beginStructure();
            line >> item.id >> properties;
            line.endStructure();
            item.label = properties.value(u"label"_s).toString().remove(u'_');
            item.isMenu = properties.value(u"children-display"_s) == u"submenu"_s;
            items.append(item);
        }
        layout.endArray();
        layout.endStructure();
        return items;
    }

    /// The line whose label begins so; number 0 when there is none.
    [[nodiscard]] MenuItem line(const QString& start)
    {
        const QList<MenuItem> items = menu();
        const auto found = std::ranges::find_if(
            items, [&](const MenuItem& item) { return item.label.startsWith(start); });
        return found == items.end() ? MenuItem() : *found;
    }

    void click(const MenuItem& item)
    {
        const QString path = qvariant_cast<QDBusObjectPath>(property(u"Menu"_s)).path();
        QDBusMessage call = QDBusMessage::createMethodCall(
            m_watcher.items.first(), path, menuInterface, u"Event"_s);
        call.setArguments({item.id, u"clicked"_s, QVariant::fromValue(QDBusVariant(u""_s)), 0U});
        m_bus.send(call);
    }

    void expectCleanEnd()
    {
        EXPECT_TRUE(eventually([this] { return m_program.state() == QProcess::NotRunning; }));
        EXPECT_EQ(m_program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(m_program.exitCode(), 0);
    }

    /// The files that it keeps for as long as a recording takes.
    [[nodiscard]] QStringList temporaryFiles() const
    {
        return QDir(m_folder.path()).entryList({u"tavrin-*"_s}, QDir::Files);
    }

    const QString menuInterface = u"com.canonical.dbusmenu"_s;

private:
    QTemporaryDir m_folder;
    QDBusConnection m_bus = QDBusConnection::sessionBus();
    Watcher m_watcher;
    QProcess m_program;
};

TEST_F(TrayTest, TheItemHasItsIconAndToolTip)
{
    EXPECT_EQ(property(u"Category"_s), u"ApplicationStatus"_s);

    const QByteArray pixels = icon();
    EXPECT_GT(pixels.size() - pixels.count('\0'), 0);

    const auto toolTip = qvariant_cast<QDBusArgument>(property(u"ToolTip"_s));
    QString iconName;
    QString title;
    toolTip.beginStructure();
    toolTip >> iconName;
    toolTip.beginArray();
    toolTip.endArray();
    toolTip >> title;
    toolTip.endStructure();
    EXPECT_EQ(title,
        u"Dictation Right Alt · Translation Ctrl+Alt+Space → English · Chat Shift+Super+Space"_s);
}

TEST_F(TrayTest, AClickOpensTheMenu)
{
    EXPECT_EQ(openMenus(), 0);
    static_cast<void>(
        ask(u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, u"Activate"_s, {5, 5}));
    EXPECT_TRUE(eventually([] { return openMenus() == 1; }));
}

TEST_F(TrayTest, WhileASessionGoesOnTheIconShowsIt)
{
    const QByteArray idle = icon();
    click(line(u"Start chat"_s));
    EXPECT_TRUE(eventually([&] { return line(u"Finish chat"_s).id != 0; }));
    const QByteArray chat = icon();
    EXPECT_NE(chat, idle);

    click(line(u"Finish chat"_s)); // Nobody has said anything.
    EXPECT_TRUE(eventually([&] { return line(u"Start dictation"_s).id != 0; }));
    EXPECT_EQ(icon(), idle);
    click(line(u"Start dictation"_s));
    EXPECT_TRUE(eventually([&] { return line(u"Chat unavailable"_s).id != 0; }));
    EXPECT_NE(icon(), idle);
    EXPECT_NE(icon(), chat);
}

TEST_F(TrayTest, TheMenuHasItsLinesAndTheyAct)
{
    const QList<MenuItem> items = menu();
    QStringList labels;
    for (const MenuItem& item : items)
        labels.append(item.isMenu ? item.label + u" >"_s : item.label);
    EXPECT_EQ(labels,
        QStringList({u"Start dictation (Right Alt)"_s,
            u"Start translation (Ctrl+Alt+Space → English)"_s, u"Start chat (Shift+Super+Space)"_s,
            u"Writing style >"_s, u"Translation target >"_s, u""_s, u"Show Tavrin"_s, u"History…"_s,
            u"Writing style settings…"_s, u"Check for updates…"_s, u"Quit Tavrin"_s}));

    ASSERT_FALSE(items.isEmpty());
    click(items.last());
    expectCleanEnd();
}

/// With a microphone of its own and other sound muted while it records.
class TrayWithSoundTest : public TrayTest {
protected:
    [[nodiscard]] QByteArray moreSettings() const override
    {
        return R"(, "muteDuringRecording": true, "preferredMicrophoneUID": "usbmic")";
    }

    void TearDown() override
    {
        TrayTest::TearDown();
        // Whatever went wrong, the next test finds the desktop as it was.
        pactl({u"set-default-source"_s, QString::fromUtf8(m_microphone)});
        pactl({u"set-sink-mute"_s, u"@DEFAULT_SINK@"_s, u"0"_s});
    }

    [[nodiscard]] static QByteArray microphone() { return pactl({u"get-default-source"_s}); }

    [[nodiscard]] static QByteArray mute()
    {
        return pactl({u"get-sink-mute"_s, u"@DEFAULT_SINK@"_s});
    }

    /// What @p arguments print, without the line's end.
    static QByteArray pactl(const QStringList& arguments)
    {
        QProcess process;
        process.start(u"pactl"_s, arguments);
        EXPECT_TRUE(process.waitForFinished(patience));
        return process.readAllStandardOutput().trimmed();
    }

    const QByteArray m_microphone = microphone();
    const QByteArray m_mute = mute();
};

TEST_F(TrayWithSoundTest, QuittingWhileRecordingLeavesTheSoundAsItWasAndNoRecording)
{
    click(line(u"Start dictation"_s));
    ASSERT_TRUE(eventually([] { return microphone() == "usbmic" && mute() == "Mute: yes"; }));
    ASSERT_FALSE(temporaryFiles().isEmpty());

    click(line(u"Quit"_s));
    expectCleanEnd();
    EXPECT_EQ(microphone(), m_microphone);
    EXPECT_EQ(mute(), m_mute);
    EXPECT_EQ(temporaryFiles(), QStringList());
}

} // namespace
} // namespace tavrin::testing
