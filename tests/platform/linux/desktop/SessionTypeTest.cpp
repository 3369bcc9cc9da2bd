#include "platform/linux/desktop/SessionType.h"

#include <QHash>
#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

const QString display = QStringLiteral("WAYLAND_DISPLAY");
const QString type = QStringLiteral("XDG_SESSION_TYPE");

bool isWayland(const QHash<QString, QString>& variables)
{
    return isWaylandSession([&](const QString& name) { return variables.value(name); });
}

TEST(SessionTypeTest, TheDisplayOrTheTypeTellsAWaylandSession)
{
    EXPECT_TRUE(isWayland({{display, QStringLiteral("wayland-0")}}));
    EXPECT_TRUE(isWayland({{type, QStringLiteral("wayland")}}));
    EXPECT_TRUE(isWayland({{display, QStringLiteral("wayland-1")}, {type, QStringLiteral("x11")}}));
}

TEST(SessionTypeTest, EveryOtherSessionIsNone)
{
    EXPECT_FALSE(isWayland({}));
    EXPECT_FALSE(isWayland({{display, QString()}, {type, QStringLiteral("x11")}}));
    EXPECT_FALSE(isWayland({{type, QStringLiteral("tty")}}));
}

} // namespace
} // namespace tavrin::testing
