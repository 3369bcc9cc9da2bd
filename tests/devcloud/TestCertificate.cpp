#include "devcloud/TestCertificate.h"

#include <gtest/gtest.h>

#include <array>
#include <gnutls/gnutls.h>
#include <gnutls/x509.h>

namespace tavrin::devcloud::testing {
namespace {

std::string taken(gnutls_datum_t& datum)
{
    std::string text(reinterpret_cast<const char*>(datum.data), datum.size);
    gnutls_free(datum.data);
    datum = {};
    return text;
}

} // namespace

TestCertificate::TestCertificate(std::int64_t begin, std::int64_t end)
{
    gnutls_x509_privkey_t privateKey = nullptr;
    gnutls_x509_crt_t signedKey = nullptr;
    gnutls_datum_t text{};
    EXPECT_EQ(gnutls_x509_privkey_init(&privateKey), GNUTLS_E_SUCCESS);
    EXPECT_EQ(gnutls_x509_privkey_generate(
                  privateKey, GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0),
        GNUTLS_E_SUCCESS);
    gnutls_x509_privkey_export2_pkcs8(privateKey, GNUTLS_X509_FMT_PEM, nullptr, 0, &text);
    key = taken(text);
    gnutls_x509_privkey_export2_pkcs8(
        privateKey, GNUTLS_X509_FMT_PEM, "a password", GNUTLS_PKCS_PBES2_AES_128, &text);
    lockedKey = taken(text);

    constexpr std::array<unsigned char, 4> loopback{127, 0, 0, 1};
    const unsigned char serial = 1;
    const std::string name = "localhost";
    gnutls_x509_crt_init(&signedKey);
    gnutls_x509_crt_set_version(signedKey, 3);
    gnutls_x509_crt_set_serial(signedKey, &serial, sizeof serial);
    gnutls_x509_crt_set_dn_by_oid(signedKey, GNUTLS_OID_X520_COMMON_NAME, 0, name.data(),
        static_cast<unsigned int>(name.size()));
    gnutls_x509_crt_set_subject_alt_name(signedKey, GNUTLS_SAN_DNSNAME, name.data(),
        static_cast<unsigned int>(name.size()), GNUTLS_FSAN_APPEND);
    gnutls_x509_crt_set_subject_alt_name(
        signedKey, GNUTLS_SAN_IPADDRESS, loopback.data(), loopback.size(), GNUTLS_FSAN_APPEND);
    gnutls_x509_crt_set_activation_time(signedKey, begin);
    gnutls_x509_crt_set_expiration_time(signedKey, end);
    gnutls_x509_crt_set_key(signedKey, privateKey);
    EXPECT_EQ(gnutls_x509_crt_sign2(signedKey, signedKey, privateKey, GNUTLS_DIG_SHA256, 0),
        GNUTLS_E_SUCCESS);
    gnutls_x509_crt_export2(signedKey, GNUTLS_X509_FMT_PEM, &text);
    certificate = taken(text);
    gnutls_x509_crt_deinit(signedKey);
    gnutls_x509_privkey_deinit(privateKey);
}

} // namespace tavrin::devcloud::testing
