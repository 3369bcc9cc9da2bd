#include "support/servers/TestAuthority.h"

#include <QFile>
#include <QSslKey>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

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

void TestAuthority::openssl(const QStringList& arguments)
{
    QByteArrayList words{"openssl"};
    for (const QString& argument : arguments)
        words.append(argument.toUtf8());
    std::vector<char*> pointers;
    for (QByteArray& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    // Not a QProcess: the thread sanitizer cannot follow a fork of a program with threads.
    posix_spawn_file_actions_t quietly;
    posix_spawn_file_actions_init(&quietly);
    posix_spawn_file_actions_addopen(&quietly, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    const int failed =
        posix_spawnp(&process, "openssl", &quietly, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&quietly);
    ASSERT_EQ(failed, 0) << "openssl is missing";
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_EQ(status, 0) << "openssl failed: " << words.join(' ').constData();
}

} // namespace tavrin::testing
