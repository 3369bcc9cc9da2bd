#include "platform/linux/x11/TestClient.h"
#include "platform/linux/x11/X11Workspace.h"
#include "support/ChildProcess.h"
#include "support/QtPrinters.h"
#include "ui/hud/HudWidget.h"

#include <QAccessible>
#include <QApplication>
#include <QScreen>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <thread>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

using testing::ChildProcess;

/// The recording panel on a real desktop, as large as drawn and enlarged twice.
class PanelTest : public ::testing::TestWithParam<int> {
protected:
    const int scale = GetParam();
    testing::TestClient client;
    std::optional<QApplication> application; // One for each test: it reads the screens once.
    std::optional<X11Workspace> workspace;
    std::optional<hud::Widget> panel;

    /// Whether the condition holds within ten seconds. Other programs' doings make no event here.
    static bool waitUntil(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!condition() && std::chrono::steady_clock::now() < deadline) {
            QApplication::processEvents();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return condition();
    }

    void start()
    {
        qputenv("QT_SCALE_FACTOR", QByteArray::number(scale));
        application.emplace(m_count, m_arguments.data());
        workspace.emplace();
        panel.emplace(*workspace);
    }

    void TearDown() override
    {
        panel.reset();
        application.reset();
        for (const QString& monitor : m_monitors)
            ChildProcess(u"xrandr"_s, {u"--delmonitor"_s, monitor}).wait();
    }

    /// Two screens side by side, each half as wide as the one there is.
    void splitScreen()
    {
        const auto* const whole =
            xcb_setup_roots_iterator(xcb_get_setup(client.connection().get())).data;
        m_half = whole->width_in_pixels / 2;
        const QString format = u"%1/100x%2/100+%3+0"_s;
        addMonitor(u"left"_s, format.arg(m_half).arg(whole->height_in_pixels).arg(0), u"screen"_s);
        addMonitor(
            u"right"_s, format.arg(m_half).arg(whole->height_in_pixels).arg(m_half), u"none"_s);
    }

    [[nodiscard]] int half() const { return m_half; }

    [[nodiscard]] int middleOf(int screen) const { return screen * m_half + m_half / 2; }

    /// Another program's window, in front, with its left edge at @p x.
    xcb_window_t windowAt(int x)
    {
        const xcb_window_t window = client.createWindow("editor", "Editor", 1);
        const auto place = static_cast<quint32>(x);
        xcb_configure_window(client.connection().get(), window, XCB_CONFIG_WINDOW_X, &place);
        xcb_flush(client.connection().get());
        EXPECT_TRUE(waitUntil([&] { return pixels(window).x() >= x; }));
        return window;
    }

    void putPointerAt(int x)
    {
        xcb_warp_pointer(client.connection().get(), XCB_NONE, client.connection().root(), 0, 0, 0,
            0, static_cast<qint16>(x), 300);
        xcb_flush(client.connection().get());
        ASSERT_TRUE(waitUntil([&] { return QCursor::pos().x() / half() == x / half(); }));
    }

    void show()
    {
        panel->positionAndShow();
        ASSERT_TRUE(waitUntil([&] { return isOnDisplay(); }));
        QApplication::processEvents();
    }

    [[nodiscard]] xcb_window_t id() const { return static_cast<xcb_window_t>(panel->winId()); }

    [[nodiscard]] bool isOnDisplay() const
    {
        const auto attributes = attributesOfPanel();
        return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    [[nodiscard]] XcbPointer<xcb_get_window_attributes_reply_t> attributesOfPanel() const
    {
        xcb_connection_t* server = client.connection().get();
        return XcbPointer<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes_reply(
            server, xcb_get_window_attributes(server, id()), nullptr));
    }

    /// Where a window stands, in pixels of the whole desktop.
    [[nodiscard]] QRect pixels(xcb_window_t window) const
    {
        xcb_connection_t* server = client.connection().get();
        const XcbPointer<xcb_get_geometry_reply_t> size(
            xcb_get_geometry_reply(server, xcb_get_geometry(server, window), nullptr));
        const XcbPointer<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
            server, xcb_translate_coordinates(server, window, client.connection().root(), 0, 0),
            nullptr));
        return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height)
                             : QRect();
    }

    [[nodiscard]] xcb_window_t focus() const
    {
        xcb_connection_t* server = client.connection().get();
        const XcbPointer<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
        return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
    }

    [[nodiscard]] QList<quint32> ofDesktop(const char* property) const
    {
        return client.connection().numbers(
            client.connection().root(), client.connection().atom(property));
    }

    /// The colour on the screen, @p offset away from the panel's upper left corner.
    [[nodiscard]] QColor seenAt(QPoint offset) const
    {
        const QPixmap all = panel->screen()->grabWindow(0);
        return all.toImage().pixelColor((panel->pos() + offset) * scale);
    }

private:
    void addMonitor(const QString& name, const QString& place, const QString& output)
    {
        ASSERT_EQ(ChildProcess(u"xrandr"_s, {u"--setmonitor"_s, name, place, output}).wait(), 0);
        m_monitors.append(name);
    }

    int m_half = 1;
    QStringList m_monitors;
    int m_count = 1;
    QByteArray m_name = "panel";
    std::array<char*, 2> m_arguments{m_name.data(), nullptr};
};

