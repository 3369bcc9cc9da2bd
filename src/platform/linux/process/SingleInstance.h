#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <functional>

namespace tavrin {

/// Makes sure that the program runs once in a session: the first start claims a name on the session
/// bus, and a second one asks the first to show itself. Main thread. Without a session bus every
/// start counts as the first. No call waits longer than two seconds for a hung bus or program.
class SingleInstance final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit SingleInstance(QDBusConnection bus = QDBusConnection::sessionBus());
    ~SingleInstance() override;

    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Whether this process is the one that stays.
    [[nodiscard]] bool isFirst() const { return m_first; }

    /// Asks the first instance to come to the front. False when it does not answer.
    [[nodiscard]] bool activateFirst() const;

    /// What to do when another start asks; a request that came before is answered now.
    void setActivated(std::function<void()> activated);

    /// The remote side of activateFirst(); the name is that of the bus interface.
    // NOLINTNEXTLINE(readability-identifier-naming): see above
    Q_SLOT void Activate(const QVariantMap& platformData);

private:
    [[nodiscard]] bool claimName();

    QDBusConnection m_bus;
    bool m_first;
    std::function<void()> m_activated;
    bool m_asked = false;
};

} // namespace tavrin
