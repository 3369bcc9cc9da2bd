#pragma once

#include <cstddef>

namespace tavrin::devcloud {

/// Lets this process open @p wanted files at once, or as many as the system allows; how many those
/// are. Every connection takes one.
std::size_t allowOpenFiles(std::size_t wanted);

/// How many of @p wanted connections fit beside the files that the service itself needs, when it
/// may open @p files.
std::size_t connectionsWithin(std::size_t wanted, std::size_t files);

} // namespace tavrin::devcloud
