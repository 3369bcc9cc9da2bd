#include "devcloud/http/TlsIdentity.h"

#include <array>
#include <ctime>
#include <fstream>
#include <gnutls/abstract.h>
#include <gnutls/gnutls.h>
#include <gnutls/x509.h>
#include <memory>
#include <optional>
#include <sstream>
#include <vector>

namespace tavrin::devcloud {
namespace {

using Problem = tl::unexpected<std::string>;

struct CertificateEnd {
    void operator()(gnutls_x509_crt_t certificate) const { gnutls_x509_crt_deinit(certificate); }
};

struct KeyEnd {
    void operator()(gnutls_x509_privkey_t key) const { gnutls_x509_privkey_deinit(key); }
};

using Certificate = std::unique_ptr<gnutls_x509_crt_int, CertificateEnd>;
using Key = std::unique_ptr<gnutls_x509_privkey_int, KeyEnd>;
using KeyId = std::vector<unsigned char>;

gnutls_datum_t datum(std::string_view bytes)
{
    return {const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(bytes.data())),
        static_cast<unsigned int>(bytes.size())};
}

std::vector<Certificate> readChain(std::string_view text)
{
    const gnutls_datum_t bytes = datum(text);
    gnutls_x509_crt_t* list = nullptr;
    unsigned int size = 0;
    std::vector<Certificate> chain;
    if (gnutls_x509_crt_list_import2(&list, &size, &bytes, GNUTLS_X509_FMT_PEM, 0) < 0)
        return chain;
    for (unsigned int at = 0; at < size; ++at)
        chain.emplace_back(list[at]);
    gnutls_free(list);
    return chain;
}

Key readKey(std::string_view text)
{
    gnutls_x509_privkey_t key = nullptr;
    if (gnutls_x509_privkey_init(&key) < 0)
        return {};
    Key owned(key);
    const gnutls_datum_t bytes = datum(text);
    // Not import2 with a password: the service starts without anybody to type one.
    if (gnutls_x509_privkey_import(key, &bytes, GNUTLS_X509_FMT_PEM) < 0)
        return {};
    return owned;
}

/// What tells keys apart; a certificate has that of its public key.
template <typename Holder>
KeyId keyIdOf(Holder holder, int (*read)(Holder, unsigned int, unsigned char*, std::size_t*))
{
    KeyId id(64);
    std::size_t size = id.size();
    if (read(holder, GNUTLS_KEYID_USE_SHA256, id.data(), &size) < 0)
        return {};
    id.resize(size);
    return id;
}

std::string printedDay(std::time_t time)
{
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M UTC", &parts);
    return text.data();
}

std::optional<std::string> problemWithTime(const std::vector<Certificate>& chain, std::int64_t now)
{
    for (const Certificate& certificate : chain) {
        const std::time_t end = gnutls_x509_crt_get_expiration_time(certificate.get());
        const std::time_t begin = gnutls_x509_crt_get_activation_time(certificate.get());
        if (now > end)
            return "the certificate has expired on " + printedDay(end);
        if (now < begin)
            return "the certificate is not valid before " + printedDay(begin);
    }
    return std::nullopt;
}

std::optional<std::string> contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    if (!stream || !(text << stream.rdbuf()))
        return std::nullopt;
    return text.str();
}

} // namespace

tl::expected<TlsIdentity, std::string> checkedIdentity(
    std::string_view certificate, std::string_view key, std::int64_t now)
{
    const std::vector<Certificate> chain = readChain(certificate);
    if (chain.empty())
        return Problem("the certificate is no PEM certificate");
    if (auto problem = problemWithTime(chain, now))
        return Problem(std::move(*problem));
    const Key ours = readKey(key);
    if (!ours)
        return Problem("the key is no PEM key, or a password protects it");
    const KeyId id = keyIdOf(chain.front().get(), gnutls_x509_crt_get_key_id);
    if (id.empty() || id != keyIdOf(ours.get(), gnutls_x509_privkey_get_key_id))
        return Problem("the key does not belong to the certificate");
    return TlsIdentity{std::string(certificate), std::string(key)};
}

tl::expected<TlsIdentity, std::string> readIdentity(
    const std::filesystem::path& certificate, const std::filesystem::path& key, std::int64_t now)
{
    const auto certificateText = contentOf(certificate);
    if (!certificateText)
        return Problem("cannot read " + certificate.string());
    const auto keyText = contentOf(key);
    if (!keyText)
        return Problem("cannot read " + key.string());
    auto identity = checkedIdentity(*certificateText, *keyText, now);
    if (!identity)
        return Problem(certificate.string() + ", " + key.string() + ": " + identity.error());
    return identity;
}

} // namespace tavrin::devcloud
