#include "globals.hpp"

#include "config/settings.hpp"
#include "input/constraints.hpp"
#include "input/cursor_image.hpp"
#include "input/devices.hpp"
#include "input/keymap_guard.hpp"
#include "input/resting_pointer.hpp"
#include "input/seat_requests.hpp"
#include "input/shortcuts_inhibitor.hpp"
#include "outputs/frame_callbacks.hpp"
#include "outputs/gamma.hpp"
#include "outputs/screencopy_guard.hpp"
#include "request_guards.hpp"
#include "sandbox.hpp"
#include "sandbox_contexts.hpp"
#include "server.hpp"
#include "session_listeners.hpp"
#include "windows/attention.hpp"
#include "windows/decoration_mode.hpp"
#include "windows/layer.hpp"
#include "windows/layer_guard.hpp"
#include "windows/popup.hpp"
#include "windows/popup_guard.hpp"
#include "windows/subsurface_guard.hpp"
#include "windows/xdg.hpp"

#include <cstdlib>
#include <cstring>
#include <xf86drm.h>

static constexpr uint32_t compositor_version = 5;
static constexpr uint32_t xdg_shell_version = 3;
static constexpr uint32_t layer_shell_version = 4;
static constexpr uint32_t cursor_shape_version = 1;
static constexpr uint32_t presentation_version = 2;
static constexpr uint32_t ping_timeout_ms = 3000;

static constexpr request_guard guards[]{
    {"wl_subcompositor", dispatch_subcompositor_request},
    {"xdg_popup", dispatch_popup_request},
    {"zwlr_layer_surface_v1", dispatch_layer_surface_request},
    {"zwp_virtual_keyboard_v1", dispatch_virtual_keyboard_request},
    {"zwlr_screencopy_frame_v1", dispatch_screencopy_frame_request},
};

void globals_guard_requests(vantore_server &server)
{
    guard_requests(server, guards);
}

// Logs that an optional global could not be made. The session starts without it.
static void log_missing(const char *what, const char *consequence)
{
    wlr_log(WLR_ERROR, "vantore-comp: no %s, %s", what, consequence);
}

static void create_activation(vantore_server &server)
{
    if (wlr_xdg_activation_v1 *activation = wlr_xdg_activation_v1_create(server.display))
        listen_until_end<&vantore_server::xdg_activation_activate, server_xdg_activation_activate>(
            server, activation->events.request_activate);
    else
        log_missing("activation", "windows can't ask for attention");
}

static void create_cursor_shape(vantore_server &server)
{
    if (auto *manager = wlr_cursor_shape_manager_v1_create(server.display, cursor_shape_version))
        listen_until_end<&vantore_server::request_set_cursor_shape, seat_request_set_cursor_shape>(
            server, manager->events.request_set_shape);
    else
        log_missing("cursor shapes", "clients draw their own cursors");
}

static void create_shortcuts_inhibit(vantore_server &server)
{
    if (auto *manager = wlr_keyboard_shortcuts_inhibit_v1_create(server.display))
        listen_until_end<&vantore_server::new_keyboard_shortcuts_inhibitor, server_new_shortcuts_inhibitor>(
            server, manager->events.new_inhibitor);
    else
        log_missing("shortcuts inhibitor", "shortcuts can't be left to clients");
}

static void create_virtual_devices(vantore_server &server)
{
    if (auto *keyboards = wlr_virtual_keyboard_manager_v1_create(server.display))
        listen_until_end<&vantore_server::new_virtual_kbd, server_new_virtual_keyboard>(
            server, keyboards->events.new_virtual_keyboard);
    else
        log_missing("virtual keyboards", "clients can't type");
    if (auto *pointers = wlr_virtual_pointer_manager_v1_create(server.display))
        listen_until_end<&vantore_server::new_virtual_ptr, server_new_virtual_pointer>(
            server, pointers->events.new_virtual_pointer);
    else
        log_missing("virtual pointers", "clients can't point");
}

static void server_new_surface(vantore_server &server, wlr_surface *surface)
{
    pointer_follow_surface(server, surface);
    frame_callbacks_follow(server, surface);
}

bool globals_create_first(vantore_server &server)
{
    wl_display *display = server.display;
    server.compositor = wlr_compositor_create(display, compositor_version, server.renderer);
    if (server.compositor == nullptr)
        return false;
    listen_until_end<&vantore_server::new_surface, server_new_surface>(server,
                                                                       server.compositor->events.new_surface);
    wlr_subcompositor_create(display);
    wlr_data_device_manager_create(display);
    wlr_primary_selection_v1_device_manager_create(display);
    create_activation(server);
    wlr_viewporter_create(display);
    wlr_fractional_scale_manager_v1_create(display, 1);
    wlr_alpha_modifier_v1_create(display);
    wlr_single_pixel_buffer_manager_v1_create(display);
    if (sandbox_contexts_begin(server))
        sandbox_filter_globals(server);
    else
        log_missing("sandbox global", "programs in sandboxes connect like all others, or not at all");
    create_cursor_shape(server);
    create_shortcuts_inhibit(server);
    if (wlr_xdg_foreign_registry *registry = wlr_xdg_foreign_registry_create(display)) {
        wlr_xdg_foreign_v1_create(display, registry);
        wlr_xdg_foreign_v2_create(display, registry);
    }
    server.tearing_mgr = wlr_tearing_control_manager_v1_create(display, 1);
    server.content_type_mgr = wlr_content_type_manager_v1_create(display, 1);
    create_virtual_devices(server);
    return true;
}

