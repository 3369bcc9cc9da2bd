#pragma once

#include "platform/WordBreaker.h"

namespace tavrin::testing {

/// Words are runs of letters and digits. Nothing knows where one Chinese word ends.
class InMemoryWordBreaker final : public WordBreaker {
public:
    [[nodiscard]] QList<TextRange> words(QStringView text) override
    {
        QList<TextRange> found;
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (!text[i].isLetterOrNumber())
                continue;
            if (i == 0 || !text[i - 1].isLetterOrNumber())
                found.append({i, 0});
            ++found.last().length;
        }
        return found;
    }
};

} // namespace tavrin::testing
