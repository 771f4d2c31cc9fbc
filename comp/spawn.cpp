#include "spawn.hpp"

#include "platform.hpp"

#include <csignal>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// A copied piece may end behind this many bytes of the line, never start there; the longest piece and the
// closing quote still fit into the 4096 bytes of the launcher's buffer.
static constexpr size_t launcher_line_limit = 4090;

// Everything is inherited but the block of SIGHUP, which only our event loop needs: shells would hand it on,
// and nothing would end with its terminal.
static void release_hangups()
{
    sigset_t hangup;
    sigemptyset(&hangup);
    sigaddset(&hangup, SIGHUP);
    sigprocmask(SIG_UNBLOCK, &hangup, nullptr);
}

[[noreturn]] static void become(const char *const argv[])
{
    release_hangups();
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
