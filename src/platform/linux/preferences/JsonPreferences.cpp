#include "platform/linux/preferences/JsonPreferences.h"

#include "base/Log.h"
#include "platform/linux/desktop/XdgFolders.h"

#include <QJsonValue>

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

using namespace std::chrono_literals;

// Long enough to gather the changes of one action, short enough to lose nothing worth a thought.
constexpr auto gatheringTime = 300ms;

constexpr int deepestNesting = 256;

/// Whether JSON holds it, and the file can be read again with it inside.
bool isStorable(const QVariant& value, int levels = deepestNesting)
{
    const auto isInsideStorable = [levels](const QVariant& each) {
        return isStorable(each, levels - 1);
    };
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::QString:
    case QMetaType::QStringList:
        return true;
    case QMetaType::Float:
    case QMetaType::Double:
        return std::isfinite(value.toDouble());
    case QMetaType::QVariantList:
        return levels > 0 && std::ranges::all_of(value.toList(), isInsideStorable);
    case QMetaType::QVariantMap:
        return levels > 0 && std::ranges::all_of(value.toMap(), isInsideStorable);
    default:
        return false;
    }
}

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
    if (!value.isValid()) {
        remove(key);
        return;
    }
    if (!isStorable(value)) {
        qCWarning(log::platform) << "A setting of a type that cannot be stored was refused:" << key;
        return;
    }
    const QJsonValue plain = QJsonValue::fromVariant(value);
    if (QJsonValue::fromVariant(this->value(key)) != plain)
        change(key, plain.toVariant());
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
