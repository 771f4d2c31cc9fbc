// Keeps a test away from the desktop of the person who runs it, and from other tests.
#pragma once

#include <csignal>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace test
{

struct killed {
    pid_t pid;
    int signal;
    friend bool operator==(const killed &, const killed &) = default;
};

// While it lives: HOME and all XDG directories lie in a directory of its own, PATH holds nothing, no display
// and no bus is inherited, programs are recorded instead of started, signals recorded instead of sent, the
// clock and the program's timers stand still until the clock is put forward, and the log is kept. Afterwards
// the environment, the signal handlers and the signal mask are as they were.
class isolation
{
public:
    isolation();
    ~isolation();
    isolation(const isolation &) = delete;
    isolation &operator=(const isolation &) = delete;

    [[nodiscard]] const std::filesystem::path &directory() const { return root; }
    [[nodiscard]] std::filesystem::path runtime_directory() const { return root / "run"; }
    [[nodiscard]] std::filesystem::path config_directory() const { return root / "config" / "vantore"; }

    // The shell lines that would have been run.
    [[nodiscard]] const std::vector<std::string> &spawned() const;
    // The programs that would have been run without a shell, with their arguments.
    [[nodiscard]] const std::vector<std::vector<std::string>> &programs() const;
    [[nodiscard]] const std::vector<killed> &killed_processes() const;
    // The virtual terminals that were switched to.
    [[nodiscard]] const std::vector<unsigned> &virtual_terminals() const;
    // Writes a file of the configuration directory. Returns where it lies.
    std::filesystem::path write_config(const std::string &name, std::string_view text) const;
    // What /proc/cmdline is to hold.
    void kernel_command_line(const std::string &text);
    // Arms the program's timers that are due by then for 1 ms of real time. True when there were any.
    bool advance_clock_ms(int ms);
    // How long until the first of the program's timers is due; nothing when none is armed.
    [[nodiscard]] static std::optional<int> next_timer_ms();
    // The clock that the program reads.
    [[nodiscard]] static int64_t clock_ms();
    // What every client's process is to be from now on.
    void pretend_client_pid(pid_t pid);

    // Where the command dump-layers writes.
    [[nodiscard]] const std::string &layer_dump() const { return layer_dump_path; }

    // All log text so far.
    [[nodiscard]] std::string log() const;

private:
    void redirect_environment();
    void redirect_platform();

    std::filesystem::path root;
    std::map<std::string, std::string> environment_before;
    std::map<int, struct sigaction> handlers_before;
    sigset_t mask_before{};
    FILE *log_stream = nullptr;
    char *log_text = nullptr;
    size_t log_length = 0;
    std::string command_line_path, layer_dump_path;
};

} // namespace test
