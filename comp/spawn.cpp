#include "spawn.hpp"

#include "descriptors.hpp"
#include "platform.hpp"

#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// Copying stops once the line has this many bytes. The last piece may reach up to three bytes further. With
// it, the closing quote and the final null, the line still fits into 4096 bytes. Another
// launcher in PATH may read no more.
static constexpr size_t launcher_line_limit = 4090;

// Without this, a program that starts without one of its standard descriptors would use the first file that
// it opens in its place.
static void open_standard_descriptors()
{
    for (int fd = 0; fd <= 2; fd++) {
        const int flags = fcntl(fd, F_GETFD);
        if (flags >= 0 && (flags & FD_CLOEXEC) == 0)
            continue;
        const int nothing = open("/dev/null", fd == 0 ? O_RDONLY : O_WRONLY);
        if (nothing >= 0 && nothing != fd) {
            dup2(nothing, fd);
            close(nothing);
        }
    }
}

// Undoes what the compositor has set up for itself. No signal stays blocked or ignored, and the limit of
// descriptors becomes the one that the session was started with.
static void forget_our_ways()
{
    sigset_t none;
    sigemptyset(&none);
    signal(SIGPIPE, SIG_DFL);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    open_standard_descriptors(); // before the limit, which may be lower than the next free number
    descriptors_restore_limit();
}

[[noreturn]] static void become(const char *const argv[])
{
    forget_our_ways();
    execvp(argv[0], const_cast<char *const *>(argv));
    _exit(127);
}

void fork_program(const char *const argv[])
{
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        if (fork() == 0)
            become(argv);
        _exit(0);
    }
    if (child > 0)
        waitpid(child, nullptr, 0);
}

void fork_shell_line(const char *line)
{
    const char *const argv[]{"/bin/sh", "-c", line, nullptr};
    fork_program(argv);
}

pid_t fork_child(const char *line)
{
    const char *const argv[]{"/bin/sh", "-c", line, nullptr};
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        become(argv);
    }
    return child;
}

void spawn_program(const char *const argv[])
{
    g_platform.run_program(argv);
}

void spawn_detached(const char *cmd)
{
    g_platform.run_shell_line(cmd);
}

void spawn_app(const char *cmd)
{
    if (cmd == nullptr || *cmd == '\0')
        return;
    std::string line = "vantore-launch '";
    for (const char *c = cmd; *c != '\0' && line.size() < launcher_line_limit; c++) {
        if (*c == '\'')
            line += "'\\''";
        else
            line += *c;
    }
    line += '\'';
    spawn_detached(line.c_str());
}
