#include "devcloud/polish/Cleanup.h"
#include "devcloud/polish/WordList.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>

namespace tavrin::devcloud {
namespace {

using Phrase = std::vector<std::u32string_view>;

/// Sounds that mean nothing wherever they stand. Those of Han are words of their own; inside a word
/// such as 呃逆 the same character is meant.
constexpr std::u32string_view hanSounds = U"嗯呃";
constexpr std::u32string_view pausedHanSounds = U"额诶欸啊哦噢";
constexpr std::u32string_view hanAfterMeantSound = U"逆哼";

/// Whether @p word is @p head, drawn out or not, and then some of @p tail, nothing else.
bool isRun(std::u32string_view word, char32_t head, std::u32string_view tail)
{
    const std::size_t turn = std::min(word.find_first_not_of(head), word.size() - 1);
    return turn != 0 && word.find_first_not_of(tail, turn) == std::u32string_view::npos;
}

bool isAllCapitals(std::u32string_view word)
{
    return std::ranges::all_of(word, isAsciiUpper);
}

/// "um", "uhh", "erm", "hmm", "mm" …; capitals ("ER") are an abbreviation.
bool isEnglishSound(std::u32string_view word)
{
    if (word.size() < 2 || isAllCapitals(word))
        return false;
    const std::u32string small = folded(word);
    return isRun(small, U'u', U"hm") || isRun(small, U'h', U"m") || isRun(small, U'm', U"m")
        || small == U"er" || small == U"erm";
}

class FillerFinder {
public:
    explicit FillerFinder(const Tokens& tokens)
        : m_tokens(tokens)
        , m_isFiller(tokens.size(), false)
    {
    }

    Tokens withoutFillers()
    {
        for (std::size_t at = 0; at < m_tokens.size(); ++at)
            m_isFiller[at] = isSound(at);
        for (std::size_t at = 0; at < m_tokens.size(); ++at)
            markPhraseAt(at);
        return remaining();
    }

private:
    [[nodiscard]] bool isSound(std::size_t at) const
    {
        const Token& token = m_tokens[at];
        if (token.kind == TokenKind::Word)
            return isEnglishSound(token.text) && !followsNumber(at);
        if (token.kind != TokenKind::Han)
            return false;
        const char32_t c = token.text.front();
        if (hanSounds.find(c) != std::u32string_view::npos)
            return !nextIsOneOf(at, hanAfterMeantSound) && !follows(at, U"打");
        return pausedHanSounds.find(c) != std::u32string_view::npos && isPauseBefore(at)
            && isPauseAfter(at + 1);
    }

    /// "5 mm" is a length.
    [[nodiscard]] bool followsNumber(std::size_t at) const
    {
        return at > 0 && isAsciiDigit(m_tokens[at - 1].text.back());
    }

    [[nodiscard]] bool follows(std::size_t at, std::u32string_view text) const
    {
        return at > 0 && m_tokens[at - 1].text == text;
    }

    [[nodiscard]] bool nextIsOneOf(std::size_t at, std::u32string_view characters) const
    {
        return at + 1 < m_tokens.size() && m_tokens[at + 1].kind == TokenKind::Han
            && characters.find(m_tokens[at + 1].text.front()) != std::u32string_view::npos;
    }

    [[nodiscard]] bool isPauseBefore(std::size_t at) const
    {
        return at == 0 || m_isFiller[at - 1] || m_tokens[at - 1].kind == TokenKind::Mark;
    }

    [[nodiscard]] bool isPauseAfter(std::size_t end) const
    {
        return end == m_tokens.size() || m_isFiller[end] || isComma(m_tokens[end]);
    }

    [[nodiscard]] bool standsAt(std::size_t at, const Phrase& phrase) const
    {
        if (at + phrase.size() > m_tokens.size())
            return false;
        return std::equal(phrase.begin(), phrase.end(),
            m_tokens.begin() + static_cast<std::ptrdiff_t>(at),
            [](std::u32string_view word, const Token& token) {
                return equalsFolded(token.text, word);
            });
    }

    void markPhraseAt(std::size_t at)
    {
        static const std::vector<Phrase> phrases{{U"那", U"个"}, {U"这", U"个"},
            {U"就", U"是", U"说"}, {U"就", U"是"}, {U"怎", U"么", U"说", U"呢"},
            {U"怎", U"么", U"说"}, {U"那", U"什", U"么"}, {U"you", U"know"}, {U"i", U"mean"},
            {U"like"}};
        for (const Phrase& phrase : phrases) {
            const std::size_t end = at + phrase.size();
            if (!standsAt(at, phrase) || !isPauseBefore(at) || !isPauseAfter(end))
                continue;
            // Between the beginning and the end of a sentence it would be all that was said.
            const bool isWhole = at == 0 && end == m_tokens.size();
            if (isWhole)
                continue;
            std::fill_n(m_isFiller.begin() + static_cast<std::ptrdiff_t>(at), phrase.size(), true);
            return;
        }
    }

    /// What is left, without the commas that were the fillers' own.
    [[nodiscard]] Tokens remaining() const
    {
        Tokens left;
        bool followsFiller = false;
        for (std::size_t at = 0; at < m_tokens.size(); ++at) {
            if (!m_isFiller[at] && !(followsFiller && dropsComma(m_tokens[at], left)))
                left.push_back(m_tokens[at]);
            followsFiller = m_isFiller[at];
        }
        while (!left.empty() && left.size() < m_tokens.size() && isComma(left.back()))
            left.pop_back();
        return left;
    }

    /// Whether @p token is the comma behind a filler and goes with it. A filler between two commas
    /// takes one of them along, in English both.
    static bool dropsComma(const Token& token, Tokens& left)
    {
        if (!isComma(token))
            return false;
        const bool isBetween = !left.empty() && isComma(left.back());
        const bool opens = left.empty();
        if (isBetween && left.back().text == U",")
            left.pop_back();
        return opens || isBetween;
    }

    const Tokens& m_tokens;
    std::vector<bool> m_isFiller;
};

} // namespace

Tokens withoutFillers(const Tokens& tokens)
{
    return FillerFinder(tokens).withoutFillers();
}

} // namespace tavrin::devcloud
