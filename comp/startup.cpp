// The start runs the table from top to bottom, and the end runs it from bottom to top. Each step stands below
// everything that it needs. A few rows have only an end. Each stands above the objects that its own object
// has to outlive. Clients can connect once the socket is open, but nothing that they send is dispatched
// before the event loop runs.

#include "startup.hpp"

#include "broadcast.hpp"
#include "config/load.hpp"
#include "config/settings_apply.hpp"
#include "descriptors.hpp"
#include "globals.hpp"
#include "graphics.hpp"
#include "input/buttons.hpp"
#include "input/cursor_image.hpp"
#include "input/cursor_locate.hpp"
#include "input/keymap.hpp"
#include "input/modes.hpp"
#include "input/modifier_tap.hpp"
#include "input/pointer.hpp"
#include "input/resting_pointer.hpp"
#include "ipc/transport.hpp"
#include "log.hpp"
#include "memory_trim.hpp"
#include "outputs/displays.hpp"
#include "outputs/output.hpp"
#include "outputs/pacing.hpp"
#include "outputs/perf_mode.hpp"
#include "outputs/power.hpp"
#include "outputs/wallpaper.hpp"
#include "padded_allocator.hpp"
#include "presentation/animation.hpp"
#include "reload.hpp"
#include "sandbox_contexts.hpp"
#include "scene_graph.hpp"
#include "server.hpp"
#include "session/autostart.hpp"
#include "session/state_files.hpp"
#include "session_listeners.hpp"
#include "spawn.hpp"
#include "windows/fullscreen.hpp"
#include "windows/xwayland.hpp"
#include "workspaces/workspace.hpp"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <ranges>
#include <type_traits>

static wl_display *g_display; // for the signal handler
// wl_display_run forgets a termination that was requested before it began.
static volatile sig_atomic_t g_exit_requested;

// The bytes of events that may wait for a client that does not read. A mouse of 1000 Hz fills libwayland's
// default of 4096 bytes within a few hundredths of a second, and a client that is late would be disconnected.
static constexpr size_t client_buffer_size = 1024 * 1024;

static void handle_exit_signal(int)
{
    g_exit_requested = 1;
    wl_display_terminate(g_display);
}

// Logs an error if an object that everything needs could not be made. Returns `success`.
static bool made(bool success, const char *what)
{
    if (!success)
        wlr_log(WLR_ERROR, "vantore-comp: could not create the %s; the session can't start", what);
    return success;
}

static bool reset_single_instance_state(vantore_server &server)
{
    g_exit_requested = 0;
    g_dpms_off = false;
    g_dpms_inhibit = false;
    keymap_expire();
    memory_trim_reset();
    perf_mode_reset();
    settings_begin(server);
    return true;
}

static bool create_display(vantore_server &server)
{
    server.display = wl_display_create();
    g_display = server.display;
    if (!made(server.display != nullptr, "Wayland display"))
        return false;
    wl_display_set_default_max_buffer_size(server.display, client_buffer_size);
    globals_guard_requests(server);
    return true;
}

static void destroy_display(vantore_server &server)
{
    wl_display_destroy(server.display);
    g_display = nullptr;
}

// Blocks SIGHUP until the event loop handles it. The graphics driver starts its threads before then, and they
// inherit this mask. A thread that did not block the signal would receive it and end the process.
static void hold_hangups()
{
    sigset_t hangup;
    sigemptyset(&hangup);
    sigaddset(&hangup, SIGHUP);
    sigprocmask(SIG_BLOCK, &hangup, nullptr);
}

static bool install_signal_handlers(vantore_server &)
{
    signal(SIGINT, handle_exit_signal);
    signal(SIGTERM, handle_exit_signal);
    signal(SIGPIPE, SIG_IGN);
    hold_hangups();
    return true;
}

// The library destroys the backend when the login session ends. It destroys a part of it when a GPU is
// unbound or the compositor around a nested session ends. It then asserts that no listeners are left.
static void handle_backend_destroy(vantore_server &server)
{
    wlr_log(WLR_ERROR, "vantore-comp: the backend has gone, ending");
    for (listener *l :
         {&server.backend_destroy, &server.display_backend_destroy, &server.new_output, &server.new_input})
        unlisten(*l);
    server.backend = server.headless = nullptr;
    wl_display_terminate(server.display);
}

