#include "wallpaper.hpp"

#include "../cairo_buffer.hpp"
#include "../config/settings.hpp"
#include "../platform.hpp"
#include "../presentation/overlay.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "lookup.hpp"
#include "output.hpp"
#include "wallpaper_work.hpp"

#include <algorithm>
#include <span>
#include <sys/stat.h>

static constexpr int first_tick_ms = 5000;
static constexpr int64_t shortest_wait_s = 5;
static constexpr int64_t longest_wait_s = 3600;

// Returns null where the output has no settings of its own.
static const wp_override *override_of(const vantore_output &o)
{
    const auto known = std::span{g_wp_overrides}.first(size_t(g_wp_override_count));
    const auto found = std::ranges::find_if(
        known, [&](const wp_override &own) { return text_equals(own.name, output_name(o.wlr_output)); });
    return found != known.end() ? &*found : nullptr;
}

static std::string wallpaper_src_for(const vantore_output &o)
{
    const wp_override *own = override_of(o);
    return own != nullptr && own->path[0] != '\0' ? own->path.data() : g_wallpaper.data();
}

static wp_mode wp_mode_for(const vantore_output &o)
{
    const wp_override *own = override_of(o);
    return own != nullptr && own->mode >= 0 ? wp_mode(own->mode) : g_wp_mode;
}

static int wp_interval_for(const vantore_output &o)
{
    const wp_override *own = override_of(o);
    return own != nullptr && own->interval > 0 ? own->interval : g_wp_interval;
}

