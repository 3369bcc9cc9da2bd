#include "speech/SpeechContextualTerms.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qsizetype maxTerms = 100;

} // namespace

QStringList SpeechContextualTerms(const QStringList& dictionaryTerms)
{
    const QStringList fixedTerms{u"Tavrin"_s, u"Typeless"_s, u"OpenAI"_s, u"Gemini"_s, u"Codex"_s,
        u"ChatGPT"_s, u"API"_s, u"STT"_s, u"LLM"_s, u"macOS"_s, u"Swift"_s, u"Objective-C"_s,
        u"Electron"_s, u"GitHub"_s, u"Notion"_s, u"Slack"_s, u"Cursor"_s};
    return fixedTerms
        + dictionaryTerms.first(qMin(dictionaryTerms.size(), maxTerms - fixedTerms.size()));
}

} // namespace tavrin
