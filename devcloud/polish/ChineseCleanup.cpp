#include "devcloud/polish/Characters.h"
#include "devcloud/polish/ChinesePhrases.h"
#include "devcloud/polish/ChineseSentence.h"
#include "devcloud/polish/Cleanup.h"
#include "devcloud/polish/Language.h"
#include "devcloud/polish/Nesting.h"
#include "devcloud/polish/Technical.h"

#include <algorithm>
#include <array>
#include <span>

namespace tavrin::devcloud {
namespace {

using Phrases = std::span<const std::u32string_view>;

/// The sounds themselves. Others (啊, 哦, 唉 …) say something, and so does 嗯 as an answer; 额 is
/// a word behind a space.
constexpr std::u32string_view sounds = U"嗯呃额額";
constexpr std::u32string_view innerSounds = U"嗯呃";

/// A clause may begin with these and cannot begin with them twice.
constexpr auto saidOnce = std::to_array<std::u32string_view>(
    {U"我们", U"然后", U"因为", U"所以", U"但是", U"如果", U"我"});
/// After a pause these open a clause. 因此 and 因为 may still belong to a negation before them.
constexpr auto clauseOpeners =
    std::to_array<std::u32string_view>({U"但是", U"所以", U"而且", U"然后"});

bool isComma(char32_t c)
{
    return c == U',' || c == U'，';
}

/// Cleans from left to right; what is done stands in m_done, and is not looked at again.
class ChineseLine {
public:
    explicit ChineseLine(std::u32string_view line)
        : m_line(line)
        , m_simple(line)
        , m_isTechnical(isTechnical(line))
    {
        std::ranges::transform(m_simple, m_simple.begin(), simplified);
        m_isSegmented = !m_isTechnical && isSegmented();
        m_isSentence = isChineseSentence(m_simple);
    }

    std::u32string cleaned()
    {
        if (m_isTechnical)
            return m_line;
        while (m_at < m_line.size()) {
            const std::size_t start = m_at;
            if (m_at >= m_endOfRun)
                enterRun();
            if (!skipSound() && !skipRepeat() && !joinOrPause() && !widenMark())
                m_done += m_line[m_at++];
            m_nesting.follow(std::u32string_view(m_line).substr(start, m_at - start));
        }
        return m_done;
    }

private:
    [[nodiscard]] char32_t peek(std::size_t at) const
    {
        return at < m_line.size() ? m_line[at] : U'\0';
    }

    /// The line from @p at on, in simplified characters.
    [[nodiscard]] std::u32string_view restFrom(std::size_t at) const
    {
        return std::u32string_view(m_simple).substr(std::min(at, m_simple.size()));
    }

    [[nodiscard]] bool isAnyAt(std::size_t at, Phrases phrases) const
    {
        const std::u32string_view rest = restFrom(at);
        return std::ranges::any_of(
            phrases, [rest](std::u32string_view phrase) { return rest.starts_with(phrase); });
    }

    /// Looks at what stands from m_at to the next space.
    void enterRun()
    {
        const auto start = m_line.begin() + static_cast<std::ptrdiff_t>(m_at);
        const auto end = std::find_if(start + 1, m_line.end(), isBlank);
        m_isInAddress = std::any_of(start, end, [](char32_t c) { return isOneOf(U"/\\@", c); });
        m_endOfRun = static_cast<std::size_t>(end - m_line.begin());
    }

    [[nodiscard]] std::size_t afterBlanks(std::size_t at) const
    {
        while (isBlank(peek(at)))
            ++at;
        return at;
    }

    /// Whether a recogniser has put a space after each word: most are short, and there are words
    /// among them that nobody pauses after. In a list that is read aloud there are none.
    [[nodiscard]] bool isSegmented() const
    {
        constexpr std::size_t fewest = 5;
        constexpr std::u32string_view pronouns = U"我你他她它";
        constexpr std::u32string_view smallWords = U"我你他她它们的了是在不这那有和就也都很去要";
        std::size_t words = 0;
        std::size_t single = 0;
        std::size_t small = 0;
        char32_t last = U'\0';
        for (std::size_t at = afterBlanks(0); at < m_simple.size(); at = afterBlanks(at)) {
            const std::size_t start = at;
            while (at < m_simple.size() && !isBlank(m_simple[at]))
                ++at;
            ++words;
            const char32_t alone = at - start == 1 ? m_simple[start] : U'\0';
            // 我 你 他 is a list too.
            if (isOneOf(pronouns, alone) && isOneOf(pronouns, last))
                return false;
            single += alone != U'\0' ? 1U : 0U;
            small += alone != U'\0' && isOneOf(smallWords, alone) ? 1U : 0U;
            last = alone;
        }
        return words >= fewest && small >= 2 && 3 * single >= words;
    }

    [[nodiscard]] bool opensSentence() const
    {
        return m_done.empty() || endsSentence(m_done.back());
    }

    [[nodiscard]] bool opensClause() const { return m_done.empty() || isPause(m_done.back()); }

    [[nodiscard]] bool isRightPause(std::size_t at) const
    {
        return at >= m_line.size() || isPause(m_line[at])
            || (!m_isSegmented && isBlank(m_line[at]));
    }

