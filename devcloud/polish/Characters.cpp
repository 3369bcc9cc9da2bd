#include "devcloud/polish/Characters.h"

#include "devcloud/text/Ascii.h"

namespace tavrin::devcloud {

bool isHan(char32_t c)
{
    return (c >= 0x3400 && c <= 0x9fff) || (c >= 0xf900 && c <= 0xfaff)
        || (c >= 0x20000 && c <= 0x3ffff) || c == 0x3005 || c == 0x3007;
}

bool isLatin(char32_t c)
{
    return isAsciiLower(c) || isAsciiUpper(c) || (c >= 0xc0 && c < 0x250 && c != 0xd7 && c != 0xf7)
        || (c >= 0x1e00 && c < 0x1f00);
}

bool isOtherLetter(char32_t c)
{
    const bool isAlphabet = (c >= 0x370 && c < 0x1e00) || (c >= 0x1f00 && c < 0x2000);
    const bool isKana = (c >= 0x3040 && c < 0x3200) || (c >= 0xff66 && c < 0xffdd);
    const bool isSyllable = (c >= 0xa000 && c < 0xe000) || (c >= 0xfb1d && c < 0xfe00)
        || (c >= 0xfe70 && c < 0xfeff) || (c >= 0x10000 && c < 0x1f000);
    return isAlphabet || isKana || isSyllable;
}

bool isBlank(char32_t c)
{
    return c == U' ' || c == U'\t' || c == 0xa0 || c == 0x3000 || (c >= 0x2000 && c <= 0x200a);
}

bool isControl(char32_t c)
{
    const bool isAscii = c < 0x20 && c != U'\n' && c != U'\t';
    return isAscii || (c >= 0x7f && c < 0xa0) || c == 0xfeff;
}

bool endsSentence(char32_t c)
{
    return isOneOf(U".!?。！？", c);
}

bool isPause(char32_t c)
{
    return endsSentence(c) || isOneOf(U",;:，；：、…", c);
}

} // namespace tavrin::devcloud
