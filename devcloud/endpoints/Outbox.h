#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace tavrin::devcloud {

struct Mail {
    std::string to;
    std::string subject;
    std::string body;
};

/// Where mail goes; false when it could not be delivered. Any thread.
using SendMail = std::function<bool(const Mail&)>;

/// A service for development sends no mail: each one becomes a file of mode 0600 in a folder of
/// mode 0700 and is printed to standard output.
class Outbox {
public:
    explicit Outbox(std::filesystem::path folder);

    bool operator()(const Mail& mail) const;

private:
    std::filesystem::path m_folder;
};

} // namespace tavrin::devcloud
