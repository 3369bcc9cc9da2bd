#include "app/shortcuts/ShortcutMonitor.h"

#include "app/settings/Settings.h"
#include "app/shortcuts/ShortcutKeys.h"
#include "platform/MainQueue.h"
#include "platform/keyboard/KeyMonitor.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// @p identifier when @p event is a fresh press of that Option key alone; keeps @p down up to date.
QString shortcutIdentifierForOptionKey(const KeyEvent& event, bool& down, const QString& identifier)
{
    const bool wasDown = down;
    down = event.modifiers.testFlag(KeyModifier::Option);
    // With another modifier the key is part of some other combination.
    const bool alone = (event.modifiers & shortcutModifiers) == KeyModifier::Option;
    return down && !wasDown && alone ? identifier : QString();
}

} // namespace

ShortcutMonitor::ShortcutMonitor(
    KeyMonitor& keyMonitor, MainQueue& mainQueue, Settings& settings, Actions actions)
    : m_keyMonitor(keyMonitor)
    , m_mainQueue(mainQueue)
    , m_settings(settings)
    , m_actions(std::move(actions))
{
}

ShortcutMonitor::~ShortcutMonitor() = default;

void ShortcutMonitor::configureHotKey()
{
    // The global handler runs on any thread: it only hands the event over.
    m_monitors.globalMonitor = m_keyMonitor.addGlobalMonitor(
        onMainQueue(m_mainQueue, m_guard.bind([this](const KeyEvent& event) {
            handle(event, Keyboard::OfAnotherProgram);
        })));
    m_monitors.localMonitor = m_keyMonitor.addLocalMonitor(
        [this](const KeyEvent& event) { return handle(event, Keyboard::Ours); });
}

bool ShortcutMonitor::handle(const KeyEvent& event, Keyboard keyboard)
{
    if (isEscapeEvent(event)) {
        m_actions.handleEscape();
        return true;
    }
    const std::optional<OperationMode> mode = operationForHotKeyEvent(event);
    if (!mode)
        return false;
    if (event.kind == KeyEvent::Kind::FlagsChanged && keyboard == Keyboard::OfAnotherProgram)
        m_actions.coverModifierKey();
    m_actions.toggleOperationMode(*mode);
    return true;
}

bool ShortcutMonitor::isEscapeEvent(const KeyEvent& event) const
{
    return event.kind == KeyEvent::Kind::KeyDown && event.keyCode == key_codes::escape
        && !event.isRepeat && m_actions.isRecording();
}

std::optional<OperationMode> ShortcutMonitor::operationForHotKeyEvent(const KeyEvent& event)
{
    const QString identifier = shortcutIdentifierForEvent(event);
    return identifier.isNull() ? std::nullopt : operationForShortcutIdentifier(identifier);
}

std::optional<OperationMode> ShortcutMonitor::operationForShortcutIdentifier(
    const QString& identifier)
{
    if (m_settings.DictationShortcutIdentifiers().contains(identifier))
        return OperationMode::Dictation;
    if (m_settings.TranslationShortcutIdentifiers().contains(identifier))
        return OperationMode::Translation;
    if (m_settings.ChatShortcutIdentifiers().contains(identifier))
        return OperationMode::Chat;
    return std::nullopt;
}

void ShortcutMonitor::clearHeldKeys()
{
    m_heldKeys = {};
}

QString ShortcutMonitor::shortcutIdentifierForEvent(const KeyEvent& event)
{
    if (event.kind == KeyEvent::Kind::KeyDown) {
        const bool pressed = event.keyCode == key_codes::space && !event.isRepeat;
        return pressed ? spaceShortcutIdentifier(event.modifiers & shortcutModifiers) : QString();
    }
    if (event.keyCode == key_codes::leftOption)
        return shortcutIdentifierForOptionKey(event, m_heldKeys.leftOptionDown, u"leftOption"_s);
    if (event.keyCode == key_codes::rightOption)
        return shortcutIdentifierForOptionKey(event, m_heldKeys.rightOptionDown, u"rightOption"_s);
    return {};
}

} // namespace tavrin
