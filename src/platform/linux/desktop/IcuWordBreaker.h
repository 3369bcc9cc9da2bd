#pragma once

#include "platform/WordBreaker.h"

#include <memory>

struct UBreakIterator;

namespace tavrin {

/// Words by the rules of Unicode and, for Chinese, Japanese and Thai, by the dictionaries of ICU.
/// They are opened with the first text.
class IcuWordBreaker final : public WordBreaker {
public:
    IcuWordBreaker();
    ~IcuWordBreaker() override;

    IcuWordBreaker(const IcuWordBreaker&) = delete;
    IcuWordBreaker& operator=(const IcuWordBreaker&) = delete;

    [[nodiscard]] QList<TextRange> words(QStringView text) override;

private:
    struct Close {
        void operator()(UBreakIterator* iterator) const;
    };

    std::unique_ptr<UBreakIterator, Close> m_iterator;
};

} // namespace tavrin
