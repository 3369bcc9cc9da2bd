#include "DevelopmentCloud.h"

#include <QDir>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

const QString program = QStringLiteral(TAVRIN_DEVCLOUD);

} // namespace

DevelopmentCloud::~DevelopmentCloud()
{
    if (m_process.state() != QProcess::NotRunning)
        stop();
}

void DevelopmentCloud::start(const QStringList& options)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program,
        QStringList{u"--data"_s, m_data.path(), u"--listen"_s, u"127.0.0.1:%1"_s.arg(m_port)}
            + options);
    static const QRegularExpression listening(u"listening on 127\\.0\\.0\\.1:(\\d+)"_s);
    QRegularExpressionMatch match;
    QString printed;
    while (!match.hasMatch() && m_process.waitForReadyRead()) {
        printed += QString::fromUtf8(m_process.readAllStandardOutput());
        match = listening.match(printed);
    }
    ASSERT_TRUE(match.hasMatch()) << "the service did not start: " << printed.toStdString();
    m_port = match.captured(1).toInt();
}

void DevelopmentCloud::stop()
{
    m_process.terminate();
    EXPECT_TRUE(m_process.waitForFinished());
    EXPECT_EQ(m_process.exitCode(), 0);
}

QString DevelopmentCloud::baseUrl() const
{
    return u"http://127.0.0.1:%1"_s.arg(m_port);
}

QString DevelopmentCloud::invite() const
{
    return run({u"--data"_s, m_data.path(), u"invite"_s}).trimmed();
}

void DevelopmentCloud::makeAccount(const QString& email, const QString& password) const
{
    EXPECT_FALSE(
        run({u"--data"_s, m_data.path(), u"account"_s, email}, password.toUtf8() + '\n').isEmpty());
}

QString DevelopmentCloud::mailedCode(const QString& email) const
{
    const QDir outbox(m_data.filePath(u"outbox"_s));
    static const QRegularExpression code(u"\\b(\\d{6})\\b"_s);
    for (const QFileInfo& mail : outbox.entryInfoList(QDir::Files, QDir::Time)) {
        QFile file(mail.filePath());
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        if (text.startsWith(u"To: %1\n"_s.arg(email)))
            return code.match(text).captured(1);
    }
    return {};
}

QString DevelopmentCloud::run(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace tavrin::testing
