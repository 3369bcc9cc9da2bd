#pragma once

#include "platform/preferences/Preferences.h"

#include <QHash>
#include <QString>

namespace tavrin::testing {

/// Preferences that live as long as the test.
class InMemoryPreferences final : public Preferences {
public:
    [[nodiscard]] QVariant value(const QString& key) const override { return m_values.value(key); }

    void setValue(const QString& key, const QVariant& value) override { m_values[key] = value; }

    void remove(const QString& key) override { m_values.remove(key); }

    void synchronize() override
    {
        ++m_synchronizations;
        m_flushed = m_values;
    }

    [[nodiscard]] int synchronizations() const { return m_synchronizations; }

    /// What a crash would leave of a value: as it was at the last synchronisation.
    [[nodiscard]] QVariant flushed(const QString& key) const { return m_flushed.value(key); }

private:
    QHash<QString, QVariant> m_values;
    QHash<QString, QVariant> m_flushed;
    int m_synchronizations = 0;
};

} // namespace tavrin::testing
