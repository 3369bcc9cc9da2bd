#include "Report.h"

#include <chrono>
#include <cstdio>

namespace bench {

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void report(const char* event, const std::string& detail)
{
    std::printf("%.6f %s %s\n", now(), event, detail.c_str());
    std::fflush(stdout);
}

} // namespace bench
