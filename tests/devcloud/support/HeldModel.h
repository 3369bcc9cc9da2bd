#pragma once

#include "devcloud/model/LanguageModel.h"
#include "devcloud/support/Gate.h"

namespace tavrin::devcloud::testing {

/// Answers when the test says so.
class HeldModel : public LanguageModel, public Gate {
public:
    std::optional<std::string> answer(const Prompt& /*prompt*/) override
    {
        pass();
        return "the model's answer";
    }

    [[nodiscard]] std::string name() const override { return "held"; }
};

} // namespace tavrin::devcloud::testing
