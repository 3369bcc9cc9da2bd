#include "devcloud/polish/EnglishSounds.h"

#include "devcloud/polish/EnglishWords.h"
#include "devcloud/polish/Nesting.h"
#include "devcloud/polish/WordList.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>
#include <array>
#include <span>

namespace tavrin::devcloud {
namespace {

bool isAllCapitals(const Run& run)
{
    return std::ranges::all_of(run.word, isAsciiUpper);
}

/// What stands behind a sound.
using Rest = std::span<const Run>;

/// Takes out the sounds that stand alone, with the marks that were their own.
class SoundRemover {
public:
    explicit SoundRemover(Runs runs)
        : m_runs(std::move(runs))
    {
    }

    Runs withoutSounds()
    {
        for (m_at = 0; m_at < m_runs.size(); ++m_at) {
            const Run& run = m_runs[m_at];
            const bool isLoose = isSound(run) && !m_nesting.isInside();
            m_nesting.follow(run.opening + run.word + run.closing);
            if (!isLoose || !skip())
                m_kept.push_back(std::move(m_runs[m_at]));
        }
        return std::move(m_kept);
    }

private:
    [[nodiscard]] bool isLast() const { return m_at + 1 == m_runs.size(); }

    bool skip()
    {
        return m_kept.empty() || m_kept.back().endsSentence() ? skipOpening() : skipInner();
    }

    bool skipOpening()
    {
        const Run& sound = m_runs[m_at];
        if (isLast() || !opens(sound, m_runs[m_at + 1]))
            return false;
        handOn(sound, m_runs[m_at + 1]);
        return true;
    }

    bool skipInner()
    {
        const Run& sound = m_runs[m_at];
        Run& before = m_kept.back();
        if (standsInClause())
            return true;
        // Emergency rooms are listed between commas too.
        if (!before.endsWithComma() || quotes(before) || sound.small == U"er")
            return false;
        if (sound.endsWithComma() && !isLast())
            return skipBetweenCommas(before);
        if (!isLast() || (!sound.closing.empty() && !sound.endsSentence()))
            return false;
        before.closing = sound.closing;
        return true;
    }

    bool skipBetweenCommas(Run& before)
    {
        if (mayLeadOn(before) && !endsHowItIs())
            return false;
        if (!leadsOn(before))
            return endsHowItIs() || isCommaRight();
        // What hesitates twice keeps the mark for the second sound.
        if (!isSound(m_runs[m_at + 1]))
            before.closing.clear();
        return true;
    }

    /// "We could um try", "well uh we could": whether nothing can stand there that is called "um".
    [[nodiscard]] bool standsInClause() const
    {
        static constexpr auto openings =
            std::to_array<std::u32string_view>({U"well", U"so", U"but", U"and", U"okay"});
        static constexpr auto verbs = std::to_array<std::u32string_view>({U"be", U"do", U"have",
            U"go", U"get", U"make", U"take", U"give", U"see", U"ask", U"tell", U"try", U"find",
            U"keep", U"put", U"send", U"bring", U"meet", U"want", U"need"});
        const Run& sound = m_runs[m_at];
        const Run& before = m_kept.back();
        const bool trailsOff = !sound.closing.empty() && !sound.endsWithComma();
        if (sound.small == U"er" || trailsOff || !before.closing.empty() || isLast())
            return false;
        const bool splitsVerb = isModal(before) && m_kept.size() > 1
            && isSubject(m_kept[m_kept.size() - 2]) && contains(verbs, m_runs[m_at + 1].small);
        return splitsVerb || (contains(openings, before.small) && openClause(1) && opensNext());
    }

    static bool isModal(const Run& run)
    {
        static constexpr auto modals = std::to_array<std::u32string_view>({U"can", U"could",
            U"will", U"would", U"should", U"must", U"might", U"can't", U"won't"});
        return contains(modals, run.small) && run.closing.empty();
    }

    static bool isSubject(const Run& run)
    {
        static constexpr auto subjects = std::to_array<std::u32string_view>(
            {U"i", U"we", U"he", U"she", U"they", U"nobody", U"nothing"});
        return contains(subjects, run.small) && run.opening.empty() && run.closing.empty();
    }

