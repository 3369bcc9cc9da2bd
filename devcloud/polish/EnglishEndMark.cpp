#include "devcloud/polish/EnglishEndMark.h"

#include "devcloud/polish/EnglishWords.h"
#include "devcloud/polish/WordList.h"

#include <algorithm>
#include <array>

namespace tavrin::devcloud {
namespace {

using Sentence = std::span<const Run>;

constexpr auto auxiliaries = std::to_array<std::u32string_view>(
    {U"is", U"are", U"am", U"was", U"were", U"do", U"does", U"did", U"can", U"could", U"will",
        U"would", U"should", U"shall", U"may", U"might", U"must", U"have", U"has", U"had", U"isn't",
        U"aren't", U"wasn't", U"weren't", U"don't", U"doesn't", U"didn't", U"can't", U"couldn't",
        U"won't", U"wouldn't", U"shouldn't", U"haven't", U"hasn't"});
constexpr auto askingWords = std::to_array<std::u32string_view>(
    {U"who", U"what", U"when", U"where", U"why", U"how", U"which", U"whose", U"whom", U"who's",
        U"what's", U"where's", U"how's", U"why's", U"when's", U"any", U"anyone", U"anybody"});
constexpr auto subjects = std::to_array<std::u32string_view>(
    {U"i", U"we", U"you", U"he", U"she", U"it", U"they", U"anyone", U"anybody", U"there"});
constexpr auto determiners = std::to_array<std::u32string_view>(
    {U"the", U"this", U"that", U"these", U"those", U"my", U"your", U"his", U"our", U"their"});
constexpr auto forms = std::to_array<std::u32string_view>({U"is", U"are", U"was", U"were"});

bool isIn(WordList words, const Run& run)
{
    return contains(words, run.small);
}

/// Whether a word opens another clause: "can you hurry the bus is here", "are you there it rings".
bool opensClause(Sentence rest, std::size_t at)
{
    static constexpr auto speakers = std::to_array<std::u32string_view>(
        {U"i", U"we", U"he", U"she", U"they", U"i'm", U"we're", U"it's", U"that's", U"there's",
            U"i'll", U"i've", U"but", U"so", U"otherwise", U"is", U"are", U"am", U"was", U"were",
            U"has", U"will", U"would", U"can", U"could", U"should", U"must"});
    static constexpr auto mayOpen =
        std::to_array<std::u32string_view>({U"it", U"there", U"please"});
    static constexpr auto behindObject = std::to_array<std::u32string_view>(
        {U"to", U"for", U"in", U"on", U"at", U"with", U"up", U"off", U"out", U"again", U"today",
            U"tomorrow", U"now", U"back", U"by", U"please", U"yet", U"before", U"after", U"from"});
    if (at == 0 && rest[at].small == U"please")
        return false; // "Can you please wait"
    if (isIn(mayOpen, rest[at]))
        return at + 1 < rest.size() && !isIn(behindObject, rest[at + 1]);
    return isIn(speakers, rest[at]) || rest[at].small == U"thanks";
}

/// Whether something is said behind the question as well: "can you help me i am lost".
bool runsOn(Sentence rest)
{
    static constexpr auto joining = std::to_array<std::u32string_view>(
        {U"if", U"whether", U"when", U"where", U"what", U"why", U"how", U"who", U"that", U"which",
            U"because", U"and", U"or", U"think", U"know", U"say", U"said", U"than", U"until",
            U"before", U"after", U"while", U"since", U"as", U"thing", U"way", U"time"});
    bool isJoined = false;
    for (std::size_t at = 0; at < rest.size(); ++at) {
        if (isIn(joining, rest[at]))
            isJoined = true;
        else if (!isJoined && opensClause(rest, at))
            return true;
    }
    return false;
}

/// "Have it your way", "don't you worry", "am i glad to see you", "may she rest in peace".
bool isNoQuestion(std::u32string_view verb, std::u32string_view subject)
{
    if (verb == U"do" || verb == U"have")
        return subject == U"it" || subject == U"there";
    if (verb == U"may")
        return subject != U"i" && subject != U"we";
    return verb == U"don't" || verb == U"am";
}

bool surelyAsks(Sentence sentence)
{
    constexpr std::size_t longest = 12;
    static constexpr auto openings =
        std::to_array<std::u32string_view>({U"what", U"where", U"when", U"why", U"who", U"how"});
    // "What time is it", "how many are there"
    static constexpr auto measured = std::to_array<std::u32string_view>(
        {U"time", U"many", U"much", U"long", U"old", U"far", U"often"});
    // They open wishes and conditions too: "should you need help", "had i known".
    static constexpr auto notOpening =
        std::to_array<std::u32string_view>({U"should", U"had", U"were", U"must", U"might"});
    if (sentence.size() < 2 || sentence.size() > longest)
        return false;
    const bool hasOpening = isIn(openings, sentence[0]);
    const bool measures = hasOpening && isIn(measured, sentence[1]);
    const Sentence rest = sentence.subspan((hasOpening ? 1U : 0U) + (measures ? 1U : 0U));
    if (rest.size() < 2 || !isIn(auxiliaries, rest[0]) || isIn(notOpening, rest[0]))
        return false;
    const std::u32string& verb = rest[0].small;
    const bool mayCommand = !hasOpening && (verb == U"do" || verb == U"have" || verb == U"don't");
    if (isIn(subjects, rest[1]))
        return (hasOpening || !isNoQuestion(verb, rest[1].small)) && !runsOn(rest.subspan(2));
    // "Is the build green", "what is the plan"; with a second verb it may be part of a statement.
    constexpr std::size_t longestPlain = 8;
    return isIn(determiners, rest[1]) && !mayCommand && rest.size() <= longestPlain
        && (isIn(forms, rest[0]) || verb == U"did" || verb == U"does")
        && std::ranges::none_of(rest.subspan(2), [](const Run& run) {
               return isIn(auxiliaries, run) || isIn(askingWords, run) || isIn(subjects, run);
           });
}

/// "So what do you think", "i have a question is it ready": a verb before its subject, or a word
/// that asks before a verb.
bool holdsInversion(Sentence sentence)
{
    static constexpr auto before = std::to_array<std::u32string_view>(
        {U"so", U"and", U"but", U"well", U"okay", U"ok", U"then", U"now", U"or", U"yes", U"no"});
    static constexpr auto withObject =
        std::to_array<std::u32string_view>({U"have", U"has", U"had", U"do", U"does", U"did"});
    static constexpr auto relating = std::to_array<std::u32string_view>(
        {U"at", U"in", U"on", U"for", U"to", U"with", U"from", U"by", U"of"});
    const bool asksBehind = sentence.size() > 1
        && ((isIn(before, sentence[0]) && isIn(auxiliaries, sentence[1]))
            || (isIn(relating, sentence[0]) && isIn(askingWords, sentence[1])));
    if (asksBehind)
        return true;
    for (std::size_t at = 0; at + 1 < sentence.size(); ++at) {
        const Run& run = sentence[at];
        const Run& next = sentence[at + 1];
        const bool isObject = isIn(withObject, run) && next.small == U"it";
        const bool isInverted = isIn(auxiliaries, run) && isIn(subjects, next) && !isObject;
        const bool asks = (isIn(askingWords, run) && isIn(auxiliaries, next))
            || (isIn(before, run) && isIn(askingWords, next));
        if (isInverted || asks)
            return true;
    }
    return false;
}

/// "You want some coffee", "you are sure": the voice alone tells whether it asks.
bool isAskedByVoice(Sentence sentence)
{
    static constexpr auto states =
        std::to_array<std::u32string_view>({U"sure", U"certain", U"ready", U"okay", U"ok", U"fine",
            U"free", U"hungry", U"serious", U"kidding", U"joking", U"coming", U"going", U"leaving",
            U"staying", U"done", U"alone", U"home", U"busy", U"there"});
    static constexpr auto modals = std::to_array<std::u32string_view>(
        {U"can", U"could", U"will", U"would", U"should", U"may", U"might", U"must", U"shall",
            U"can't", U"couldn't", U"won't", U"wouldn't", U"shouldn't", U"never", U"always"});
    static constexpr auto telling = std::to_array<std::u32string_view>(
        {U"than", U"never", U"always", U"because", U"but", U"so", U"if"});
    static constexpr auto leading = std::to_array<std::u32string_view>(
        {U"okay", U"ok", U"so", U"and", U"but", U"oh", U"well", U"yes", U"no", U"then"});
    while (!sentence.empty() && isIn(leading, sentence[0]))
        sentence = sentence.subspan(1);
    const auto tells = [](const Run& run) { return isIn(telling, run); };
    if (sentence.size() < 2 || std::ranges::any_of(sentence, tells))
        return false;
    if (sentence[0].small == U"you're")
        return isIn(states, sentence[1]);
    if (sentence[0].small != U"you" || isIn(modals, sentence[1]))
        return false;
    const bool isState = sentence.size() > 2
        && (sentence[1].small == U"are" || sentence[1].small == U"were")
        && isIn(states, sentence[2]);
    return isState || isVerbOfSpeaker(sentence[1].small);
}

bool mayAsk(Sentence sentence)
{
    static constexpr auto objects = std::to_array<std::u32string_view>({U"it", U"not", U"this",
        U"that", U"a", U"an", U"the", U"your", U"my", U"nothing", U"me", U"be", U"some"});
    static constexpr auto ordering = std::to_array<std::u32string_view>({U"do", U"have", U"don't"});
    static constexpr auto tags =
        std::to_array<std::u32string_view>({U"right", U"okay", U"ok", U"yeah", U"yes", U"no"});
    const bool hasTag = sentence.size() > 2 && sentence[sentence.size() - 2].endsWithComma()
        && isIn(tags, sentence.back());
    // "They did what"
    static constexpr auto echoes =
        std::to_array<std::u32string_view>({U"what", U"who", U"where", U"when", U"which"});
    // "Mind if I sit here", "need any help"
    static constexpr auto shortened =
        std::to_array<std::u32string_view>({U"mind", U"need", U"want", U"got", U"care"});
    if (hasTag || isIn(askingWords, sentence[0]) || isIn(echoes, sentence.back())
        || isIn(shortened, sentence[0]) || isAskedByVoice(sentence))
        return true;
    if (!isIn(auxiliaries, sentence[0]))
        return holdsInversion(sentence);
    const bool orders = isIn(ordering, sentence[0]) && sentence.size() > 1
        && (isIn(objects, sentence[1])
            || (sentence[0].small == U"don't" && !isIn(subjects, sentence[1])));
    return !orders;
}

/// "Turn left after the bridge", "you know him".
bool orders(Sentence sentence)
{
    constexpr std::size_t shortest = 3;
    static constexpr auto verbs = std::to_array<std::u32string_view>(
        {U"turn", U"call", U"press", U"write", U"log", U"see", U"open", U"bring", U"send", U"put",
            U"go", U"take", U"keep", U"tell", U"give", U"get", U"have", U"do", U"don't", U"use"});
    static constexpr auto objects = std::to_array<std::u32string_view>({U"the", U"a", U"an", U"me",
        U"it", U"us", U"him", U"her", U"them", U"my", U"your", U"you", U"this", U"these", U"those",
        U"to", U"on", U"off", U"down", U"up", U"out", U"left", U"right", U"back"});
    if (sentence.size() < shortest)
        return false;
    return (isIn(verbs, sentence[0]) && isIn(objects, sentence[1]))
        || (sentence[0].small == U"you" && isVerbOfSpeaker(sentence[1].small));
}

/// A name, a title or a word alone is no sentence.
bool isSentence(Sentence sentence)
{
    static constexpr auto greetings = std::to_array<std::u32string_view>(
        {U"hello", U"hi", U"hey", U"thanks", U"thank", U"yes", U"no", U"okay", U"ok", U"good",
            U"goodbye", U"bye", U"sorry", U"sure", U"please", U"congratulations", U"welcome"});
    static constexpr auto clear = std::to_array<std::u32string_view>(
        {U"i", U"we", U"he", U"she", U"it", U"they", U"i'm", U"it's", U"that's", U"we're",
            U"there's", U"let's", U"i'll", U"i've", U"i'd", U"we'll", U"we've", U"we'd", U"they're",
            U"they'll", U"they've", U"you're", U"you'll", U"you've", U"he's", U"she's"});
    return isIn(greetings, sentence[0]) || orders(sentence)
        || std::ranges::any_of(sentence, [](const Run& run) {
               return isIn(auxiliaries, run) || isIn(clear, run) || isFiniteVerb(run.small);
           });
}

/// "At what time does it start": the sentence from "what" on.
Sentence fromWhat(Sentence sentence)
{
    static constexpr auto relating =
        std::to_array<std::u32string_view>({U"at", U"since", U"until", U"by", U"from"});
    const bool asksForTime = sentence.size() > 2 && isIn(relating, sentence[0])
        && sentence[1].small == U"what" && sentence[2].small == U"time";
    return sentence.subspan(asksForTime ? 1 : 0);
}

} // namespace

bool mayAskInEnglish(Sentence sentence)
{
    return !sentence.empty() && mayAsk(sentence);
}

std::u32string_view englishEndMark(Sentence sentence)
{
    if (sentence.empty() || !sentence.back().isPlain() || !sentence.back().closing.empty()
        || sentence.front().word.ends_with(U'-'))
        return {};
    // "So what do you think"
    static constexpr auto leading =
        std::to_array<std::u32string_view>({U"so", U"and", U"but", U"okay", U"ok"});
    const bool isLed =
        sentence.size() > 1 && isIn(leading, sentence[0]) && isIn(askingWords, sentence[1]);
    if (surelyAsks(fromWhat(sentence.subspan(isLed ? 1 : 0))))
        return U"?";
    return mayAsk(sentence) || !isSentence(sentence) ? U"" : U".";
}

} // namespace tavrin::devcloud
