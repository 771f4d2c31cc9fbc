// A Wayland compositor that is the core of a desktop session. Takes no arguments.

#include "server.hpp"
#include "startup.hpp"

// Static, so that a fatal end, which tears nothing down, leaves nothing unreachable.
static vantore_server server;

int main()
{
    if (!server_start(server))
        return 1;
    server_run(server);
    server_finish(server);
    return 0;
}
