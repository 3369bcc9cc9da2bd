#pragma once

#include <QString>
#include <QStringList>

namespace tavrin::bench {

/// The words of a text as they are compared: small letters, digits and apostrophes only.
[[nodiscard]] QStringList comparedWords(const QString& text);

/// Insertions, deletions and substitutions that lead from what was said to what was understood.
[[nodiscard]] int wordErrors(const QStringList& said, const QStringList& understood);

} // namespace tavrin::bench