static void handle_display_backend_destroy(vantore_server &server)
{
    wlr_log(WLR_ERROR, "vantore-comp: the display backend has gone, ending");
    unlisten(server.display_backend_destroy);
    wl_display_terminate(server.display);
}

// Watches the part that has the displays: the first one that is not for input. Our headless part is added
// only later.
static void watch_display_backend(wlr_backend *part, void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    const bool found = has_any(server.display_backend_destroy.link);
    if (!found && !wlr_backend_is_libinput(part))
        listen<&vantore_server::display_backend_destroy, handle_display_backend_destroy>(
            server, part->events.destroy);
}

static bool watch_backend(vantore_server &server)
{
    listen<&vantore_server::backend_destroy, handle_backend_destroy>(server, server.backend->events.destroy);
    if (wlr_backend_is_multi(server.backend))
        wlr_multi_for_each_backend(server.backend, watch_display_backend, &server);
    return true;
}

static void destroy_backend(vantore_server &server)
{
    unlisten(server.backend_destroy);
    unlisten(server.display_backend_destroy);
    if (server.backend != nullptr)
        wlr_backend_destroy(server.backend);
}

static bool create_backend(vantore_server &server)
{
    server.backend = wlr_backend_autocreate(wl_display_get_event_loop(server.display), &server.session);
    if (server.backend == nullptr)
        wlr_log(WLR_ERROR, "vantore-comp: backend failed");
    return server.backend != nullptr && watch_backend(server);
}

static bool add_headless_backend(vantore_server &server)
{
    const bool multi = wlr_backend_is_multi(server.backend);
    if (!multi)
        wlr_log(WLR_INFO, "vantore-comp: no multi-backend — virtual outputs unavailable");
    wlr_backend *headless = wlr_headless_backend_create(wl_display_get_event_loop(server.display));
    if (headless != nullptr && multi && wlr_multi_backend_add(server.backend, headless))
        server.headless = headless; // the multi-backend owns it now
    else if (headless != nullptr)
        wlr_backend_destroy(headless);
    return true;
}

static void forget_session(vantore_server &server)
{
    unlisten(server.session_active);
    unlisten(server.session_destroy);
    server.session = nullptr;
}

// The seat daemon has hung up. Without it there are no displays and no devices.
static void handle_session_destroy(vantore_server &server)
{
    wlr_log(WLR_ERROR, "vantore-comp: the login session has gone, ending");
    forget_session(server);
    wl_display_terminate(server.display);
}

static bool watch_session(vantore_server &server)
{
    if (server.session == nullptr)
        return true;
    auto &events = server.session->events;
    listen<&vantore_server::session_active, handle_session_active>(server, events.active);
    listen<&vantore_server::session_destroy, handle_session_destroy>(server, events.destroy);
    return true;
}

static void destroy_renderer(vantore_server &server)
{
    wlr_renderer_destroy(server.renderer);
}

static bool create_allocator(vantore_server &server)
{
    wlr_renderer_init_wl_display(server.renderer, server.display);
    server.allocator = wlr_allocator_autocreate(server.backend, server.renderer);
    if (server.allocator != nullptr)
        notice_software_renderer(server);
    if (g_soft_render && server.allocator != nullptr)
        server.allocator = padded_allocator_create(server.allocator);
    return made(server.allocator != nullptr, "buffer allocator");
}

static void destroy_allocator(vantore_server &server)
{
    wlr_allocator_destroy(server.allocator);
}

// The measurements must be dropped before the renderer is destroyed.
static void drop_measurements(vantore_server &server)
{
    for (auto &o : each<&vantore_output::link>(server.outputs))
        pacing_drop_measurement(o);
}

static bool create_scene(vantore_server &server)
{
    server.output_layout = wlr_output_layout_create(server.display);
    server.scene = wlr_scene_create();
    if (!made(server.output_layout != nullptr, "output layout") || !made(server.scene != nullptr, "scene"))
        return false;
    server.scene_layout = wlr_scene_attach_output_layout(server.scene, server.output_layout);
    if (!made(server.scene_layout != nullptr, "scene layout"))
        return false;
    const blur_data blur = blur_data_get_default();
    wlr_scene_set_blur_data(server.scene, blur.num_passes, int(blur.radius), blur.noise, blur.brightness,
                            blur.contrast, blur.saturation);
    return true;
}

