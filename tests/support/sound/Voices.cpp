#include "support/sound/Voices.h"

#include <QByteArray>
#include <QFile>
#include <QStringList>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tavrin::testing {
namespace {

/// Runs a program, looked up in PATH, to its end; whether it succeeded.
bool run(const QString& program, const QStringList& arguments)
{
    std::vector<QByteArray> words{program.toLocal8Bit()};
    for (const QString& argument : arguments)
        words.push_back(argument.toLocal8Bit());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (QByteArray& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t id = -1;
    int status = -1;
    return posix_spawnp(&id, pointers.front(), nullptr, nullptr, pointers.data(), environ) == 0
        && waitpid(id, &status, 0) == id && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

bool speak(const QString& text, const QString& voice, const QString& path)
{
    if (voice != "espeak")
        return run("flite", {"-voice", voice, "-t", text, "-o", path});
    const QString raw = path + ".raw.wav"; // 22 kHz.
    const bool spoken = run("espeak-ng", {"-w", raw, text})
        && run("sox", {raw, "-r", "16000", "-c", "1", "-b", "16", path});
    QFile::remove(raw);
    return spoken;
}

} // namespace tavrin::testing
