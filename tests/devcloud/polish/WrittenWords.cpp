#include "devcloud/polish/WrittenWords.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace tavrin::devcloud::testing {
namespace {

/// A character that carries meaning: a letter, a digit, an accent on one, or a sign beyond ASCII
/// such as an emoji, a currency or an arrow. Those of ASCII belong to addresses and code.
struct Character {
    UChar32 character;
    std::int32_t at; ///< In UTF-16 units.
};

using Characters = std::vector<Character>;

bool isContent(UChar32 c)
{
    const bool isAccent = (U_GET_GC_MASK(c) & U_GC_M_MASK) != 0 && c != 0xfe0f;
    const bool isSign = c > 0x7f && (U_GET_GC_MASK(c) & U_GC_S_MASK) != 0;
    return u_isalnum(c) != 0 || isAccent || isSign;
}

Characters contentOf(const icu::UnicodeString& text)
{
    Characters content;
    for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
        if (isContent(text.char32At(at)))
            content.push_back({text.char32At(at), at});
    }
    return content;
}

bool isSame(UChar32 left, UChar32 right)
{
    return u_foldCase(left, U_FOLD_CASE_DEFAULT) == u_foldCase(right, U_FOLD_CASE_DEFAULT);
}

bool isHan(UChar32 c)
{
    return u_hasBinaryProperty(c, UCHAR_IDEOGRAPHIC) != 0;
}

/// The boundaries between the words of a text.
class Boundaries {
public:
    explicit Boundaries(const icu::UnicodeString& text)
    {
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::BreakIterator> words(
            icu::BreakIterator::createWordInstance(icu::Locale("zh"), status));
        words->setText(text);
        for (std::int32_t at = words->first(); at != icu::BreakIterator::DONE; at = words->next())
            m_places.push_back(at);
    }

    [[nodiscard]] bool isBoundary(std::int32_t at) const
    {
        return std::ranges::binary_search(m_places, at);
    }

private:
    std::vector<std::int32_t> m_places;
};

/// Finds which character of what was said each written one is.
class Alignment {
public:
    Alignment(Characters said, Characters written, const std::vector<std::string>& removed,
        Removal removal)
        : m_said(std::move(said))
        , m_written(std::move(written))
        , m_mustGoAll(removal == Removal::AllOf)
    {
        for (const std::string& word : removed)
            m_removed.push_back(contentOf(icu::UnicodeString::fromUTF8(word)));
    }

    /// For each written character its index in what was said; nothing when a word is missing or
    /// new.
    std::optional<std::vector<std::size_t>> find()
    {
        if (!explain(0, 0, 0))
            return std::nullopt;
        return m_origin;
    }

private:
    bool explain(std::size_t said, std::size_t written, std::size_t removed)
    {
        const std::size_t known = m_origin.size();
        while (true) {
            for (std::size_t word = removed; word < m_removed.size(); ++word) {
                const Characters& gone = m_removed[word];
                if (standsAt(said, gone) && explain(said + gone.size(), written, word + 1))
                    return true;
                if (m_mustGoAll)
                    break;
            }
            const bool atEnd = said == m_said.size() && written == m_written.size();
            if (atEnd && (!m_mustGoAll || removed == m_removed.size()))
                return true;
            if (said >= m_said.size() || written >= m_written.size()
                || !isSame(m_said[said].character, m_written[written].character))
                break;
            m_origin.push_back(said);
            ++said;
            ++written;
        }
        m_origin.resize(known);
        return false;
    }

    /// Whether @p word stands at @p at, and is a word there.
    [[nodiscard]] bool standsAt(std::size_t at, const Characters& word) const
    {
        const std::span rest = std::span(m_said).subspan(std::min(at, m_said.size()));
        if (rest.size() < word.size())
            return false;
        const auto touches = [this](std::size_t left) {
            return left + 1 < m_said.size() && m_said[left + 1].at == m_said[left].at + 1
                && !isHan(m_said[left].character) && !isHan(m_said[left + 1].character);
        };
        const bool isWord = !(at > 0 && touches(at - 1)) && !touches(at + word.size() - 1);
        return isWord
            && std::equal(word.begin(), word.end(), rest.begin(),
                [](const Character& left, const Character& right) {
                    return isSame(left.character, right.character);
                });
    }

    Characters m_said;
    Characters m_written;
    std::vector<Characters> m_removed;
    bool m_mustGoAll;
    std::vector<std::size_t> m_origin;
};

std::string place(const icu::UnicodeString& text, std::int32_t at)
{
    constexpr std::int32_t context = 6;
    std::string result;
    const std::int32_t start = std::max(0, at - context);
    return text.tempSubStringBetween(start, std::min(at + context, text.length()))
        .toUTF8String(result);
}

std::int32_t endOf(const Character& character)
{
    return character.at + U16_LENGTH(character.character);
}

