#pragma once

#include "base/TextRange.h"

#include <QList>
#include <QStringView>

namespace tavrin {

/// Finds words, also in languages that write none apart. Main thread only.
class WordBreaker {
public:
    virtual ~WordBreaker() = default;

    /// The words of @p text in order, without spaces and punctuation.
    [[nodiscard]] virtual QList<TextRange> words(QStringView text) = 0;
};

} // namespace tavrin
