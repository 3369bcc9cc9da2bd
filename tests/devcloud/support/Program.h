#pragma once

#include "devcloud/api/Json.h"
#include "devcloud/support/LoopbackClient.h"

#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tavrin::devcloud::testing {

/// The program itself, run as a person would.
class Program {
public:
    explicit Program(std::vector<std::string> arguments)
    {
        std::array<int, 2> input{};
        std::array<int, 2> output{};
        if (pipe(input.data()) != 0 || pipe(output.data()) != 0)
            return;
        arguments.insert(arguments.begin(), TAVRIN_DEVCLOUD_PROGRAM);
        std::vector<char*> words;
        words.reserve(arguments.size() + 1);
        for (std::string& argument : arguments)
            words.push_back(argument.data());
        words.push_back(nullptr);
        m_process = fork();
        if (m_process == 0) {
            dup2(input[0], STDIN_FILENO);
            dup2(output[1], STDOUT_FILENO);
            dup2(output[1], STDERR_FILENO);
            close(input[1]);
            close(output[0]);
            execv(words.front(), words.data());
            _exit(127);
        }
        close(input[0]);
        close(output[1]);
        m_input = input[1];
        m_output = output[0];
    }

    ~Program()
    {
        if (m_process > 0) {
            kill(m_process, SIGKILL);
            waitpid(m_process, nullptr, 0);
        }
        endInput();
        close(m_output);
    }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void type(const std::string& text) const
    {
        ASSERT_EQ(write(m_input, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    void endInput()
    {
        if (m_input >= 0)
            close(m_input);
        m_input = -1;
    }

    /// One line of what it prints; what there is when it ends before.
    std::string readLine() const
    {
        std::string line;
        for (char c = 0; read(m_output, &c, 1) == 1 && c != '\n';)
            line += c;
        return line;
    }

    std::string readAll() const
    {
        std::string text;
        for (char c = 0; read(m_output, &c, 1) == 1;)
            text += c;
        return text;
    }

    void send(int signal) const { kill(m_process, signal); }

    int exitCode()
    {
        int status = 0;
        waitpid(m_process, &status, 0);
        m_process = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t m_process = 0;
    int m_input = -1;
    int m_output = -1;
};

class ProgramTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::string name = ::testing::TempDir() + "devcloudXXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }

    void TearDown() override { std::filesystem::remove_all(folder); }

    std::vector<std::string> withData(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"--data", folder});
        return arguments;
    }

    /// What a command prints that ends with @p code.
    std::string run(std::vector<std::string> arguments, int code = 0) const
    {
        Program program(withData(std::move(arguments)));
        std::string printed = program.readAll();
        EXPECT_EQ(program.exitCode(), code) << printed;
        return printed;
    }

    void setPasswordByCommand(const std::string& email, const std::string& password) const
    {
        const std::string file = folder + "/password";
        std::ofstream(file) << password << '\n';
        run({"account", email, "--password-file", file});
    }

    std::string folder;
};

/// The service as it runs, with an account.
class RunningProgramTest : public ProgramTest {
protected:
    void SetUp() override
    {
        ProgramTest::SetUp();
        setPasswordByCommand(email, password);
        service.emplace(withData({"--listen", "127.0.0.1:0"}));
        const std::string line = service->readLine();
        ASSERT_THAT(
            line, ::testing::MatchesRegex("tavrin-devcloud: listening on 127.0.0.1:[0-9]+"));
        port = std::atoi(line.substr(line.rfind(':') + 1).c_str());
    }

    void TearDown() override
    {
        service.reset();
        ProgramTest::TearDown();
    }

    /// The answer to a request on a connection of its own.
    std::string ask(const std::string& line, const Json& body, const std::string& token = {}) const
    {
        LoopbackClient client(port);
        const std::string text = body.is_null() ? std::string() : body.dump();
        client.send(line + " HTTP/1.1\r\nContent-Type: application/json\r\nAuthorization: Bearer "
            + token + "\r\nContent-Length: " + std::to_string(text.size()) + "\r\n\r\n" + text);
        return client.readAnswer();
    }

    Json signIn() const
    {
        const std::string answer =
            ask("POST /v1/auth/login", {{"email", email}, {"password", password}});
        EXPECT_EQ(statusIn(answer), 200);
        return Json::parse(bodyIn(answer));
    }

    int meStatus(const Json& session) const
    {
        return statusIn(ask("GET /v1/auth/me", {}, session["accessToken"]));
    }

    int refreshStatus(const Json& session) const
    {
        return statusIn(ask("POST /v1/auth/refresh", {{"refreshToken", session["refreshToken"]}}));
    }

    const std::string email = "ada@example.org";
    const std::string password = "correct horse";
    std::optional<Program> service;
    int port = 0;
};

} // namespace tavrin::devcloud::testing
