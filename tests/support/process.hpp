// Runs the real binary and other programs as child processes in a private environment.
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

// A child whose output is collected. If it is still alive at the end of the scope, it is killed by its pid.
class process
{
public:
    process(const std::vector<std::string> &command, const variables &environment);
    ~process();
    process(const process &) = delete;
    process &operator=(const process &) = delete;

    void send(int signal) const;
    // Returns the exit status, or 128 + N if signal N ended the child. Returns nothing if it still runs after
    // 10 seconds.
    std::optional<int> wait();
    // Returns everything that the child has written to stdout and stderr so far.
    std::string output();
    // Waits for the text in the output. Returns false if it has not appeared after 10 seconds.
    bool says(const std::string &text);
    [[nodiscard]] pid_t pid() const { return child; }

private:
    pid_t child = -1;
    int out = -1;
    std::string collected;
    std::optional<int> status;
};

// A private directory, the variables that lead all of a session's files into it, and those that choose a
// renderer that works without graphics hardware.
class private_world
{
public:
    private_world();
    ~private_world();
    private_world(const private_world &) = delete;
    private_world &operator=(const private_world &) = delete;

    [[nodiscard]] const std::filesystem::path &directory() const { return root; }
    // Writes a shell script into a folder that comes first in PATH.
    void write_program(const std::string &name, const std::string &script) const;
    variables environment;

private:
    std::filesystem::path root;
};

// Checks the condition again and again until it holds or the time is over.
template <class Condition>
bool eventually(Condition holds, std::chrono::seconds most = std::chrono::seconds{30})
{
    const auto give_up = std::chrono::steady_clock::now() + most;
    while (!holds())
        if (std::chrono::steady_clock::now() > give_up)
            return false;
    return true;
}

// Returns the command that starts the compositor, with stand-ins for missing hardware preloaded.
std::vector<std::string> compositor();

} // namespace test
