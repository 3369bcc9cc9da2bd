#include "support/Voices.h"

#include <QFile>
#include <QProcess>

namespace tavrin::testing {
namespace {

bool run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    return process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
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
