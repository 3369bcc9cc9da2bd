#include "app/Settings.h"

#include "app/Localization.h"
#include "app/OutputStyles.h"
#include "app/SettingsTexts.h"
#include "app/ShortcutItemTable.h"
#include "app/TranslationTargets.h"
#include "platform/HotKeyProbe.h"
#include "platform/PreferenceKeys.h"
#include "platform/PreferenceValues.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qsizetype maxShortcutsPerOperation = 2;

QString presentNameOfStyle(const QString& oldName)
{
    static const QHash<QString, QString> presentNames{
        {u"smart"_s, u"professional"_s},
        {u"prose"_s, u"professional"_s},
        {u"bullets"_s, u"meeting"_s},
    };
    return presentNames.value(oldName);
}

bool isShortcut(const QString& identifier)
{
    return identifier != "none"_L1
        && std::ranges::any_of(shortcutItems,
            [&](const ShortcutItemRow& item) { return item.identifier == identifier; });
}

} // namespace

Settings::Settings(Preferences& preferences, const Localization& localization, HotKeyProbe* probe)
    : m_preferences(preferences)
    , m_localization(localization)
    , m_probe(probe)
{
    m_optionSpaceIsKept = isOptionSpaceKept();
}

bool Settings::lookAtDesktop()
{
    if (storedArray(m_preferences, keys::translationShortcutIdentifiers))
        return false;
    const QStringList before = defaultTranslationShortcut();
    m_optionSpaceIsKept = isOptionSpaceKept();
    return defaultTranslationShortcut() != before;
}

std::optional<bool> Settings::isOptionSpaceKept() const
{
    if (!m_probe || storedArray(m_preferences, keys::translationShortcutIdentifiers))
        return false;
    return m_probe->isKeptByDesktop(key_codes::space, KeyModifier::Option);
}

QString Settings::OutputStyle()
{
    QString stored = storedString(m_preferences, keys::outputStyle).value_or(u"professional"_s);
    QString present = presentNameOfStyle(stored);
    if (present.isNull())
        return stored;
    m_preferences.setValue(keys::outputStyle, present);
    return present;
}

QList<SettingChoice> Settings::OutputStyleItems() const
{
    QList<SettingChoice> items;
    for (const OutputStyleRow& style : outputStyles)
        items.append({m_localization.LT(style.title), style.identifier.toString()});
    return items;
}

QString Settings::TranslationTarget() const
{
    // "none" was left by versions that could translate into no language at all.
    const QString stored = storedString(m_preferences, keys::translationTarget).value_or(QString());
    return stored.isEmpty() || stored == "none"_L1 ? u"english"_s : stored;
}

QList<SettingChoice> Settings::translationTargetItems() const
{
    QList<SettingChoice> items;
    for (const TranslationTargetRow& target : translationTargets)
        items.append({m_localization.LT(target.name), target.identifier.toString()});
    return items;
}

QString Settings::TranslationDisplayNameForTarget(const QString& identifier) const
{
    if (identifier.isNull())
        return m_localization.LT(translationTargets.front().name);
    const auto* const target = std::ranges::find_if(translationTargets,
        [&](const TranslationTargetRow& row) { return row.identifier == identifier; });
    return target == translationTargets.end() ? identifier : m_localization.LT(target->name);
}

QList<SettingChoice> Settings::ShortcutItems() const
{
    QList<SettingChoice> items;
    for (const ShortcutItemRow& item : shortcutItems)
        items.append({m_localization.LT(item.name), item.identifier.toString()});
    return items;
}

QString Settings::ShortcutDisplayNameForIdentifier(const QString& identifier) const
{
    const auto* const item = std::ranges::find_if(
        shortcutItems, [&](const ShortcutItemRow& row) { return row.identifier == identifier; });
    return m_localization.LT(item == shortcutItems.end() ? texts::notSet : item->name);
}

QString Settings::ShortcutDisplayName()
{
    return ShortcutDisplayNameForIdentifier(DictationShortcutIdentifiers().value(0, u"none"_s));
}

QStringList Settings::SanitizedShortcutIdentifiers(const QVariantList& stored)
{
    QStringList identifiers;
    for (const QVariant& element : stored) {
        if (element.typeId() != QMetaType::QString)
            continue;
        const QString identifier = element.toString();
        if (isShortcut(identifier) && !identifiers.contains(identifier))
            identifiers.append(identifier);
        if (identifiers.size() == maxShortcutsPerOperation)
            break;
    }
    return identifiers;
}

QStringList Settings::DictationShortcutIdentifiers()
{
    if (const auto stored = storedArray(m_preferences, keys::dictationShortcutIdentifiers))
        return SanitizedShortcutIdentifiers(*stored);

    const QString single =
        storedString(m_preferences, keys::shortcutMode).value_or(u"rightOption"_s);
    QStringList identifiers = SanitizedShortcutIdentifiers({single});
    if (identifiers.isEmpty())
        identifiers = {u"rightOption"_s};
    m_preferences.setValue(keys::dictationShortcutIdentifiers, identifiers);
    return identifiers;
}

QStringList Settings::TranslationShortcutIdentifiers()
{
    if (const auto stored = storedArray(m_preferences, keys::translationShortcutIdentifiers))
        return SanitizedShortcutIdentifiers(*stored);

    QStringList identifiers = defaultTranslationShortcut();
    if (m_optionSpaceIsKept.has_value()) // Otherwise the answer may be another one next time.
        m_preferences.setValue(keys::translationShortcutIdentifiers, identifiers);
    return identifiers;
}

QStringList Settings::defaultTranslationShortcut()
{
    const QStringList dictation = DictationShortcutIdentifiers();
    // A combination that the window manager reacts to as well is better than one of dictation's.
    const bool kept =
        m_optionSpaceIsKept.value_or(false) && !dictation.contains("controlOptionSpace"_L1);
    const bool taken = kept || dictation.contains("optionSpace"_L1);
    return {taken ? u"controlOptionSpace"_s : u"optionSpace"_s};
}

QStringList Settings::ChatShortcutIdentifiers()
{
    if (const auto stored = storedArray(m_preferences, keys::chatShortcutIdentifiers))
        return SanitizedShortcutIdentifiers(*stored);

    const QStringList taken = DictationShortcutIdentifiers() + TranslationShortcutIdentifiers();
    QStringList identifiers;
    if (!taken.contains("commandShiftSpace"_L1))
        identifiers = {u"commandShiftSpace"_s};
    else if (!taken.contains("controlOptionSpace"_L1))
        identifiers = {u"controlOptionSpace"_s};
    if (storedArray(m_preferences, keys::translationShortcutIdentifiers)) // What it has avoided.
        m_preferences.setValue(keys::chatShortcutIdentifiers, identifiers);
    return identifiers;
}

} // namespace tavrin
