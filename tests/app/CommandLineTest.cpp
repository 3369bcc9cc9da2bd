#include "app/CommandLine.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

using Request = CommandLine::Request;

TEST(CommandLineTest, WithoutArgumentsTheProgramRunsQuietly)
{
    EXPECT_EQ(parseCommandLine({}), (CommandLine{Request::Run, false, QString(), QString()}));
}

TEST(CommandLineTest, VerboseRunsWithItsLog)
{
    EXPECT_EQ(
        parseCommandLine({"--verbose"}), (CommandLine{Request::Run, true, QString(), QString()}));
}

TEST(CommandLineTest, HelpAndVersionAreAnsweredInsteadOfRunning)
{
    EXPECT_EQ(parseCommandLine({"--help"}).request, Request::ShowHelp);
    EXPECT_EQ(parseCommandLine({"-h"}).request, Request::ShowHelp);
    EXPECT_EQ(parseCommandLine({"--version"}).request, Request::ShowVersion);
    EXPECT_EQ(parseCommandLine({"--version", "--help"}).request, Request::ShowHelp);
}

TEST(CommandLineTest, HelpIsGivenAlsoBesideAMistake)
{
    EXPECT_EQ(parseCommandLine({"--colour", "--help"}).request, Request::ShowHelp);
}

TEST(CommandLineTest, AnUnknownOptionIsRefusedByName)
{
    for (const char* mistake : {"--colour", "-v", "--verbose=1", "file.txt", "--Help"}) {
        EXPECT_EQ(parseCommandLine({"--verbose", mistake, "--second"}),
            (CommandLine{Request::Refuse, true, mistake, QString()}));
    }
}

TEST(CommandLineTest, SigningInNeedsAnAccount)
{
    const CommandLine signIn = parseCommandLine({"--sign-in", "you@example.org"});
    EXPECT_EQ(signIn.request, Request::SignIn);
    EXPECT_EQ(signIn.email, "you@example.org");

    EXPECT_EQ(parseCommandLine({"--sign-in"}).request, Request::Refuse);
    EXPECT_EQ(parseCommandLine({"--sign-in", ""}).request, Request::Refuse);
    EXPECT_EQ(parseCommandLine({"--sign-in", ""}).unknown, "--sign-in");
    EXPECT_EQ(parseCommandLine({"--sign-in", "you@example.org", "more"}).request, Request::Refuse);
}

TEST(CommandLineTest, HealthIsToldInsteadOfRunning)
{
    EXPECT_EQ(parseCommandLine({"--health"}),
        (CommandLine{Request::ShowHealth, false, QString(), QString()}));
    EXPECT_EQ(parseCommandLine({"--health", "--verbose"}).request, Request::ShowHealth);
    EXPECT_TRUE(parseCommandLine({"--health", "--verbose"}).verbose);
    EXPECT_EQ(parseCommandLine({"--health", "--version"}).request, Request::ShowVersion);
    EXPECT_EQ(parseCommandLine({"--health", "--help"}).request, Request::ShowHelp);
    EXPECT_EQ(parseCommandLine({"--health=1"}).request, Request::Refuse);
    EXPECT_EQ(parseCommandLine({"--health", "now"}).unknown, "now");
}

TEST(CommandLineTest, HelpNamesEveryOption)
{
    for (const char* option :
        {"-h, --help", "--version", "--health", "--sign-in EMAIL", "--verbose"})
        EXPECT_TRUE(commandLineHelp().contains(option)) << option;
}

} // namespace
} // namespace tavrin
