#pragma once

#include <QString>
#include <QStringList>

namespace tavrin {

/// What the program was asked for when it was started.
struct CommandLine {
    enum class Request {
        Run,
        ShowHelp,
        ShowVersion,
        ShowHealth, ///< Whether the program can work, and what keeps it from that.
        SignIn, ///< Into the account `email`, with the password that standard input holds.
        Refuse, ///< An option that does not exist.
    };

    Request request = Request::Run;
    bool verbose = false;
    QString unknown; ///< The option that is refused.
    QString email; ///< The account to sign in to.

    friend bool operator==(const CommandLine&, const CommandLine&) = default;
};

/// Reads @p arguments, the program's name not among them. Help comes before version, both before a
/// refusal, so that whoever is lost finds the way.
[[nodiscard]] CommandLine parseCommandLine(const QStringList& arguments);

/// What --help prints.
[[nodiscard]] QString commandLineHelp();

} // namespace tavrin
