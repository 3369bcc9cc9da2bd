#pragma once

#include "devcloud/api/Json.h"
#include "devcloud/api/Problem.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin::devcloud {

inline constexpr std::size_t maxBodyBytes = std::size_t{1024} * 1024;
inline constexpr int maxBodyDepth = 32;

/// The JSON object in @p body, or the problem to answer: 413 past maxBodyBytes, otherwise 400 for
/// anything that is not one UTF-8 JSON object of at most maxBodyDepth levels.
Outcome parseBody(std::string_view body);

/// Reads the fields of one body and remembers the first that is missing, of the wrong type or out
/// of range; what is read afterwards is of no meaning once problem() is set.
class FieldReader {
public:
    /// @param object must outlive the reader.
    explicit FieldReader(const Json& object);

    /// A text that must be there.
    std::string text(const char* name, std::size_t maxBytes);
    /// A text that may be absent: @p fallback then.
    std::string textOr(const char* name, std::string_view fallback, std::size_t maxBytes);
    /// A whole number from 0 to @p max that must be there.
    std::int64_t count(const char* name, std::int64_t max);
    /// An object that may be absent: the empty one then.
    Json objectOrEmpty(const char* name);

    /// Takes over a problem met inside one of the fields.
    void refuse(Problem problem);

    [[nodiscard]] const std::optional<Problem>& problem() const { return m_problem; }

private:
    const Json* member(const char* name) const;
    void refuse(int status, const char* name, const char* reason);

    const Json& m_object;
    std::optional<Problem> m_problem;
};

} // namespace tavrin::devcloud
