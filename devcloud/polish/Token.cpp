#include "devcloud/polish/Token.h"

#include "devcloud/text/Ascii.h"

#include <algorithm>

namespace tavrin::devcloud {
namespace {

bool isIn(std::u32string_view set, char32_t c)
{
    return set.find(c) != std::u32string_view::npos;
}

bool isSpace(char32_t c)
{
    return isAsciiSpace(c) || c == 0xa0 || c == 0x3000 || (c >= 0x2000 && c <= 0x200a);
}

bool isInvisible(char32_t c)
{
    return c < 0x20 || (c >= 0x7f && c < 0xa0) || c == 0x200b || c == 0xfeff;
}

bool isAsciiAlphanumeric(char32_t c)
{
    return isAsciiDigit(c) || isAsciiUpper(c) || isAsciiLower(c);
}

bool isMark(char32_t c)
{
    return isIn(U",.!?;:，。！？；：、…", c);
}

/// Letters beyond ASCII; punctuation and pictures have blocks of their own.
bool isOtherLetter(char32_t c)
{
    const bool isLetterBlock = (c >= 0xc0 && c < 0x2000 && c != 0xd7 && c != 0xf7)
        || (c >= 0x2c00 && c < 0x2e00) || (c >= 0xa000 && c < 0xe000) || (c >= 0xfb00 && c < 0xfe00)
        || (c >= 0xfe70 && c < 0xfeff);
    return isLetterBlock && !isHan(c);
}

bool isWordCharacter(char32_t c)
{
    return isAsciiAlphanumeric(c) || isOtherLetter(c) || c == U'_';
}

class Tokenizer {
public:
    explicit Tokenizer(std::u32string_view text)
        : m_text(text)
    {
    }

    Tokens run()
    {
        while (m_at < m_text.size())
            takeOne();
        return std::move(m_tokens);
    }

private:
    [[nodiscard]] char32_t peek(std::size_t ahead = 0) const
    {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : U'\0';
    }

    void takeOne()
    {
        const char32_t c = peek();
        if (c == U'\n' || isSpace(c) || isInvisible(c)) {
            if (c == U'\n')
                m_tokens.push_back({TokenKind::LineBreak, U"\n"});
            m_space = m_space || isSpace(c);
            ++m_at;
        } else if (isHan(c)) {
            add(TokenKind::Han, 1);
        } else if (isWordCharacter(c) || startsPrefixedWord()) {
            add(TokenKind::Word, wordLength());
        } else if (isMark(c)) {
            add(TokenKind::Mark, markLength());
        } else {
            add(TokenKind::Symbol, 1);
        }
    }

    void add(TokenKind kind, std::size_t length)
    {
        m_tokens.push_back({kind, std::u32string(m_text.substr(m_at, length)), m_space});
        m_at += length;
        m_space = false;
    }

    /// "$5", "#1", "@name", "-5", ".5"; but a minus inside a word run is a hyphen or dash.
    [[nodiscard]] bool startsPrefixedWord() const
    {
        const bool startsFresh = m_at == 0 || isSpace(m_text[m_at - 1]) || isHan(m_text[m_at - 1]);
        const char32_t next = peek(1);
        if (isIn(U"-+.", peek()))
            return startsFresh && isAsciiDigit(next);
        return isIn(U"$#@€£¥", peek()) && isWordCharacter(next);
    }

    [[nodiscard]] std::size_t wordLength() const
    {
        std::size_t length = 1;
        while (isWordCharacter(peek(length)) || joinsWord(length))
            ++length;
        while (isIn(U"%+#℃°", peek(length)))
            ++length;
        const bool isCutOff =
            peek(length) == U'-' && !isWordCharacter(peek(length + 1)) && peek(length + 1) != U'-';
        return isCutOff ? length + 1 : length;
    }

