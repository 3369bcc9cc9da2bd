#include "Corrections.h"

#include "dictionary/CorrectionCandidates.h"
#include "dictionary/EditTracking.h"
#include "platform/WordBreaker.h"
#include "support/ports/InMemoryWordBreaker.h"

#include <QElapsedTimer>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace bench {
namespace {

constexpr qsizetype fieldBytes = 2'000'000;
constexpr qsizetype stretchUnits = 2000;

QString textOf(qsizetype units)
{
    QString text;
    for (int i = 0; text.size() < units; ++i)
        text += u"Line %1 of a long document about the budget of next year.\n"_s.arg(i);
    return text.left(units);
}

template <class Work>
double timeOf(const Work& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "bench/ui: %s\n", what);
    std::exit(EXIT_FAILURE);
}

} // namespace

CorrectionTimes measureCorrections(int rounds)
{
    CorrectionTimes times;
    const QString before = textOf(fieldBytes / static_cast<qsizetype>(sizeof(QChar)));
    const qsizetype middle = before.size() / 2;
    const tavrin::TextRange place{middle - stretchUnits / 2, stretchUnits};
    QString after = before;
    after.replace(middle, 6, u"Kowalczyk"_s);
    const QString original = before.mid(place.location, place.length);
    QString corrected = original;
    corrected.replace(stretchUnits / 2, 6, u"Kowalczyk"_s);
    tavrin::testing::InMemoryWordBreaker wordBreaker;

    for (int i = 0; i < rounds; ++i) {
        tavrin::TrackedStretch stretch{original, place};
        times.poll.push_back(timeOf([&] {
            require(tavrin::followEdit(stretch, before, after) == tavrin::EditPlace::Inside,
                "an edit was not followed");
        }));
        times.mismatch.push_back(timeOf([&] {
            const auto [first, second] = std::mismatch(before.begin(), before.end(), after.begin());
            require(first != before.end() && second != after.end(), "no difference");
            const auto [last, other] =
                std::mismatch(before.rbegin(), before.rend(), after.rbegin());
            require(last != before.rend() && other != after.rend(), "no difference");
        }));
        times.candidates.push_back(timeOf([&] {
            require(!tavrin::dictionaryCandidatesFromOriginal(original, corrected, wordBreaker)
                         .isEmpty(),
                "no candidate");
        }));
    }
    return times;
}

} // namespace bench
