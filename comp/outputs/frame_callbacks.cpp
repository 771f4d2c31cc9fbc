#include "frame_callbacks.hpp"

#include "../clock.hpp"
#include "../records.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "lookup.hpp"
#include "output.hpp"

// Only a private field of the scene tells which part of a buffer is not covered.
static bool shows_part_of(const vantore_output &o, const wlr_scene_buffer &buffer)
{
    const wlr_box at = output_layout_box(o);
    const pixman_box32_t area{.x1 = at.x, .y1 = at.y, .x2 = at.x + at.width, .y2 = at.y + at.height};
    return pixman_region32_contains_rectangle(&buffer.node.WLR_PRIVATE.visible, &area) != PIXMAN_REGION_OUT;
}

// A surface that leaves its last output keeps it as a suspended one.
static bool is_on_no_output(const wlr_surface &surface)
{
    for (const auto &entry : each<&wlr_surface_output::link>(surface.current_outputs))
        if (!entry.WLR_PRIVATE.suspended)
            return false;
    return true;
}

// Returns the buffer's surface if the scene leaves it out although part of it shows on this output, else
// null.
static wlr_surface *surface_left_out(wlr_scene_buffer &buffer, const vantore_output &o)
{
    const wlr_scene_surface *scene_surface = wlr_scene_surface_try_from_buffer(&buffer);
    if (scene_surface == nullptr || !is_on_no_output(*scene_surface->surface))
        return nullptr;
    return shows_part_of(o, buffer) ? scene_surface->surface : nullptr;
}

struct painted_frame {
    const vantore_output &output;
    timespec when;
};

static void tell_if_left_out(wlr_scene_buffer *buffer, int, int, void *data)
{
    const auto &frame = *static_cast<painted_frame *>(data);
    if (wlr_surface *surface = surface_left_out(*buffer, frame.output))
        wlr_surface_send_frame_done(surface, &frame.when);
}

// Returns null if the output mirrors no window.
static wlr_surface *mirrored_surface(const vantore_output &o)
{
    if (!o.mirror.mir_on)
        return nullptr;
    const vantore_toplevel *t = toplevel_by_id(*o.server, o.mirror.source.mir_src_wid);
    return t != nullptr ? tl_surface(*t) : nullptr;
}

static void tell_if_on_no_output(wlr_surface *surface, int, int, void *when)
{
    if (is_on_no_output(*surface))
        wlr_surface_send_frame_done(surface, static_cast<timespec *>(when));
}

void send_frame_callbacks(vantore_output &o)
{
    painted_frame frame{.output = o, .when = mono_timespec()};
    wlr_scene_output_send_frame_done(o.scene_output, &frame.when);
    wlr_scene_output_for_each_buffer(o.scene_output, tell_if_left_out, &frame);
    if (wlr_surface *mirrored = mirrored_surface(o)) // its own workspace may be hidden
        wlr_surface_for_each_surface(mirrored, tell_if_on_no_output, &frame.when);
}

// Lives as long as the surface, whatever its role.
struct followed_surface {
    vantore_server *server = nullptr;
    wlr_surface *surface = nullptr;
    listener commit, destroy;
};

static bool waits_for_no_output(const wlr_surface &surface)
{
    return surface.mapped && wl_list_empty(&surface.current.frame_callback_list) == 0 &&
           is_on_no_output(surface);
}

struct search {
    const vantore_output &output;
    const wlr_surface *surface;
    bool found = false;
};

static void look_for_surface(wlr_scene_buffer *buffer, int, int, void *data)
{
    auto &wanted = *static_cast<search *>(data);
    if (surface_left_out(*buffer, wanted.output) == wanted.surface)
        wanted.found = true;
}

static void surface_commit(followed_surface &followed)
{
    if (!waits_for_no_output(*followed.surface))
        return;
    for (auto &o : each<&vantore_output::link>(followed.server->outputs)) {
        search wanted{.output = o, .surface = followed.surface};
        wlr_scene_output_for_each_buffer(o.scene_output, look_for_surface, &wanted);
        if (wanted.found || mirrored_surface(o) == wlr_surface_get_root_surface(followed.surface))
            wlr_output_schedule_frame(o.wlr_output);
    }
}

static void surface_destroy(followed_surface &followed)
{
    delete &followed;
}

void frame_callbacks_follow(vantore_server &server, wlr_surface *surface)
{
    auto *followed = new followed_surface{};
    followed->server = &server;
    followed->surface = surface;
    listen<&followed_surface::commit, surface_commit>(*followed, surface->events.commit);
    listen<&followed_surface::destroy, surface_destroy>(*followed, surface->events.destroy);
}
