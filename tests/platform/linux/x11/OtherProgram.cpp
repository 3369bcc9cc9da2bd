#include "platform/linux/x11/OtherProgram.h"

#include "platform/linux/x11/TestClient.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>

namespace tavrin::testing {

OtherProgram::OtherProgram(const QString& editor, const QStringList& options)
{
    m_process.start(editor, options + QStringList{QStringLiteral("--tell-window")});
    TestClient::eventually([this] { return m_process.canReadLine(); });
    m_window = m_process.readLine().trimmed().toUInt();
    if (options.contains(QStringLiteral("--unmanaged")))
        return;
    const TestClient client;
    TestClient::eventually([&] { return client.activeWindow() == m_window; });
}

OtherProgram::~OtherProgram()
{
    close();
}

RunningApplication OtherProgram::application() const
{
    return {m_process.processId(), QStringLiteral("Test editor"),
        QStringLiteral("tavrin-test-editor"), m_window};
}

QString OtherProgram::text()
{
    if (m_isPaused)
        return {};
    m_process.write("?\n");
    TestClient::eventually([this] { return m_process.canReadLine(); });
    return QJsonDocument::fromJson(m_process.readLine())[QStringLiteral("text")].toString();
}

void OtherProgram::pause()
{
    ::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP);
    m_isPaused = true;
}

void OtherProgram::resume()
{
    ::kill(static_cast<pid_t>(m_process.processId()), SIGCONT);
    m_isPaused = false;
}

void OtherProgram::close()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    if (m_isPaused)
        resume();
    m_process.terminate();
    m_process.waitForFinished();
}

} // namespace tavrin::testing
