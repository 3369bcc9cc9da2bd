#include "delivery/TextDelivery.h"

#include "base/Log.h"
#include "delivery/DeliveryTexts.h"
#include "delivery/TargetContext.h"
#include "delivery/UnicodeChunks.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/programs/Workspace.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds activationDelay = 260ms; // Until the target has come to the front.
constexpr Seconds pasteDelay = 520ms; // Until a paste has landed.
constexpr Seconds typingDelayPerUnit = 2ms;
constexpr Seconds typingDelayBase = 260ms;
constexpr Seconds longestTypingDelay = 1200ms;
constexpr Seconds directWriteDelay = 180ms;

// A target that needs longer than a paste usually takes is looked at again in such steps.
constexpr Seconds lookAgainDelay = 100ms;
// A busy program gets to its keys within that; one that hangs for longer pastes when it wakes.
constexpr Seconds busyPatience = 4s;
// The target has the text; some editors never show it.
constexpr Seconds fetchedPatience = 2s;
// Browsers fetch a while after they have taken the key.
constexpr Seconds ignoredPatience = 1500ms;

Seconds typingDelay(const QString& text)
{
    const Seconds delay = typingDelayPerUnit * static_cast<double>(text.size()) + typingDelayBase;
    return std::min(delay, longestTypingDelay);
}

} // namespace

struct TextDelivery::Delivery {
    QString text;
    Completion<DeliveryOutcome> completion;
    bool trusted = false; // When the target was activated.
    ElementHandle element = nullptr; // The editor; null when none could be found.
    EditorObservation before = {};
    std::optional<QString> expected = std::nullopt; // The whole text after a perfect insertion.
    bool fetched = false; // The keyboard has told so when it was to type.
    Seconds waited{0}; // Since the first look after the paste.
};

TextDelivery::TextDelivery(const Ports& ports, TargetContext& target)
    : m_ports(ports)
    , m_target(target)
{
}

TextDelivery::~TextDelivery()
{
    if (m_delivery)
        m_ports.keyboard.cancelTyping();
}

void TextDelivery::pasteText(const QString& text, Completion<DeliveryOutcome> completion)
{
    m_delivery = std::make_unique<Delivery>(Delivery{text, std::move(completion)});
    if (!m_ports.pasteboard.setString(text))
        return fail(texts::pasteboardRefused);
    const std::optional<RunningApplication>& target = m_target.targetApplication();
    if (!target)
        return fail(texts::noTargetApplication);
    if (target->bundleIdentifier == m_ports.workspace.bundleIdentifier())
        return fail(texts::targetIsTavrin);
    m_delivery->trusted = m_ports.accessibility.isProcessTrusted();
    if (!m_ports.workspace.activate(*target))
        return fail(texts::targetNotActivated);
    after(activationDelay, &TextDelivery::takeSnapshotAndPaste);
}

void TextDelivery::takeSnapshotAndPaste()
{
    if (const AccessibleElement* const window = m_target.targetFocusedWindow())
        m_ports.accessibility.setFocusedWindow(target().processIdentifier, window);
    if (m_delivery->trusted)
        m_delivery->element = editorForDelivery();
    if (m_delivery->element) {
        m_delivery->before = observe(m_delivery->element.get());
        if (m_delivery->before.range) {
            m_delivery->expected = expectedValueFrom(
                m_delivery->before.text, *m_delivery->before.range, m_delivery->text);
        }
    }
    postCommandV(m_delivery->element.get());
}

void TextDelivery::afterPosting(KeyPosting posting)
{
    if (posting == KeyPosting::Refused)
        return fail(texts::keysNotPosted);
    after(pasteDelay, &TextDelivery::checkAfterPaste);
}

void TextDelivery::checkAfterPaste()
{
    if (m_delivery->fetched)
        return concludeFrom(PasteReception::Fetched);
    m_ports.keyboard.askForPasteReception(
        m_guard.bind([this](PasteReception reception) { concludeFrom(reception); }));
}

