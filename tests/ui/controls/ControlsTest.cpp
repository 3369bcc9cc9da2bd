#include "support/QtPrinters.h"
#include "ui/controls/Button.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Popup.h"
#include "ui/controls/Segments.h"
#include "ui/controls/TextField.h"
#include "ui/controls/Toggle.h"
#include "ui/style/BrandStyle.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFontMetricsF>
#include <QImage>
#include <QLabel>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

class ControlsTest : public ::testing::Test {
protected:
    QWidget page;

    ControlsTest()
    {
        page.resize(400, 300);
        brand::applyBrandControlStylesInView(page);
    }

    void show()
    {
        page.show();
        QApplication::setActiveWindow(&page);
        QApplication::processEvents();
    }

    /// The columns of the picture of @p widget, between its borders, in which something is dark.
    static QPair<int, int> inkColumns(QWidget& widget)
    {
        const QImage image = widget.grab().toImage();
        int first = image.width();
        int last = -1;
        for (int x = 3; x < image.width() - 3; ++x) {
            for (int y = 3; y < image.height() - 3; ++y) {
                if (qGray(image.pixel(x, y)) < 120) {
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
            }
        }
        return {first, last};
    }
};

TEST_F(ControlsTest, AFieldKeepsItsTextTenPointsFromBothEnds)
{
    TextField field(page, {20, 20, 300, 32}, u"Password"_s);
    field.setText(u"MMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMM"_s);
    field.setCursorPosition(0);
    const auto [first, last] = inkColumns(field);

    EXPECT_GE(first, 10);
    EXPECT_LE(first, 13);
    EXPECT_LE(last, 290);
    EXPECT_GE(last, 270);
}

TEST_F(ControlsTest, ASecureFieldStaysSecureAndKeepsItsPlaceholder)
{
    TextField field(page, {20, 20, 300, 32}, u"Password"_s, TextField::Kind::Secure);
    field.setText(u"secret"_s);

    EXPECT_EQ(field.echoMode(), QLineEdit::Password);
    EXPECT_FALSE(field.displayText().contains(u"secret"_s));
    EXPECT_EQ(field.placeholderText(), u"Password"_s);
}

TEST_F(ControlsTest, AButtonIsPressedByReturnAndSpace)
{
    Button button(page, {20, 20, 112, 36}, u"Continue"_s, Button::Look::Primary);
    int pressed = 0;
    QObject::connect(&button, &QPushButton::clicked, &page, [&] { ++pressed; });
    show();
    QTest::keyClick(&button, Qt::Key_Return);
    QTest::keyClick(&button, Qt::Key_Enter);
    QTest::keyClick(&button, Qt::Key_Space);

    EXPECT_EQ(pressed, 3);
}

TEST_F(ControlsTest, APrimaryButtonIsFilledWithTheAccentAndASecondaryIsWhite)
{
    Button primary(page, {20, 20, 112, 36}, QString(), Button::Look::Primary);
    Button secondary(page, {20, 80, 112, 36}, QString(), Button::Look::Secondary);

    EXPECT_EQ(primary.grab().toImage().pixelColor(56, 18), QColor(0x6F, 0x55, 0xF6));
    EXPECT_EQ(secondary.grab().toImage().pixelColor(56, 18), QColor(Qt::white));
    EXPECT_EQ(secondary.grab().toImage().pixelColor(56, 0), QColor(0xE8, 0xE2, 0xD2));
}

TEST_F(ControlsTest, ADoneButtonSaysSoToScreenReadersToo)
{
    Button button(page, u"Copy"_s, Button::Look::Plain);
    button.setDoneText(u"✓ Copied"_s);
    EXPECT_EQ(button.accessibleName(), u"✓ Copied"_s);

    button.setDoneText({});
    EXPECT_EQ(button.accessibleName(), QString());
}

TEST_F(ControlsTest, APopupShowsItsListWithoutReportingAChoice)
{
    Popup popup(page, {20, 20, 170, 30}, u"Retention"_s);
    QList<int> chosen;
    QObject::connect(&popup, &QComboBox::activated, &page, [&](int row) { chosen.append(row); });
    QObject::connect(
        &popup, &QComboBox::currentIndexChanged, &page, [&](int row) { chosen.append(row); });
    popup.setItems({u"7 days"_s, u"30 days"_s}, 1);

    EXPECT_EQ(popup.currentText(), u"30 days"_s);
    EXPECT_EQ(popup.accessibleName(), u"Retention"_s);
    EXPECT_EQ(chosen, QList<int>());
}

TEST_F(ControlsTest, APopupIsChosenFromWithTheKeyboard)
{
    Popup popup(page, {20, 100, 170, 30}, u"Retention"_s);
    popup.setItems({u"7 days"_s, u"30 days"_s, u"90 days"_s}, 0);
    QList<int> chosen;
    QObject::connect(&popup, &QComboBox::activated, &page, [&](int row) { chosen.append(row); });
    show();
    popup.setFocus();
    popup.showPopup();
    QTest::keyClick(popup.view(), Qt::Key_Down);
    QTest::keyClick(popup.view(), Qt::Key_Return);

    EXPECT_EQ(chosen, QList({1}));
    EXPECT_FALSE(popup.view()->isVisible());
}

TEST_F(ControlsTest, TheListOfAPopupShowsEveryChoiceAsAWhole)
{
    Popup popup(page, {20, 100, 60, 30}, u"Shortcut"_s);
    popup.setItems({u"Not set"_s, u"Right Alt"_s, u"Control+Option+Space"_s}, 0);
    show();
    popup.showPopup();
    const QWidget& list = *popup.view()->window();
    EXPECT_EQ(list.height(), 3 * 28 + 2 * 5);
    EXPECT_EQ(list.pos(), popup.mapToGlobal(QPoint(0, 30)));
    EXPECT_EQ(popup.view()->verticalScrollBar()->maximum(), 0);
    const double text =
        QFontMetricsF(brand::tavControlFont()).horizontalAdvance(u"Control+Option+Space"_s);
    EXPECT_GE(list.width(), text + 5 + 28);
    popup.hidePopup();
}

TEST_F(ControlsTest, ALongListOfAPopupIsScrolledAndStaysOnTheScreen)
{
    Popup popup(page, {20, 20, 170, 30}, u"Language"_s);
    QStringList titles;
    for (int i = 0; i < 42; ++i)
        titles.append(u"Language %1"_s.arg(i));
    popup.setItems(titles, 0);
    const QRect screen = page.screen()->availableGeometry();
    show();
    page.move(screen.left(), screen.bottom() - page.height());
    QApplication::processEvents();
    popup.showPopup();
    const QRect list = popup.view()->window()->geometry();
    EXPECT_EQ(list.height(), 14 * 28 + 2 * 5);
    EXPECT_LE(list.bottom(), popup.mapToGlobal(QPoint()).y());
    EXPECT_GT(popup.view()->verticalScrollBar()->maximum(), 0);
    popup.hidePopup();
}

TEST_F(ControlsTest, TurningTheWheelOverAPopupChoosesNothing)
{
    Popup popup(page, {20, 20, 170, 30}, u"Retention"_s);
    popup.setItems({u"7 days"_s, u"30 days"_s}, 0);
    show();
    QWheelEvent wheel(QPointF(20, 10), popup.mapToGlobal(QPointF(20, 10)), {}, {0, -120},
        Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&popup, &wheel);

    EXPECT_EQ(popup.currentIndex(), 0);
}

TEST_F(ControlsTest, SegmentsReportWhatTheUserChoosesAndNothingElse)
{
    Segments segments(page, {20, 20, 226, 34}, {u"All"_s, u"Learned"_s, u"Manual"_s});
    QList<qsizetype> chosen;
    segments.setHandler([&](qsizetype index) { chosen.append(index); });
    segments.setSelected(2);
    EXPECT_EQ(segments.selected(), 2);
    EXPECT_EQ(chosen, QList<qsizetype>());

    segments.buttons()[1]->click();
    EXPECT_EQ(chosen, QList<qsizetype>({1}));
}

TEST_F(ControlsTest, TheArrowKeysMoveBetweenSegments)
{
    Segments segments(page, {20, 20, 226, 34}, {u"All"_s, u"Learned"_s, u"Manual"_s});
    QList<qsizetype> chosen;
    segments.setHandler([&](qsizetype index) { chosen.append(index); });
    show();
    segments.buttons()[0]->setFocus();
    QTest::keyClick(segments.buttons()[0], Qt::Key_Right);

    EXPECT_EQ(chosen, QList<qsizetype>({1}));
}

TEST_F(ControlsTest, AWholeSwitchCanBePressed)
{
    Switch control(page, {20, 20, 38, 22}, u"Mute"_s);
    show();
    QTest::mouseClick(&control, Qt::LeftButton, {}, {36, 11});

    EXPECT_TRUE(control.isChecked());
    EXPECT_EQ(control.accessibleName(), u"Mute"_s);
}

class FocusRingTest : public ControlsTest {
protected:
    Button first{page, {20, 100, 112, 36}, u"First"_s, Button::Look::Primary};
    Button second{page, {160, 100, 112, 36}, u"Second"_s, Button::Look::Secondary};
    FocusRing ring{page};