    /// Steps over a sound that stands alone, with the mark that was its own.
    bool skipSound()
    {
        const char32_t sound = peek(m_at);
        if (!isOneOf(sounds, sound) || m_nesting.isInside()
            || (!m_done.empty() && m_done.back() == sound))
            return false;
        std::size_t end = m_at;
        while (peek(end) == sound)
            ++end;
        // 嗯嗯 agrees.
        if (sound == U'嗯' && end - m_at > 1)
            return false;
        return opensSentence() ? skipOpeningSound(end) : skipInnerSound(end);
    }

    bool skipOpeningSound(std::size_t end)
    {
        const bool hasComma = isComma(peek(end));
        const std::size_t next = afterBlanks(hasComma ? end + 1 : end);
        const bool isAnswer = peek(m_at) == U'嗯' && !goesOn(restFrom(next));
        const bool isHesitation = hasComma
            || (peek(m_at) == U'呃' && isOneOf(U"我你您他她这那這", peek(end)))
            || (!isOneOf(U"额額", peek(m_at)) && goesOn(restFrom(end)));
        if (isAnswer || !isHesitation || next >= m_line.size())
            return false;
        m_at = next;
        return true;
    }

    bool skipInnerSound(std::size_t end)
    {
        const std::size_t next = afterBlanks(end + (isPause(peek(end)) ? 1 : 0));
        if (splitsSubject(end)) {
            m_at = end;
            return true;
        }
        if (!standsAlone(end) || isQuoted() || isNamed(restFrom(next)))
            return false;
        if (m_line[m_at] == U'嗯' && (next >= m_line.size() || mayAnswer(restFrom(next))))
            return false;
        const Clause clause = clauseBefore(end, next);
        if (clause == Clause::MayLeadOn && next < m_line.size())
            return false;
        if (isComma(peek(end)) && clause == Clause::LeadsOn && !isOneOf(sounds, peek(next))) {
            m_done.erase(endOfClause());
            m_at = next;
        } else
            dropMark(end);
        return true;
    }

    /// Whether the sound that ends at @p end has a pause on either side.
    [[nodiscard]] bool standsAlone(std::size_t end) const
    {
        const bool followsComma = isComma(m_done.back());
        const bool followsBlank = !m_isSegmented && isBlank(m_done.back());
        return (followsComma || followsBlank) && isOneOf(innerSounds, peek(m_at))
            && isRightPause(end);
    }

    /// 我呃想去: whether the sound that ends at @p end stands between who wants and what he wants.
    [[nodiscard]] bool splitsSubject(std::size_t end) const
    {
        return m_line[m_at] == U'呃' && isHan(m_done.back())
            && areSubjectAndWish(openingClause(), restFrom(end));
    }

    /// Goes on behind the sound that ends at @p end, with one of the pauses around it.
    void dropMark(std::size_t end)
    {
        const auto before = std::find_if_not(m_done.rbegin(), m_done.rend(), isBlank);
        const bool followsMark = before != m_done.rend() && isPause(*before);
        const bool isTwice = isBlank(peek(end)) || (followsMark && isComma(peek(end)));
        if (!isTwice)
            m_done.pop_back(); // It led to the sound; what follows brings its own mark.
        m_at = isTwice ? afterBlanks(end + 1) : end;
    }

    /// 他说，嗯, 点击 嗯
    [[nodiscard]] bool isQuoted() const
    {
        return m_done.size() > 1
            && isOneOf(
                U"说說声聲道喊叫答问問回写寫击擊入按选選搜词詞字念", m_done[m_done.size() - 2]);
    }

    /// Where the clause ends that stands in m_done, before its mark or space.
    [[nodiscard]] std::size_t endOfClause() const
    {
        std::size_t end = m_done.size();
        while (end > 0 && (isBlank(m_done[end - 1]) || isPause(m_done[end - 1])))
            --end;
        return end;
    }

    enum class Clause {
        IsWhole, ///< 他买了票，嗯，我没买: one comma belongs there.
        MayLeadOn, ///< 一共来了，嗯，三百人 wants no comma, 一共来了，嗯，你也来吧 does.
        LeadsOn, ///< 我想，嗯，去北京: the comma was the sound's.
    };

    /// The clause that ends m_done, in simplified characters; empty when it is a long one.
    [[nodiscard]] std::u32string lastClause() const
    {
        constexpr std::size_t longest = 40;
        const std::size_t end = endOfClause();
        std::size_t start = end;
        while (start > 0 && end - start <= longest && !isPause(m_done[start - 1]))
            --start;
        if (end - start > longest)
            return {};
        std::u32string clause = m_done.substr(start, end - start);
        std::ranges::transform(clause, clause.begin(), simplified);
        return clause;
    }

    /// The same if it is a short one; empty otherwise.
    [[nodiscard]] std::u32string openingClause() const
    {
        constexpr std::size_t longestOpening = 5;
        std::u32string clause = lastClause();
        const bool isShort = clause.size() <= longestOpening && std::ranges::all_of(clause, isHan);
        return isShort ? clause : std::u32string();
    }

