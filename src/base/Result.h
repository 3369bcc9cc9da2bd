#pragma once

#include "base/Error.h"

#include <tl/expected.hpp>

namespace tavrin {

/// What a fallible operation returns: its value or an Error. Nothing is thrown across a module.
template <class Value>
using Result = tl::expected<Value, Error>;

/// A Result that failed: `return failure(error);`.
[[nodiscard]] inline tl::unexpected<Error> failure(Error error)
{
    return tl::unexpected<Error>{std::move(error)};
}

} // namespace tavrin