static void destroy_scene(vantore_server &server)
{
    wlr_scene_node_destroy(&server.scene->tree.node);
}

static bool build_scene_graph(vantore_server &server)
{
    return made(scene_graph_create(server), "scene graph");
}

static uint32_t cursor_size_from_environment()
{
    const char *text = getenv("XCURSOR_SIZE");
    return cursor_size_for(text != nullptr ? strtol(text, nullptr, 10) : 0);
}

static bool create_cursor(vantore_server &server)
{
    server.cursor = wlr_cursor_create();
    server.xcursor_mgr = wlr_xcursor_manager_create(nullptr, cursor_size_from_environment());
    if (!made(server.cursor != nullptr, "cursor") ||
        !made(server.xcursor_mgr != nullptr, "cursor theme manager"))
        return false;
    wlr_cursor_attach_output_layout(server.cursor, server.output_layout);
    auto &events = server.cursor->events;
    listen_until_end<&vantore_server::cursor_motion, server_cursor_motion>(server, events.motion);
    listen_until_end<&vantore_server::cursor_motion_absolute, server_cursor_motion_absolute>(
        server, events.motion_absolute);
    listen_until_end<&vantore_server::cursor_button, server_cursor_button>(server, events.button);
    listen_until_end<&vantore_server::cursor_axis, server_cursor_axis>(server, events.axis);
    listen_until_end<&vantore_server::cursor_frame, server_cursor_frame>(server, events.frame);
    return true;
}

static void destroy_cursor(vantore_server &server)
{
    cursor_locate_drop_steps(server);
    wlr_xcursor_manager_destroy(server.xcursor_mgr);
    wlr_cursor_destroy(server.cursor);
}

static bool watch_outputs(vantore_server &server)
{
    listen_until_end<&vantore_server::new_output, server_new_output>(server,
                                                                     server.backend->events.new_output);
    return true;
}

// The backend's outputs and input devices appear while it starts.
static bool open_socket_and_start_backend(vantore_server &server)
{
    if (!wayland_socket_open(server.socket, server.display)) {
        wlr_log(WLR_ERROR, "vantore-comp: no socket");
        return false;
    }
    if (!wlr_backend_start(server.backend)) {
        wlr_log(WLR_ERROR, "vantore-comp: backend start failed");
        return false;
    }
    displays_autoapply(server);
    startup_reprobe_arm(server);
    outputs_file_follow(server, VNT_EVT_OUTPUTS);
    setenv("WAYLAND_DISPLAY", server.socket.name.c_str(), 1);
    return true;
}

static void close_socket(vantore_server &server)
{
    startup_reprobe_cancel();
    wayland_socket_close(server.socket);
}

static void disconnect_clients(vantore_server &server)
{
    wl_display_destroy_clients(server.display);
}

static bool announce_session(vantore_server &)
{
    setenv("XDG_CURRENT_DESKTOP", "Vantore:GNOME", 0);
    setenv("GNOME_DESKTOP_SESSION_ID", "this-is-deprecated", 0);
    setenv("XDG_SESSION_TYPE", "wayland", 0);
    spawn_detached("command -v dbus-update-activation-environment >/dev/null && "
                   "dbus-update-activation-environment --systemd "
                   "WAYLAND_DISPLAY XDG_CURRENT_DESKTOP XDG_SESSION_TYPE");
    wlr_log(WLR_INFO,
            "vantore-comp M4c running — WAYLAND_DISPLAY=%s (Super+arrows focus, +Shift move, +Ctrl resize; "
            "Super+Space float, Super+T tile; Super+1..9 ws, +Shift move-to-ws; Super+Enter foot, Super+q "
            "close, Super+f/m fullscreen/max; Super+drag move, Super+right-drag resize; Super+Shift+Esc "
            "quit)",
            getenv("WAYLAND_DISPLAY"));
    return true;
}

// Makes a step of a function that can't fail.
template <auto Begin> static bool always(vantore_server &server)
{
    if constexpr (std::is_invocable_v<decltype(Begin), vantore_server &>)
        Begin(server);
    else
        Begin();
    return true;
}

template <auto End> static void plainly(vantore_server &)
{
    End();
}

static void publish_renderer(vantore_server &server)
{
    publish_render_node(wlr_renderer_get_drm_fd(server.renderer));
}

