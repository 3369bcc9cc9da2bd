#pragma once

#include <string>

namespace bench {

/// Seconds on the monotonic clock, the one of Python's time.monotonic().
double now();

/// Prints "SECONDS EVENT DETAIL": what has happened, and when.
void report(const char* event, const std::string& detail = {});

} // namespace bench
