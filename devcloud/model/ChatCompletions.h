#pragma once

#include "devcloud/model/LanguageModel.h"

#include <chrono>
#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace tavrin::devcloud {

/// A model server's address, taken apart.
struct ModelAddress {
    std::string origin; ///< Scheme, host and port.
    std::string path; ///< Of the chat completions.

    bool operator==(const ModelAddress&) const = default;
};

/// The address of the completions below the base @p url, which may end in "/v1" or not; what is
/// wrong with it otherwise. Plain http is for this machine only, for dictated text travels there.
tl::expected<ModelAddress, std::string> parseModelUrl(std::string_view url);

struct ChatCompletionsSettings {
    ModelAddress address;
    std::string model;
    std::string key; ///< Empty: none is sent.
    std::chrono::milliseconds timeout{std::chrono::seconds(60)}; ///< For a whole answer.
};

/// A model behind any server with the common `POST /v1/chat/completions`.
class ChatCompletions : public LanguageModel {
public:
    explicit ChatCompletions(ChatCompletionsSettings settings);

    std::optional<std::string> answer(const Prompt& prompt) override;

    [[nodiscard]] std::string name() const override { return m_settings.model; }

private:
    ChatCompletionsSettings m_settings;
};

/// The text in the body of a completion; empty when there is none.
std::optional<std::string> completionText(std::string_view body);

} // namespace tavrin::devcloud