static void start_programs()
{
    spawn_autostart();
    spawn_xdg_autostart();
}

static void follow_outputs()
{
    broadcast_listen(outputs_file_follow);
}

static void stop_following_outputs()
{
    broadcast_unlisten(outputs_file_follow);
}

static constexpr startup_step steps[]{
    {"log", always<log_start>},
    {"single-instance state", reset_single_instance_state},
    {"descriptors", always<descriptors_raise_limit>},
    {"display", create_display, destroy_display},
    {"memory", nullptr, plainly<memory_trim_reset>},
    {"signals", install_signal_handlers},
    {"safe graphics", always<safe_graphics_detect>},
    {"workspaces, which outlive the outputs", nullptr, workspaces_destroy},
    {"outputs file", always<follow_outputs>, plainly<stop_following_outputs>},
    {"backend", create_backend, destroy_backend},
    {"headless backend", add_headless_backend},
    {"login session", watch_session, forget_session},
    {"renderer", renderer_create, destroy_renderer},
    {"render node", always<publish_renderer>},
    {"allocator", create_allocator, destroy_allocator},
    {"frame measurements", nullptr, drop_measurements},
    {"cursor, which outlives the scene", nullptr, destroy_cursor},
    {"listeners", nullptr, detach_session_listeners},
    {"first globals",
     [](vantore_server &server) { return made(globals_create_first(server), "compositor global"); },
     sandbox_contexts_end},
    {"explicit sync", always<globals_create_explicit_sync>},
    {"scene", create_scene, destroy_scene},
    {"scene graph", build_scene_graph},
    {"configuration", always<config_load>},
    {"reduced motion", always<export_reduced_motion>},
    {"presentation time", always<globals_create_presentation>},
    {"accent", always<scene_graph_apply_accent>},
    {"workspaces", [](vantore_server &server) { return made(workspaces_create(server), "workspaces"); }},
    {"workspaces' configuration", always<config_apply_workspaces>},
    {"hangup", always<config_reload_on_hangup>, config_ignore_hangup},
    {"wallpapers", always<wallpapers_begin>, wallpapers_end},
    {"animation timer", always<anim_start>, anim_stop},
    {"modifier timer", always<modifier_tap_start>, modifier_tap_stop},
    {"on-screen displays", nullptr, [](vantore_server &server) { server.on_screen = {}; }},
    {"frames of covered windows", nullptr, plainly<bg_frame_timer_drop>},
    {"resting pointer", nullptr, pointer_look_again_cancel},
    {"outputs", watch_outputs},
    {"xdg shell", [](vantore_server &server) { return made(globals_create_xdg_shell(server), "xdg shell"); }},
    {"XWayland", always<xwayland_create>, xwayland_destroy},
    {"decoration manager", always<globals_create_decoration>},
    {"layer shell", always<globals_create_layer_shell>},
    {"cursor", create_cursor},
    {"seat", [](vantore_server &server) { return made(globals_create_seat(server), "seat"); }},
    {"last globals", always<globals_create_last>},
    {"clients", nullptr, disconnect_clients},
    {"socket and backend", open_socket_and_start_backend, close_socket},
    {"announcement", announce_session},
    {"IPC", always<ipc_init>, ipc_finish},
    {"autostart", always<start_programs>},
};

std::span<const startup_step> startup_steps()
{
    return steps;
}

bool server_start(vantore_server &server)
{
    return std::ranges::all_of(
        steps, [&](const startup_step &step) { return step.begin == nullptr || step.begin(server); });
}

static void end_if_requested(void *)
{
    if (g_exit_requested != 0)
        wl_display_terminate(g_display);
}

void server_run(vantore_server &server)
{
    wl_event_loop_add_idle(wl_display_get_event_loop(server.display), end_if_requested, nullptr);
    wl_display_run(server.display);
}

void server_finish(vantore_server &server)
{
    // A second Ctrl-C would reach the handler while its display is being destroyed.
    signal(SIGINT, SIG_IGN);
    signal(SIGTERM, SIG_IGN);
    wlr_log(WLR_INFO, "vantore-comp: clean shutdown — tearing down");
    end_modes(server);
    server.shutting_down = true;
    for (const startup_step &step : std::views::reverse(steps))
        if (step.end != nullptr)
            step.end(server);
}
