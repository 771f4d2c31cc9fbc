#include "resting_pointer.hpp"

#include "../server.hpp"
#include "pointer.hpp"

#include <utility>

static void look_again(void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    server.pointing.look_again = nullptr; // the event loop has removed it
    if (server.drag.cursor_mode == VANTORE_CURSOR_PASSTHROUGH)
        process_resting_pointer(server);
}

void pointer_look_again(vantore_server &server)
{
    if (server.pointing.look_again != nullptr || server.shutting_down ||
        server.drag.cursor_mode != VANTORE_CURSOR_PASSTHROUGH)
        return;
    wl_event_loop *loop = wl_display_get_event_loop(server.display);
    server.pointing.look_again = wl_event_loop_add_idle(loop, look_again, &server);
}

void pointer_look_again_cancel(vantore_server &server)
{
    if (wl_event_source *pending = std::exchange(server.pointing.look_again, nullptr))
        wl_event_source_remove(pending);
}
