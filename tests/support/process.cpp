#include "process.hpp"

#include "files.hpp"
#include "places.hpp"

#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <format>
#include <fstream>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test
{

static constexpr std::chrono::seconds patience{10};

using clock = std::chrono::steady_clock;

static std::vector<char *> pointers(std::vector<std::string> &texts)
{
    std::vector<char *> result;
    result.reserve(texts.size() + 1);
    for (std::string &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

process::process(const std::vector<std::string> &command, const variables &environment)
{
    std::vector<std::string> arguments = command;
    std::vector<std::string> assignments;
    for (const auto &[name, value] : environment)
        assignments.push_back(std::format("{}={}", name, value));
    const std::vector<char *> argv = pointers(arguments);
    const std::vector<char *> envp = pointers(assignments);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        abort();
    child = fork();
    if (child == 0) {
        signal(SIGPIPE, SIG_DFL);
        dup2(ends[1], STDOUT_FILENO);
        dup2(ends[1], STDERR_FILENO);
        execvpe(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    close(ends[1]);
    out = ends[0];
    fcntl(out, F_SETFL, O_NONBLOCK);
}

process::~process()
{
    if (!status && child > 0) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    close(out);
}

void process::send(int signal) const
{
    if (!status)
        kill(child, signal);
}

std::string process::output()
{
    std::array<char, 4096> piece{};
    for (ssize_t n = 0; (n = read(out, piece.data(), piece.size())) > 0;)
        collected.append(piece.data(), size_t(n));
    return collected;
}

std::optional<int> process::wait()
{
    const auto give_up = clock::now() + patience;
    while (!status && clock::now() < give_up) {
        (void)output(); // a full pipe would stop the child
        int raw = 0;
        if (waitpid(child, &raw, WNOHANG) == child)
            status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
        else
            poll(nullptr, 0, 5);
    }
    return status;
}

bool process::says(const std::string &text)
{
    const auto give_up = clock::now() + patience;
    while (!output().contains(text)) {
        if (clock::now() > give_up)
            return false;
        pollfd wait_for_more{.fd = out, .events = POLLIN, .revents = 0};
        poll(&wait_for_more, 1, 20);
    }
    return true;
}

// The test runner gives these variables to every test: software rendering, sanitizer settings and preloads.
static bool comes_from_the_runner(const std::string &name)
{
    return name.starts_with("WLR_RENDERER_") || name.starts_with("MESA_") || name.ends_with("SAN_OPTIONS") ||
           name == "PATH" || name.starts_with("VANTORE_TEST_");
}

private_world::private_world()
{
    std::string name = std::filesystem::temp_directory_path() / "vantore-world-XXXXXX";
    root = mkdtemp(name.data());
    environment = make_session_folders(root);
    environment["WLR_HEADLESS_OUTPUTS"] = "1";
    for (char **entry = environ; *entry != nullptr; entry++) {
        const char *equals = strchr(*entry, '=');
        const std::string variable{*entry, size_t(equals - *entry)};
        if (comes_from_the_runner(variable))
            environment[variable] = equals + 1;
    }
    environment["PATH"] = std::format("{}:{}", (root / "bin").string(), environment["PATH"]);
    std::filesystem::create_directory(root / "config" / "vantore");
    const std::ofstream empty{root / "config" / "vantore" /
                              "autostart.conf"}; // the default text starts programs
}

private_world::~private_world()
{
    std::filesystem::remove_all(root);
}

void private_world::write_program(const std::string &name, const std::string &script) const
{
    const std::filesystem::path path = root / "bin" / name;
    std::ofstream{path} << "#!/bin/sh\n" << script << '\n';
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

std::vector<std::string> compositor()
{
    return {"env", std::string{"LD_PRELOAD="} + getenv("VANTORE_TEST_PRELOAD"), compositor_binary};
}

} // namespace test
