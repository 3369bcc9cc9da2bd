#pragma once

#include "app/session/CorrectionLearning.h"

namespace tavrin {

/// For a program that learns nothing from what the user corrects.
class NoCorrectionLearning final : public CorrectionLearning {
public:
    void beginCorrectionLearningForInsertedText(const QString& /*text*/) override { }

    void finishCorrectionLearningAndAnalyze(bool /*analyze*/) override { }
};

} // namespace tavrin
