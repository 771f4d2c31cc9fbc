// The real binary, and other programs, as child processes in a world of their own.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace test
{

using variables = std::map<std::string, std::string>;

// A child whose output is collected. Killed, by its pid, when it is still alive at the end of the scope.
class process
{
public:
    process(const std::vector<std::string> &command, const variables &environment);
    ~process();
    process(const process &) = delete;
    process &operator=(const process &) = delete;

    void send(int signal) const;
    // The exit status, 128 + N when a signal N ended it; nothing when it is still running after 10 seconds.
    std::optional<int> wait();
    // Everything written so far to stdout and stderr.
    std::string output();
    // False when the text has not been written after 10 seconds.
    bool says(const std::string &text);
    [[nodiscard]] pid_t pid() const { return child; }

private:
    pid_t child = -1;
    int out = -1;
    std::string collected;
    std::optional<int> status;
};

// A directory of its own, the variables that lead all of a session's files into it, and the renderer that
// works without graphics hardware.
class private_world
{
public:
    private_world();
    ~private_world();
    private_world(const private_world &) = delete;
    private_world &operator=(const private_world &) = delete;

    [[nodiscard]] const std::filesystem::path &directory() const { return root; }
    variables environment;

private:
    std::filesystem::path root;
};

// Asks again and again.
template <class Condition>
bool eventually(Condition holds, std::chrono::seconds most = std::chrono::seconds{30})
{
    const auto give_up = std::chrono::steady_clock::now() + most;
    while (!holds())
        if (std::chrono::steady_clock::now() > give_up)
            return false;
    return true;
}

// The command that starts the compositor, with the stand-ins for missing hardware preloaded.
std::vector<std::string> compositor();

} // namespace test
