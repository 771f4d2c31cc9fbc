#include "isolation.hpp"

#include "files.hpp"
#include "platform.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string_view>
#include <unistd.h>

namespace test
{

static constexpr std::array handled_signals{SIGINT, SIGTERM, SIGPIPE, SIGHUP};

// What the replaced platform functions record. Only one isolation exists at a time.
struct recording {
    std::vector<std::string> spawned;
    std::vector<std::vector<std::string>> programs;
    std::vector<killed> signals;
    int64_t now_ns = 0; // stands still until a test moves it
    pid_t client_pid = 0;
    std::map<wl_event_source *, int64_t> armed; // and when they are due, in ns
    std::vector<unsigned> vts;
    vnt_platform real;
};
static recording g_recording;

static std::map<std::string, std::string> environment()
{
    std::map<std::string, std::string> variables;
    for (char **entry = environ; *entry != nullptr; entry++) {
        const std::string_view text{*entry};
        const size_t equals = text.find('=');
        variables.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    return variables;
}

static void replace_environment(const std::map<std::string, std::string> &variables)
{
    clearenv();
    for (const auto &[name, value] : variables)
        setenv(name.c_str(), value.c_str(), 1);
}

// Tests need these variables from outside. They choose the renderer and configure the sanitizers and the
// tests.
static bool passes_through(std::string_view name)
{
    return name.starts_with("ASAN_") || name.starts_with("LSAN_") || name.starts_with("UBSAN_") ||
           name.starts_with("WLR_RENDERER_") || name.starts_with("MESA_") ||
           name.starts_with("VANTORE_TEST_") || name == "VANTORE_UPDATE_GOLDEN";
}

void isolation::redirect_environment()
{
    std::map<std::string, std::string> kept = make_session_folders(root);
    for (const auto &[name, value] : environment_before)
        if (passes_through(name))
            kept.emplace(name, value);
    kept["WLR_HEADLESS_OUTPUTS"] = "0";
    replace_environment(kept);
}

void isolation::redirect_platform()
{
    g_recording = {.real = g_platform};
    g_recording.now_ns = g_platform.monotonic_ns();
    g_platform.monotonic_ns = [] { return g_recording.now_ns; };
    g_platform.run_shell_line = [](const char *line) { g_recording.spawned.emplace_back(line); };
    g_platform.run_program = [](const char *const argv[]) {
        auto &program = g_recording.programs.emplace_back();
        for (; *argv != nullptr; argv++)
            program.emplace_back(*argv);
    };
    g_platform.send_signal = [](pid_t pid, int signal) {
        g_recording.signals.push_back({pid, signal});
        return 0;
    };
    g_platform.arm_timer = [](wl_event_source *timer, int ms) {
        if (ms > 0)
            g_recording.armed[timer] = g_recording.now_ns + int64_t{ms} * 1'000'000;
        else
            g_recording.armed.erase(timer);
        return 0;
    };
    g_platform.change_vt = [](wlr_session *, unsigned vt) {
        g_recording.vts.push_back(vt);
        return true;
    };
    command_line_path = root / "cmdline";
    g_platform.kernel_command_line = command_line_path.c_str();
    layer_dump_path = root / "layers.json";
    g_platform.layer_dump = layer_dump_path.c_str();
    log_stream = open_memstream(&log_text, &log_length);
    g_platform.log = log_stream;
}

isolation::isolation() : environment_before(environment())
{
    std::string name = std::filesystem::temp_directory_path() / "vantore-test-XXXXXX";
    root = mkdtemp(name.data());
    sigprocmask(SIG_SETMASK, nullptr, &mask_before);
    struct sigaction standard{};
    standard.sa_handler = SIG_DFL;
    for (const int signal : handled_signals)
        sigaction(signal, &standard, &handlers_before[signal]);
    redirect_environment();
    redirect_platform();
}

isolation::~isolation()
{
    g_platform = g_recording.real;
    fclose(log_stream);
    free(log_text);
    for (const auto &[signal, action] : handlers_before)
        sigaction(signal, &action, nullptr);
    sigprocmask(SIG_SETMASK, &mask_before, nullptr);
    replace_environment(environment_before);
    std::filesystem::remove_all(root);
}

const std::vector<std::string> &isolation::spawned() const
{
    return g_recording.spawned;
}

const std::vector<std::vector<std::string>> &isolation::programs() const
{
    return g_recording.programs;
}

const std::vector<killed> &isolation::killed_processes() const
{
    return g_recording.signals;
}

const std::vector<unsigned> &isolation::virtual_terminals() const
{
    return g_recording.vts;
}

std::filesystem::path isolation::write_config(const std::string &name, std::string_view text) const
{
    std::filesystem::create_directories(config_directory());
    auto path = config_directory() / name;
    std::ofstream{path, std::ios::binary} << text;
    return path;
}

void isolation::kernel_command_line(const std::string &text)
{
    std::ofstream{command_line_path} << text;
}

bool isolation::advance_clock_ms(int ms)
{
    g_recording.now_ns += int64_t{ms} * 1'000'000;
    const size_t fired = std::erase_if(g_recording.armed, [](const auto &entry) {
        const bool due = entry.second <= g_recording.now_ns;
        if (due)
            g_recording.real.arm_timer(entry.first, 1);
        return due;
    });
    return fired > 0;
}

std::optional<int> isolation::next_timer_ms()
{
    const auto first =
        std::ranges::min_element(g_recording.armed, {}, [](const auto &entry) { return entry.second; });
    if (first == g_recording.armed.end())
        return std::nullopt;
    return int((first->second - g_recording.now_ns) / 1'000'000);
}

int64_t isolation::clock_ms()
{
    return g_recording.now_ns / 1'000'000;
}

void isolation::pretend_client_pid(pid_t pid)
{
    g_recording.client_pid = pid;
    g_platform.client_pid = [](wl_client *) { return g_recording.client_pid; };
}

std::string isolation::log() const
{
    fflush(log_stream);
    return {log_text, log_length};
}

} // namespace test
