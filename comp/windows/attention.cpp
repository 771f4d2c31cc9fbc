#include "attention.hpp"

#include "../broadcast.hpp"
#include "../server.hpp"
#include "toplevel.hpp"

void toplevel_set_urgent(vantore_toplevel &t)
{
    if (t.urgent)
        return;
    t.urgent = true;
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
}

void toplevel_mark_urgent(vantore_toplevel &t)
{
    if (t.server->seat->keyboard_state.focused_surface != tl_surface(t))
        toplevel_set_urgent(t);
}

void server_xdg_activation_activate(vantore_server &, wlr_xdg_activation_v1_request_activate_event *event)
{
    const wlr_xdg_surface *base = wlr_xdg_surface_try_from_wlr_surface(event->surface);
    if (base == nullptr || base->role != WLR_XDG_SURFACE_ROLE_TOPLEVEL)
        return;
    if (vantore_toplevel *t = toplevel_of(*base))
        toplevel_mark_urgent(*t);
}