    /// Marks inside an address, number or word: "don't", "3.5", "a@b.c", "10:30", "https://…".
    [[nodiscard]] bool joinsWord(std::size_t length) const
    {
        const char32_t c = peek(length);
        const char32_t before = peek(length - 1);
        const char32_t after = peek(length + 1);
        if (isIn(U",:", c))
            return (isAsciiDigit(before) && isAsciiDigit(after))
                || (c == U':' && after == U'/' && peek(length + 2) == U'/');
        if (c == U'/' && (before == U':' || before == U'/' || after == U'/'))
            return isWordCharacter(after) || after == U'/';
        return isIn(U"'’.@-/?=&#+%~", c) && isWordCharacter(before) && isWordCharacter(after)
            && (c != U'?' || m_text.substr(m_at, length).find(U"://") != std::u32string_view::npos);
    }

    [[nodiscard]] std::size_t markLength() const
    {
        std::size_t length = 1;
        while (isMark(peek(length)) && !isIn(U",:;，；：、", peek())
            && !isIn(U",:;，；：、", peek(length)))
            ++length;
        return length;
    }

    std::u32string_view m_text;
    std::size_t m_at = 0;
    bool m_space = false;
    Tokens m_tokens;
};

char32_t foldedCharacter(char32_t c)
{
    if (c == U'’')
        return U'\'';
    return isAsciiUpper(c) ? c + (U'a' - U'A') : c;
}

bool isLatinLetter(char32_t c)
{
    return isAsciiUpper(c) || isAsciiLower(c) || (c >= 0xc0 && c < 0x250);
}

bool isWide(char32_t c)
{
    return isIn(U"，。！？；：、", c);
}

bool needsSpace(const Token& left, const Token& right)
{
    if (right.kind == TokenKind::Mark || left.kind == TokenKind::LineBreak
        || right.kind == TokenKind::LineBreak)
        return false;
    if (left.kind == TokenKind::Symbol || right.kind == TokenKind::Symbol)
        return right.spaceBefore;
    if (left.kind == TokenKind::Mark)
        return !isWide(left.text.back()) && left.text.back() != U'…';
    if (left.kind == TokenKind::Han && right.kind == TokenKind::Han)
        return false;
    if (left.kind == TokenKind::Word && right.kind == TokenKind::Word)
        return true;
    // Bare digits belong to the Han beside them as they were: "3月" and "15 个" are both good.
    const Token& word = left.kind == TokenKind::Word ? left : right;
    return right.spaceBefore || std::ranges::any_of(word.text, isLatinLetter);
}

} // namespace

bool isHan(char32_t c)
{
    return (c >= 0x3400 && c <= 0x9fff) || (c >= 0xf900 && c <= 0xfaff)
        || (c >= 0x20000 && c <= 0x3ffff) || (c >= 0x3040 && c <= 0x30ff) || c == 0x3005
        || c == 0x3007;
}

bool endsSentence(const Token& mark)
{
    return mark.kind == TokenKind::Mark && isIn(U".!?。！？…", mark.text.back());
}

bool isComma(const Token& mark)
{
    return mark.kind == TokenKind::Mark && isIn(U",，、", mark.text.back());
}

bool hanStandsAt(const Tokens& tokens, std::size_t at, std::u32string_view phrase)
{
    if (at > tokens.size() || phrase.size() > tokens.size() - at)
        return false;
    return std::equal(phrase.begin(), phrase.end(),
        tokens.begin() + static_cast<std::ptrdiff_t>(at), [](char32_t c, const Token& token) {
            return token.kind == TokenKind::Han && token.text.front() == c;
        });
}

std::u32string folded(std::u32string_view word)
{
    std::u32string result(word);
    std::ranges::transform(result, result.begin(), foldedCharacter);
    return result;
}

bool equalsFolded(std::u32string_view word, std::u32string_view small)
{
    return std::ranges::equal(word, small, {}, foldedCharacter);
}

Tokens tokenize(std::u32string_view text)
{
    return Tokenizer(text).run();
}

std::u32string render(const Tokens& tokens)
{
    std::u32string text;
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        if (at > 0 && needsSpace(tokens[at - 1], tokens[at]))
            text += U' ';
        text += tokens[at].text;
    }
    return text;
}

} // namespace tavrin::devcloud
