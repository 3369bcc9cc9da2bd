#include "platform/linux/atspi/AtspiAccessibility.h"
#include "support/ChildProcess.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryAccessibility.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// A field of another program, as the contract's tests want it.
struct Field {
    QString text;
    TextRange selection{0, 0};
    bool singleLine = false;
    bool password = false;
    QString lie = {}; ///< By which it deceives those who read it; empty for none.
};

/// A port together with the means to put a field before it.
class Desktop {
public:
    virtual ~Desktop() = default;

    [[nodiscard]] virtual Accessibility& port() = 0;

    /// Opens a program with @p field in focus; its process.
    virtual qint64 open(const Field& field) = 0;

    /// Ends the program.
    virtual void close() = 0;
};

class InMemoryDesktop final : public Desktop {
public:
    [[nodiscard]] Accessibility& port() override { return m_port; }

    qint64 open(const Field& field) override
    {
        auto element = std::make_shared<testing::FakeElement>();
        element->processIdentifier = process;
        element->text = field.text;
        element->selection = field.selection;
        element->isProtected = field.password;
        element->isTerminal = field.lie == u"terminal"_s;
        element->role = field.singleLine || field.password ? u"AXTextField"_s : u"AXTextArea"_s;
        m_port.exposed.insert(process);
        m_port.focusedElements[process] = element;
        m_port.systemFocus = element;
        m_port.focusedWindows[process] = std::make_shared<testing::FakeElement>(*element);
        m_port.focusedWindows[process]->title = u"Letter"_s;
        return process;
    }

    void close() override
    {
        m_port.focusedElements.clear();
        m_port.exposed.remove(process);
    }

private:
    static constexpr qint64 process = 42;

    testing::InMemoryAccessibility m_port;
};

class RealDesktop final : public Desktop {
public:
    [[nodiscard]] Accessibility& port() override { return m_port; }

    qint64 open(const Field& field) override
    {
        const qint64 anchor = field.selection.location;
        QStringList arguments{u"--window-title"_s, u"Letter"_s, u"--text"_s, field.text,
            u"--anchor"_s, QString::number(anchor), u"--caret"_s,
            QString::number(anchor + field.selection.length)};
        if (field.singleLine)
            arguments.append(u"--single-line"_s);
        if (field.password)
            arguments.append(u"--password"_s);
        if (!field.lie.isEmpty())
            arguments += {u"--lie"_s, field.lie};
        m_editor = std::make_unique<testing::ChildProcess>(
            QString::fromUtf8(TAVRIN_TEST_EDITOR), arguments);
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (!m_port.focusedElement(m_editor->id()) && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(20ms);
        return m_editor->id();
    }

    void close() override { m_editor->kill(); }

    [[nodiscard]] testing::ChildProcess& editor() { return *m_editor; }

private:
    AtspiAccessibility m_port;
    std::unique_ptr<testing::ChildProcess> m_editor;
};

struct Implementation {
    const char* name;
    std::function<std::unique_ptr<Desktop>()> make;
};

class AccessibilityContractTest : public ::testing::TestWithParam<Implementation> {
protected:
    std::unique_ptr<Desktop> desktop = GetParam().make();
    Accessibility& port = desktop->port();

