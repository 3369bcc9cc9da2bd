#pragma once

#include "platform/preferences/Preferences.h"
#include "support/ports/Note.h"

#include <QHash>
#include <QString>

#include <utility>

namespace tavrin::testing {

/// Preferences that live as long as the test.
class InMemoryPreferences final : public Preferences {
public:
    /// @param note is told of "store KEY" and "synchronize".
    explicit InMemoryPreferences(Note note = {})
        : m_note(std::move(note))
    {
    }

    /// What was stored before the program came; not noted.
    void arrange(const QString& key, const QVariant& value) { m_values[key] = value; }

    [[nodiscard]] QVariant value(const QString& key) const override { return m_values.value(key); }

    void setValue(const QString& key, const QVariant& value) override
    {
        tell(m_note, QStringLiteral("store ") + key);
        m_values[key] = value;
    }

    void remove(const QString& key) override { m_values.remove(key); }

    void synchronize() override
    {
        tell(m_note, QStringLiteral("synchronize"));
        ++m_synchronizations;
        m_flushed = m_values;
    }

    [[nodiscard]] int synchronizations() const { return m_synchronizations; }

    /// What a crash would leave of a value: as it was at the last synchronisation.
    [[nodiscard]] QVariant flushed(const QString& key) const { return m_flushed.value(key); }

private:
    Note m_note;
    QHash<QString, QVariant> m_values;
    QHash<QString, QVariant> m_flushed;
    int m_synchronizations = 0;
};

} // namespace tavrin::testing
