// A Wayland compositor that is the core of a desktop session. It takes no arguments.

#include "server.hpp"
#include "startup.hpp"

// Static, so that leak checkers can still reach everything after a failed start, which tears nothing down.
static vantore_server server;

int main()
{
    if (!server_start(server))
        return 1;
    server_run(server);
    server_finish(server);
    return 0;
}
