#pragma once

class QString;

namespace tavrin {

/// The learning from what the user corrects in inserted text, as the session starts and ends it:
/// CorrectionWatch. When a word that was seen there becomes a term, CandidateSightings decides.
/// Main thread only.
class CorrectionLearning {
public:
    virtual ~CorrectionLearning() = default;

    /// Starts to watch the field that @p text was inserted into.
    virtual void beginCorrectionLearningForInsertedText(const QString& text) = 0;

    /// Ends a watch that is running; with @p analyze, learns from it first.
    virtual void finishCorrectionLearningAndAnalyze(bool analyze) = 0;
};

} // namespace tavrin
