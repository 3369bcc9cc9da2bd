#pragma once

#include <cstdint>
#include <string>

namespace tavrin::devcloud::testing {

/// A key and a certificate that it has signed itself, for localhost and 127.0.0.1, both in PEM.
struct TestCertificate {
    /// @param begin,end seconds since 1970.
    TestCertificate(std::int64_t begin, std::int64_t end);

    std::string certificate;
    std::string key;
    std::string lockedKey; ///< The same, but a password protects it.
};

/// A certificate for localhost that an authority has signed, for which the root vouches. All in
/// PEM.
struct TestChain {
    /// @param begin,end seconds since 1970.
    TestChain(std::int64_t begin, std::int64_t end);

    std::string root;
    std::string authority;
    std::string certificate;
    std::string key; ///< Of the certificate.
};

} // namespace tavrin::devcloud::testing
