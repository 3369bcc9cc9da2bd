#include "devcloud/polish/Polish.h"

#include "devcloud/polish/Cleanup.h"
#include "devcloud/polish/Forms.h"
#include "devcloud/polish/Sentence.h"
#include "devcloud/text/Utf8.h"

#include <algorithm>

namespace tavrin::devcloud {
namespace {

bool saysSomething(const Tokens& tokens)
{
    return std::ranges::any_of(
        tokens, [](const Token& token) { return token.kind != TokenKind::Mark; });
}

Clause finished(Sentence sentence)
{
    sentence.tokens = withMarksOf(sentence.tokens, sentence.isChinese);
    if (!sentence.isChinese)
        sentence.tokens = withEnglishCapitals(sentence.tokens);
    return {
        render(sentence.tokens), endMark(sentence), sentence.isChinese, sentence.startsParagraph};
}

std::vector<Clause> cleaned(const std::vector<Sentence>& sentences)
{
    std::vector<Clause> clauses;
    bool startsParagraph = false; // A line break stays when the sentence behind it goes.
    for (Sentence sentence : sentences) {
        startsParagraph = startsParagraph || sentence.startsParagraph;
        sentence.tokens = withoutRepeats(withoutFillers(sentence.tokens));
        if (!saysSomething(sentence.tokens))
            continue;
        sentence.isChinese = isMostlyChinese(sentence.tokens);
        sentence.startsParagraph = startsParagraph && !clauses.empty();
        startsParagraph = false;
        clauses.push_back(finished(std::move(sentence)));
    }
    return clauses;
}

} // namespace

std::string polish(std::string_view transcript, Style style)
{
    const Tokens tokens = tokenize(decodeUtf8(transcript));
    const std::vector<Sentence> sentences = splitSentences(tokens);
    std::vector<Clause> clauses = cleaned(sentences);
    // Whoever says only "um" means it.
    if (clauses.empty()) {
        for (const Sentence& sentence : sentences) {
            if (saysSomething(sentence.tokens))
                clauses.push_back(finished(sentence));
        }
    }
    if (clauses.empty())
        return encodeUtf8(decodeUtf8(transcript));
    return encodeUtf8(setInForm(clauses, style, isMostlyChinese(tokens)));
}

} // namespace tavrin::devcloud
