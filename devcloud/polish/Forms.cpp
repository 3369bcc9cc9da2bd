#include "devcloud/polish/Forms.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/Letter.h"
#include "devcloud/polish/Sentence.h"
#include "devcloud/polish/Technical.h"

#include <span>

namespace tavrin::devcloud {
namespace {

struct FrameText {
    std::u32string_view simplified;
    std::u32string_view traditional;
    std::u32string_view english;

    [[nodiscard]] std::u32string_view in(std::u32string_view text, Language language) const
    {
        if (language == Language::English)
            return english;
        return isTraditional(text) ? traditional : simplified;
    }
};

constexpr FrameText notes{U"会议记录：\n", U"會議記錄：\n", U"Meeting notes:\n"};
constexpr FrameText task{U"任务：\n", U"任務：\n", U"Task:\n"};
constexpr FrameText greeting{U"您好：\n\n", U"您好：\n\n", U"Hello,\n\n"};
constexpr FrameText closing{U"\n\n此致\n敬礼", U"\n\n此致\n敬禮", U"\n\nBest regards,"};

enum class Stops { Kept, Dropped };

/// Whether the first of @p sentences only says what the items below it are.
bool introducesItems(std::span<const Sentence> sentences)
{
    const std::u32string& text = sentences.front().text;
    return sentences.size() > 1 && isOneOf(U":：", text.back()) && isListItem(sentences[1].text);
}

/// Each sentence on a line of its own, behind @p sign, unless it has a sign or a number, or stands
/// above such as have one.
std::u32string lines(std::span<const Sentence> sentences, std::u32string_view sign, Stops stops)
{
    std::u32string text;
    for (std::size_t at = 0; at < sentences.size(); ++at) {
        const Sentence& sentence = sentences[at];
        if (at > 0)
            text += U'\n';
        if (!isListItem(sentence.text) && !introducesItems(sentences.subspan(at)))
            text += sign;
        text += stops == Stops::Dropped ? withoutStop(sentence.text) : sentence.text;
    }
    return text;
}

std::u32string joined(std::span<const Sentence> sentences)
{
    std::u32string text;
    for (const Sentence& sentence : sentences) {
        if (!text.empty())
            text += sentence.gap;
        text += sentence.text;
    }
    return text;
}

/// A greeting and a close that were dictated stand on their own; missing ones are added.
std::u32string letter(std::u32string_view text, Language language)
{
    const std::vector<Sentence> sentences = splitSentences(text);
    const LetterParts parts = partsOfLetter(sentences);
    std::u32string result;
    if (parts.greeting > 0)
        result = joined(std::span(sentences).first(parts.greeting)) + U"\n\n";
    else if (!mayGreet(text))
        result = greeting.in(text, language);
    const std::size_t bodySize = sentences.size() - parts.greeting - parts.closing;
    result += joined(std::span(sentences).subspan(parts.greeting, bodySize));
    if (parts.closing > 0)
        return result + U"\n\n" + joined(std::span(sentences).last(parts.closing));
    return mayClose(sentences) ? result : result.append(closing.in(text, language));
}

} // namespace

std::u32string setInForm(std::u32string_view text, Style style, Language language)
{
    if (language == Language::Other)
        return std::u32string(text);
    switch (style) {
    case Style::Professional:
        break;
    case Style::Xiaohongshu:
        return lines(splitSentences(text), U"📌 ", Stops::Dropped);
    case Style::BusinessEmail:
        return letter(text, language);
    case Style::Casual:
        return withoutStop(text);
    case Style::Meeting:
        return std::u32string(notes.in(text, language))
            + lines(splitSentences(text), U"- ", Stops::Dropped);
    case Style::AiPrompt:
        return std::u32string(task.in(text, language))
            + lines(splitSentences(text), {}, Stops::Kept);
    }
    return std::u32string(text);
}

} // namespace tavrin::devcloud
