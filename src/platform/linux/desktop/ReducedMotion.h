#pragma once

#include <QObject>

class QDBusVariant;

namespace tavrin {

/// Whether the user asked the desktop for less animation, as the desktop's settings portal says.
/// Asked without waiting, and only where the portal runs already; "no" until it has answered. Main
/// thread only.
class ReducedMotion final : public QObject {
    Q_OBJECT

public:
    /// Asks the desktop, and follows what it says from then on. Called once.
    void follow();

    [[nodiscard]] bool isPreferred() const { return m_preferred; }

private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void ask();

    bool m_preferred = false;
    bool m_isTold = false; ///< Of a change, which is newer than any answer.
};

} // namespace tavrin
