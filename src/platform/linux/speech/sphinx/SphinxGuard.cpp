#include "platform/linux/speech/sphinx/SphinxGuard.h"

#include "platform/linux/speech/sphinx/Libsphinx.h"

#include <csetjmp>

namespace tavrin {

using namespace libsphinx;

namespace {

// Of the innermost guarded work on this thread.
thread_local std::jmp_buf* wayOut = nullptr;

/// Called for every message; after a fatal one the library would call exit().
void hear(void* /*unused*/, err_lvl_t level, const char* /*format*/, ...)
{
    if (level == ERR_FATAL && wayOut != nullptr)
        std::longjmp(*wayOut, 1); // Only frames of C lie between.
}

} // namespace

void silenceSphinx()
{
    err_set_logfp(nullptr);
    err_set_callback(hear, nullptr);
}

bool runGuarded(const std::function<void()>& work)
{
    std::jmp_buf here;
    if (setjmp(here) != 0) {
        wayOut = nullptr;
        return false;
    }
    wayOut = &here;
    work();
    wayOut = nullptr;
    return true;
}

} // namespace tavrin
