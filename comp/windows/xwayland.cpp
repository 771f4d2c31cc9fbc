#include "xwayland.hpp"

#include "../config/settings.hpp"
#include "../server.hpp"
#include "../spawn.hpp"
#include "unmanaged.hpp"
#include "xwl_toplevel.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>

// Shown until a client sets one of its own.
static void set_default_cursor(vantore_server &server)
{
    wlr_xcursor_manager_load(server.xcursor_mgr, 1);
    const wlr_xcursor *cursor = wlr_xcursor_manager_get_xcursor(server.xcursor_mgr, "default", 1);
    if (cursor == nullptr || cursor->image_count == 0)
        return;
    wlr_xcursor_image *image = cursor->images[0];
    if (wlr_buffer *buffer = wlr_xcursor_image_get_buffer(image))
        wlr_xwayland_set_cursor(server.xwayland, buffer, int32_t(image->hotspot_x),
                                int32_t(image->hotspot_y));
}

static void announce_display(const char *display)
{
    setenv("DISPLAY", display, 1);
    spawn_detached("command -v dbus-update-activation-environment >/dev/null && "
                   "dbus-update-activation-environment --systemd DISPLAY");
    wlr_log(WLR_INFO, "XWayland ready on DISPLAY=%s", display);
}

// Each time that the X server has started.
static void handle_xwayland_ready(vantore_server &server)
{
    wlr_xwayland_set_seat(server.xwayland, server.seat);
    set_default_cursor(server);
    if (const char *display = server.xwayland->display_name)
        announce_display(display);
    apply_x_primary(server);
}

void apply_x_primary(vantore_server &server)
{
    const char *display = server.xwayland != nullptr ? server.xwayland->display_name : nullptr;
    const char *output = g_x_primary.data();
    if (display == nullptr || *output == '\0')
        return;
    std::array<char, 384> line{};
    snprintf(line.data(), line.size(),
             "for i in 1 2 3 4 5 6; do DISPLAY=%s xrandr --output '%s' --primary 2>/dev/null; "
             "DISPLAY=%s xrandr -q 2>/dev/null | grep -q '^%s connected primary' && break; sleep 1; done",
             display, output, display, output);
    spawn_detached(line.data());
}

static void server_new_xwayland_surface(vantore_server &server, wlr_xwayland_surface *xwl)
{
    wlr_log(WLR_INFO, "new X11 surface: title=\"%s\" override_redirect=%d",
            xwl->title != nullptr ? xwl->title : "", int(xwl->override_redirect));
    if (xwl->override_redirect)
        server_new_unmanaged(server, xwl);
    else
        server_new_xwl_toplevel(server, xwl);
}

void xwayland_create(vantore_server &server)
{
    server.xwayland = wlr_xwayland_create(server.display, server.compositor, true);
    if (server.xwayland == nullptr) {
        wlr_log(WLR_ERROR, "failed to start XWayland (X11 apps unavailable)");
        return;
    }
    auto &events = server.xwayland->events;
    listen<&vantore_server::xwayland_ready, handle_xwayland_ready>(server, events.ready);
    listen<&vantore_server::new_xwayland_surface, server_new_xwayland_surface>(server, events.new_surface);
    setenv("DISPLAY", server.xwayland->display_name, 1);
}

void xwayland_destroy(vantore_server &server)
{
    unlisten(server.xwayland_ready);
    unlisten(server.new_xwayland_surface);
    if (server.xwayland != nullptr)
        wlr_xwayland_destroy(server.xwayland);
    server.xwayland = nullptr;
}
