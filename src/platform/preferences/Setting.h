#pragma once

#include <QList>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <utility>

namespace tavrin {

/// One row of the table of settings. Stands for its key where only that is asked for.
template <typename Value>
struct Setting {
    QString key;
    Value fallback{}; ///< What it is while nothing of its type is stored.
    QList<std::pair<Value, Value>> former{}; ///< Values that mean another: an old or an empty one.

    operator const QString&() const { return key; } // NOLINT(google-explicit-constructor)
};

} // namespace tavrin
