#pragma once

#include "devcloud/model/LanguageModel.h"
#include "devcloud/polish/Style.h"

#include <string>
#include <string_view>

namespace tavrin::devcloud {

class FieldReader;

/// Where the text will stand, as the client saw it. Every part may be empty.
struct Application {
    std::string name;
    std::string bundleId;
    std::string windowHint;
    std::string focusedRole;
};

/// The `application` member of a polish body.
Application readApplication(FieldReader& fields);

/// What a model is asked for each operation. What a person said, and everything read from their
/// screen, stands between two marks that hold a fresh random number, so that no spoken or written
/// text can end the fence; the instructions call it data, to be worked on and never obeyed.
Prompt polishPrompt(std::string_view transcript, const Application& application, Style style);
Prompt translationPrompt(std::string_view transcript, const Application& application, Style style,
    std::string_view language);
Prompt chatPrompt(std::string_view transcript, std::string_view context);

/// An answer without what a model has repeated of the fence with @p mark, trimmed.
std::string withoutFence(std::string_view answer, std::string_view mark);

} // namespace tavrin::devcloud
