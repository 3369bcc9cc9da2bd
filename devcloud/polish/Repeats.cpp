#include "devcloud/polish/Cleanup.h"
#include "devcloud/polish/WordList.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>
#include <array>

namespace tavrin::devcloud {
namespace {

/// English words that are never meant twice in a row. "That", "had", "is", "in", "on" and "so" can
/// be, as in "what it is is a problem" or "log on on Monday".
constexpr auto neverTwice = std::to_array<std::u32string_view>(
    {U"the", U"a", U"an", U"i", U"we", U"you", U"he", U"she", U"they", U"of", U"with", U"and",
        U"or", U"but", U"if", U"are", U"was", U"were", U"my", U"your", U"his", U"our", U"their",
        U"this", U"could", U"would", U"should", U"because", U"from", U"when", U"what", U"how",
        U"where", U"i'm", U"it's", U"we're", U"they're", U"you're", U"don't", U"i'll"});
constexpr auto subjects =
    std::to_array<std::u32string_view>({U"i", U"we", U"you", U"he", U"she", U"it", U"they"});

/// Doubled conjunctions are stammered wherever they stand.
constexpr auto hanConjunctions = std::to_array<std::u32string_view>(
    {U"然后", U"因为", U"但是", U"所以", U"如果", U"而且", U"或者", U"比如"});
/// These only at the beginning of a clause: inside one, 告诉你你就 says 你 twice and means it.
constexpr auto hanOpenings = std::to_array<std::u32string_view>({U"我觉得", U"我想", U"我们",
    U"你们", U"他们", U"她们", U"这个", U"那个", U"我", U"你", U"他", U"她", U"它", U"这", U"那"});

class RepeatRemover {
public:
    explicit RepeatRemover(const Tokens& tokens)
        : m_tokens(tokens)
    {
    }

    Tokens run()
    {
        while (m_at < m_tokens.size()) {
            if (const std::size_t skipped = repeatLength(); skipped > 0)
                m_at += skipped;
            else
                m_kept.push_back(m_tokens[m_at++]);
        }
        return std::move(m_kept);
    }

private:
    [[nodiscard]] std::u32string wordAt(std::size_t at) const
    {
        if (at >= m_tokens.size() || m_tokens[at].kind != TokenKind::Word)
            return {};
        return folded(m_tokens[at].text);
    }

    [[nodiscard]] bool isHanAt(std::size_t at) const
    {
        return at < m_tokens.size() && m_tokens[at].kind == TokenKind::Han;
    }

    /// How many tokens from here are said again right after; the first saying goes.
    [[nodiscard]] std::size_t repeatLength() const
    {
        return isHanAt(m_at) ? hanRepeat() : englishRepeat();
    }

    [[nodiscard]] std::size_t englishRepeat() const
    {
        const std::u32string word = wordAt(m_at);
        if (word.empty())
            return 0;
        if (isCutOff(word))
            return 1;
        if (contains(neverTwice, word)) {
            if (wordAt(m_at + 1) == word)
                return 1;
            const bool commaBetween = m_at + 1 < m_tokens.size() && isComma(m_tokens[m_at + 1]);
            if (commaBetween && wordAt(m_at + 2) == word)
                return 2;
        }
        const std::u32string verb = wordAt(m_at + 1);
        const bool saysClauseTwice = contains(subjects, word) && !verb.empty()
            && wordAt(m_at + 2) == word && wordAt(m_at + 3) == verb;
        return saysClauseTwice ? 2 : 0;
    }

    /// "th- the": a word that broke off and was begun again.
    [[nodiscard]] bool isCutOff(const std::u32string& word) const
    {
        constexpr std::size_t longestFragment = 5;
        return word.size() > 1 && word.size() <= longestFragment && word.back() == U'-'
            && wordAt(m_at + 1).starts_with(std::u32string_view(word).substr(0, word.size() - 1));
    }

    [[nodiscard]] std::size_t hanRepeat() const
    {
        for (const std::u32string_view conjunction : hanConjunctions) {
            if (const std::size_t length = repeatOf(conjunction); length > 0)
                return length;
        }
        for (const std::u32string_view opening : hanOpenings) {
            const std::size_t length = repeatOf(opening);
            const bool threeTimes = length > 0 && opensWith(opening, m_at + length)
                && opensWith(opening, m_at + length + opening.size());
            if (length > 0 && (atClauseStart() || threeTimes))
                return length;
        }
        return atClauseStart() && isHalfDemonstrative() ? 1 : 0;
    }

    [[nodiscard]] bool opensWith(std::u32string_view phrase, std::size_t at) const
    {
        return hanStandsAt(m_tokens, at, phrase);
    }

    /// How many tokens the first saying takes, with a comma behind it, when a second one follows.
    [[nodiscard]] std::size_t repeatOf(std::u32string_view phrase) const
    {
        if (!opensWith(phrase, m_at))
            return 0;
        std::size_t next = m_at + phrase.size();
        if (next < m_tokens.size() && isComma(m_tokens[next]))
            ++next;
        return opensWith(phrase, next) ? next - m_at : 0;
    }

    /// 这这个, 那那个.
    [[nodiscard]] bool isHalfDemonstrative() const
    {
        return opensWith(U"这这个", m_at) || opensWith(U"那那个", m_at);
    }

    [[nodiscard]] bool atClauseStart() const
    {
        // Seen from what is kept: a first saying that went opens nothing.
        return m_kept.empty() || m_kept.back().kind == TokenKind::Mark;
    }

    const Tokens& m_tokens;
    Tokens m_kept;
    std::size_t m_at = 0;
};

} // namespace

Tokens withoutRepeats(const Tokens& tokens)
{
    return RepeatRemover(tokens).run();
}

} // namespace tavrin::devcloud
