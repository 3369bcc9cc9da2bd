#include "platform/linux/desktop/IcuWordBreaker.h"

#include "base/Log.h"

#include <limits>
#include <unicode/ubrk.h>

namespace tavrin {

IcuWordBreaker::IcuWordBreaker() = default;
IcuWordBreaker::~IcuWordBreaker() = default;

void IcuWordBreaker::Close::operator()(UBreakIterator* iterator) const
{
    ubrk_close(iterator);
}

QList<TextRange> IcuWordBreaker::words(QStringView text)
{
    UErrorCode error = U_ZERO_ERROR;
    if (!m_iterator)
        m_iterator.reset(ubrk_open(UBRK_WORD, "", nullptr, 0, &error));
    if (U_FAILURE(error) || text.size() > std::numeric_limits<int32_t>::max()) {
        qCWarning(log::platform) << "Words cannot be told apart, ICU error" << error;
        return {};
    }
    ubrk_setText(m_iterator.get(), text.utf16(), static_cast<int32_t>(text.size()), &error);
    if (U_FAILURE(error))
        return {};
    QList<TextRange> words;
    int32_t start = ubrk_first(m_iterator.get());
    for (int32_t end = ubrk_next(m_iterator.get()); end != UBRK_DONE;
         end = ubrk_next(m_iterator.get())) {
        // Below this limit lie spaces and punctuation.
        if (ubrk_getRuleStatus(m_iterator.get()) >= UBRK_WORD_NONE_LIMIT)
            words.append({start, end - start});
        start = end;
    }
    return words;
}

} // namespace tavrin
