// The measured program: a child process with its own private directories.
#pragma once

#include "support/process.hpp"
#include "support/wayland_client.hpp"

#include <chrono>
#include <memory>
#include <string>
#include <unistd.h>

// The contents of a file in the process's directory in /proc.
std::string read_proc(pid_t pid, const char *file);
// CPU time of the main thread in microseconds.
double cpu_us(pid_t pid);
// CPU time of all its threads together.
double cpu_of_threads_us(pid_t pid);

class subject
{
public:
    // Ends the benchmark when the binary does not start. `more` is added to the environment of its private
    // world, and `settings` becomes its compositor.conf.
    explicit subject(const char *binary, const test::variables &more = {}, const std::string &settings = {});

    [[nodiscard]] std::unique_ptr<test::client> connect();
    // Waits until the program has written the text; false after 10 seconds without it.
    bool says(const std::string &text) { return program.says(text); }
    [[nodiscard]] pid_t pid() const { return program.pid(); }
    [[nodiscard]] std::string runtime_directory() const { return world.directory() / "run"; }

    // Waits until the program listens on its IPC socket and returns the path.
    std::string ipc_socket();

    // Waits until the program has answered everything, and then long enough for the frames that follow.
    void rest(test::client &client);
    // Opens a window of the client and waits until it is mapped and active.
    test::window &map_one(test::client &client);

    // Ends the benchmark if the condition does not hold after 30 seconds or if the client is disconnected.
    template <class Condition> void pump_until(test::client &client, Condition holds)
    {
        const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds{30};
        while (!holds()) {
            if (client.error() != 0)
                fail("threw its client out");
            if (std::chrono::steady_clock::now() > give_up)
                fail("did not answer");
            client.pump();
            if (!holds())
                usleep(50);
        }
    }

private:
    // Prints what the program wrote and ends the benchmark.
    [[noreturn]] void fail(const char *how);

    const char *name;
    test::private_world world;
    test::process program;
};
