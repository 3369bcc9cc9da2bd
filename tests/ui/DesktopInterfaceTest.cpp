#include "ui/DesktopInterface.h"

#include "app/menu/StatusMenu.h"
#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "support/InMemoryPreferences.h"
#include "support/InMemoryStatusItem.h"
#include "support/InMemoryWorkspace.h"
#include "support/VirtualTime.h"
#include "ui/ApplicationIcon.h"

#include <QApplication>
#include <QIcon>
#include <QImage>
#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

TEST(DesktopInterfaceTest, TheProgramsIconIsItsOwnOnceTheWindowStands)
{
    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::InMemoryStatusItem statusItem;
    const Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};
    StatusMenu statusMenu{{localization, settings, statusItem}, StatusMenu::Actions()};
    const auto windows =
        createDesktopInterface({time, localization, time, settings, statusMenu, workspace, [] {}});
    QApplication::setWindowIcon(QIcon());

    EXPECT_TRUE(windows->loadApplicationIcon());
    EXPECT_TRUE(QApplication::windowIcon().isNull());
    time.advance(0s);

    const QSize size(48, 48);
    const QImage shown = QApplication::windowIcon().pixmap(size).toImage();
    EXPECT_FALSE(shown.isNull());
    EXPECT_EQ(shown, windowIcon().pixmap(size).toImage());
    QApplication::setWindowIcon(QIcon());
}

} // namespace
} // namespace tavrin