static bool is_folder(const std::string &path)
{
    struct stat status{};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

void wallpaper_destroy(vantore_output &o)
{
    if (o.wallpaper.node != nullptr)
        wlr_scene_node_destroy(&o.wallpaper.node->node);
    o.wallpaper.node = nullptr;
}

void wallpaper_show(vantore_output &o, bool shown)
{
    if (o.wallpaper.node != nullptr)
        wlr_scene_node_set_enabled(&o.wallpaper.node->node, shown);
}

static void wp_dispatch_load(vantore_output &o)
{
    const vantore_wallpaper &shown = o.wallpaper;
    const auto &queue = o.server->wallpapers.queue;
    if (queue == nullptr)
        return;
    auto job = std::make_unique<wp_job>();
    job->output = output_name(o.wlr_output);
    job->gen = shown.gen;
    job->path = shown.path;
    job->width = shown.width;
    job->height = shown.height;
    job->mode = shown.mode;
    wp_queue_submit(queue, std::move(job));
}

// A slide show keeps its picture until it moves on.
static std::string choose_path(vantore_wallpaper &shown, const std::string &source, bool repick)
{
    if (!is_folder(source))
        return source;
    if (!repick && !shown.path.empty() && shown.source == source)
        return shown.path;
    return pick_random_image(shown.recent, source, shown.path);
}

// Notes what the picture has to fit. Returns true if that has changed.
static bool note_fit(vantore_wallpaper &shown, const wlr_box &box, wp_mode mode)
{
    const bool fits = shown.width == box.width && shown.height == box.height && shown.mode == mode;
    shown.width = box.width;
    shown.height = box.height;
    shown.mode = mode;
    return !fits;
}

void set_wallpaper(vantore_output &o, bool force, bool repick)
{
    if (o.mirror.mir_on)
        return;
    vantore_wallpaper &shown = o.wallpaper;
    const wlr_box box = output_layout_box(o);
    if (shown.node != nullptr)
        wlr_scene_node_set_position(&shown.node->node, box.x, box.y);
    const std::string source = wallpaper_src_for(o);
    const bool changed = note_fit(shown, box, wp_mode_for(o)) || force;
    if (!changed && shown.source == source)
        return;
    const std::string path = choose_path(shown, source, repick);
    shown.source = source;
    if (!changed && shown.path == path)
        return;
    shown.path = path;
    shown.gen = ++o.server->wallpapers.last_gen; // results that are on their way are stale now
    if (path.empty() || wlr_box_empty(&box))
        wallpaper_destroy(o);
    else
        wp_dispatch_load(o);
}

// The node goes directly above the backdrop, below what clients show in the background.
static wlr_scene_buffer *create_node(wlr_scene_tree *layer)
{
    wlr_scene_node *backdrop = each<&wlr_scene_node::link>(layer->children).first();
    wlr_scene_buffer *node = wlr_scene_buffer_create(layer, nullptr);
    if (node == nullptr)
        return nullptr;
    wlr_scene_node_place_above(&node->node, backdrop);
    node->point_accepts_input = takes_no_input;
    return node;
}

// The picture is opaque, so the scene need not paint the backdrop below it.
static void show_picture(vantore_output &o, picture shown)
{
    wlr_scene_buffer *node = create_node(o.server->layers[ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND]);
    if (node == nullptr)
        return;
    const wlr_box box = output_layout_box(o);
    pixman_region32_t opaque;
    pixman_region32_init_rect(&opaque, 0, 0, unsigned(cairo_image_surface_get_width(shown.get())),
                              unsigned(cairo_image_surface_get_height(shown.get())));
    wlr_scene_buffer_set_opaque_region(node, &opaque);
    pixman_region32_fini(&opaque);
    wlr_scene_node_set_position(&node->node, box.x, box.y);
    scene_buffer_set_cairo(node, cairo_buffer_from_surface(shown.release()));
    wallpaper_destroy(o);
    o.wallpaper.node = node;
    wallpaper_show(o, !o.mirror.mir_on);
}

// After a failure the old picture stays.
static int wp_done(int fd, uint32_t, void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    while (const auto job = wp_queue_take(fd)) {
        vantore_output *o = output_by_name(server, job->output);
        if (o != nullptr && o->wallpaper.gen == job->gen && job->result != nullptr)
            show_picture(*o, std::move(job->result));
    }
    return 0;
}

// Returns in how many seconds the output's slide show goes on. Moves it on if it is due. A clock that was put
// back must not stop it.
static int64_t advance_slide_show(vantore_output &o, int64_t now)
{
    const int64_t interval = wp_interval_for(o);
    int64_t &next = o.wallpaper.next_s;
    if (next == 0 || next > now + interval)
        next = now + interval;
    if (now >= next) {
        set_wallpaper(o, true, true);
        next = now + interval;
    }
    return next - now;
}

static int wallpaper_tick(void *data)
{
    const auto &server = *static_cast<const vantore_server *>(data);
    const int64_t now = g_platform.wall_clock_s();
    int64_t wait = longest_wait_s;
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (is_folder(wallpaper_src_for(o)))
            wait = std::min(wait, advance_slide_show(o, now));
    timer_arm(server.wallpapers.timer, int(std::max(wait, shortest_wait_s)) * 1000);
    return 0;
}

void wallpapers_reload(vantore_server &server)
{
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        o.wallpaper.next_s = 0;
        set_wallpaper(o, false, false);
    }
    timer_arm(server.wallpapers.timer, first_tick_ms);
}

void wallpapers_begin(vantore_server &server)
{
    vantore_wallpapers &all = server.wallpapers;
    all.queue = wp_queue_create(all.results);
    if (all.queue != nullptr)
        all.done.reset(wl_event_loop_add_fd(wl_display_get_event_loop(server.display), all.results.fd,
                                            WL_EVENT_READABLE, wp_done, &server));
    if (all.done == nullptr) { // nobody would take the pictures
        wlr_log(WLR_ERROR, "vantore-comp: no pipe for the wallpapers, which stay away");
        all.queue.reset();
    }
    all.timer = timer_create(server.display, wallpaper_tick, &server);
    timer_arm(all.timer, first_tick_ms);
}

void wallpapers_end(vantore_server &server)
{
    if (server.wallpapers.queue != nullptr)
        wp_queue_end(*server.wallpapers.queue, server.wallpapers.results.fd);
    server.wallpapers = {};
}
