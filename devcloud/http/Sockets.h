#pragma once

#include "devcloud/http/Descriptor.h"

#include <string>

struct sockaddr;

namespace tavrin::devcloud {

struct ListeningSocket {
    Descriptor descriptor; ///< Not open when the port is taken or the host is none of ours.
    int port = 0;
};

/// Listens on @p host, a name or a numeric address, and @p port; 0 takes any free one.
ListeningSocket listenOn(const std::string& host, int port);

/// The numeric address, without the port; one of IPv4 that IPv6 wraps is unwrapped. Empty when it
/// is of another family.
std::string numericAddress(const sockaddr* address);

} // namespace tavrin::devcloud
