// The program that is measured: a child process with a world of its own.
#pragma once

#include "support/process.hpp"
#include "support/wayland_client.hpp"

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

    [[nodiscard]] std::unique_ptr<test::client> connect() const;
    // False when the text has not been written after 10 seconds.
    bool says(const std::string &text) { return program.says(text); }
    [[nodiscard]] pid_t pid() const { return program.pid(); }
    [[nodiscard]] std::string runtime_directory() const { return world.directory() / "run"; }

    // The path of its IPC socket, once it listens there.
    std::string ipc_socket();

    // Until the program has answered everything and then had time for the frames that follow.
    static void rest(test::client &client);
    // A window of the client, mapped and active.
    static test::window &map_one(test::client &client);

    template <class Condition> static void pump_until(test::client &client, Condition holds)
    {
        while (!holds()) {
            client.pump();
            if (client.error() != 0)
                abort();
            if (!holds())
                usleep(50);
        }
    }

private:
    test::private_world world;
    test::process program;
};
