#pragma once

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace tavrin::testing {

/// A certificate authority of its own for every test run, made with the openssl program.
class TestAuthority {
public:
    TestAuthority();

    [[nodiscard]] QSslCertificate certificate() const;

    /// Trusts this authority and no other.
    [[nodiscard]] QSslConfiguration client() const;

    /// A server with a certificate of this authority for @p subject, as subjectAltName writes it
    /// ("IP:127.0.0.1"), valid for @p days from now, which may lie in the past.
    [[nodiscard]] QSslConfiguration server(const QString& subject, int days = 1);

    /// The same, but vouched for by itself alone.
    [[nodiscard]] QSslConfiguration selfSigned(const QString& subject);

private:
    static void openssl(const QStringList& arguments);
    [[nodiscard]] QString file(const QString& name) const;
    [[nodiscard]] QSslConfiguration configuration(const QString& name) const;

    QTemporaryDir m_directory;
    int m_servers = 0;
};

} // namespace tavrin::testing