    ElementHandle open(const Field& field) { return port.focusedElement(desktop->open(field)); }
};

TEST_P(AccessibilityContractTest, TheFocusedFieldOfAProgramIsFound)
{
    const qint64 process = desktop->open({u"Dear "_s, {5, 0}});

    ASSERT_TRUE(port.isProcessTrusted());
    const ElementHandle element = port.focusedElement(process);
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(port.processIdentifier(element.get()), process);
    EXPECT_EQ(port.attribute(ElementAttribute::Role, element.get()), u"AXTextArea"_s);
    EXPECT_FALSE(port.isProtected(element.get()));
    EXPECT_FALSE(port.isTerminal(element.get()));
    EXPECT_NE(port.systemFocusedElement(), nullptr);
}

TEST_P(AccessibilityContractTest, AProgramIsExposedWhileItRuns)
{
    const qint64 process = desktop->open({u"Dear "_s});
    const auto isExposed = [&] {
        const std::optional<QSet<qint64>> processes = port.exposedProcesses();
        return processes && processes->contains(process);
    };
    EXPECT_TRUE(isExposed());

    desktop->close();
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (isExposed() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(20ms); // Until the bus has noticed.
    EXPECT_FALSE(isExposed());
    EXPECT_TRUE(port.exposedProcesses().has_value());
}

TEST_P(AccessibilityContractTest, AFieldOfOneLineIsATextField)
{
    const ElementHandle element = open({u"Dear "_s, {0, 0}, true});

    EXPECT_EQ(port.attribute(ElementAttribute::Role, element.get()), u"AXTextField"_s);
}

TEST_P(AccessibilityContractTest, TheFocusedWindowHasItsTitle)
{
    const ElementHandle window = port.focusedWindow(desktop->open({u"Dear "_s}));

    EXPECT_EQ(port.attribute(ElementAttribute::Title, window.get()), u"Letter"_s);
}

TEST_P(AccessibilityContractTest, AProcessWithoutElementsHasNoFocus)
{
    desktop->open({u"Dear "_s});

    EXPECT_EQ(port.focusedElement(1), nullptr);
    EXPECT_EQ(port.focusedWindow(1), nullptr);
}

TEST_P(AccessibilityContractTest, TextSelectionAndCountAreReadInUtf16Units)
{
    const ElementHandle element = open({u"a😀中\nb"_s, {1, 3}});

    EXPECT_EQ(port.value(element.get()), u"a😀中\nb"_s);
    EXPECT_EQ(port.selectedTextRange(element.get()), (TextRange{1, 3}));
    EXPECT_EQ(port.numberOfCharacters(element.get()), 6);
    EXPECT_EQ(port.stringForRange({1, 3}, element.get()), u"😀中"_s);
}

TEST_P(AccessibilityContractTest, RangesBeyondTheTextHaveNoString)
{
    const ElementHandle element = open({u"abc"_s});

    for (const TextRange range :
        {TextRange{0, 4}, {4, 0}, {-1, 1}, {1, -1}, {1, std::numeric_limits<qint64>::max()}})
        EXPECT_EQ(port.stringForRange(range, element.get()), std::nullopt);
    EXPECT_EQ(port.stringForRange({3, 0}, element.get()), QString());
}

TEST_P(AccessibilityContractTest, TheSelectionCanBeReplaced)
{
    const ElementHandle element = open({u"Hi 😀 there"_s, {3, 2}});

    ASSERT_TRUE(port.isSelectedTextSettable(element.get()));
    EXPECT_TRUE(port.setSelectedText(u"中文🎉"_s, element.get()));
    EXPECT_EQ(port.value(element.get()), u"Hi 中文🎉 there"_s);
    EXPECT_EQ(port.selectedTextRange(element.get()), (TextRange{7, 0}));
}

TEST_P(AccessibilityContractTest, TheWholeTextAndTheCaretCanBeSet)
{
    const ElementHandle element = open({u"old"_s});

    ASSERT_TRUE(port.isValueSettable(element.get()));
    EXPECT_TRUE(port.setValue(u"new 😀!"_s, element.get()));
    EXPECT_TRUE(port.setSelectedTextRange({6, 0}, element.get()));
    EXPECT_EQ(port.value(element.get()), u"new 😀!"_s);
    EXPECT_EQ(port.selectedTextRange(element.get()), (TextRange{6, 0}));
}

TEST_P(AccessibilityContractTest, NothingIsReadFromAPasswordField)
{
    const ElementHandle element = open({u"secret"_s, {0, 0}, true, true});

    ASSERT_NE(element, nullptr);
    EXPECT_TRUE(port.isProtected(element.get()));
    EXPECT_EQ(port.value(element.get()), std::nullopt);
    EXPECT_EQ(port.selectedTextRange(element.get()), std::nullopt);
    EXPECT_EQ(port.numberOfCharacters(element.get()), std::nullopt);
    EXPECT_EQ(port.stringForRange({0, 1}, element.get()), std::nullopt);
}

TEST_P(AccessibilityContractTest, ATerminalIsTold)
{
    const ElementHandle element = open({u"$ "_s, {2, 0}, false, false, u"terminal"_s});

    EXPECT_TRUE(port.isTerminal(element.get()));
    EXPECT_FALSE(port.isProtected(element.get()));
}

TEST_P(AccessibilityContractTest, NoElementReadsAsUnknown)
{
    EXPECT_EQ(port.value(nullptr), std::nullopt);
    EXPECT_EQ(port.selectedTextRange(nullptr), std::nullopt);
    EXPECT_EQ(port.numberOfCharacters(nullptr), std::nullopt);
    EXPECT_EQ(port.stringForRange({0, 0}, nullptr), std::nullopt);
    EXPECT_EQ(port.processIdentifier(nullptr), std::nullopt);
    EXPECT_EQ(port.attribute(ElementAttribute::Role, nullptr), std::nullopt);
    EXPECT_FALSE(port.isProtected(nullptr));
    EXPECT_FALSE(port.isTerminal(nullptr));
    EXPECT_FALSE(port.isSelectedTextSettable(nullptr));
    EXPECT_FALSE(port.setSelectedText(u"x"_s, nullptr));
    EXPECT_FALSE(port.setValue(u"x"_s, nullptr));
    EXPECT_FALSE(port.setSelectedTextRange({0, 0}, nullptr));
    EXPECT_FALSE(port.setFocused(nullptr));
}

TEST_P(AccessibilityContractTest, ARetainedReferenceOutlivesTheFirst)
{
    ElementHandle first = open({u"abc"_s});
    const ElementHandle second = port.retain(*first);
    first.reset();

    EXPECT_EQ(port.value(second.get()), u"abc"_s);
}

TEST_P(AccessibilityContractTest, AProgramThatHasEndedHasNoFocus)
{
    const qint64 process = desktop->open({u"abc"_s});
    desktop->close();

    EXPECT_EQ(port.focusedElement(process), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Implementations, AccessibilityContractTest,
    ::testing::Values(
        Implementation{"InMemory", [] { return std::make_unique<InMemoryDesktop>(); }},
        Implementation{"Atspi", [] { return std::make_unique<RealDesktop>(); }}),
    [](const auto& tested) { return std::string(tested.param.name); });

// What only another process can do.

// Half of what as many questions take that are each given up for themselves, so that a busy machine
// has its time. That it is half a second on a quiet one is judged by bench/session.
constexpr auto giveUp = 3s;

TEST(AtspiAccessibilityTest, AHungProgramIsGivenUpSoonAndThenAtOnce)
{
    RealDesktop desktop;
    const qint64 process = desktop.open({u"abc"_s});
    const ElementHandle element = desktop.port().focusedElement(process);
    ASSERT_NE(element, nullptr);
    desktop.editor().suspend();

    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(desktop.port().value(element.get()), std::nullopt);
    const auto first = std::chrono::steady_clock::now();
    EXPECT_LT(first - start, giveUp);
    for (int call = 0; call < 20; ++call)
        EXPECT_EQ(desktop.port().selectedTextRange(element.get()), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - first, giveUp);
    EXPECT_TRUE(desktop.port().isProtected(element.get()));

    desktop.editor().resume();
    std::this_thread::sleep_for(2500ms); // Until the program is asked again.
    EXPECT_EQ(desktop.port().value(element.get()), u"abc"_s);
}

TEST(AtspiAccessibilityTest, AHungProgramHoldsUpNoMoreThanOneOfManyQuestions)
{
    RealDesktop desktop;
    const qint64 process = desktop.open({u"abc"_s});
    const ElementHandle element = desktop.port().focusedElement(process);
    ASSERT_NE(element, nullptr);
    desktop.editor().suspend();

    const auto start = std::chrono::steady_clock::now();
    for (int round = 0; round < 4; ++round) {
        EXPECT_FALSE(desktop.port().setFocused(element.get()));
        EXPECT_EQ(desktop.port().attribute(ElementAttribute::Role, element.get()), std::nullopt);
        EXPECT_EQ(desktop.port().focusedElement(process), nullptr);
        EXPECT_EQ(desktop.port().systemFocusedElement(), nullptr); // The same program's, until now.
        EXPECT_EQ(desktop.port().focusedWindow(process), nullptr);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, giveUp);
}

TEST(AtspiAccessibilityTest, AnElementOfAnEndedProgramReadsAsUnknown)
{
    RealDesktop desktop;
    const qint64 process = desktop.open({u"abc"_s});
    const ElementHandle element = desktop.port().focusedElement(process);
    desktop.close();

    EXPECT_EQ(desktop.port().value(element.get()), std::nullopt);
    EXPECT_FALSE(desktop.port().setSelectedText(u"x"_s, element.get()));
}

TEST(AtspiAccessibilityTest, ATextThatCannotBeInsertedCostsNothingOfTheSelection)
{
    RealDesktop desktop;
    Field field{u"Dear Anna, hello"_s, {5, 4}};
    field.lie = u"stuck-insert"_s;
    const qint64 process = desktop.open(field);
    const ElementHandle element = desktop.port().focusedElement(process);
    ASSERT_NE(element, nullptr);
    EXPECT_FALSE(desktop.port().setSelectedText(u"Zoë"_s, element.get()));

    const auto end = std::chrono::steady_clock::now() + 15s;
    std::optional<QString> value;
    while (!value && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(100ms);
        value = desktop.port().value(element.get());
    }
    EXPECT_EQ(value, u"Dear Anna, hello"_s);
}

TEST(AtspiAccessibilityTest, TheSystemsFocusIsThatOfTheProgramThatGotItLast)
{
    RealDesktop first;
    const qint64 firstProcess = first.open({u"one"_s});
    Accessibility& port = first.port();
    EXPECT_EQ(port.processIdentifier(port.systemFocusedElement().get()), firstProcess);
    const testing::ChildProcess second(QString::fromUtf8(TAVRIN_TEST_EDITOR), {});
    const auto end = std::chrono::steady_clock::now() + 10s;
    std::optional<qint64> process;
    while (process != second.id() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(20ms);
        process = port.processIdentifier(port.systemFocusedElement().get());
    }
    EXPECT_EQ(process, second.id());
}

TEST(AtspiAccessibilityTest, TextOfSeveralBytesACharacterIsWrittenWholeIntoAProgramOfGtk)
{
    AtspiAccessibility port;
    const testing::ChildProcess editor(u"mousepad"_s, {u"--disable-server"_s});
    const auto end = std::chrono::steady_clock::now() + 20s;
    ElementHandle element;
    while (!element && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(20ms);
        element = port.focusedElement(editor.id());
    }
    ASSERT_NE(element, nullptr);
    EXPECT_TRUE(port.setSelectedText(u"你好，Zoë — 😀"_s, element.get()));
    EXPECT_EQ(port.value(element.get()), u"你好，Zoë — 😀"_s);
}

} // namespace
} // namespace tavrin