/// Words that were torn apart, joined or given capitals inside.
std::string spacingFault(const icu::UnicodeString& saidText, const icu::UnicodeString& writtenText,
    const std::vector<std::size_t>& origin)
{
    const Characters said = contentOf(saidText);
    const Characters written = contentOf(writtenText);
    const Boundaries boundaries(saidText);
    for (std::size_t at = 0; at < written.size(); ++at) {
        const Character& from = said[origin[at]];
        if (from.character != written[at].character && !boundaries.isBoundary(from.at))
            return "another letter than the first has changed: "
                + place(writtenText, written[at].at);
        if (at == 0 || origin[at] != origin[at - 1] + 1)
            continue;
        const Character& before = said[origin[at] - 1];
        const bool touched = endOf(before) == from.at;
        const bool touches = endOf(written[at - 1]) == written[at].at;
        if (touched && !touches && !boundaries.isBoundary(from.at))
            return "a word was torn apart: " + place(writtenText, written[at].at);
        if (!touched && touches && !(isHan(before.character) && isHan(from.character)))
            return "two words were joined: " + place(writtenText, written[at].at);
    }
    return {};
}

bool isAscii(char c)
{
    return static_cast<unsigned char>(c) < 0x80;
}

bool isAsciiLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Addresses, paths, numbers, code: what has more in it than letters.
std::vector<std::string> signsOf(const std::string& text)
{
    std::vector<std::string> result;
    std::string run;
    for (std::size_t at = 0; at <= text.size(); ++at) {
        const char c = at < text.size() ? text[at] : ' ';
        if (isAscii(c) && c > ' ') {
            run += c;
            continue;
        }
        const std::size_t end = run.find_last_not_of(".,!?;:\"')");
        const std::string word = end == std::string::npos ? "" : run.substr(0, end + 1);
        const bool isPlain = std::ranges::all_of(
            word, [](char each) { return isAsciiLetter(each) || each == '\'' || each == '"'; });
        if (!isPlain)
            result.push_back(word);
        run.clear();
    }
    return result;
}

/// Without the line breaks around it.
std::string_view withoutBreaks(std::string_view text)
{
    const std::size_t start = text.find_first_not_of('\n');
    return text.substr(start, text.find_last_not_of('\n') - start + 1);
}

/// Without the sign that a post has in front of each line, unless it was said.
std::string withoutLineMarks(const std::string& said, std::string written)
{
    constexpr std::string_view mark = "📌 ";
    if (said.find(mark) != std::string::npos)
        return written;
    for (std::size_t line = 0; line != std::string::npos;) {
        if (std::string_view(written).substr(line).starts_with(mark))
            written.erase(line, mark.size());
        const std::size_t next = written.find('\n', line);
        line = next == std::string::npos ? next : next + 1;
    }
    return written;
}

} // namespace

std::string faultOf(const std::string& said, const std::string& written,
    const std::vector<std::string>& removed, Removal removal)
{
    const icu::UnicodeString saidText = icu::UnicodeString::fromUTF8(said);
    const icu::UnicodeString writtenText = icu::UnicodeString::fromUTF8(written);
    const auto origin =
        Alignment(contentOf(saidText), contentOf(writtenText), removed, removal).find();
    if (!origin)
        return "a word was added, lost or reordered: " + written;
    if (std::string fault = spacingFault(saidText, writtenText, *origin); !fault.empty())
        return fault;
    const std::vector<std::string> signs = signsOf(said);
    const auto lost = std::ranges::find_if(signs,
        [&written](const std::string& sign) { return written.find(sign) == std::string::npos; });
    return lost == signs.end() ? "" : *lost + " did not arrive as it was: " + written;
}

std::string insideFrame(const std::string& said, const std::string& written, Style style)
{
    static constexpr std::array<std::string_view, 8> openings{"您好：\n\n", "Hello,\n\n",
        "会议记录：\n", "會議記錄：\n", "Meeting notes:\n", "任务：\n", "任務：\n", "Task:\n"};
    static constexpr std::array<std::string_view, 3> closings{
        "\n\n此致\n敬礼", "\n\n此致\n敬禮", "\n\nBest regards,"};
    std::string_view inside = written;
    if (style == Style::Xiaohongshu)
        return withoutLineMarks(said, written);
    const bool hasFrame =
        style == Style::BusinessEmail || style == Style::Meeting || style == Style::AiPrompt;
    if (!hasFrame)
        return written;
    for (const std::string_view opening : openings) {
        if (inside.starts_with(opening) && !said.starts_with(withoutBreaks(opening))) {
            inside.remove_prefix(opening.size());
            break;
        }
    }
    for (const std::string_view closing : closings) {
        if (inside.ends_with(closing) && !said.ends_with(withoutBreaks(closing))) {
            inside.remove_suffix(closing.size());
            break;
        }
    }
    return std::string(inside);
}

} // namespace tavrin::devcloud::testing
