#pragma once

#include "platform/speech/RecogniserSettings.h"

#include <algorithm>

namespace tavrin::testing {

/// Recognisers as the test describes them; none until it does.
class InMemoryRecogniserSettings final : public RecogniserSettings {
public:
    RecogniserChoices offered;

    [[nodiscard]] RecogniserChoices choices() const override { return offered; }

    void selectRecogniser(const QString& identifier) override
    {
        const bool isThere = std::ranges::any_of(offered.recognisers,
            [&](const RecogniserChoice& choice) { return choice.identifier == identifier; });
        if (isThere)
            offered.recogniser = identifier;
    }

    void selectLanguage(const QString& tag) override
    {
        if (offered.languages.contains(tag))
            offered.language = tag;
    }
};

} // namespace tavrin::testing
