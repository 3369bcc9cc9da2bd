#pragma once

#include "base/CallbackGuard.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace tavrin {

class Alerts;
class Localization;
class Preferences;
class SystemInfo;
class Workspace;

/// The dialog for the model provider. Its values only label usage reports: nothing is ever sent to
/// the provider, nor the key anywhere. Main thread only.
class ProviderSettings {
public:
    struct Neighbours {
        Alerts& alerts;
        const Localization& localization;
        Preferences& preferences;
        std::function<void()> refreshHealthStatus; ///< Values were stored.
        const SystemInfo& systemInfo;
        Workspace& workspace;
    };

    /// @param neighbours must outlive this object.
    explicit ProviderSettings(Neighbours neighbours);

    /// Asks for key, base URL and model. A field that is left empty keeps what is stored, so that
    /// nothing can be cleared here.
    void promptAPIKey();

private:
    [[nodiscard]] bool hasKey() const;
    void save(const QStringList& fields);

    Neighbours m_neighbours;
    CallbackGuard m_guard;
};

} // namespace tavrin
