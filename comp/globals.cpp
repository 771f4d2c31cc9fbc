#include "globals.hpp"

#include "config/settings.hpp"
#include "input/seat_requests.hpp"
#include "outputs/gamma.hpp"
#include "server.hpp"
#include "windows/xdg.hpp"

#include <cstdlib>
#include <cstring>
#include <xf86drm.h>

static constexpr uint32_t compositor_version = 5;
static constexpr uint32_t xdg_shell_version = 3;
static constexpr uint32_t presentation_version = 2;
static constexpr uint32_t ping_timeout_ms = 3000;

bool globals_create_first(vantore_server &server)
{
    wl_display *display = server.display;
    server.compositor = wlr_compositor_create(display, compositor_version, server.renderer);
    if (server.compositor == nullptr)
        return false;
    wlr_subcompositor_create(display);
    wlr_data_device_manager_create(display);
    wlr_primary_selection_v1_device_manager_create(display);
    wlr_viewporter_create(display);
    wlr_fractional_scale_manager_v1_create(display, 1);
    wlr_alpha_modifier_v1_create(display);
    wlr_single_pixel_buffer_manager_v1_create(display);
    wlr_security_context_manager_v1_create(display);
    if (wlr_xdg_foreign_registry *registry = wlr_xdg_foreign_registry_create(display)) {
        wlr_xdg_foreign_v1_create(display, registry);
        wlr_xdg_foreign_v2_create(display, registry);
    }
    wlr_tearing_control_manager_v1_create(display, 1);
    wlr_content_type_manager_v1_create(display, 1);
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
    listen<&vantore_server::new_xdg_toplevel, server_new_xdg_toplevel>(server, events.new_toplevel);
    listen<&vantore_server::new_xdg_popup, server_new_xdg_popup>(server, events.new_popup);
    return true;
}

bool globals_create_seat(vantore_server &server)
{
    server.seat = wlr_seat_create(server.display, "seat0");
    if (server.seat == nullptr)
        return false;
    auto &events = server.seat->events;
    listen<&vantore_server::request_set_selection, seat_request_set_selection>(server,
                                                                               events.request_set_selection);
    listen<&vantore_server::request_set_primary_selection, seat_request_set_primary_selection>(
        server, events.request_set_primary_selection);
    listen<&vantore_server::request_start_drag, seat_request_start_drag>(server, events.request_start_drag);
    listen<&vantore_server::start_drag, seat_start_drag>(server, events.start_drag);
    return true;
}

void globals_create_last(vantore_server &server)
{
    wl_display *display = server.display;
    wlr_screencopy_manager_v1_create(display);
    wlr_export_dmabuf_manager_v1_create(display);
    wlr_data_control_manager_v1_create(display);
    if (wlr_gamma_control_manager_v1 *gamma = wlr_gamma_control_manager_v1_create(display))
        listen<&vantore_server::gamma_set, server_gamma_set>(server, gamma->events.set_gamma);
    else
        wlr_log(WLR_ERROR, "vantore-comp: no gamma control, night light is unavailable");
    wlr_xdg_output_manager_v1_create(display, server.output_layout);
}

void globals_forget(vantore_server &server)
{
    unlisten(server.new_xdg_toplevel);
    unlisten(server.new_xdg_popup);
    unlisten(server.request_set_selection);
    unlisten(server.request_set_primary_selection);
    unlisten(server.request_start_drag);
    unlisten(server.start_drag);
    unlisten(server.gamma_set);
}
