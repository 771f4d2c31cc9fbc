#include "xwayland.hpp"

#include "../config/settings.hpp"
#include "../server.hpp"
#include "../spawn.hpp"
#include "../timer.hpp"
#include "unmanaged.hpp"
#include "xwl_events.hpp"
#include "xwl_toplevel.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>

static constexpr int revival_delay_ms = 1; // after the library has returned

// X11 windows show this cursor until a client sets its own.
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

// Runs each time the X server has started.
static void handle_xwayland_ready(vantore_server &server)
{
    xwl_watch_events(server.xwayland);
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
    if (display == nullptr || *display == '\0' || *output == '\0')
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

// The X server connects as a Wayland client before it is ready, so this connection also tells us when it dies
// while starting.
static void handle_xwayland_lost(wl_listener *raw, void *)
{
    // The library has not finished with the client yet, so the revival waits.
    timer_arm(owner_of<&vantore_server::xwayland_lost>(raw)->xwayland_revival, revival_delay_ms);
}

static void handle_xwayland_start(vantore_server &server)
{
    unlisten(server.xwayland_lost);
    server.xwayland_lost.notify = handle_xwayland_lost;
    wl_client_add_destroy_listener(server.xwayland->server->client, &server.xwayland_lost);
}

static void wait_for_x11_clients(vantore_server &server)
{
    server.xwayland = wlr_xwayland_create(server.display, server.compositor, true);
    if (server.xwayland == nullptr) {
        wlr_log(WLR_ERROR, "failed to start XWayland (X11 apps unavailable)");
        return;
    }
    auto &events = server.xwayland->events;
    listen<&vantore_server::xwayland_start, handle_xwayland_start>(server,
                                                                   server.xwayland->server->events.start);
    listen<&vantore_server::xwayland_ready, handle_xwayland_ready>(server, events.ready);
    listen<&vantore_server::new_xwayland_surface, server_new_xwayland_surface>(server, events.new_surface);
    setenv("DISPLAY", server.xwayland->display_name, 1);
}

static void drop_xwayland(vantore_server &server)
{
    unlisten(server.xwayland_start);
    unlisten(server.xwayland_lost);
    unlisten(server.xwayland_ready);
    unlisten(server.new_xwayland_surface);
    if (server.xwayland != nullptr)
        wlr_xwayland_destroy(server.xwayland);
    server.xwayland = nullptr;
}

static bool hears_clients(const wlr_xwayland_server &x)
{
    return x.client != nullptr || x.x_fd_read_event[0] != nullptr;
}

// When the X server dies within five seconds of its start, or never comes up, the library keeps its sockets
// and listens to none of them. New sockets also drop the connections that wait in the old ones, so a client
// that crashes the X server has to connect again for each crash.
static int revive(void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    if (server.xwayland == nullptr || hears_clients(*server.xwayland->server))
        return 0;
    wlr_log(WLR_INFO, "vantore-comp: the X server has ended early; the next X11 client starts another");
    drop_xwayland(server);
    unsetenv("DISPLAY"); // another program may get that display number
    wait_for_x11_clients(server);
    return 0;
}

void xwayland_create(vantore_server &server)
{
    server.xwayland_revival = timer_create(server.display, revive, &server);
    wait_for_x11_clients(server);
}

void xwayland_destroy(vantore_server &server)
{
    drop_xwayland(server);
    server.xwayland_revival.reset();
}