void TextDelivery::concludeFrom(PasteReception reception)
{
    // A program that is busy is not asked what it shows: that would only wait for it.
    if (reception == PasteReception::Waiting && waitOn(busyPatience))
        return;
    const Sight sight = look();
    if (sight == Sight::Verified)
        return finish("paste, verified");
    const bool isFetched = reception == PasteReception::Fetched;
    // Where the pasteboard may be another one than the target's, a change may be another text.
    const bool isUncertain = !m_ports.workspace.reachesEveryProgram() && !isFetched;
    const bool isPending = reception == PasteReception::Waiting; // It lies in the target's queue.
    if (sight == Sight::Unchanged && !isFetched && !isPending && !isUncertain)
        return type();
    // Nobody has fetched the text: what has changed in the editor was something else.
    if (isUncertain || reception == PasteReception::Ignored) {
        if (!waitOn(ignoredPatience))
            fail(texts::pasteNotTaken);
        return;
    }
    if (isFetched && sight == Sight::Unchanged && waitOn(fetchedPatience))
        return;
    finish(sight == Sight::Changed ? "paste, changed the editor" : "paste, unseen");
}

TextDelivery::Sight TextDelivery::look()
{
    const AccessibleElement* const element = m_delivery->element.get();
    if (verifyInsertionOfText(m_delivery->text, element, m_delivery->expected, m_delivery->before))
        return Sight::Verified;
    const EditorObservation now = observe(element);
    if (hasVisibleChange(m_delivery->before, now))
        return Sight::Changed;
    return isObservationComplete(m_delivery->before, now) ? Sight::Unchanged : Sight::Unseen;
}

void TextDelivery::type()
{
    postUnicodeText(m_delivery->text);
}

void TextDelivery::afterTyping(KeyPosting posting)
{
    switch (posting) {
    case KeyPosting::Done:
        return after(typingDelay(m_delivery->text), &TextDelivery::checkAfterTyping);
    case KeyPosting::Unanswered: // Written directly as well, it would stand there twice.
        return finish("typing, unseen");
    case KeyPosting::Refused:
        return fail(texts::keysNotPosted);
    case KeyPosting::Broken:
        return fail(texts::typingBroken);
    case KeyPosting::Fetched:
        m_delivery->fetched = true;
        return checkAfterPaste();
    case KeyPosting::Unsuitable:
        if (insertText(m_delivery->text, m_delivery->element.get()))
            return fail(texts::keysNotPosted);
        return after(directWriteDelay, &TextDelivery::finishDirectWrite);
    }
}

void TextDelivery::checkAfterTyping()
{
    const Sight sight = look();
    if (sight == Sight::Verified || sight == Sight::Changed)
        return finish("typing");

    writeDirectly();
}

void TextDelivery::writeDirectly()
{
    // The last means; its word changes nothing.
    static_cast<void>(insertText(m_delivery->text, m_delivery->element.get()));
    after(directWriteDelay, &TextDelivery::finishDirectWrite);
}

void TextDelivery::finishDirectWrite()
{
    finish("direct write");
}

void TextDelivery::finish(const char* means)
{
    qCInfo(log::delivery) << "delivered by" << means;
    complete({true, {}});
}

void TextDelivery::fail(const SimplifiedText& reason)
{
    complete({false, reason.toString()});
}

void TextDelivery::complete(const DeliveryOutcome& outcome)
{
    // The element is released before the caller hears of the outcome and may begin anew.
    const Completion<DeliveryOutcome> completion = std::move(m_delivery->completion);
    m_delivery.reset();
    completion(outcome);
}

void TextDelivery::postCommandV(const AccessibleElement* element)
{
    m_ports.keyboard.postPasteShortcut({target(), m_ports.accessibility.isTerminal(element)},
        m_guard.bind([this](KeyPosting posting) { afterPosting(posting); }));
}

void TextDelivery::postUnicodeText(const QString& text)
{
    m_ports.keyboard.postUnicodeText(unicodeChunks(text), target(),
        m_guard.bind([this](KeyPosting posting) { afterTyping(posting); }));
}

RunningApplication TextDelivery::target() const
{
    return m_target.targetApplication().value_or(RunningApplication());
}

void TextDelivery::after(Seconds delay, Step step)
{
    m_ports.mainQueue.callLater(delay, m_guard.bind([this, step] { (this->*step)(); }));
}

bool TextDelivery::waitOn(Seconds patience)
{
    if (m_delivery->waited >= patience)
        return false;
    m_delivery->waited += lookAgainDelay;
    after(lookAgainDelay, &TextDelivery::checkAfterPaste);
    return true;
}

} // namespace tavrin
