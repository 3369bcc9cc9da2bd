#include "contract/Subject.h"
#include "platform/qt/QtStatusItem.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryStatusItem.h"

#include <QApplication>
#include <QMenu>

namespace tavrin::testing {
namespace {

/// A status item whose menu the test can read and use.
class StatusItemSubject {
public:
    virtual ~StatusItemSubject() = default;
    [[nodiscard]] virtual StatusItem& item() = 0;
    /// One line an entry: "title", "[x] title" when checked, "(title)" when disabled, "---", and
    /// children with two spaces before them.
    [[nodiscard]] virtual QStringList menu() = 0;
    virtual void choose(const QString& title) = 0;
};

QString line(const QString& title, bool checked, bool enabled)
{
    const QString text = checked ? QStringLiteral("[x] ") + title : title;
    return enabled ? text : u'(' + text + u')';
}

class InMemorySubject final : public StatusItemSubject {
public:
    [[nodiscard]] StatusItem& item() override { return m_item; }

    [[nodiscard]] QStringList menu() override { return lines(m_item.menu, {}); }

    void choose(const QString& title) override { m_item.press(title); }

private:
    static QStringList lines(const QList<MenuItem>& items, const QString& indent)
    {
        QStringList all;
        for (const MenuItem& entry : items) {
            all.append(entry.separator ? QStringLiteral("---")
                                       : indent + line(entry.title, entry.checked, entry.enabled));
            all.append(lines(entry.children, indent + QStringLiteral("  ")));
        }
        return all;
    }

    InMemoryStatusItem m_item;
};

class QtSubject final : public StatusItemSubject {
public:
    [[nodiscard]] StatusItem& item() override { return m_item; }

    [[nodiscard]] QStringList menu() override { return lines(statusMenu(), {}); }

    void choose(const QString& title) override
    {
        for (QAction* action : statusMenu().actions()) {
            if (action->text() == title)
                return action->trigger();
        }
        FAIL() << "no entry " << title.toStdString();
    }

    [[nodiscard]] static QMenu& statusMenu()
    {
        QApplication::processEvents(); // It is filled when the window is there.
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == u"statusMenu")
                return *qobject_cast<QMenu*>(widget);
        }
        throw std::logic_error("no status menu");
    }

private:
    static QStringList lines(const QMenu& menu, const QString& indent)
    {
        QStringList all;
        for (const QAction* action : menu.actions()) {
            QString title = action->text();
            title.replace(QStringLiteral("&&"), QStringLiteral("&"));
            all.append(action->isSeparator()
                    ? QStringLiteral("---")
                    : indent + line(title, action->isChecked(), action->isEnabled()));
            if (action->menu())
                all.append(lines(*action->menu(), indent + QStringLiteral("  ")));
        }
        return all;
    }

    QtStatusItem m_item;
};

MenuItem entry(const QString& title, std::function<void()> action = {})
{
    MenuItem item;
    item.title = title;
    item.action = std::move(action);
    return item;
}

class StatusItemContractTest : public ContractTest<StatusItemSubject> { };

INSTANTIATE_TEST_SUITE_P(Implementations, StatusItemContractTest,
    ::testing::Values(Implementation<StatusItemSubject>{"InMemory",
                          makeSubject<StatusItemSubject, InMemorySubject>},
        Implementation<StatusItemSubject>{"Qt", makeSubject<StatusItemSubject, QtSubject>}),
    implementationName);

TEST_P(StatusItemContractTest, TheMenuShowsTheItemsAsTheyAre)
{
    MenuItem submenu = entry(QStringLiteral("Style"));
    submenu.children = {entry(QStringLiteral("Q&A")), entry(QStringLiteral("商务邮件"))};
    submenu.children[1].checked = true;
    MenuItem disabled = entry(QStringLiteral("Off"));
    disabled.enabled = false;
    MenuItem separator;
    separator.separator = true;
    subject().item().setMenu({entry(QStringLiteral("Start")), submenu, separator, disabled});
    EXPECT_EQ(subject().menu(),
        QStringList({QStringLiteral("Start"), QStringLiteral("Style"), QStringLiteral("  Q&A"),
            QStringLiteral("  [x] 商务邮件"), QStringLiteral("---"), QStringLiteral("(Off)")}));
}

TEST_P(StatusItemContractTest, ANewMenuReplacesTheOldOne)
{
    MenuItem separator;
    separator.separator = true;
    MenuItem submenu = entry(QStringLiteral("Sub"));
    submenu.children = {entry(QStringLiteral("Child"))};
    subject().item().setMenu({submenu, separator, entry(QStringLiteral("Two"))});
    subject().item().setMenu({entry(QStringLiteral("Plain")), submenu});
    EXPECT_EQ(subject().menu(),
        QStringList({QStringLiteral("Plain"), QStringLiteral("Sub"), QStringLiteral("  Child")}));
    subject().item().setMenu({});
    EXPECT_TRUE(subject().menu().isEmpty());
}

