#pragma once

#include "devcloud/polish/Characters.h"

#include <string_view>

namespace tavrin::devcloud {

/// Tells whether a place lies inside quotation or brackets, when it is shown what stands before.
class Nesting {
public:
    void follow(char32_t c)
    {
        if (c == U'"')
            m_isQuoted = !m_isQuoted;
        else if (isOneOf(U"“「『（(《【", c))
            ++m_depth;
        else if (isOneOf(U"”」』）)》】", c) && m_depth > 0)
            --m_depth;
        else if (c == U'\n')
            *this = {};
    }

    void follow(std::u32string_view text)
    {
        for (const char32_t c : text)
            follow(c);
    }

    [[nodiscard]] bool isInside() const { return m_isQuoted || m_depth > 0; }

private:
    int m_depth = 0;
    bool m_isQuoted = false;
};

} // namespace tavrin::devcloud
