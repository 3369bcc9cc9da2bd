#include "devcloud/Service.h"
#include "devcloud/api/RequestBody.h"
#include "devcloud/http/ClientAddress.h"
#include "devcloud/http/HttpServer.h"
#include "devcloud/model/ChatCompletions.h"
#include "devcloud/polish/Polish.h"
#include "devcloud/security/Secrets.h"
#include "devcloud/store/Accounts.h"
#include "devcloud/store/Database.h"
#include "devcloud/support/LoopbackClient.h"
#include "devcloud/text/Utf8.h"
#include "fuzz/Require.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// What the development service makes of any request: the first byte chooses the endpoint, the rest
// is the body, and the same bytes stand for the head of a request, the answer of a model, a
// certificate and the header of a proxy. Each request also goes through the HTTP server.

namespace tavrin::devcloud {
namespace {

using tavrin::fuzz::require;

/// A model that echoes what it is asked.
class EchoModel : public LanguageModel {
public:
    std::optional<std::string> answer(const Prompt& prompt) override { return prompt.request; }

    [[nodiscard]] std::string name() const override { return "echo"; }
};

/// A service that is signed in to, kept over all inputs.
class SignedInService {
public:
    SignedInService()
    {
        require(initializeSecrets(), "the system gives randomness");
        Transaction transaction(*m_database);
        m_account = addAccount(transaction, "a@b", "no hash", m_now);
        m_authorization = newAuthorization(transaction);
        transaction.commit();
    }

    /// Of the session that all inputs share; signing out, which would end it, gets one of its own.
    std::string authorizationFor(Endpoint endpoint)
    {
        if (endpoint != Endpoint::Logout)
            return m_authorization;
        Transaction transaction(*m_database);
        std::string authorization = newAuthorization(transaction);
        transaction.commit();
        return authorization;
    }

    Service& service(bool withModel) { return withModel ? m_withModel : m_withRules; }

    Outcome answer(Endpoint endpoint, const std::string& body, bool withModel)
    {
        return service(withModel).answer({endpoint, authorizationFor(endpoint), body, "127.0.0.1"});
    }

private:
    std::string newAuthorization(Transaction& transaction)
    {
        return "Bearer " + startSession(transaction, m_account, {}, m_lives, m_now).access;
    }

    ServiceParts parts(LanguageModel* model)
    {
        return {*m_database, m_passwords, [](const Mail&) { return true; }, model, m_lives, {},
            [this] { return m_now; }};
    }

    std::int64_t m_now = 1'700'000'000;
    TokenLives m_lives;
    std::unique_ptr<Database> m_database = Database::inMemory();
    Passwords m_passwords{PasswordCost::least()};
    EchoModel m_model;
    Service m_withRules{parts(nullptr)};
    Service m_withModel{parts(&m_model)};
    std::int64_t m_account = 0;
    std::string m_authorization;
};

/// The service behind its HTTP server, asked by its own clients.
class ServedService {
public:
    ServedService(SignedInService& service, bool withModel)
        : m_service(service)
        , m_server(service.service(withModel), settings())
    {
        require(m_server.start(), "the server starts");
    }

    void ask(const Route& route, const std::string& body)
    {
        const bool hasBody = route.method == "POST";
        testing::LoopbackClient client(m_server.port());
        client.send(std::string(route.method) + " " + std::string(route.path)
            + " HTTP/1.1\r\nContent-Type: application/json\r\nAuthorization: "
            + m_service.authorizationFor(route.endpoint)
            + (hasBody ? "\r\nContent-Length: " + std::to_string(body.size()) : std::string())
            + "\r\n\r\n" + (hasBody ? body : std::string()));
        const std::string answer = client.readAnswer();
        const int status = testing::statusIn(answer);
        // 503: rules can neither translate nor chat.
        require(status == 200 || status == 503 || (status >= 400 && status < 500),
            "the server answers as it should");
        require(Json::parse(testing::bodyIn(answer), nullptr, false).is_object(),
            "the server answers an object");
        require(route.endpoint != Endpoint::Logout || status == 200 || status == 413,
            "who is signed in can sign out");
    }

    /// Whatever comes instead of a request, the next one is answered.
    void disturb(const std::string& bytes)
    {
        {
            const testing::LoopbackClient client(m_server.port());
            client.send(bytes);
        }
        ask({"GET", "/v1/client/update", Endpoint::ClientUpdate}, {});
    }

private:
    static HttpServerSettings settings()
    {
        HttpServerSettings settings;
        settings.port = 0;
        return settings;
    }

    SignedInService& m_service;
    HttpServer m_server;
};

void checkOrigin(const std::string& text)
{
    const std::string client = clientAddress("127.0.0.1", std::array{text}, {"127.0.0.1"});
    require(normalizedAddress(client) == client, "a client has a numeric address");
    require(!addressForCounting(client).empty(), "every client is counted");
    require(!checkedIdentity(text, text, 0), "no bytes alone are an identity");
}

void checkBody(const std::string& text)
{
    const Outcome body = parseBody(text);
    require(!body || body->is_object(), "a body is an object");
    if (body)
        require(decodeUtf8(body->dump()).find(U'\xfffd') == std::u32string::npos
                || text.find("\xef\xbf\xbd") != std::string::npos
                || text.find("\\u") != std::string::npos,
            "a body is UTF-8");
    else
        require(
            body.error().status == 400 || body.error().status == 413, "a bad body is 400 or 413");
    completionText(text);
    parseModelUrl(text);
}

void checkHead(const std::string& text)
{
    RequestHead head{"POST", "/v1/auth/login", {text}, {text}};
    const auto refused = refusalBeforeBody(head);
    require(!refused || refused->status >= 400, "a refusal is an error");
    head = {text, text};
    require(refusalBeforeBody(head).has_value(), "unknown paths are refused");
}

void checkPolish(const std::string& text)
{
    for (const Style style : {Style::Professional, Style::Xiaohongshu, Style::BusinessEmail,
             Style::Casual, Style::Meeting, Style::AiPrompt}) {
        const std::string written = polish(text, style);
        require(encodeUtf8(decodeUtf8(written)) == written, "a polished text is UTF-8");
        require(written.empty() == text.empty(), "a text stays a text");
    }
}

} // namespace
} // namespace tavrin::devcloud

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tavrin::devcloud;
    if (size == 0)
        return 0;
    static SignedInService service;
    const Route& route = routes()[data[0] % routes().size()];
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    checkBody(text);
    checkHead(text);
    checkPolish(text);
    checkOrigin(text);
    static ServedService servedByRules(service, false);
    static ServedService servedByModel(service, true);
    servedByRules.disturb(text);
    servedByRules.ask(route, text);
    servedByModel.ask(route, text);
    for (const bool withModel : {false, true}) {
        const Outcome outcome = service.answer(route.endpoint, text, withModel);
        require(outcome || (outcome.error().status >= 400 && outcome.error().status != 500),
            "no request is an internal error");
        require(!outcome || outcome->is_object(), "an answer is an object");
    }
    return 0;
}