TEST_P(StatusItemContractTest, AnEntryDoesWhatItIsForAtTheMoment)
{
    QStringList done;
    const auto note = [&](const QString& what) { return [&done, what] { done.append(what); }; };
    subject().item().setMenu({entry(QStringLiteral("Go"), note(QStringLiteral("old")))});
    subject().item().setMenu({entry(QStringLiteral("Go"), note(QStringLiteral("new")))});
    subject().choose(QStringLiteral("Go"));
    EXPECT_EQ(done, QStringList(QStringLiteral("new")));
}

TEST_P(StatusItemContractTest, AnEntryMayReplaceTheMenuThatItStandsIn)
{
    subject().item().setMenu({entry(QStringLiteral("Go"), [this] {
        subject().item().setMenu({entry(QStringLiteral("Gone"))});
        subject().item().setMenu({});
    })});
    subject().choose(QStringLiteral("Go"));
    EXPECT_TRUE(subject().menu().isEmpty());
}

TEST_P(StatusItemContractTest, ADisabledEntryDoesNothing)
{
    bool done = false;
    MenuItem item = entry(QStringLiteral("Off"), [&] { done = true; });
    item.enabled = false;
    subject().item().setMenu({item});
    subject().choose(QStringLiteral("Off"));
    EXPECT_FALSE(done);
}

TEST_P(StatusItemContractTest, OnlyTheOwnerSetsCheckMarks)
{
    MenuItem checked = entry(QStringLiteral("A"));
    checked.checked = true;
    subject().item().setMenu({checked, entry(QStringLiteral("B"))});
    subject().choose(QStringLiteral("A"));
    subject().choose(QStringLiteral("B"));
    EXPECT_EQ(subject().menu(), QStringList({QStringLiteral("[x] A"), QStringLiteral("B")}));
}

TEST_P(StatusItemContractTest, EverythingIsAcceptedWithoutATrayAndTheMenuStays)
{
    bool done = false;
    subject().item().setMenu({entry(QStringLiteral("Go"), [&] { done = true; })});
    subject().item().setLength(38);
    subject().item().setImage({34, 18, 1, 2, 31, 13, 3, 1, QStringLiteral("Tav"), 8, 0, {}});
    subject().item().setTitle(QStringLiteral("●"));
    subject().item().setToolTip(QStringLiteral("tip"));
    subject().item().setAccessibilityLabel(QStringLiteral("label"));
    subject().item().setVisible(true);
    EXPECT_EQ(subject().menu(), QStringList(QStringLiteral("Go")));
    subject().item().setVisible(false);
    EXPECT_EQ(subject().menu(), QStringList(QStringLiteral("Go")));
    subject().choose(QStringLiteral("Go"));
    EXPECT_TRUE(done);
}

TEST(QtStatusItemTest, AnEntryThatChangesStaysInPlaceSoThatAnOpenMenuStaysOpen)
{
    QtSubject subject;
    subject.item().setMenu({entry(QStringLiteral("Start")), entry(QStringLiteral("Quit"))});
    const auto before = QtSubject::statusMenu().actions();
    subject.item().setMenu({entry(QStringLiteral("Finish")), entry(QStringLiteral("Quit"))});
    EXPECT_EQ(QtSubject::statusMenu().actions(), before);
}

TEST(QtStatusItemTest, AKeyEquivalentIsPressedWithControl)
{
    QtSubject subject;
    MenuItem quit = entry(QStringLiteral("Quit"));
    quit.keyEquivalent = QStringLiteral("q");
    subject.item().setMenu({quit});
    EXPECT_EQ(
        QtSubject::statusMenu().actions().first()->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
}

TEST(QtStatusItemTest, AMenuThatIsOpenedAtOnceHasItsEntries)
{
    QtStatusItem item;
    item.setMenu({entry(QStringLiteral("Start")), entry(QStringLiteral("Quit"))});
    QMenu* menu = nullptr;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == u"statusMenu")
            menu = qobject_cast<QMenu*>(widget);
    }
    ASSERT_TRUE(menu);
    EXPECT_TRUE(menu->actions().isEmpty()); // The window comes first.
    menu->popup({});
    EXPECT_EQ(menu->actions().size(), 2);
    menu->close();
}

} // namespace
} // namespace tavrin::testing
