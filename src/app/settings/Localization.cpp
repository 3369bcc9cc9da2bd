#include "app/settings/Localization.h"

#include "app/settings/InterfaceLanguages.h"
#include "platform/DesktopTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"
#include "platform/programs/Workspace.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

QString languageForSystem(const QStringList& preferredLanguages)
{
    const QString first = preferredLanguages.value(0, u"zh-hans"_s).toLower();
    if (first.startsWith("zh-hant"_L1) || first.contains("-tw"_L1) || first.contains("-hk"_L1))
        return u"zh-Hant"_s;
    return first.startsWith("en"_L1) ? u"en"_s : u"zh-Hans"_s;
}

QStringView formIn(const QString& language, const LocalizedText& text)
{
    const QStringView form = language == "zh-Hant"_L1 ? text.zhHant
        : language == "en"_L1                         ? text.en
                                                      : text.zhHans;
    return form.isNull() ? text.zhHans : form;
}

} // namespace

Localization::Localization(
    const Preferences& preferences, const Workspace& workspace, KeyNames keyNames)
    : Localization(preferences, workspace, std::move(keyNames), {})
{
}

Localization::Localization(const Preferences& preferences, const Workspace& workspace,
    KeyNames keyNames, const DesktopTexts& desktopTexts)
    : m_preferences(preferences)
    , m_workspace(workspace)
    , m_keyNames(std::move(keyNames))
    , m_desktopTexts(std::make_unique<const DesktopTexts>(desktopTexts))
{
}

Localization::~Localization() = default;

QString Localization::InterfaceLanguage() const
{
    if (m_language)
        return *m_language;
    const QString chosen = valueOf(m_preferences, keys::interfaceLanguage);
    const bool known = std::ranges::any_of(interfaceLanguages,
        [&](const InterfaceLanguageItem& language) { return language.code == chosen; });
    return known ? chosen : languageForSystem(m_workspace.preferredLanguages());
}

QString Localization::LT(const LocalizedText& text) const
{
    return withKeyNames(formIn(InterfaceLanguage(), text).toString());
}

QString Localization::desktopText(DesktopText own, const LocalizedText& text) const
{
    return LT(((*m_desktopTexts).*own).value_or(text));
}

QString Localization::desktopText(DesktopText own, const SimplifiedText& text) const
{
    const std::optional<LocalizedText>& found = (*m_desktopTexts).*own;
    return found ? LT(*found) : text.toString();
}

QString Localization::withKeyNames(const QString& text) const
{
    return m_keyNames.shown(text);
}

Localize Localization::localize() const
{
    return [this](const LocalizedText& text) { return LT(text); };
}

std::unique_ptr<const Localization> Localization::ofThisMoment() const
{
    auto copy =
        std::make_unique<Localization>(m_preferences, m_workspace, m_keyNames, *m_desktopTexts);
    copy->m_language = InterfaceLanguage();
    return copy;
}

} // namespace tavrin
