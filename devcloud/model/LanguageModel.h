#pragma once

#include <optional>
#include <string>

namespace tavrin::devcloud {

/// What a language model is asked.
struct Prompt {
    std::string instructions; ///< Ours: what to do.
    std::string request; ///< Holds what a person said, fenced as data.
    std::string mark{}; ///< Of the fence: no answer should hold it.
};

/// A language model. Called from several threads at once.
class LanguageModel {
public:
    LanguageModel() = default;
    virtual ~LanguageModel() = default;
    LanguageModel(const LanguageModel&) = delete;
    LanguageModel& operator=(const LanguageModel&) = delete;

    /// The model's answer without surrounding white space; empty when it failed, took too long or
    /// had nothing to say.
    virtual std::optional<std::string> answer(const Prompt& prompt) = 0;

    /// How the model is called in usage totals.
    [[nodiscard]] virtual std::string name() const = 0;
};

} // namespace tavrin::devcloud
