// The least that a compositor on the same libraries can do: windows in a scene, one workspace, no policy. No
// compositor on these libraries can avoid its cost, so the benchmarks compare ours with it.

#include "records.hpp"
#include "wlr.hpp"

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace
{

struct bare_server {
    wl_display *display = nullptr;
    wlr_backend *backend = nullptr;
    wlr_renderer *renderer = nullptr;
    wlr_allocator *allocator = nullptr;
    wlr_scene *scene = nullptr;
    wlr_output_layout *layout = nullptr;
    wlr_scene_output_layout *scene_layout = nullptr;
    wlr_seat *seat = nullptr;
    listener new_output, new_toplevel;
};

struct bare_output {
    bare_server *server = nullptr;
    struct wlr_output *wlr_output = nullptr;
    wlr_scene_output *scene_output = nullptr;
    listener frame, destroy;
};

struct bare_window {
    bare_server *server = nullptr;
    wlr_xdg_toplevel *xdg = nullptr;
    wlr_scene_tree *tree = nullptr;
    listener map, commit, destroy;
};

void fill_output(bare_window &w)
{
    wlr_box screen{};
    wlr_output_layout_get_box(w.server->layout, nullptr, &screen);
    wlr_xdg_toplevel_set_size(w.xdg, screen.width, screen.height);
    wlr_xdg_toplevel_set_fullscreen(w.xdg, true);
}

void window_commit(bare_window &w)
{
    if (!w.xdg->base->initial_commit)
        return;
    if (w.xdg->requested.fullscreen)
        fill_output(w);
    else
        wlr_xdg_toplevel_set_size(w.xdg, 0, 0);
}

void window_map(bare_window &w)
{
    const int at = w.xdg->requested.fullscreen ? 0 : 100;
    wlr_scene_node_set_position(&w.tree->node, at, at);
    wlr_scene_node_raise_to_top(&w.tree->node);
    wlr_surface *previous = w.server->seat->keyboard_state.focused_surface;
    wlr_xdg_toplevel *old = previous != nullptr ? wlr_xdg_toplevel_try_from_wlr_surface(previous) : nullptr;
    if (old != nullptr && old->base->initialized)
        wlr_xdg_toplevel_set_activated(old, false);
    wlr_xdg_toplevel_set_activated(w.xdg, true);
    wlr_seat_keyboard_notify_enter(w.server->seat, w.xdg->base->surface, nullptr, 0, nullptr);
}

void window_destroy(bare_window &w)
{
    delete &w;
}

void new_toplevel(bare_server &server, wlr_xdg_toplevel *xdg)
{
    auto *w = new bare_window{};
    w->server = &server;
    w->xdg = xdg;
    w->tree = wlr_scene_xdg_surface_create(&server.scene->tree, xdg->base);
    listen<&bare_window::map, window_map>(*w, xdg->base->surface->events.map);
    listen<&bare_window::commit, window_commit>(*w, xdg->base->surface->events.commit);
    listen<&bare_window::destroy, window_destroy>(*w, xdg->events.destroy);
}

void output_frame(bare_output &o)
{
    wlr_scene_output_commit(o.scene_output, nullptr);
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    wlr_scene_output_send_frame_done(o.scene_output, &now);
}

void output_destroy(bare_output &o)
{
    delete &o;
}

void new_output(bare_server &server, struct wlr_output *wlr_output)
{
    wlr_output_init_render(wlr_output, server.allocator, server.renderer);
    wlr_output_state state{};
    wlr_output_state_init(&state);
    wlr_output_state_set_enabled(&state, true);
    wlr_output_commit_state(wlr_output, &state);
    wlr_output_state_finish(&state);
    auto *o = new bare_output{};
    o->server = &server;
    o->wlr_output = wlr_output;
    listen<&bare_output::frame, output_frame>(*o, wlr_output->events.frame);
    listen<&bare_output::destroy, output_destroy>(*o, wlr_output->events.destroy);
    wlr_output_layout_output *place = wlr_output_layout_add_auto(server.layout, wlr_output);
    o->scene_output = wlr_scene_output_create(server.scene, wlr_output);
    wlr_scene_output_layout_add_output(server.scene_layout, place, o->scene_output);
}

} // namespace

int main()
{
    static bare_server server;
    static wl_display *display;
    server.display = display = wl_display_create();
    signal(SIGTERM, [](int) { wl_display_terminate(display); });
    server.backend = wlr_backend_autocreate(wl_display_get_event_loop(display), nullptr);
    server.renderer = fx_renderer_create(server.backend);
    wlr_renderer_init_wl_display(server.renderer, display);
    server.allocator = wlr_allocator_autocreate(server.backend, server.renderer);
    wlr_compositor_create(display, 5, server.renderer);
    wlr_subcompositor_create(display);
    server.layout = wlr_output_layout_create(display);
    server.scene = wlr_scene_create();
    server.scene_layout = wlr_scene_attach_output_layout(server.scene, server.layout);
    server.seat = wlr_seat_create(display, "seat0");
    constexpr float backdrop[]{0.06F, 0.07F, 0.10F, 1.0F};
    wlr_scene_rect_create(&server.scene->tree, 16384, 16384, backdrop);
    wlr_xdg_shell *shell = wlr_xdg_shell_create(display, 3);
    listen<&bare_server::new_output, new_output>(server, server.backend->events.new_output);
    listen<&bare_server::new_toplevel, new_toplevel>(server, shell->events.new_toplevel);
    const char *socket = wl_display_add_socket_auto(display);
    if (socket == nullptr || !wlr_backend_start(server.backend))
        return 1;
    fprintf(stderr, "running — WAYLAND_DISPLAY=%s \n", socket);
    wl_display_run(display);
    _Exit(0); // what it leaves behind is not measured
}
