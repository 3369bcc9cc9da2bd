#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin::devcloud::testing {

/// A bare connection to a server on this machine, for requests that no library would send. Every
/// wait is bounded; the destructor closes.
class LoopbackClient {
public:
    /// @param roomBytes how much this side takes before it is read; as the system likes without.
    explicit LoopbackClient(int port, std::optional<int> roomBytes = {});
    ~LoopbackClient();
    LoopbackClient(const LoopbackClient&) = delete;
    LoopbackClient& operator=(const LoopbackClient&) = delete;

    /// False once the other side has closed.
    bool send(std::string_view bytes) const;
    /// Says that nothing more will come.
    void finishSending() const;
    /// Reads one whole answer with its announced body; what came of it when the connection ended.
    std::string readAnswer();
    /// Whether the other side closes within @p wait, whatever it still sends.
    [[nodiscard]] bool isClosedByServer(
        std::chrono::milliseconds wait = std::chrono::seconds(5)) const;

    /// The one whose other side sends or closes first; the first when neither does in 5 seconds.
    static const LoopbackClient& firstAnswered(
        const LoopbackClient& first, const LoopbackClient& second);

private:
    bool receive();

    int m_socket;
    std::string m_received;
};

/// The status in the first line of an answer; 0 when it is none.
int statusIn(std::string_view answer);
/// What follows the head of an answer.
std::string_view bodyIn(std::string_view answer);

} // namespace tavrin::devcloud::testing
