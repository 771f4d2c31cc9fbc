#include "responsiveness.hpp"

#include "../broadcast.hpp"
#include "../presentation/decorations.hpp"
#include "../server.hpp"
#include "../workspaces/stacks.hpp"
#include "toplevel.hpp"

static void set_unresponsive(vantore_toplevel &t, bool unresponsive)
{
    if (t.unresponsive == unresponsive)
        return;
    t.unresponsive = unresponsive;
    if (unresponsive)
        move_to_front(t.server->unresponsive, t.unresponsive_link);
    else
        unlink_from_list(t.unresponsive_link);
    if (t.scene_tree != nullptr) {
        dec_forget_title(t);
        dec_layout(t);
        stack_refresh_tabs(t);
    }
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
}

// The library reports a time-out to all windows of an xdg client, but that of an X11 window only to that
// window.
static bool was_asked_to_close(const vantore_toplevel &t)
{
    return t.kind == VNT_XWL ||
           (t.close_ping != 0 && t.close_ping == t.xdg_toplevel->base->client->ping_serial);
}

void tl_handle_ping_timeout(vantore_toplevel &t)
{
    if (t.scene_tree != nullptr && was_asked_to_close(t))
        set_unresponsive(t, true);
}

// All X11 windows share the X server's connection, so their processes tell the clients apart.
static bool share_client(const vantore_toplevel &a, const vantore_toplevel &b)
{
    if (a.kind != b.kind)
        return false;
    if (a.kind == VNT_XWL)
        return &a == &b || (a.xwl->pid > 0 && a.xwl->pid == b.xwl->pid);
    return a.xdg_toplevel->base->client->client == b.xdg_toplevel->base->client->client;
}

void tl_note_sign_of_life(const vantore_toplevel &t)
{
    for (auto &other : each<&vantore_toplevel::unresponsive_link>(t.server->unresponsive))
        if (share_client(t, other))
            set_unresponsive(other, false);
}
