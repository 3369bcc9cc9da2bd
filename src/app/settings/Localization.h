#pragma once

#include "base/Localize.h"
#include "base/LocalizedText.h"
#include "platform/keyboard/KeyNames.h"

#include <QString>

#include <memory>
#include <optional>

namespace tavrin {

class Preferences;
class Workspace;
struct DesktopTexts;

/// Chooses interface texts by the language of the moment. Nothing is cached: a change of the
/// setting holds for every text asked for afterwards. Main thread only.
class Localization {
public:
    /// @param preferences, workspace must outlive this object.
    Localization(const Preferences& preferences, const Workspace& workspace, KeyNames keyNames);
    /// On a desktop that has texts of its own.
    Localization(const Preferences& preferences, const Workspace& workspace, KeyNames keyNames,
        const DesktopTexts& desktopTexts);
    ~Localization();

    Localization(const Localization&) = delete;
    Localization& operator=(const Localization&) = delete;

    /// "zh-Hans", "zh-Hant" or "en": the user's choice, else what fits the first preferred language
    /// of the system. Languages other than English and Traditional Chinese read as "zh-Hans".
    [[nodiscard]] QString InterfaceLanguage() const;

    /// @p text in the interface language, with the key names of this desktop.
    [[nodiscard]] QString LT(const LocalizedText& text) const;

    /// The same with @p arguments (strings) in place of %1, %2 …; they are inserted as they are.
    template <class... Strings>
    [[nodiscard]] QString LT(const LocalizedText& text, const Strings&... arguments) const
    {
        return LT(text).arg(arguments...);
    }

    /// What a desktop may say in place of a feature's text.
    using DesktopText = std::optional<LocalizedText> DesktopTexts::*;

    /// What this desktop says in place of @p text, which is shown where it says nothing of its own.
    [[nodiscard]] QString desktopText(DesktopText own, const LocalizedText& text) const;
    [[nodiscard]] QString desktopText(DesktopText own, const SimplifiedText& text) const;

    /// @p text, which is in no need of translation, with the key names of this desktop. Apply it to
    /// texts before what the user wrote is inserted into them.
    [[nodiscard]] QString withKeyNames(const QString& text) const;

    /// LT() for modules that know no settings. Must not outlive this object.
    [[nodiscard]] Localize localize() const;

    /// The same texts in the language of this moment, whatever is chosen afterwards.
    [[nodiscard]] std::unique_ptr<const Localization> ofThisMoment() const;

private:
    const Preferences& m_preferences;
    const Workspace& m_workspace;
    KeyNames m_keyNames;
    std::optional<QString> m_language; ///< When it does not follow the setting.
    std::unique_ptr<const DesktopTexts> m_desktopTexts;
};

} // namespace tavrin
