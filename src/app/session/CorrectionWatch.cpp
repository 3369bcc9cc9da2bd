#include "app/session/CorrectionWatch.h"

#include "delivery/TargetContext.h"
#include "dictionary/CandidateSightings.h"
#include "dictionary/CorrectionCandidates.h"
#include "dictionary/DictionaryStore.h"
#include "platform/Clock.h"
#include "platform/MainQueue.h"

#include <utility>

namespace tavrin {
namespace {

constexpr qsizetype shortestText = 2;
constexpr qsizetype longestText = 2000;
constexpr Seconds pollInterval{0.75};
constexpr Seconds watchDuration{45};
constexpr Seconds quietPeriod{2.5};

} // namespace

CorrectionWatch::CorrectionWatch(
    const Ports& ports, const TargetContext& target, std::function<void()> dictionaryChanged)
    : m_ports(ports)
    , m_target(target)
    , m_dictionaryChanged(std::move(dictionaryChanged))
{
}

CorrectionWatch::~CorrectionWatch() = default;

void CorrectionWatch::beginCorrectionLearningForInsertedText(const QString& text)
{
    finishCorrectionLearningAndAnalyze(true);
    const AccessibleElement* const focused = m_target.targetFocusedElement();
    if (!isAutomaticDictionaryLearningOn(m_ports.preferences)
        || !m_ports.accessibility.isProcessTrusted() || text.size() < shortestText
        || text.size() > longestText || !focused)
        return;
    ElementHandle element = m_ports.accessibility.retain(*focused);
    const QString value = m_ports.accessibility.value(element.get()).value_or(QString());
    const std::optional<TextRange> place = findInsertion(text, value, element.get());
    if (!place)
        return;
    m_watch.emplace(Watch{.correctionLearningElement = std::move(element),
        .correctionOriginalText = text,
        .correctionCurrentText = text,
        .correctionTrackedRange = *place,
        .correctionPreviousValue = value,
        .correctionLearningDeadline = m_ports.clock.uptime() + watchDuration,
        .correctionLastChange = std::nullopt,
        .correctionLearningTimer = m_ports.mainQueue.every(
            pollInterval, m_guard.bind([this] { pollCorrectionLearning(); }))});
}

/// Right before the caret, where it is after an insertion; else the last place that reads like it.
std::optional<TextRange> CorrectionWatch::findInsertion(
    const QString& text, const QString& value, const AccessibleElement* element)
{
    const qint64 caret =
        m_ports.accessibility.selectedTextRange(element).value_or(TextRange{}).location;
    if (caret >= text.size() && caret <= value.size()
        && QStringView(value).sliced(caret - text.size(), text.size()) == text)
        return TextRange{caret - text.size(), text.size()};
    const qsizetype last = value.lastIndexOf(text);
    if (last < 0)
        return std::nullopt;
    return TextRange{last, text.size()};
}

void CorrectionWatch::pollCorrectionLearning()
{
    if (!m_watch)
        return;
    const std::optional<QString> value =
        m_ports.clock.uptime() < m_watch->correctionLearningDeadline
        ? m_ports.accessibility.value(m_watch->correctionLearningElement.get())
        : std::nullopt;
    if (!value || !follow(*value)
        || (m_watch->correctionLastChange
            && m_ports.clock.uptime() - *m_watch->correctionLastChange >= quietPeriod))
        finishCorrectionLearningAndAnalyze(true);
}

bool CorrectionWatch::follow(const QString& value)
{
    if (value == m_watch->correctionPreviousValue)
        return true;
    TrackedStretch stretch{m_watch->correctionCurrentText, m_watch->correctionTrackedRange};
    const EditPlace place = followEdit(stretch, m_watch->correctionPreviousValue, value);
    if (place == EditPlace::Across)
        return false;
    m_watch->correctionCurrentText = stretch.text;
    m_watch->correctionTrackedRange = stretch.range;
    m_watch->correctionPreviousValue = value;
    if (place == EditPlace::Inside)
        m_watch->correctionLastChange = m_ports.clock.uptime();
    return true;
}

void CorrectionWatch::finishCorrectionLearningAndAnalyze(bool analyze)
{
    const std::optional<Watch> ended = std::exchange(m_watch, std::nullopt);
    if (ended && analyze && isAutomaticDictionaryLearningOn(m_ports.preferences))
        learnDictionaryCandidatesFromOriginal(
            ended->correctionOriginalText, ended->correctionCurrentText);
}

void CorrectionWatch::learnDictionaryCandidatesFromOriginal(
    const QString& original, const QString& corrected)
{
    const QStringList candidates =
        dictionaryCandidatesFromOriginal(original, corrected, m_ports.wordBreaker);
    if (learnDictionaryCandidates(m_ports.preferences, m_ports.clock, candidates)
        && m_dictionaryChanged)
        m_dictionaryChanged();
}

} // namespace tavrin