int accessibleEvents = 0;

void countEvent(QAccessibleEvent* event)
{
    accessibleEvents += event->type() == QAccessible::NameChanged
            || event->type() == QAccessible::DescriptionChanged
        ? 1
        : 0;
}

TEST_P(PanelTest, OnlyTextsThatChangeAreToldToAccessibility)
{
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    start();
    qunsetenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON");
    ASSERT_TRUE(waitUntil([] { return QAccessible::isActive(); }));
    hud::Content content;
    content.titleLabel = u"Listening"_s;
    content.detailLabel = u"Press the key again"_s;
    panel->setContent(content);

    accessibleEvents = 0;
    const auto before = QAccessible::installUpdateHandler(countEvent);
    content.lightX = 7;
    panel->setContent(content);
    EXPECT_EQ(accessibleEvents, 0);
    content.titleLabel = u"Editing"_s;
    content.detailLabel = u"A moment"_s;
    panel->setContent(content);
    EXPECT_EQ(accessibleEvents, 2);
    QAccessible::installUpdateHandler(before);
}

TEST_P(PanelTest, ItIsAboveAllAndNobodyButTheEyeNoticesIt)
{
    start();
    const xcb_window_t editor = client.createWindow("editor", "Editor", 1);
    ASSERT_TRUE(waitUntil([&] { return focus() == editor; }));

    show();

    EXPECT_EQ(client.activeWindow(), editor);
    EXPECT_EQ(focus(), editor);
    EXPECT_FALSE(ofDesktop("_NET_CLIENT_LIST").contains(id())); // What task lists show.
    EXPECT_TRUE(attributesOfPanel()->override_redirect); // No manager ever gives it the keyboard.
    xcb_connection_t* server = client.connection().get();
    const XcbPointer<xcb_query_tree_reply_t> stack(
        xcb_query_tree_reply(server, xcb_query_tree(server, client.connection().root()), nullptr));
    const std::span all(xcb_query_tree_children(stack.get()), stack->children_len);
    EXPECT_EQ(all.back(), id());
}

TEST_P(PanelTest, ItStaysWhenTheUserGoesToAnotherDesktop)
{
    start();
    show();
    ASSERT_GT(ofDesktop("_NET_NUMBER_OF_DESKTOPS").value(0), 1U);
    const auto goTo = [&](quint32 desktop) {
        client.connection().sendToManager(client.connection().root(),
            client.connection().atom("_NET_CURRENT_DESKTOP"), {desktop, XCB_CURRENT_TIME, 0, 0, 0});
        EXPECT_TRUE(
            waitUntil([&] { return ofDesktop("_NET_CURRENT_DESKTOP").value(0) == desktop; }));
    };

    goTo(1);
    EXPECT_TRUE(isOnDisplay());
    goTo(0);
}

TEST_P(PanelTest, ItStandsOnTheScreenOfTheWindowInFront)
{
    splitScreen();
    start();
    ASSERT_EQ(QApplication::screens().size(), 2);
    putPointerAt(100);
    static_cast<void>(windowAt(half() + 100));

    show();

    const QRect shown = pixels(id());
    EXPECT_EQ(shown.size(), QSize(430, 145) * scale);
    EXPECT_NEAR(shown.center().x(), middleOf(1), scale);
    const int height = QApplication::screens().at(1)->geometry().height() * scale;
    EXPECT_NEAR(shown.bottom() + 1, height - 54 * scale, scale);

    putPointerAt(half() + 100);
    static_cast<void>(windowAt(50));
    show();
    EXPECT_NEAR(pixels(id()).center().x(), middleOf(0), scale);
}

TEST_P(PanelTest, WithoutAWindowInFrontItStandsOnTheScreenOfThePointer)
{
    splitScreen();
    start();
    ASSERT_EQ(workspace->frontmostPoint(), std::nullopt);

    for (const int screen : {1, 0}) {
        putPointerAt(screen * half() + 100);
        show();
        EXPECT_NEAR(pixels(id()).center().x(), middleOf(screen), scale);
    }
}

TEST_P(PanelTest, ItsCornersShowWhatIsBehindWithAndWithoutACompositor)
{
    start();
    QWidget ground;
    ground.setWindowFlag(Qt::X11BypassWindowManagerHint);
    ground.setStyleSheet(u"background: #ffffff"_s);
    ground.setGeometry(QApplication::primaryScreen()->geometry());
    ground.show();
    const auto looksRight = [&] {
        return seenAt({1, 1}).lightness() > 230 && seenAt({428, 143}).lightness() > 230
            && seenAt({215, 10}).lightness() < 60 && seenAt({2, 72}).lightness() < 90;
    };

    ASSERT_FALSE(workspace->isCompositing());
    show();
    EXPECT_TRUE(waitUntil(looksRight));
    panel->orderOut();

    const ChildProcess compositor(
        u"picom"_s, {u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s});
    ASSERT_TRUE(waitUntil([&] { return workspace->isCompositing(); }));
    show();
    EXPECT_TRUE(waitUntil(looksRight));
}

INSTANTIATE_TEST_SUITE_P(Times, PanelTest, ::testing::Values(1, 2),
    [](const auto& scale) { return scale.param == 1 ? "One" : "Two"; });

} // namespace
} // namespace tavrin
