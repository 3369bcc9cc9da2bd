#pragma once

#include "platform/Preferences.h"

#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

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

} // namespace tavrin
