#include "platform/linux/recognizer/RecognizerServer.h"
#include "platform/linux/recognizer/onnx/OnnxEngine.h"
#include "platform/linux/recognizer/sphinx/SphinxEngine.h"

#include <QFile>
#include <QStringList>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sys/prctl.h>
#include <unistd.h>

using namespace tavrin;

namespace {

constexpr int usageError = 2;

/// The engine that the words name; null when they name none.
std::unique_ptr<SpeechEngine> engineFor(const QStringList& words)
{
    if (words.size() == 5 && words[0] == QStringLiteral("sphinx"))
        return std::make_unique<SphinxEngine>(SphinxModel{words[1], words[2], words[3], words[4]});
    if (words.size() == 4 && words[0] == QStringLiteral("onnx"))
        return std::make_unique<OnnxEngine>(OnnxEngineSettings{words[1], words[2], words[3]});
    return nullptr;
}

/// Two descriptors of its own: what a library prints must not get among the messages.
bool takePipes(int& input, int& output)
{
    input = dup(STDIN_FILENO);
    output = dup(STDOUT_FILENO);
    return input >= 0 && output >= 0 && dup2(STDERR_FILENO, STDOUT_FILENO) >= 0
        && std::freopen("/dev/null", "r", stdin) != nullptr;
}

} // namespace

/// Recognises speech for the program that starts it, and ends with that.
///
///   tavrin-recognizer sphinx ACOUSTIC-MODEL DICTIONARY LANGUAGE-MODEL LANGUAGE
///   tavrin-recognizer onnx LIBRARY-FOLDER MODEL-FOLDER FINAL-MODEL-FOLDER
int main(int argc, char** argv)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words.append(QFile::decodeName(argv[i]));
    const std::unique_ptr<SpeechEngine> engine = engineFor(words);
    if (!engine || isatty(STDIN_FILENO) != 0) {
        std::fputs("tavrin-recognizer is started by tavrin.\n", stderr);
        return usageError;
    }
    int input = -1;
    int output = -1;
    if (!takePipes(input, output))
        return EXIT_FAILURE;
    return serveRecognizer(*engine, input, output) ? EXIT_SUCCESS : EXIT_FAILURE;
}
