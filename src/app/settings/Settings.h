#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

namespace tavrin {

class HotKeyProbe;
class Localization;
class Preferences;

/// One entry of a menu or popup: what is shown and what is stored.
struct SettingChoice {
    QString title;
    QString identifier;

    friend bool operator==(const SettingChoice&, const SettingChoice&) = default;
};

/// The settings that menus, pages and sessions share. Fills in what is missing and brings old
/// values up to date. No value is cached; a value of the wrong type counts as absent. Titles are in
/// the interface language of the moment. Main thread only.
class Settings {
public:
    /// @param preferences, localization must outlive this object.
    /// @param probe too; it is asked at once. Without one the desktop keeps no combination.
    Settings(
        Preferences& preferences, const Localization& localization, HotKeyProbe* probe = nullptr);

    /// Asks the desktop again which combinations it keeps, while the user has none of his own.
    /// True when an operation has another default by it.
    bool lookAtDesktop();

    /// The identifier of the writing style, unknown ones as stored. Stores the present name of a
    /// style that was stored under an old one.
    [[nodiscard]] QString OutputStyle();

    void setOutputStyle(const QString& identifier);

    /// The six styles of `outputStyles`, in its order.
    [[nodiscard]] QList<SettingChoice> OutputStyleItems() const;

    /// The identifier of the language to translate into, unknown ones as stored.
    [[nodiscard]] QString TranslationTarget() const;

    /// Flushes to disk too.
    void setTranslationTarget(const QString& identifier);

    /// The 42 languages of `translationTargets`, in its order.
    [[nodiscard]] QList<SettingChoice> translationTargetItems() const;

    /// The language's name; an identifier that is not in the table as it is, and English for null.
    [[nodiscard]] QString TranslationDisplayNameForTarget(const QString& identifier) const;

    /// The six shortcuts of `shortcutItems`, in its order.
    [[nodiscard]] QList<SettingChoice> ShortcutItems() const;

    /// The shortcut's name; "Not set" for anything unknown.
    [[nodiscard]] QString ShortcutDisplayNameForIdentifier(const QString& identifier) const;

    /// The name of the first dictation shortcut; "Not set" when there is none.
    [[nodiscard]] QString ShortcutDisplayName();

    /// What of @p stored is a shortcut: no "none", nothing twice, two at most, in order.
    [[nodiscard]] static QStringList SanitizedShortcutIdentifiers(const QVariantList& stored);

    /// The shortcuts of the three operations, at most two each; an empty list stays empty. Each
    /// stores its default when nothing is stored yet; the defaults avoid each other and what the
    /// desktop keeps. Where it may still come to keep one, the default is found anew at every
    /// start.
    [[nodiscard]] QStringList DictationShortcutIdentifiers();
    [[nodiscard]] QStringList TranslationShortcutIdentifiers();
    [[nodiscard]] QStringList ChatShortcutIdentifiers();

private:
    [[nodiscard]] std::optional<bool> isOptionSpaceKept() const;
    [[nodiscard]] QStringList defaultTranslationShortcut();

    Preferences& m_preferences;
    const Localization& m_localization;
    HotKeyProbe* m_probe;
    std::optional<bool> m_optionSpaceIsKept; ///< What the desktop said last; empty: not for good.
};

} // namespace tavrin
