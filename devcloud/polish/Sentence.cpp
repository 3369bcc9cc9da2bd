#include "devcloud/polish/Sentence.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/EnglishLine.h"
#include "devcloud/polish/EnglishWords.h"
#include "devcloud/polish/Nesting.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>

namespace tavrin::devcloud {
namespace {

bool isSpace(char32_t c)
{
    return isBlank(c) || c == U'\n';
}

Run lastRun(std::u32string_view text)
{
    const auto start = std::find_if(text.rbegin(), text.rend(), isSpace).base();
    const Runs runs = runsOf({start, text.end()});
    return runs.empty() ? Run{} : runs.front();
}

/// Abbreviations that a capital may follow within a sentence.
bool isAbbreviation(std::u32string_view word)
{
    constexpr std::u32string_view abbreviations =
        U" mr mrs ms dr prof rev gen sen rep gov st mt ft inc ltd co corp llc jr sr vs etc approx "
        U"dept est fig vol nos ch sec art jan feb mar apr jun jul aug sep sept oct nov dec mon "
        U"tue "
        U"wed thu fri sat sun ave blvd rd ed eds al ph phd capt col lt sgt hon ";
    return abbreviations.find(U' ' + folded(word) + U' ') != std::u32string_view::npos;
}

/// Whether the mark behind the word ends a sentence and is no part of an abbreviation.
bool endsEnglish(const Run& last)
{
    constexpr std::size_t shortest = 2; // "J. Smith"
    return last.closing.size() == 1 && last.isPlain() && last.word.size() >= shortest
        && !isAbbreviation(last.word);
}

class Splitter {
public:
    explicit Splitter(std::u32string_view text)
        : m_text(text)
    {
    }

    std::vector<Sentence> run()
    {
        while (m_at < m_text.size()) {
            const char32_t c = m_text[m_at];
            m_nesting.follow(c);
            ++m_at;
            if (c == U'\n')
                finish(m_at - 1);
            else if (!m_nesting.isInside() && endsHere())
                finish(m_at);
        }
        finish(m_at);
        return std::move(m_sentences);
    }

private:
    /// Whether the sentence ends with the mark before m_at.
    [[nodiscard]] bool endsHere() const
    {
        const char32_t mark = m_text[m_at - 1];
        const char32_t next = m_at < m_text.size() ? m_text[m_at] : U'\n';
        if (!endsSentence(mark) || endsSentence(next) || isOneOf(U"”」』）)》】\"'’", next))
            return false;
        if (isOneOf(U"。！？", mark))
            return true;
        const std::size_t following = m_text.find_first_not_of(U" \t", m_at);
        if (!isSpace(next) || following == std::u32string_view::npos)
            return false;
        if (!isAsciiUpper(m_text[following]) && !isHan(m_text[following]))
            return false;
        const Run last = lastRun(m_text.substr(m_start, m_at - m_start));
        // "Yahoo! News", "no. A 12"
        if (mark == U'!' && !isEnglish(last.small))
            return false;
        const bool isNumber = last.small == U"no"
            && (following + 1 == m_text.size() || !isAsciiLower(m_text[following + 1]));
        return endsEnglish(last) && !isNumber;
    }

    void finish(std::size_t end)
    {
        const std::u32string_view all = m_text.substr(m_start, end - m_start);
        const auto start = std::ranges::find_if_not(all, isSpace);
        m_gap.append(all.begin(), start);
        m_start = end;
        if (start == all.end())
            return;
        const auto last = std::find_if_not(all.rbegin(), all.rend(), isSpace).base();
        m_sentences.push_back({std::move(m_gap), {start, last}});
        m_gap.assign(last, all.end());
    }

    std::u32string_view m_text;
    std::vector<Sentence> m_sentences;
    std::u32string m_gap;
    std::size_t m_start = 0;
    std::size_t m_at = 0;
    Nesting m_nesting; ///< Of what stands before m_at; nothing is cut inside.
};

} // namespace

std::vector<Sentence> splitSentences(std::u32string_view text)
{
    return Splitter(text).run();
}

std::u32string withoutStop(std::u32string_view sentence)
{
    const std::u32string_view rest =
        sentence.substr(0, std::max<std::size_t>(sentence.size(), 1) - 1);
    const bool isChinese = sentence.ends_with(U'。') && !rest.empty() && !isPause(rest.back());
    const Run last = sentence.ends_with(U'.') ? lastRun(sentence) : Run{};
    const bool isEnglishStop =
        last.closing == U"." && (endsEnglish(last) || (last.isPlain() && isEnglish(last.small)));
    return std::u32string(isChinese || isEnglishStop ? rest : sentence);
}

} // namespace tavrin::devcloud
