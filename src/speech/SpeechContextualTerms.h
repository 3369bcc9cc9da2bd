#pragma once

#include <QStringList>

namespace tavrin {

/// The terms that every recognition favours: a fixed list of product and technology names, then
/// the user's @p dictionaryTerms in their order; 100 at most. Nothing is de-duplicated.
[[nodiscard]] QStringList SpeechContextualTerms(const QStringList& dictionaryTerms);

} // namespace tavrin
