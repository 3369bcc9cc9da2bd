// What holds for every page of the main window, in every language.

#include "support/QtPrinters.h"
#include "ui/ProgramStage.h"
#include "ui/controls/Label.h"
#include "ui/controls/Page.h"

#include <QAccessible>
#include <QApplication>
#include <QRadioButton>
#include <QSet>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

struct Case {
    const char* language;
    SettingsPage page;

    friend void PrintTo(const Case& shown, std::ostream* out)
    {
        *out << shown.language << ", page " << static_cast<int>(shown.page);
    }
};

class EveryPageTest : public ::testing::TestWithParam<Case> {
protected:
    testing::ProgramStage stage;

    void SetUp() override
    {
        stage.preferences->setValue(
            u"interfaceLanguage"_s, QString::fromLatin1(GetParam().language));
        stage.devices->addMicrophone(1, u"Built-in Audio"_s, u"built-in"_s);
        stage.launch();
        stage.select(GetParam().page);
        QApplication::setActiveWindow(stage.window());
    }

    /// The controls in sight that the keyboard is to reach.
    [[nodiscard]] QList<QWidget*> controls() const
    {
        QList<QWidget*> result;
        for (QWidget* const widget : stage.children<QWidget>()) {
            const bool isUnchosen = qobject_cast<QRadioButton*>(widget)
                && !static_cast<QRadioButton*>(widget)->isChecked();
            if (widget->isVisible() && widget->isEnabled() && !widget->focusProxy() && !isUnchosen
                && (widget->focusPolicy() & Qt::TabFocus) != 0)
                result.append(widget);
        }
        return result;
    }
};

TEST_P(EveryPageTest, IsShownWithItsButtonChosen)
{
    const auto* const page = stage.visibleChild<ui::Page>();

    ASSERT_TRUE(page);
    EXPECT_FALSE(page->accessibleName().isEmpty());
    EXPECT_EQ(page->geometry(), QRect(190, 0, 610, 640));
    EXPECT_TRUE(stage.sidebarButton(GetParam().page)->isChecked());
}

TEST_P(EveryPageTest, TellsScreenReadersTheNameOfEveryControl)
{
    for (QWidget* const control : controls()) {
        QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(control);
        ASSERT_TRUE(seen);
        EXPECT_FALSE(seen->text(QAccessible::Name).trimmed().isEmpty())
            << control->metaObject()->className() << " " << control->objectName().toStdString();
    }
}

TEST_P(EveryPageTest, TheTabKeyReachesEveryControlOnce)
{
    const QList<QWidget*> expected = controls();
    stage.sidebarButton(SettingsPage::Overview)->setFocus(Qt::TabFocusReason);
    QList<QWidget*> reached;
    for (qsizetype i = 0; i < expected.size() + 4; ++i) {
        QWidget* const focused = QApplication::focusWidget();
        ASSERT_TRUE(focused);
        if (reached.contains(focused))
            break;
        reached.append(focused);
        QTest::keyClick(focused, Qt::Key_Tab);
    }

    const QSet<QWidget*> missing =
        QSet(expected.begin(), expected.end()) - QSet(reached.begin(), reached.end());
    for (const QWidget* const widget : missing)
        ADD_FAILURE() << "not reached: " << widget->metaObject()->className() << " "
                      << widget->objectName().toStdString() << " "
                      << widget->accessibleName().toStdString();
    EXPECT_EQ(reached.size(), expected.size());
}

TEST_P(EveryPageTest, TheTabKeyGoesThroughThePageFromTopToBottom)
{
    stage.sidebarButton(SettingsPage::Account)->setFocus(Qt::TabFocusReason);
    const QWidget* const page = stage.visibleChild<ui::Page>();
    ASSERT_TRUE(page);
    constexpr int lineTolerance = 24; // Controls beside each other are not all of one height.
    int lowest = 0;
    QList<QWidget*> seen;
    for (int i = 0; i < 200; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QWidget* const focused = QApplication::focusWidget();
        if (!focused || !page->isAncestorOf(focused) || seen.contains(focused))
            break;
        seen.append(focused);
        const int top = focused->mapTo(page, QPoint()).y();
        EXPECT_GE(top + lineTolerance, lowest)
            << focused->metaObject()->className() << " " << focused->accessibleName().toStdString();
        lowest = std::max(lowest, top);
    }
}

TEST_P(EveryPageTest, NoTextIsCutOff)
{
    for (const auto* const label : stage.children<ui::Label>()) {
        if (!label->isVisible())
            continue;
        EXPECT_EQ(label->text(), label->fullText());
        EXPECT_FALSE(label->isElided()) << label->fullText().toStdString();
    }
}

QList<Case> everyCase()
{
    QList<Case> cases;
    for (const char* const language : {"en", "zh-Hans", "zh-Hant"}) {
        for (const SettingsPage page : sidebarButtons)
            cases.append({language, page});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(AllPages, EveryPageTest, ::testing::ValuesIn(everyCase()));

} // namespace
} // namespace tavrin