void globals_create_explicit_sync(vantore_server &server)
{
    const char *wish = getenv("VANTORE_EXPLICIT_SYNC");
    if (wish != nullptr && strcmp(wish, "0") == 0)
        return;
    const int drm_fd = wlr_renderer_get_drm_fd(server.renderer);
    uint64_t timelines = 0;
    if (drm_fd < 0 || drmGetCap(drm_fd, DRM_CAP_SYNCOBJ_TIMELINE, &timelines) != 0 || timelines == 0)
        return;
    wlr_linux_drm_syncobj_manager_v1_create(server.display, 1, drm_fd);
    wlr_log(WLR_INFO, "explicit sync (drm-syncobj) advertised "
                      "(on by default; VANTORE_EXPLICIT_SYNC=0 to disable)");
}

void globals_create_presentation(vantore_server &server)
{
    if (!g_presentation_time)
        return;
    wlr_presentation_create(server.display, server.backend, presentation_version);
    wlr_log(WLR_INFO, "presentation-time advertised (presentation_time=true)");
}

bool globals_create_xdg_shell(vantore_server &server)
{
    server.xdg_shell = wlr_xdg_shell_create(server.display, xdg_shell_version);
    if (server.xdg_shell == nullptr)
        return false;
    server.xdg_shell->ping_timeout = ping_timeout_ms;
    auto &events = server.xdg_shell->events;
    listen_until_end<&vantore_server::new_xdg_toplevel, server_new_xdg_toplevel>(server, events.new_toplevel);
    listen_until_end<&vantore_server::new_xdg_popup, server_new_xdg_popup>(server, events.new_popup);
    return true;
}

void globals_create_decoration(vantore_server &server)
{
    if (auto *manager = wlr_xdg_decoration_manager_v1_create(server.display))
        listen_until_end<&vantore_server::new_decoration, server_new_decoration>(
            server, manager->events.new_toplevel_decoration);
    else
        log_missing("decoration manager", "windows draw their own title bars");
}

void globals_create_layer_shell(vantore_server &server)
{
    server.layer_shell = wlr_layer_shell_v1_create(server.display, layer_shell_version);
    if (server.layer_shell != nullptr)
        listen_until_end<&vantore_server::new_layer_surface, server_new_layer_surface>(
            server, server.layer_shell->events.new_surface);
    else
        log_missing("layer shell", "panels and wallpapers can't be shown");
}

bool globals_create_seat(vantore_server &server)
{
    server.seat = wlr_seat_create(server.display, "seat0");
    if (server.seat == nullptr)
        return false;
    // A virtual pointer, which is no device of the backend, must reach clients too.
    wlr_seat_set_capabilities(server.seat, WL_SEAT_CAPABILITY_POINTER);
    listen_until_end<&vantore_server::new_input, server_new_input>(server, server.backend->events.new_input);
    auto &events = server.seat->events;
    listen_until_end<&vantore_server::request_cursor, seat_request_cursor>(server, events.request_set_cursor);
    listen_until_end<&vantore_server::request_set_selection, seat_request_set_selection>(
        server, events.request_set_selection);
    listen_until_end<&vantore_server::request_set_primary_selection, seat_request_set_primary_selection>(
        server, events.request_set_primary_selection);
    listen_until_end<&vantore_server::request_start_drag, seat_request_start_drag>(server,
                                                                                   events.request_start_drag);
    listen_until_end<&vantore_server::start_drag, seat_start_drag>(server, events.start_drag);
    return true;
}

static void create_pointer_constraints(vantore_server &server)
{
    server.pointer_constraints = wlr_pointer_constraints_v1_create(server.display);
    if (server.pointer_constraints != nullptr)
        listen_until_end<&vantore_server::new_constraint, server_new_constraint>(
            server, server.pointer_constraints->events.new_constraint);
    else
        log_missing("pointer constraints", "games can't hold the pointer");
}

void globals_create_last(vantore_server &server)
{
    wl_display *display = server.display;
    wlr_screencopy_manager_v1_create(display);
    wlr_export_dmabuf_manager_v1_create(display);
    wlr_data_control_manager_v1_create(display);
    if (wlr_gamma_control_manager_v1 *gamma = wlr_gamma_control_manager_v1_create(display))
        listen_until_end<&vantore_server::gamma_set, server_gamma_set>(server, gamma->events.set_gamma);
    else
        log_missing("gamma control", "night light is unavailable");
    wlr_xdg_output_manager_v1_create(display, server.output_layout);
    server.relative_pointer_mgr = wlr_relative_pointer_manager_v1_create(display);
    create_pointer_constraints(server);
}
