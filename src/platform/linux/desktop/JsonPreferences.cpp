#include "platform/linux/desktop/JsonPreferences.h"

#include "base/Log.h"
#include "platform/linux/desktop/JsonText.h"
#include "platform/linux/desktop/XdgFolders.h"

namespace tavrin {
namespace {

using namespace std::chrono_literals;

// Long enough to gather the changes of one action, short enough to lose nothing worth a thought.
constexpr auto gatheringTime = 300ms;

} // namespace

JsonPreferences::JsonPreferences(QString path, MainQueue& mainQueue)
    : m_mainQueue(mainQueue)
    , m_file(std::move(path))
{
}

JsonPreferences::~JsonPreferences()
{
    synchronize();
}

QString JsonPreferences::userPath()
{
    return xdg::configHome() + QStringLiteral("/Tavrin/preferences.json");
}

QVariant JsonPreferences::value(const QString& key) const
{
    if (const auto changed = m_changes.find(key); changed != m_changes.end())
        return changed->value_or(QVariant());
    return m_file.members().value(key);
}

void JsonPreferences::setValue(const QString& key, const QVariant& value)
{
    const auto plain = json::normalized(value);
    if (!plain) {
        qCWarning(log::platform) << "A setting of a type that cannot be stored was refused:" << key;
        return;
    }
    if (!plain->isValid())
        remove(key);
    else if (json::serialized(this->value(key)) != json::serialized(*plain))
        change(key, plain);
}

void JsonPreferences::remove(const QString& key)
{
    if (m_changes.contains(key) || m_file.members().contains(key))
        change(key, {});
}

void JsonPreferences::synchronize()
{
    if (m_changes.isEmpty())
        return;
    if (m_file.update(m_changes, false) == PreferencesFile::Outcome::Written)
        m_changes.clear();
    m_write.reset();
}

void JsonPreferences::change(const QString& key, const std::optional<QVariant>& value)
{
    m_changes.insert(key, value);
    if (!m_write)
        writeLater(gatheringTime);
}

void JsonPreferences::writeLater(Seconds delay)
{
    m_write = m_mainQueue.after(delay, [this] { writeWhenPossible(); });
}

void JsonPreferences::writeWhenPossible()
{
    m_write.reset();
    switch (m_file.update(m_changes, true)) {
    case PreferencesFile::Outcome::Written:
        m_changes.clear();
        break;
    case PreferencesFile::Outcome::Busy:
        writeLater(PreferencesFile::patience);
        break;
    case PreferencesFile::Outcome::Failed:
        break; // Tried again with the next change.
    }
}

} // namespace tavrin
