#include "support/TestAuthority.h"

#include <QFile>
#include <QProcess>
#include <QSslKey>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

const QStringList newKey{
    u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:P-256"_s, u"-nodes"_s};

QSslCertificate certificateIn(const QString& path)
{
    return QSslCertificate::fromPath(path).value(0);
}

} // namespace

TestAuthority::TestAuthority()
{
    openssl(QStringList{u"req"_s, u"-x509"_s, u"-days"_s, u"1"_s, u"-subj"_s, u"/CN=Test CA"_s,
                u"-keyout"_s, file(u"ca.key"_s), u"-out"_s, file(u"ca.pem"_s)}
        + newKey);
}

QSslCertificate TestAuthority::certificate() const
{
    return certificateIn(file(u"ca.pem"_s));
}

QSslConfiguration TestAuthority::client() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({certificate()});
    return configuration;
}

QSslConfiguration TestAuthority::server(const QString& subject, int days)
{
    const QString name = u"server%1"_s.arg(++m_servers);
    QFile extensions(file(name + u".ext"_s));
    if (extensions.open(QFile::WriteOnly))
        extensions.write("subjectAltName=" + subject.toUtf8() + "\n");
    extensions.close();
    openssl(QStringList{u"req"_s, u"-subj"_s, u"/CN=Test server"_s, u"-keyout"_s,
                file(name + u".key"_s), u"-out"_s, file(name + u".csr"_s)}
        + newKey);
    openssl({u"x509"_s, u"-req"_s, u"-in"_s, file(name + u".csr"_s), u"-CA"_s, file(u"ca.pem"_s),
        u"-CAkey"_s, file(u"ca.key"_s), u"-CAcreateserial"_s, u"-days"_s, QString::number(days),
        u"-extfile"_s, extensions.fileName(), u"-out"_s, file(name + u".pem"_s)});
    return configuration(name);
}

QSslConfiguration TestAuthority::selfSigned(const QString& subject)
{
    const QString name = u"server%1"_s.arg(++m_servers);
    openssl(QStringList{u"req"_s, u"-x509"_s, u"-days"_s, u"1"_s, u"-subj"_s, u"/CN=Alone"_s,
                u"-addext"_s, u"subjectAltName="_s + subject, u"-keyout"_s, file(name + u".key"_s),
                u"-out"_s, file(name + u".pem"_s)}
        + newKey);
    return configuration(name);
}

QSslConfiguration TestAuthority::configuration(const QString& name) const
{
    QFile key(file(name + u".key"_s));
    EXPECT_TRUE(key.open(QFile::ReadOnly));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(certificateIn(file(name + u".pem"_s)));
    configuration.setPrivateKey(QSslKey(key.readAll(), QSsl::Ec));
    return configuration;
}

QString TestAuthority::file(const QString& name) const
{
    return m_directory.filePath(name);
}

void TestAuthority::openssl(const QStringList& arguments) const
{
    QProcess process;
    process.start(u"openssl"_s, arguments);
    ASSERT_TRUE(process.waitForFinished()) << "openssl is missing";
    ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
}

} // namespace tavrin::testing