    /// Whether a clause of its own begins behind the sound: "we can", "nothing will".
    [[nodiscard]] bool opensNext() const
    {
        return m_at + 2 < m_runs.size() && isSubject(m_runs[m_at + 1]) && isModal(m_runs[m_at + 2]);
    }

    /// "That's how it is, um, we can": nothing is missing before the comma.
    [[nodiscard]] bool endsHowItIs() const
    {
        static constexpr auto asking =
            std::to_array<std::u32string_view>({U"how", U"what", U"where", U"who", U"why"});
        static constexpr auto pronouns =
            std::to_array<std::u32string_view>({U"it", U"he", U"she", U"they", U"we", U"things"});
        static constexpr auto forms =
            std::to_array<std::u32string_view>({U"is", U"are", U"was", U"were"});
        const std::size_t size = m_kept.size();
        return size > 2 && contains(forms, m_kept.back().small)
            && contains(pronouns, m_kept[size - 2].small)
            && contains(asking, m_kept[size - 3].small) && opensNext();
    }

    /// Whether @p sound only opens what goes on with @p next.
    static bool opens(const Run& sound, const Run& next)
    {
        if (sound.endsWithComma() || sound.closing == U".")
            return true;
        return sound.closing.empty() && sound.small != U"er"
            && (opensProse(next.small) || isSound(next));
    }

    /// The place at the beginning, and the capital that belongs there.
    static void handOn(const Run& sound, Run& next)
    {
        next.blanks = sound.blanks;
        if (!sound.isSmall() && (isEnglish(next.small) || isSound(next)) && next.isSmall())
            next.capitalize();
    }

    /// "She said, um."
    static bool quotes(const Run& run)
    {
        static constexpr auto verbs = std::to_array<std::u32string_view>(
            {U"say", U"says", U"said", U"saying", U"goes", U"went", U"like", U"word", U"replied",
                U"wrote", U"asked", U"answered", U"reply", U"answer", U"write", U"ask"});
        return contains(verbs, run.small);
    }

    /// Whether the last @p count kept runs open a clause.
    [[nodiscard]] bool openClause(std::size_t count) const
    {
        return m_kept.size() == count
            || (m_kept.size() > count && !m_kept[m_kept.size() - count - 1].closing.empty());
    }

    /// Whether a word cannot end a clause here, so that a comma behind it was only the sound's.
    [[nodiscard]] bool leadsOn(const Run& run) const
    {
        static constexpr auto words = std::to_array<std::u32string_view>({U"i", U"we", U"he",
            U"she", U"they", U"the", U"a", U"an", U"my", U"your", U"our", U"their", U"and", U"or",
            U"but", U"because", U"if", U"very", U"i'm", U"we're", U"it's"});
        if (isOpinion(run))
            return isMine() && openClause(lengthOfOpinion());
        return contains(words, run.small) || (run.small == U"so" && openClause(1));
    }

    /// "The answer is, um, forty" wants no comma; "that is how it is, um, we go" does.
    [[nodiscard]] bool mayLeadOn(const Run& run) const
    {
        static constexpr auto words =
            std::to_array<std::u32string_view>({U"that", U"is", U"are", U"was", U"were", U"to",
                U"in", U"on", U"at", U"of", U"with", U"for", U"about", U"from", U"by"});
        return contains(words, run.small) || (isOpinion(run) && !isMine());
    }

    /// Whether a comma belongs between what stands before the sound and what goes on behind it:
    /// not so in "we have, um, three cats".
    [[nodiscard]] bool isCommaRight() const
    {
        constexpr std::size_t mostSounds = 8; // More of them in a row are no words.
        const Rest behind = Rest(m_runs).subspan(m_at + 1);
        const Rest sounds = behind.first(std::min(behind.size(), mostSounds));
        const auto next = std::ranges::find_if_not(sounds, isSound);
        if (next == sounds.end())
            return true;
        const Rest rest = behind.subspan(static_cast<std::size_t>(next - sounds.begin()));
        return joinsClause(rest) || isListed(rest) || (endsClause(m_kept.back()) && isClause(rest));
    }

