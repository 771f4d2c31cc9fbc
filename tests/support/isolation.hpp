// Keeps a test apart from the desktop of the person who runs it, and from other tests.
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

// While an object lives, HOME and all XDG directories lie in a directory of its own, PATH holds no programs,
// and no display or bus is inherited. Programs are recorded instead of started, and signals instead of sent.
// The clock and the program's timers stand still until a test puts the clock forward. The log is kept. The
// destructor restores the environment, the signal handlers and the signal mask.
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

    // Returns the shell lines that would have run.
    [[nodiscard]] const std::vector<std::string> &spawned() const;
    // Returns the programs that would have run without a shell, with their arguments.
    [[nodiscard]] const std::vector<std::vector<std::string>> &programs() const;
    [[nodiscard]] const std::vector<killed> &killed_processes() const;
    // Returns the virtual terminals that were switched to.
    [[nodiscard]] const std::vector<unsigned> &virtual_terminals() const;
    // Writes a file into the configuration directory and returns its path.
    std::filesystem::path write_config(const std::string &name, std::string_view text) const;
    // Sets what the program reads as /proc/cmdline.
    void kernel_command_line(const std::string &text);
    // Puts the clock forward and arms the timers that became due for 1 ms of real time. Returns true if there
    // were any.
    bool advance_clock_ms(int ms);
    // Returns how long it takes until the next of the program's timers is due, or nothing if none is armed.
    [[nodiscard]] static std::optional<int> next_timer_ms();
    // Returns the time on the clock that the program reads.
    [[nodiscard]] static int64_t clock_ms();
    // From now on, every client seems to belong to this process.
    void pretend_client_pid(pid_t pid);

    // Returns the file that the command dump-layers writes.
    [[nodiscard]] const std::string &layer_dump() const { return layer_dump_path; }

    // Returns all log text so far.
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
