#include "Figures.h"
#include "Sounds.h"
#include "WordErrors.h"
#include "speech/SpeechContextualTerms.h"

#include <QList>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace tavrin::bench {
namespace {

/// A term, a sentence with it, and how the voices are made to say it.
struct Term {
    QString term;
    QString sentence; ///< With %1 for what is said.
    QString said;
};

QList<Term> terms()
{
    return {
        {u"ChatGPT"_s, u"ask %1 to write the letter"_s, u"chat g p t"_s},
        {u"GitHub"_s, u"i put the files on %1 last night"_s, u"git hub"_s},
        {u"OpenAI"_s, u"the people at %1 sent an answer"_s, u"open a i"_s},
        {u"Notion"_s, u"please copy the list into %1"_s, u"notion"_s},
        {u"Slack"_s, u"write it to the team in %1"_s, u"slack"_s},
        {u"Codex"_s, u"we asked %1 to find the mistake"_s, u"codex"_s},
        {u"Tavrin"_s, u"i dictate everything with %1 now"_s, u"tavrin"_s},
        {u"Kowalczyk"_s, u"send the offer to %1 today"_s, u"kowalczyk"_s},
        {u"Brenvald"_s, u"the meeting with %1 is on monday"_s, u"brenvald"_s},
        {u"Ostrander"_s, u"my neighbour %1 is on holiday"_s, u"ostrander"_s},
    };
}

bool holds(const QString& text, const QString& term)
{
    return comparedWords(text).contains(term.toLower());
}

struct Recall {
    int without = 0;
    int with = 0;
};

/// One row of the table: a term in every voice.
Recall printRecallOf(const Term& term, OwnRecognizer& plain, OwnRecognizer& own,
    const QStringList& favoured, const QString& folder)
{
    const auto word = [](bool understood) { return understood ? "yes" : "no"; };
    Recall recall;
    std::printf("%-10s", qPrintable(term.term));
    for (const QString& voice : voices()) {
        const Spoken spoken = speak(term.sentence.arg(term.said), voice, folder);
        const bool without = holds(plain.recognize(spoken.recording, {}).text, term.term);
        const bool with = holds(own.recognize(spoken.recording, favoured).text, term.term);
        recall.without += without ? 1 : 0;
        recall.with += with ? 1 : 0;
        std::printf(" %5s %6s", word(without), word(with));
    }
    std::printf("\n");
    return recall;
}

} // namespace

void printTermRecall(OwnRecognizer& own, const QString& folder)
{
    QStringList dictionary;
    for (const Term& term : terms())
        dictionary.append(term.term);
    const QStringList favoured = SpeechContextualTerms(dictionary);

    std::printf(
        "\nRecall of ten terms (without and with favouring them), by voice.\n\n%-10s", "term");
    for (const QString& voice : voices())
        std::printf(" %12s", qPrintable(voice));
    std::printf("\n");
    OwnRecognizer plain; // A word that was favoured once stays known to its recogniser.
    Recall all;
    for (const Term& term : terms()) {
        const Recall recall = printRecallOf(term, plain, own, favoured, folder);
        all.without += recall.without;
        all.with += recall.with;
    }
    const qsizetype count = terms().size() * voices().size();
    std::printf("%-10s without: %d of %lld, with: %d of %lld\n", "all", all.without,
        static_cast<long long>(count), all.with, static_cast<long long>(count));
}

} // namespace tavrin::bench
