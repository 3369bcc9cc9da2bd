#pragma once

#include "platform/preferences/Preferences.h"
#include "platform/preferences/Setting.h"

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <cmath>
#include <optional>
#include <type_traits>

/// Typed reads of the preferences. A value of another type counts as absent: settings files are
/// edited by hand, and a number where a text belongs is a mistake, not a text.
namespace tavrin {

[[nodiscard]] inline std::optional<QString> storedString(
    const Preferences& preferences, const QString& key)
{
    const QVariant value = preferences.value(key);
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

[[nodiscard]] inline std::optional<QVariantList> storedArray(
    const Preferences& preferences, const QString& key)
{
    const QVariant value = preferences.value(key);
    if (value.typeId() != QMetaType::QVariantList && value.typeId() != QMetaType::QStringList)
        return std::nullopt;
    return value.toList();
}

/// The finite number that @p value is; empty for anything else, texts with digits included.
[[nodiscard]] inline std::optional<double> storedNumber(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double: {
        const double number = value.toDouble();
        return std::isfinite(number) ? std::optional(number) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

/// A switch: true or false, or a number that is not 0.
[[nodiscard]] inline std::optional<bool> storedBool(
    const Preferences& preferences, const QString& key)
{
    const QVariant value = preferences.value(key);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    const std::optional<double> number = storedNumber(value);
    return number ? std::optional(*number != 0) : std::nullopt;
}

[[nodiscard]] inline std::optional<QVariantMap> storedMap(
    const Preferences& preferences, const QString& key)
{
    const QVariant value = preferences.value(key);
    if (value.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    return value.toMap();
}

/// What is stored under the setting's key, if it is of the setting's type.
template <typename Value>
[[nodiscard]] std::optional<Value> stored(
    const Preferences& preferences, const Setting<Value>& setting)
{
    if constexpr (std::is_same_v<Value, QString>) {
        return storedString(preferences, setting.key);
    } else if constexpr (std::is_same_v<Value, bool>) {
        return storedBool(preferences, setting.key);
    } else if constexpr (std::is_same_v<Value, double>) {
        return storedNumber(preferences.value(setting.key));
    } else if constexpr (std::is_same_v<Value, QVariantMap>) {
        return storedMap(preferences, setting.key);
    } else {
        static_assert(std::is_same_v<Value, QVariantList>);
        return storedArray(preferences, setting.key);
    }
}

/// The setting as it is meant today: what is stored, brought up to date, or its fallback.
template <typename Value>
[[nodiscard]] Value valueOf(const Preferences& preferences, const Setting<Value>& setting)
{
    const std::optional<Value> found = stored(preferences, setting);
    if (!found)
        return setting.fallback;
    for (const auto& [old, present] : setting.former) {
        if (*found == old)
            return present;
    }
    return *found;
}

} // namespace tavrin
