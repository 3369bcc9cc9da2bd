#include "devcloud/http/OpenFiles.h"

#include <algorithm>
#include <sys/resource.h>

namespace tavrin::devcloud {
namespace {

/// For the database, connections to a model, and connections that are on their way out.
constexpr std::size_t otherFiles = 512;

} // namespace

std::size_t allowOpenFiles(std::size_t wanted)
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return wanted;
    if (limit.rlim_cur >= wanted)
        return wanted;
    limit.rlim_cur = std::min<rlim_t>(wanted, limit.rlim_max);
    setrlimit(RLIMIT_NOFILE, &limit);
    getrlimit(RLIMIT_NOFILE, &limit);
    return limit.rlim_cur;
}

std::size_t connectionsWithin(std::size_t wanted, std::size_t files)
{
    // Where hardly any file may be open, half of them are for connections.
    const std::size_t room = files > 2 * otherFiles ? files - otherFiles : files / 2;
    return std::min(wanted, room);
}

} // namespace tavrin::devcloud
