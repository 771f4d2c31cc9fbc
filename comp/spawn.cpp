#include "spawn.hpp"

#include "platform.hpp"

#include <cstring>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// A copied piece may end behind this many bytes of the line, never start there; the longest piece and the
// closing quote still fit into the 4096 bytes of the launcher's buffer.
static constexpr size_t launcher_line_limit = 4090;

void fork_shell_line(const char *line)
{
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        if (fork() == 0) {
            execl("/bin/sh", "/bin/sh", "-c", line, static_cast<char *>(nullptr));
            _exit(127);
        }
        _exit(0);
    }
    if (child > 0)
        waitpid(child, nullptr, 0);
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
