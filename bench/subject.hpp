// The program that is measured: a child process with a world of its own.
#pragma once

#include "support/process.hpp"
#include "support/wayland_client.hpp"

#include <chrono>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

// A file of the process's directory in /proc.
std::string read_proc(pid_t pid, const char *file);
// CPU time of the main thread in microseconds.
double cpu_us(pid_t pid);
// The same of all its threads together.
double cpu_of_threads_us(pid_t pid);
double median(std::vector<double> values);

class subject
{
public:
    // Ends the benchmark when the binary does not start. Gets these variables besides those of its world, and
    // this text as its compositor.conf.
    explicit subject(const char *binary, const test::variables &more = {}, const std::string &settings = {});

    [[nodiscard]] std::unique_ptr<test::client> connect();
    // False when the text has not been written after 10 seconds.
    bool says(const std::string &text) { return program.says(text); }
    [[nodiscard]] pid_t pid() const { return program.pid(); }
    [[nodiscard]] std::string runtime_directory() const { return world.directory() / "run"; }

    // The path of its IPC socket, once it listens there.
    std::string ipc_socket();

    // Until the program has answered everything and then had time for the frames that follow.
    void rest(test::client &client);
    // A window of the client, mapped and active.
    test::window &map_one(test::client &client);

    // Ends the benchmark when it does not hold after 30 seconds, or when the client is thrown out.
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
