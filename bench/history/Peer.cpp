#include "Peer.h"

#include <QFile>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <simdjson.h>
#include <unistd.h>

namespace bench {

double now()
{
    return std::chrono::duration<double, std::milli>(
        std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

double parse(const QByteArray& text)
{
    const simdjson::padded_string padded(text.constData(), static_cast<std::size_t>(text.size()));
    const double began = now();
    simdjson::dom::parser parser;
    if (parser.parse(padded).error() != simdjson::SUCCESS)
        stop("the file is no JSON");
    return now() - began;
}

double rewrite(const QString& path, const QByteArray& text)
{
    const QByteArray target = QFile::encodeName(path);
    const QByteArray beside = target + ".new";
    const double began = now();
    const int file = open(beside.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0)
        stop("no file can be written");
    for (qsizetype done = 0; done < text.size();) {
        const ssize_t written =
            write(file, text.constData() + done, static_cast<std::size_t>(text.size() - done));
        if (written <= 0)
            stop("the file cannot be written");
        done += written;
    }
    const bool whole = fdatasync(file) == 0 && close(file) == 0
        && std::rename(beside.constData(), target.constData()) == 0;
    if (!whole)
        stop("the file cannot be replaced");
    return now() - began;
}

void stop(const char* reason)
{
    std::fprintf(stderr, "%s\n", reason);
    std::_Exit(2);
}

} // namespace bench