    FocusRingTest()
    {
        show();
        if (QWidget* const focused = QApplication::focusWidget())
            focused->clearFocus(); // A window that opens gives the keyboard to something.
    }
};

TEST_F(FocusRingTest, ARingFollowsTheTabKey)
{
    first.setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(ring.isVisible());
    EXPECT_EQ(ring.geometry(), first.geometry().adjusted(-4, -4, 4, 4));

    QTest::keyClick(&first, Qt::Key_Tab);
    EXPECT_EQ(ring.geometry(), second.geometry().adjusted(-4, -4, 4, 4));
}

TEST_F(FocusRingTest, APressOfTheMouseShowsNoRing)
{
    first.setFocus(Qt::TabFocusReason);
    second.setFocus(Qt::MouseFocusReason);

    EXPECT_FALSE(ring.isVisible());
}

TEST_F(FocusRingTest, TheRingGoesWithItsControl)
{
    first.setFocus(Qt::TabFocusReason);
    first.move(first.x(), first.y() + 30);
    EXPECT_EQ(ring.geometry(), first.geometry().adjusted(-4, -4, 4, 4));

    first.hide();
    EXPECT_NE(ring.geometry(), first.geometry().adjusted(-4, -4, 4, 4));
}

TEST_F(FocusRingTest, FieldsShowItThemselves)
{
    TextField field(page, {20, 20, 300, 32}, u"Name"_s);
    field.show();
    field.setFocus(Qt::TabFocusReason);

    EXPECT_FALSE(ring.isVisible());
    EXPECT_EQ(field.grab().toImage().pixelColor(150, 1), QColor(0x6F, 0x55, 0xF6));
}

} // namespace
} // namespace tavrin::ui
