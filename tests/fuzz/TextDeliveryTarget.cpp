#include "delivery/TargetContext.h"
#include "delivery/TextDelivery.h"
#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "support/ports/InMemoryAccessibility.h"
#include "support/ports/InMemoryPasteboard.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/RecordingKeyboard.h"
#include "support/ports/VirtualTime.h"

#include <algorithm>

// A delivery into an editor that may hide what it holds, tell lies about it, refuse everything and
// change its mind between any two steps.

namespace tavrin::fuzz {
namespace {

using namespace std::chrono_literals;
using testing::FakeElement;

constexpr qint64 editorProcess = 4711;
constexpr qint64 otherProcess = 815;
constexpr Seconds longestDelivery = 260ms + 520ms + 1200ms + 180ms;

class Session {
public:
    explicit Session(Input& input)
        : m_input(input)
        , m_text(input.text())
    {
        m_editor->text = input.text();
        const qint64 size = m_editor->text.size();
        m_editor->selection.location = input.byte() % (size + 1);
        m_editor->selection.length = input.byte() % (size - m_editor->selection.location + 1);
        m_honest = input.flag();
        m_workspace.frontmost = application(input.byte());
        m_accessibility.focusedElements[editorProcess] = m_editor;
        if (m_honest)
            m_editor->processIdentifier = editorProcess;
        else
            change();
        m_target.capture();
    }

    void run()
    {
        const QString before = m_editor->text;
        m_keyboard.onPaste = [this] { receive(m_text); };
        m_keyboard.onTyping = [this](const QString& text) { receive(text); };
        m_delivery.pasteText(m_text, [this](const DeliveryOutcome& outcome) {
            require(!m_outcome.has_value(), "a delivery ends once");
            m_outcome = outcome;
        });
        for (Seconds passed{0}; passed < longestDelivery; passed += 20ms) {
            if (!m_honest && m_input.byte() % 16 == 1)
                change();
            m_time.advance(20ms);
        }
        checkOutcome();
        if (m_honest && m_outcome->verified)
            checkHonestEditor(before);
    }

private:
    [[nodiscard]] static std::optional<RunningApplication> application(std::uint8_t choice)
    {
        const RunningApplication editor{
            editorProcess, QStringLiteral("Editor"), QStringLiteral("editor"), 0};
        switch (choice % 8) {
        case 1:
            return std::nullopt;
        case 2:
            return RunningApplication{
                1, QStringLiteral("Tavrin"), testing::InMemoryWorkspace().bundleIdentifier(), 0};
        case 3:
            return RunningApplication{
                otherProcess, QStringLiteral("Other"), QStringLiteral("other"), 0};
        default:
            return editor;
        }
    }

    /// Anything about the editor and the desktop may be different from now on.
    void change()
    {
        FakeElement& editor = *m_editor;
        editor.processIdentifier = m_input.byte() % 4 == 1 ? otherProcess : editorProcess;
        editor.role = m_input.maybe(&Input::text);
        editor.claimedText = m_input.maybe(&Input::text);
        editor.claimedSelection = m_input.maybe(&Input::range);
        editor.claimedCount = m_input.maybe(&Input::number);
        for (bool FakeElement::*const ability :
            {&FakeElement::exposesProcess, &FakeElement::exposesText,
                &FakeElement::exposesSelection, &FakeElement::exposesCount,
                &FakeElement::exposesStringForRange, &FakeElement::selectedTextSettable,
                &FakeElement::valueSettable, &FakeElement::writesSucceed})
            editor.*ability = m_input.byte() % 4 != 1;
        m_accessibility.trusted = m_input.byte() % 8 != 1;
        m_accessibility.systemFocus = m_input.flag() ? m_editor : nullptr;
        m_workspace.activationSucceeds = m_input.byte() % 8 != 1;
        if (m_input.byte() % 8 == 1)
            m_workspace.frontmost = application(m_input.byte());
    }

    /// What the editor makes of a paste or of typed text.
    void receive(const QString& text)
    {
        const TextRange& selection = m_editor->selection;
        const qint64 size = m_editor->text.size();
        const bool swallowed = m_input.flag();
        if (!swallowed && selection.location <= size
            && selection.length <= size - selection.location)
            m_editor->insert(text);
    }

    void checkOutcome() const
    {
        require(m_time.pending() == 0, "nothing is left to do");
        require(m_outcome.has_value(), "a delivery ends");
        require(m_outcome->verified == m_outcome->reason.isNull(), "a failure has a reason");
        require(m_pasteboard.string() == m_text, "the text is on the pasteboard");
        require(m_keyboard.pastes.size() == (m_outcome->verified ? 1 : 0), "one paste, or none");
        require(m_keyboard.typed.size() <= 1, "the text is typed once at most");
        for (const QStringList& chunks : m_keyboard.typed)
            require(chunks.join(QString()) == m_text, "what is typed is the text");
        const int held =
            (m_target.targetFocusedElement() ? 1 : 0) + (m_target.targetFocusedWindow() ? 1 : 0);
        require(m_accessibility.liveReferences == held, "what was borrowed is given back");
    }

    /// Whatever of paste and typing it swallows, an editor that shows and takes everything has the
    /// text exactly once.
    void checkHonestEditor(const QString& before) const
    {
        const std::optional<RunningApplication>& target = m_target.targetApplication();
        if (!target || target->processIdentifier != editorProcess)
            return;
        require(normalizedEditorText(m_editor->text).contains(normalizedEditorText(m_text)),
            "the text is there");
        require(m_editor->text.size() <= before.size() + m_text.size(), "and it is there once");
    }

    Input& m_input;
    QString m_text;
    testing::VirtualTime m_time;
    testing::InMemoryPasteboard m_pasteboard;
    testing::InMemoryWorkspace m_workspace;
    testing::InMemoryAccessibility m_accessibility;
    testing::RecordingKeyboard m_keyboard;
    TargetContext m_target{m_workspace, m_accessibility};
    TextDelivery m_delivery{
        {m_pasteboard, m_workspace, m_accessibility, m_keyboard, m_time}, m_target};
    std::shared_ptr<FakeElement> m_editor = std::make_shared<FakeElement>();
    std::optional<DeliveryOutcome> m_outcome;
    bool m_honest = false;
};

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tavrin::fuzz::Input input(data, size);
    tavrin::fuzz::Session(input).run();
    return 0;
}
