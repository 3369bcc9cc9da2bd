#include "devcloud/model/ChatCompletions.h"

#include "devcloud/api/RequestBody.h"
#include "devcloud/text/Ascii.h"

#include <condition_variable>
#include <cstdio>
#include <httplib.h>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;

namespace tavrin::devcloud {
namespace {

constexpr auto connectTimeout = 5s;
constexpr std::chrono::milliseconds stopInterval = 100ms;

/// Ends a request that is not done in time, whatever it is waiting for.
class Deadline {
public:
    Deadline(httplib::Client& client, std::chrono::milliseconds time)
        : m_thread([this, &client, time] {
            std::unique_lock lock(m_mutex);
            const auto done = [this] { return m_done; };
            // Again and again: a request that is only connecting has nothing to stop yet.
            for (auto wait = time; !m_changed.wait_for(lock, wait, done); wait = stopInterval)
                client.stop();
        })
    {
    }

    ~Deadline()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_done = true;
        }
        m_changed.notify_one();
        m_thread.join();
    }

    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_done = false;
    std::thread m_thread;
};

Json completionRequest(const std::string& model, const Prompt& prompt)
{
    return {{"model", model}, {"stream", false},
        {"messages",
            {{{"role", "system"}, {"content", prompt.instructions}},
                {{"role", "user"}, {"content", prompt.request}}}}};
}

/// Some models think aloud before they answer.
std::string_view withoutThoughts(std::string_view text)
{
    constexpr std::string_view opening = "<think>";
    constexpr std::string_view closing = "</think>";
    text = trimmedAscii(text);
    if (!text.starts_with(opening))
        return text;
    const std::size_t end = text.find(closing);
    return end == std::string_view::npos ? std::string_view()
                                         : trimmedAscii(text.substr(end + closing.size()));
}

bool isThisMachine(std::string_view host)
{
    return host == "127.0.0.1" || host == "localhost" || host == "[::1]";
}

} // namespace

tl::expected<ModelAddress, std::string> parseModelUrl(std::string_view url)
{
    const std::size_t schemeEnd = url.find("://");
    if (schemeEnd == std::string_view::npos)
        return tl::unexpected(std::string("the model URL needs a scheme"));
    const std::string scheme = lowerAscii(url.substr(0, schemeEnd));
    const std::string_view rest = url.substr(schemeEnd + 3);
    const std::size_t authorityEnd = std::min(rest.find('/'), rest.size());
    const std::string_view authority = rest.substr(0, authorityEnd);
    if (authority.empty() || rest.find_first_of("@?# \t\r\n") != std::string_view::npos)
        return tl::unexpected(std::string("the model URL is malformed"));
    const std::string_view host = authority.starts_with('[')
        ? authority.substr(0, authority.find(']') + 1)
        : authority.substr(0, authority.find(':'));
    if (scheme != "https" && !(scheme == "http" && isThisMachine(host)))
        return tl::unexpected(std::string("the model URL must be https, or http on this machine"));
    std::string path(rest.substr(authorityEnd));
    while (path.ends_with('/'))
        path.pop_back();
    if (!path.ends_with("/v1"))
        path += "/v1";
    return ModelAddress{scheme + "://" + std::string(authority), path + "/chat/completions"};
}

std::optional<std::string> completionText(std::string_view body)
{
    const Outcome answer = parseBody(body);
    if (!answer)
        return std::nullopt;
    static const Json::json_pointer content("/choices/0/message/content");
    if (!answer->contains("choices") || !answer->at("choices").is_array()
        || !answer->contains(content) || !answer->at(content).is_string())
        return std::nullopt;
    const std::string_view text =
        withoutThoughts(answer->at(content).get_ref<const std::string&>());
    if (text.empty())
        return std::nullopt;
    return std::string(text);
}

ChatCompletions::ChatCompletions(ChatCompletionsSettings settings)
    : m_settings(std::move(settings))
{
}

std::optional<std::string> ChatCompletions::answer(const Prompt& prompt)
{
    httplib::Client client(m_settings.address.origin);
    client.set_connection_timeout(connectTimeout);
    client.set_read_timeout(m_settings.timeout);
    client.set_write_timeout(m_settings.timeout);
    client.set_follow_location(false);

    httplib::Request request;
    request.method = "POST";
    request.path = m_settings.address.path;
    request.set_header("Content-Type", "application/json");
    if (!m_settings.key.empty())
        request.set_header("Authorization", "Bearer " + m_settings.key);
    request.body = completionRequest(m_settings.model, prompt)
                       .dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string body;
    request.content_receiver = [&body](const char* bytes, std::size_t count, auto, auto) {
        body.append(bytes, count);
        return body.size() <= maxBodyBytes;
    };

    const Deadline deadline(client, m_settings.timeout);
    const httplib::Result result = client.send(request);
    if (!result || result->status != 200) {
        const std::string reason = result ? "status " + std::to_string(result->status)
                                          : httplib::to_string(result.error());
        std::fprintf(stderr, "tavrin-devcloud: the model failed: %s\n", reason.c_str());
        return std::nullopt;
    }
    return completionText(body);
}

} // namespace tavrin::devcloud