    /// "Apples, um, pears and bread": the plural behind a verb is the first of several things.
    [[nodiscard]] bool isListed(Rest rest) const
    {
        const std::size_t size = m_kept.size();
        if (size < 2 || rest.size() < 3 || !rest[0].closing.empty())
            return false;
        const Run& verb = m_kept[size - 2];
        const Run& first = m_kept[size - 1];
        return (isVerbOfSpeaker(verb.small) || isFiniteVerb(verb.small)) && verb.closing.empty()
            && first.small.ends_with(U's') && !isFiniteVerb(first.small)
            && (rest[1].small == U"and" || rest[1].small == U"or");
    }

    /// "And we", "but slow". "Nothing but" is another word.
    [[nodiscard]] bool joinsClause(Rest rest) const
    {
        static constexpr auto joining = std::to_array<std::u32string_view>({U"and", U"or", U"so"});
        static constexpr auto all =
            std::to_array<std::u32string_view>({U"nothing", U"nobody", U"none", U"one", U"no",
                U"all", U"anything", U"anyone", U"anybody", U"everything", U"everyone",
                U"everybody", U"anywhere", U"nowhere", U"everywhere", U"cannot", U"last", U"next"});
        if (rest.size() < 2 || !rest[0].closing.empty())
            return false;
        if (rest[0].small == U"but")
            return !contains(all, m_kept.back().small);
        return contains(joining, rest[0].small) && isSubject(rest[1]);
    }

    /// "We go", "you decide", "nothing will change".
    static bool isClause(Rest rest)
    {
        static constexpr auto nominatives =
            std::to_array<std::u32string_view>({U"i", U"we", U"he", U"she", U"they"});
        static constexpr auto contracted = std::to_array<std::u32string_view>({U"i'm", U"i'll",
            U"i've", U"we're", U"we'll", U"we've", U"he's", U"she's", U"they're", U"they'll"});
        static constexpr auto verbs =
            std::to_array<std::u32string_view>({U"decide", U"choose", U"are", U"were", U"is"});
        if (rest.size() < 2 || !rest[0].closing.empty())
            return false;
        const std::u32string& verb = rest[1].small;
        const bool hasVerb = isVerbOfSpeaker(verb) || isFiniteVerb(verb) || contains(verbs, verb);
        return contains(contracted, rest[0].small) || contains(nominatives, rest[0].small)
            || (rest[0].small == U"you" && hasVerb) || (isSubject(rest[0]) && isModal(rest[1]));
    }

    /// A word behind which nothing is missing: "that's it", "we are ready", "that's what i think".
    [[nodiscard]] static bool endsClause(const Run& run)
    {
        static constexpr auto words = std::to_array<std::u32string_view>({U"it", U"here", U"there",
            U"now", U"today", U"tomorrow", U"yesterday", U"tonight", U"done", U"late", U"ready",
            U"fine", U"good", U"great", U"tired", U"already", U"too", U"again", U"well"});
        return contains(words, run.small) || isOpinion(run);
    }

    static bool isOpinion(const Run& run) { return run.small == U"think" || run.small == U"guess"; }

    /// The words of "I think" or "I really think" when the last kept run ends them; 0 otherwise.
    [[nodiscard]] std::size_t lengthOfOpinion() const
    {
        static constexpr auto adverbs = std::to_array<std::u32string_view>(
            {U"really", U"just", U"still", U"also", U"actually"});
        const std::size_t size = m_kept.size();
        if (size > 1 && m_kept[size - 2].small == U"i")
            return 2;
        const bool isStressed = size > 2 && contains(adverbs, m_kept[size - 2].small)
            && m_kept[size - 2].closing.empty() && m_kept[size - 3].small == U"i";
        return isStressed ? 3 : 0;
    }

    [[nodiscard]] bool isMine() const { return lengthOfOpinion() > 0; }

    Runs m_runs;
    Runs m_kept;
    Nesting m_nesting; ///< Of what stands before m_at.
    std::size_t m_at = 0;
};

} // namespace

bool isSound(const Run& run)
{
    static constexpr auto sounds =
        std::to_array<std::u32string_view>({U"um", U"umm", U"uh", U"uhh", U"uhm", U"erm", U"er"});
    return contains(sounds, run.small) && run.opening.empty() && !isAllCapitals(run);
}

Runs withoutSounds(Runs runs)
{
    return SoundRemover(std::move(runs)).withoutSounds();
}

} // namespace tavrin::devcloud
