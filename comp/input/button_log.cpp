#include "button_log.hpp"

#include "../server.hpp"
#include "constraints.hpp"

#include <array>
#include <cstdio>

// The next call may overwrite the text.
static const char *dbg_surface_tag(wlr_surface *surface)
{
    static std::array<char, 256> tag;
    if (surface == nullptr)
        return "(none)";
    if (const wlr_xwayland_surface *xwl = wlr_xwayland_surface_try_from_wlr_surface(surface))
        snprintf(tag.data(), tag.size(), "xwl:'%s'%s", xwl->title != nullptr ? xwl->title : "?",
                 xwl->override_redirect ? " (O-R)" : "");
    else if (const wlr_xdg_toplevel *xdg = wlr_xdg_toplevel_try_from_wlr_surface(surface))
        snprintf(tag.data(), tag.size(), "xdg:'%s'", xdg->app_id != nullptr ? xdg->app_id : "");
    else if (const wlr_layer_surface_v1 *layer = wlr_layer_surface_v1_try_from_wlr_surface(surface))
        snprintf(tag.data(), tag.size(), "layer:'%s'", layer->namespace_);
    else
        return "(other)";
    return tag.data();
}

static const char *constraint_tag(const vantore_server &server)
{
    if (server.active_constraint == nullptr)
        return "";
    return pointer_is_locked(server) ? " [LOCKED]" : " [confined]";
}

void log_button(const vantore_server &server, const wlr_pointer_button_event &event)
{
    const wlr_seat_pointer_state &pointer = server.seat->pointer_state;
    const bool pressed = event.state != WL_POINTER_BUTTON_STATE_RELEASED;
    wlr_log(WLR_INFO, "button: %s btn=%u cursor=%.0f,%.0f → %s sxy=%.0f,%.0f%s",
            pressed ? "press" : "release", event.button, server.cursor->x, server.cursor->y,
            dbg_surface_tag(pointer.focused_surface), pointer.sx, pointer.sy, constraint_tag(server));
}
