// The windows of a test's client.

#include "wayland_client.hpp"

#include "memory_file.hpp"
#include "wlr-gamma-control-unstable-v1-client-protocol.h"
#include "xdg-shell-client-protocol.h"

#include <algorithm>
#include <span>
#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace test
{

std::ostream &operator<<(std::ostream &out, const size &s)
{
    return out << s.width << 'x' << s.height;
}

void gamma_control::set_identity()
{
    const int fd = memory_file<uint16_t>(size_t{table_size} * 3, [&](uint16_t *table) {
        for (uint32_t i = 0; i < table_size * 3; i++)
            table[i] = uint16_t(65535 * (i % table_size) / std::max(table_size - 1, 1U));
    });
    zwlr_gamma_control_v1_set_gamma(control, fd);
    close(fd);
}

struct window_events {
    static window &self(void *data) { return *static_cast<window *>(data); }

    static void configure(void *data, xdg_toplevel *, int32_t width, int32_t height, wl_array *states)
    {
        auto &pending = self(data).pending;
        pending = {.width = width, .height = height, .states = 0, .serial = 0};
        const std::span list{static_cast<const uint32_t *>(states->data), states->size / sizeof(uint32_t)};
        for (const uint32_t state : list)
            pending.states |= bit_of(state);
    }

    static unsigned bit_of(uint32_t state)
    {
        switch (state) {
        case XDG_TOPLEVEL_STATE_MAXIMIZED:
            return MAXIMIZED;
        case XDG_TOPLEVEL_STATE_FULLSCREEN:
            return FULLSCREEN;
        case XDG_TOPLEVEL_STATE_RESIZING:
            return RESIZING;
        case XDG_TOPLEVEL_STATE_ACTIVATED:
            return ACTIVATED;
        default:
            return TILED;
        }
    }

    static void close(void *data, xdg_toplevel *) { self(data).close_events++; }
    static void surface_configure(void *data, xdg_surface *, uint32_t serial)
    {
        self(data).handle_configure(serial);
    }
    static void enter(void *data, wl_surface *, wl_output *output) { self(data).entered.push_back(output); }
    static void leave(void *data, wl_surface *, wl_output *output) { std::erase(self(data).entered, output); }
    static void frame_done(void *data, wl_callback *callback, uint32_t)
    {
        self(data).frame_callbacks++;
        std::erase(self(data).frame_requests, callback);
        wl_callback_destroy(callback);
    }
};

static constexpr wl_surface_listener surface_listener{
    .enter = window_events::enter,
    .leave = window_events::leave,
    .preferred_buffer_scale = [](void *, wl_surface *, int32_t) {},
    .preferred_buffer_transform = [](void *, wl_surface *, uint32_t) {},
};
static constexpr xdg_surface_listener role_listener{.configure = window_events::surface_configure};
static constexpr xdg_toplevel_listener toplevel_listener{
    .configure = window_events::configure,
    .close = window_events::close,
    .configure_bounds = [](void *, xdg_toplevel *, int32_t, int32_t) {},
    .wm_capabilities = [](void *, xdg_toplevel *, wl_array *) {},
};

void window::handle_configure(uint32_t serial)
{
    pending.serial = serial;
    configures.push_back(pending);
    if (!auto_ack || !owned_by->roundtrip_done(unmapped_at))
        return;
    ack();
    if (auto_draw)
        draw(pending.width > 0 ? pending.size() : drawn.width > 0 ? drawn : preferred, colour);
}

window::window(client &owner, std::string app_id) : owned_by(&owner), id(std::move(app_id)) {}

window::~window()
{
    destroy();
}

void window::create_surface()
{
    surface = owned_by->create_surface(id);
    wl_surface_add_listener(surface, &surface_listener, this);
}

void window::create_xdg_surface()
{
    role = xdg_wm_base_get_xdg_surface(owned_by->wm_base, surface);
    xdg_surface_add_listener(role, &role_listener, this);
}

void window::create_toplevel()
{
    toplevel = xdg_surface_get_toplevel(role);
    xdg_toplevel_add_listener(toplevel, &toplevel_listener, this);
    xdg_toplevel_set_app_id(toplevel, id.c_str());
}

void window::ensure_toplevel()
{
    if (surface == nullptr)
        create_surface();
    if (role == nullptr)
        create_xdg_surface();
    if (toplevel == nullptr)
        create_toplevel();
}

void window::commit()
{
    wl_surface_commit(surface);
}

void window::ack()
{
    xdg_surface_ack_configure(role, last().serial);
}

void window::draw(size s, uint32_t argb)
{
    drawn = s;
    colour = argb;
    owned_by->paint(surface, s, argb);
}

void window::unmap()
{
    wl_surface_attach(surface, nullptr, 0, 0);
    commit();
    opened = false;
    unmapped_at = owned_by->roundtrip_begin();
}

void window::destroy_toplevel()
{
    if (toplevel != nullptr)
        xdg_toplevel_destroy(std::exchange(toplevel, nullptr));
}

void window::destroy_role()
{
    opened = false;
    destroy_toplevel();
    if (role != nullptr)
        xdg_surface_destroy(std::exchange(role, nullptr));
}

void window::destroy()
{
    destroy_role();
    destroy_subsurfaces();
    for (wl_callback *callback : std::exchange(frame_requests, {}))
        wl_callback_destroy(callback);
    if (surface != nullptr)
        owned_by->destroy_surface(std::exchange(surface, nullptr));
}

void window::open()
{
    ensure_toplevel();
    if (!std::exchange(opened, true))
        commit();
}

void window::fill(uint32_t argb)
{
    draw(drawn, argb);
}

void window::title(const std::string &text)
{
    ensure_toplevel();
    xdg_toplevel_set_title(toplevel, text.c_str());
}

void window::app_id(const std::string &text)
{
    ensure_toplevel();
    xdg_toplevel_set_app_id(toplevel, text.c_str());
}

void window::min_size(size s)
{
    ensure_toplevel();
    xdg_toplevel_set_min_size(toplevel, s.width, s.height);
}

void window::max_size(size s)
{
    ensure_toplevel();
    xdg_toplevel_set_max_size(toplevel, s.width, s.height);
}

void window::parent(window *other)
{
    ensure_toplevel();
    xdg_toplevel_set_parent(toplevel, other != nullptr ? other->toplevel : nullptr);
}

void window::geometry(int x, int y, int width, int height)
{
    ensure_toplevel();
    xdg_surface_set_window_geometry(role, x, y, width, height);
}

void window::input_region(int x, int y, int width, int height)
{
    wl_region *region = wl_compositor_create_region(owned_by->surfaces());
    wl_region_add(region, x, y, width, height);
    wl_surface_set_input_region(surface, region);
    wl_region_destroy(region);
}

void window::opaque_region(int x, int y, int width, int height)
{
    wl_region *region = wl_compositor_create_region(owned_by->surfaces());
    wl_region_add(region, x, y, width, height);
    wl_surface_set_opaque_region(surface, region);
    wl_region_destroy(region);
}

void window::add_subsurface(int x, int y, test::size s)
{
    auto *manager = static_cast<wl_subcompositor *>(owned_by->bind(wl_subcompositor_interface, 1));
    wl_surface *child = owned_by->create_surface(id + "'s part");
    wl_subsurface *part = wl_subcompositor_get_subsurface(manager, child, surface);
    wl_subcompositor_destroy(manager);
    wl_subsurface_set_position(part, x, y);
    wl_subsurface_set_desync(part);
    owned_by->paint(child, s, 0xff00c0c0);
    subsurfaces.emplace_back(child, part);
}

void window::paint_subsurfaces(test::size s, uint32_t argb)
{
    for (const auto &[child, part] : subsurfaces)
        owned_by->paint(child, s, argb);
}

void window::destroy_subsurfaces()
{
    for (const auto &[child, part] : std::exchange(subsurfaces, {})) {
        wl_subsurface_destroy(part);
        owned_by->destroy_surface(child);
    }
}

void window::request_maximize()
{
    ensure_toplevel();
    xdg_toplevel_set_maximized(toplevel);
}

void window::request_unmaximize()
{
    xdg_toplevel_unset_maximized(toplevel);
}

void window::request_fullscreen(wl_output *output)
{
    ensure_toplevel();
    xdg_toplevel_set_fullscreen(toplevel, output);
}

void window::request_minimize()
{
    ensure_toplevel();
    xdg_toplevel_set_minimized(toplevel);
}

void window::request_move(wl_seat *seat, uint32_t serial)
{
    ensure_toplevel();
    xdg_toplevel_move(toplevel, seat, serial);
}

void window::request_resize(wl_seat *seat, uint32_t serial, uint32_t edges)
{
    ensure_toplevel();
    xdg_toplevel_resize(toplevel, seat, serial, edges);
}

void window::request_unfullscreen()
{
    xdg_toplevel_unset_fullscreen(toplevel);
}

void window::request_frame()
{
    static constexpr wl_callback_listener listener{.done = window_events::frame_done};
    wl_callback *callback = frame_requests.emplace_back(wl_surface_frame(surface));
    wl_callback_add_listener(callback, &listener, this);
    commit();
}

std::vector<std::string> window::outputs() const
{
    std::vector<std::string> names;
    names.reserve(entered.size());
    for (const wl_output *output : entered)
        names.push_back(owned_by->name_of(output));
    return names;
}

uint32_t window::surface_id() const
{
    return surface != nullptr ? wl_proxy_get_id(reinterpret_cast<wl_proxy *>(surface)) : 0;
}

} // namespace test