    /// What the clause before a sound is that ends at @p end, when @p next is where the next one
    /// begins.
    [[nodiscard]] Clause clauseBefore(std::size_t end, std::size_t next) const
    {
        if (leadsOnTo(openingClause(), restFrom(next)))
            return Clause::LeadsOn;
        const std::size_t size = endOfClause();
        const char32_t last = size > 0 ? simplified(m_done[size - 1]) : U'\0';
        if (isOneOf(U"去要想在是和跟把给到对从向得的个这那共", last))
            return Clause::MayLeadOn;
        const char32_t mark = size < m_done.size() ? m_done[size] : U'\0';
        const bool isBetween =
            next < m_line.size() && !endsSentence(mark) && !endsSentence(peek(end));
        return isBetween && !areApart(lastClause(), restFrom(next)) ? Clause::MayLeadOn
                                                                    : Clause::IsWhole;
    }

    bool skipRepeat()
    {
        if (!opensClause())
            return false;
        const auto rest = std::u32string_view(m_simple).substr(m_at);
        if (rest.starts_with(U"这这个")) {
            ++m_at;
            return true;
        }
        for (const std::u32string_view phrase : saidOnce) {
            std::size_t times = 0;
            while (rest.substr(times * phrase.size()).starts_with(phrase))
                ++times;
            // With nothing behind it, it may be all that was meant.
            if (times > 1 && isHan(peek(m_at + times * phrase.size()))) {
                m_at += (times - 1) * phrase.size();
                return true;
            }
        }
        return false;
    }

    /// A space between two Han characters: none where a recogniser has put it after each word, and
    /// a comma where somebody paused before a new clause.
    bool joinOrPause()
    {
        if (m_done.empty() || !isHan(m_done.back()))
            return false;
        const std::size_t next = afterBlanks(m_at);
        if (next == m_at || !isHan(peek(next)))
            return false;
        if (m_isSegmented)
            m_at = next;
        else if (isPauseBefore(next)) {
            m_done += U'，';
            m_at = next;
        } else
            return false;
        return true;
    }

    /// 突 然后悔, 场 所以及: whether the space before @p next may stand in the middle of a word.
    [[nodiscard]] bool splitsWord(std::size_t next) const
    {
        struct Ends {
            char32_t second;
            std::u32string_view first;
        };

        static constexpr auto words = std::to_array<Ends>(
            {{U'然', U"突虽雖当當仍果自忽必显顯竟既依固居公猛毅贸貿偶诚誠断斷枉泰仿徒全天"},
                {U'所', U"场場厕廁住处處诊診究派"}, {U'而', U"然因反从從进進继繼"}});
        return std::ranges::any_of(words, [this, next](const Ends& word) {
            return peek(next) == word.second && isOneOf(word.first, m_done.back());
        });
    }

    [[nodiscard]] bool isPauseBefore(std::size_t next) const
    {
        constexpr std::ptrdiff_t shortestClause = 4;
        constexpr std::u32string_view leadsOn = U"不之是就会會没沒别別要未非说說讲講写寫叫用道";
        const auto lastOther = std::find_if_not(m_done.rbegin(), m_done.rend(), isHan);
        const std::ptrdiff_t length = lastOther - m_done.rbegin();
        const char32_t third = peek(next + 2); // 所以然 is a word.
        return !splitsWord(next) && length >= shortestClause && !isOneOf(leadsOn, m_done.back())
            && isAnyAt(next, clauseOpeners) && third != U'然' && isHan(third)
            && isHan(peek(next + 3));
    }

    /// A narrow mark between Han characters, unless it may belong to a list that a machine reads.
    bool widenMark()
    {
        constexpr std::u32string_view narrow = U",?!:;";
        constexpr std::u32string_view wide = U"，？！：；";
        const std::size_t mark = narrow.find(peek(m_at));
        const bool isStop = peek(m_at) == U'.';
        if (!m_isSentence || m_isInAddress || m_done.empty() || !isHan(m_done.back())
            || (mark == std::u32string_view::npos && !isStop))
            return false;
        const std::size_t next = afterBlanks(m_at + 1);
        const bool isLast = next >= m_line.size();
        if (isStop ? !isLast : !isLast && !isHan(peek(next)))
            return false;
        m_done += isStop ? U'。' : wide[mark];
        m_at = next;
        return true;
    }

    std::u32string m_line;
    std::u32string m_simple; ///< The same in simplified characters, for comparing.
    bool m_isTechnical;
    bool m_isSegmented = false;
    bool m_isSentence = false;
    bool m_isInAddress = false; ///< In a stretch with marks of an address or a path.
    std::size_t m_endOfRun = 0;
    std::u32string m_done;
    Nesting m_nesting; ///< Of what stands before m_at.
    std::size_t m_at = 0;
};

} // namespace

std::u32string cleanedChinese(std::u32string_view line, bool isWhole)
{
    std::u32string result = ChineseLine(line).cleaned();
    if (isWhole)
        result += chineseEndMark(result);
    return result;
}

} // namespace tavrin::devcloud
