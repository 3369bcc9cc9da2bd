#include "support/ChildProcess.h"

#include <QByteArray>

#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tavrin::testing {

ChildProcess::ChildProcess(const QString& program, const QStringList& arguments)
{
    std::vector<QByteArray> words{program.toLocal8Bit()};
    for (const QString& argument : arguments)
        words.push_back(argument.toLocal8Bit());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (QByteArray& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    if (posix_spawnp(&m_id, words.front().constData(), nullptr, nullptr, pointers.data(), environ)
        != 0)
        m_id = -1;
}

ChildProcess::~ChildProcess()
{
    kill();
}

bool ChildProcess::isRunning()
{
    if (m_id > 0 && waitpid(m_id, nullptr, WNOHANG) == m_id)
        m_id = -1;
    return m_id > 0;
}

int ChildProcess::wait()
{
    int status = -1;
    if (m_id > 0)
        waitpid(m_id, &status, 0);
    m_id = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ChildProcess::suspend() const
{
    if (m_id > 0)
        ::kill(m_id, SIGSTOP);
}

void ChildProcess::resume() const
{
    if (m_id > 0)
        ::kill(m_id, SIGCONT);
}

void ChildProcess::kill()
{
    if (!isRunning())
        return;
    ::kill(m_id, SIGKILL);
    waitpid(m_id, nullptr, 0);
    m_id = -1;
}

} // namespace tavrin::testing
