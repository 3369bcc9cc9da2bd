#include "app/CommandLine.h"

using namespace Qt::StringLiterals;

namespace tavrin {

CommandLine parseCommandLine(const QStringList& arguments)
{
    CommandLine commandLine;
    bool help = false;
    bool version = false;
    bool health = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == "--help"_L1 || argument == "-h"_L1)
            help = true;
        else if (argument == "--version"_L1)
            version = true;
        else if (argument == "--health"_L1)
            health = true;
        else if (argument == "--verbose"_L1)
            commandLine.verbose = true;
        else if (argument == "--sign-in"_L1 && !arguments.value(i + 1).isEmpty())
            commandLine.email = arguments[++i];
        else if (commandLine.unknown.isEmpty())
            commandLine.unknown = argument;
    }
    if (help)
        commandLine.request = CommandLine::Request::ShowHelp;
    else if (version)
        commandLine.request = CommandLine::Request::ShowVersion;
    else if (!commandLine.unknown.isEmpty())
        commandLine.request = CommandLine::Request::Refuse;
    else if (health)
        commandLine.request = CommandLine::Request::ShowHealth;
    else if (!commandLine.email.isEmpty())
        commandLine.request = CommandLine::Request::SignIn;
    return commandLine;
}

QString commandLineHelp()
{
    return u"Usage: tavrin [options]\n"
           u"Press a key, speak, press it again: the text stands where your cursor is.\n"
           u"Tavrin lives in the status bar. Started a second time, it only shows its window.\n"
           u"\n"
           u"Options:\n"
           u"  -h, --help       Show this help and exit.\n"
           u"  --version        Show version and build and exit.\n"
           u"  --health         Say whether Tavrin can work here, and exit: with status 0 when\n"
           u"                   all is well, else 1.\n"
           u"  --sign-in EMAIL  Sign in to the account, with the password that the first line of\n"
           u"                   standard input holds, and exit.\n"
           u"  --verbose        Log what happens to standard error, not only what goes wrong.\n"
           u"                   Nothing that you say or type is ever logged.\n"_s;
}

} // namespace tavrin
