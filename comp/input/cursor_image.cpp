#include "cursor_image.hpp"

#include "../config/settings.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "cursor_locate.hpp"

#include <algorithm>
#include <utility>

static constexpr long usual_size = 24;
static constexpr long largest_size = 1024; // larger images only cost memory

uint32_t cursor_size_for(long wish)
{
    return uint32_t(wish < 1 ? usual_size : std::min(wish, largest_size));
}

wlr_xcursor_manager *load_cursor_theme(vantore_server &server, uint32_t size)
{
    const std::string_view theme = text_of(g_cursor_theme);
    wlr_xcursor_manager *manager = wlr_xcursor_manager_create(theme.empty() ? nullptr : theme.data(), size);
    if (manager == nullptr)
        return nullptr;
    for (auto &o : each<&vantore_output::link>(server.outputs))
        wlr_xcursor_manager_load(manager, o.wlr_output->scale);
    wlr_xcursor_manager_load(manager, 1);
    return manager;
}

static void forget_surface(vantore_server &server)
{
    unlisten(server.cursor_shown.cur_cursor_surface_destroy);
    server.cursor_shown.cur_cursor_surface = nullptr;
}

void set_named_cursor(vantore_server &server, const char *name)
{
    forget_surface(server);
    server.cursor_shown.is_chosen = true;
    server.cursor_shown.cur_cursor_named = true;
    copy_text(server.cursor_shown.cur_cursor_name, name);
    wlr_cursor_set_xcursor(server.cursor, cursor_locate_mgr(server),
                           server.cursor_shown.cur_cursor_name.data());
}

void show_named_cursor(vantore_server &server, const char *name)
{
    if (!server.cursor_shown.cur_cursor_named || !text_equals(server.cursor_shown.cur_cursor_name, name))
        set_named_cursor(server, name);
}

const char *resize_cursor_name(uint32_t edges)
{
    const bool bottom = (edges & WLR_EDGE_BOTTOM) != 0;
    if ((edges & WLR_EDGE_LEFT) != 0)
        return bottom ? "bottom_left_corner" : "left_side";
    if ((edges & WLR_EDGE_RIGHT) != 0)
        return bottom ? "bottom_right_corner" : "right_side";
    return bottom ? "bottom_side" : "default";
}

// The library can't scale a client's surface, so an enlarged cursor shows the default image instead.
static void show_surface(vantore_server &server)
{
    if (server.locating.cursor_locate_step > 0)
        wlr_cursor_set_xcursor(server.cursor, cursor_locate_mgr(server), "default");
    else
        wlr_cursor_set_surface(server.cursor, server.cursor_shown.cur_cursor_surface,
                               server.cursor_shown.cur_cursor_hx, server.cursor_shown.cur_cursor_hy);
}

void cursor_reassert(vantore_server &server)
{
    if (server.cursor_shown.cur_cursor_named)
        wlr_cursor_set_xcursor(server.cursor, cursor_locate_mgr(server),
                               server.cursor_shown.cur_cursor_name.data());
    else
        show_surface(server);
}

static void cursor_cache_surface_destroy(vantore_cursor_shown &shown)
{
    set_named_cursor(*owner_of<&vantore_server::cursor_shown>(&shown), "default");
}

// A null surface hides the cursor. The hotspot is in surface coordinates.
static void set_surface_cursor(vantore_server &server, wlr_surface *surface, int32_t hotspot_x,
                               int32_t hotspot_y)
{
    forget_surface(server);
    server.cursor_shown.is_chosen = true;
    server.cursor_shown.cur_cursor_named = false;
    server.cursor_shown.cur_cursor_surface = surface;
    server.cursor_shown.cur_cursor_hx = hotspot_x;
    server.cursor_shown.cur_cursor_hy = hotspot_y;
    if (surface != nullptr)
        listen<&vantore_cursor_shown::cur_cursor_surface_destroy, cursor_cache_surface_destroy>(
            server.cursor_shown, surface->events.destroy);
    show_surface(server);
}

static bool is_under_pointer(const vantore_server &server, const wlr_seat_client *client)
{
    return client == server.seat->pointer_state.focused_client;
}

void seat_request_cursor(vantore_server &server, wlr_seat_pointer_request_set_cursor_event *event)
{
    if (is_under_pointer(server, event->seat_client))
        set_surface_cursor(server, event->surface, event->hotspot_x, event->hotspot_y);
}

void seat_request_set_cursor_shape(vantore_server &server,
                                   wlr_cursor_shape_manager_v1_request_set_shape_event *event)
{
    if (event->device_type == WLR_CURSOR_SHAPE_MANAGER_V1_DEVICE_TYPE_POINTER &&
        is_under_pointer(server, event->seat_client))
        set_named_cursor(server, wlr_cursor_shape_v1_name(event->shape));
}

// The cursor sees no change in a manager at the old address with the same image name, so the old manager is
// destroyed last.
static void replace_theme(vantore_server &server, uint32_t size)
{
    wlr_xcursor_manager *manager = load_cursor_theme(server, size);
    if (manager == nullptr) {
        wlr_log(WLR_ERROR, "vantore-comp: no memory for the cursor theme; keeping the current one");
        return;
    }
    wlr_xcursor_manager *old = std::exchange(server.xcursor_mgr, manager);
    cursor_locate_drop_steps(server);
    set_named_cursor(server, "default");
    wlr_xcursor_manager_destroy(old);
}

void cursor_apply(vantore_server &server)
{
    const uint32_t size = cursor_size_for(g_cursor_size);
    const std::string_view theme = text_of(g_cursor_theme);
    if (int(size) == server.cursor_shown.applied_size &&
        text_equals(server.cursor_shown.applied_theme, theme))
        return;
    server.cursor_shown.applied_size = int(size);
    copy_text(server.cursor_shown.applied_theme, theme);
    replace_theme(server, size);
}
