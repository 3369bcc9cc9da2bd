#include "devcloud/support/TestCertificate.h"

#include <gtest/gtest.h>

#include <array>
#include <gnutls/gnutls.h>
#include <gnutls/x509.h>
#include <memory>

namespace tavrin::devcloud::testing {
namespace {

struct KeyEnd {
    void operator()(gnutls_x509_privkey_t key) const { gnutls_x509_privkey_deinit(key); }
};

struct CertificateEnd {
    void operator()(gnutls_x509_crt_t certificate) const { gnutls_x509_crt_deinit(certificate); }
};

using Key = std::unique_ptr<gnutls_x509_privkey_int, KeyEnd>;
using Certificate = std::unique_ptr<gnutls_x509_crt_int, CertificateEnd>;

struct Validity {
    std::int64_t begin;
    std::int64_t end;
};

std::string taken(gnutls_datum_t& datum)
{
    std::string text(reinterpret_cast<const char*>(datum.data), datum.size);
    gnutls_free(datum.data);
    datum = {};
    return text;
}

Key newKey()
{
    gnutls_x509_privkey_t key = nullptr;
    EXPECT_EQ(gnutls_x509_privkey_init(&key), GNUTLS_E_SUCCESS);
    EXPECT_EQ(gnutls_x509_privkey_generate(
                  key, GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0),
        GNUTLS_E_SUCCESS);
    return Key(key);
}

std::string textOf(const Key& key)
{
    gnutls_datum_t text{};
    gnutls_x509_privkey_export2_pkcs8(key.get(), GNUTLS_X509_FMT_PEM, nullptr, 0, &text);
    return taken(text);
}

std::string textOf(const Certificate& certificate)
{
    gnutls_datum_t text{};
    gnutls_x509_crt_export2(certificate.get(), GNUTLS_X509_FMT_PEM, &text);
    return taken(text);
}

/// For a key, with a name, not yet signed.
Certificate newCertificate(const std::string& name, const Key& key, const Validity& validity)
{
    gnutls_x509_crt_t certificate = nullptr;
    const unsigned char serial = 1;
    gnutls_x509_crt_init(&certificate);
    gnutls_x509_crt_set_version(certificate, 3);
    gnutls_x509_crt_set_serial(certificate, &serial, sizeof serial);
    gnutls_x509_crt_set_dn_by_oid(certificate, GNUTLS_OID_X520_COMMON_NAME, 0, name.data(),
        static_cast<unsigned int>(name.size()));
    gnutls_x509_crt_set_activation_time(certificate, validity.begin);
    gnutls_x509_crt_set_expiration_time(certificate, validity.end);
    gnutls_x509_crt_set_key(certificate, key.get());
    return Certificate(certificate);
}

Certificate newServerCertificate(const Key& key, const Validity& validity)
{
    constexpr std::array<unsigned char, 4> loopback{127, 0, 0, 1};
    const std::string name = "localhost";
    Certificate certificate = newCertificate(name, key, validity);
    gnutls_x509_crt_set_subject_alt_name(certificate.get(), GNUTLS_SAN_DNSNAME, name.data(),
        static_cast<unsigned int>(name.size()), GNUTLS_FSAN_APPEND);
    gnutls_x509_crt_set_subject_alt_name(certificate.get(), GNUTLS_SAN_IPADDRESS, loopback.data(),
        loopback.size(), GNUTLS_FSAN_APPEND);
    return certificate;
}

Certificate newAuthority(const std::string& name, const Key& key, const Validity& validity)
{
    Certificate certificate = newCertificate(name, key, validity);
    gnutls_x509_crt_set_basic_constraints(certificate.get(), 1, -1);
    gnutls_x509_crt_set_key_usage(certificate.get(), GNUTLS_KEY_KEY_CERT_SIGN);
    return certificate;
}

void sign(const Certificate& certificate, const Certificate& by, const Key& key)
{
    EXPECT_EQ(gnutls_x509_crt_sign2(certificate.get(), by.get(), key.get(), GNUTLS_DIG_SHA256, 0),
        GNUTLS_E_SUCCESS);
}

} // namespace

TestCertificate::TestCertificate(std::int64_t begin, std::int64_t end)
{
    const Key ours = newKey();
    key = textOf(ours);
    gnutls_datum_t text{};
    gnutls_x509_privkey_export2_pkcs8(
        ours.get(), GNUTLS_X509_FMT_PEM, "a password", GNUTLS_PKCS_PBES2_AES_128, &text);
    lockedKey = taken(text);
    const Certificate ourCertificate = newServerCertificate(ours, {begin, end});
    sign(ourCertificate, ourCertificate, ours);
    certificate = textOf(ourCertificate);
}

TestChain::TestChain(std::int64_t begin, std::int64_t end)
{
    const Validity validity{begin, end};
    const Key rootKey = newKey();
    const Certificate rootCertificate = newAuthority("Root", rootKey, validity);
    sign(rootCertificate, rootCertificate, rootKey);
    const Key authorityKey = newKey();
    const Certificate authorityCertificate = newAuthority("Authority", authorityKey, validity);
    sign(authorityCertificate, rootCertificate, rootKey);
    const Key ours = newKey();
    const Certificate ourCertificate = newServerCertificate(ours, validity);
    sign(ourCertificate, authorityCertificate, authorityKey);
    root = textOf(rootCertificate);
    authority = textOf(authorityCertificate);
    certificate = textOf(ourCertificate);
    key = textOf(ours);
}

} // namespace tavrin::devcloud::testing
