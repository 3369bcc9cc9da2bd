#pragma once

#include "app/session/CorrectionLearning.h"
#include "base/CallbackGuard.h"
#include "base/Seconds.h"
#include "dictionary/EditTracking.h"
#include "platform/programs/Accessibility.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace tavrin {

class Clock;
class MainQueue;
class Preferences;
class TargetContext;
class Timer;
class WordBreaker;

/// Watches the field that a text was inserted into, follows what the user corrects there, and
/// learns the words that came in by it. The watch ends some quiet time after a correction, a while
/// after its beginning, and where the field cannot be read or the stretch is lost. Whatever goes
/// wrong, nobody is told. Main thread only.
class CorrectionWatch final : public CorrectionLearning {
public:
    struct Ports {
        Accessibility& accessibility;
        const Clock& clock;
        MainQueue& mainQueue;
        Preferences& preferences;
        WordBreaker& wordBreaker;
    };

    /// @param ports, target must outlive it.
    /// @param dictionaryChanged is called after entries have come or changed.
    CorrectionWatch(
        const Ports& ports, const TargetContext& target, std::function<void()> dictionaryChanged);
    ~CorrectionWatch() override;

    CorrectionWatch(const CorrectionWatch&) = delete;
    CorrectionWatch& operator=(const CorrectionWatch&) = delete;

    /// Watches the target's focused element, if learning is on and the text is found there.
    void beginCorrectionLearningForInsertedText(const QString& text) override;
    void finishCorrectionLearningAndAnalyze(bool analyze) override;

private:
    struct Watch {
        ElementHandle correctionLearningElement;
        QString correctionOriginalText;
        QString correctionCurrentText; ///< Of the inserted stretch.
        TextRange correctionTrackedRange; ///< Where it lies in the field.
        QString correctionPreviousValue; ///< Of the whole field.
        Seconds correctionLearningDeadline;
        std::optional<Seconds> correctionLastChange; ///< Within the stretch.
        std::unique_ptr<Timer> correctionLearningTimer;
    };

    [[nodiscard]] std::optional<TextRange> findInsertion(
        const QString& text, const QString& value, const AccessibleElement* element);
    void pollCorrectionLearning();
    /// False when the stretch is lost.
    [[nodiscard]] bool follow(const QString& value);
    void learnDictionaryCandidatesFromOriginal(const QString& original, const QString& corrected);

    Ports m_ports;
    const TargetContext& m_target;
    std::function<void()> m_dictionaryChanged;
    std::optional<Watch> m_watch;
    CallbackGuard m_guard;
};

} // namespace tavrin
