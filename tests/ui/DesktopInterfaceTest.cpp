#include "ui/DesktopInterface.h"

#include "ui/ProgramStage.h"
#include "ui/style/ApplicationIcon.h"

#include <QApplication>
#include <QIcon>
#include <QImage>
#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

TEST(DesktopInterfaceTest, TheProgramsIconIsItsOwnOnceTheWindowStands)
{
    testing::ProgramStage stage;
    QApplication::setWindowIcon(QIcon());
    stage.program.emplace(
        AppDelegate::Surroundings{&stage.platform, createDesktopInterface, [] {}});
    stage.program->applicationDidFinishLaunching();
    EXPECT_TRUE(QApplication::windowIcon().isNull());
    stage.time.advance(0s);

    const QSize size(48, 48);
    const QImage shown = QApplication::windowIcon().pixmap(size).toImage();
    EXPECT_FALSE(shown.isNull());
    EXPECT_EQ(shown, windowIcon().pixmap(size).toImage());
    QApplication::setWindowIcon(QIcon());
}

} // namespace
} // namespace tavrin
