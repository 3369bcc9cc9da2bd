#include "app/account/ProviderSettings.h"

#include "app/account/ProviderTexts.h"
#include "app/settings/Localization.h"
#include "cloud/ProviderPreferences.h"
#include "platform/Alerts.h"
#include "platform/DesktopTexts.h"
#include "platform/SystemInfo.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"
#include "platform/programs/Workspace.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr int saveButton = 0;

AlertField keyField(bool stored)
{
    return AlertField{.label = texts::apiKeyLabel.toString(),
        .text = {},
        .placeholder = (stored ? texts::keyIsStored : texts::keyExample).toString(),
        .secure = true};
}

AlertField textField(const SimplifiedText& label, const QString& text)
{
    return AlertField{.label = label.toString(), .text = text, .placeholder = {}, .secure = false};
}

} // namespace

ProviderSettings::ProviderSettings(Neighbours neighbours)
    : m_neighbours(std::move(neighbours))
{
}

void ProviderSettings::promptAPIKey()
{
    m_neighbours.workspace.activateThisApplication();

    Alert alert;
    alert.messageText = texts::modelApiSettings.toString();
    alert.informativeText =
        m_neighbours.localization.desktopText(&DesktopTexts::modelApiNotice, texts::modelApiNotice);
    alert.buttons = {texts::save.toString(), texts::cancel.toString()};
    alert.fields = {keyField(hasKey()),
        textField(texts::baseUrlLabel, providerBaseUrl(m_neighbours.preferences)),
        textField(texts::modelLabel, providerModel(m_neighbours.preferences))};
    m_neighbours.alerts.show(alert, m_guard.bind([this](const AlertAnswer& answer) {
        if (answer.button == saveButton)
            save(answer.fields);
    }));
}

bool ProviderSettings::hasKey() const
{
    return !m_neighbours.systemInfo.environmentVariable(u"OPENAI_API_KEY"_s).isEmpty()
        || stored(m_neighbours.preferences, keys::providerAPIKey).has_value();
}

void ProviderSettings::save(const QStringList& fields)
{
    const QStringList names{keys::providerAPIKey, keys::providerBaseURL, keys::providerModel};
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QString value = fields.value(i).trimmed();
        if (!value.isEmpty())
            m_neighbours.preferences.setValue(names[i], value);
    }
    m_neighbours.preferences.synchronize();
    m_neighbours.refreshHealthStatus();
}

} // namespace tavrin
