#include "slide.hpp"

#include "../clock.hpp"
#include "../config/settings.hpp"
#include "../input/resting_pointer.hpp"
#include "../server.hpp"
#include "animation.hpp"
#include "effects.hpp"
#include "motion.hpp"

#include <utility>

static void place(vantore_server &server, const slide_offsets &offsets)
{
    wlr_scene_node_set_position(&server.sliding.from->node, offsets.from, 0);
    wlr_scene_node_set_position(&server.sliding.to->node, offsets.to, 0);
    pointer_look_again(server);
}

static bool may_slide(const vantore_server &server)
{
    return g_animations && fx_on() && server.anim_timer != nullptr && !server.locked &&
           !server.overview.active && wl_list_length(&server.outputs) == 1;
}

void slide_start(vantore_server &server, wlr_scene_tree *from, wlr_scene_tree *to, int dir, int width)
{
    if (!may_slide(server) || width <= 0)
        return;
    slide_end(server);
    server.sliding = {.from = from, .to = to, .t0 = mono_ms(), .dir = dir, .width = width};
    wlr_scene_node_set_enabled(&from->node, true);
    place(server, slide_at(0, dir, width));
    anim_kick(server);
}

// Hides the tree of the workspace that left, which slide_start has enabled. Every other node is as it should
// be already: a fullscreen window that was minimized during the slide must stay hidden.
void slide_end(vantore_server &server)
{
    if (server.sliding.from == nullptr)
        return;
    place(server, {.from = 0, .to = 0});
    const vantore_sliding ended = std::exchange(server.sliding, {});
    wlr_scene_node_set_enabled(&ended.from->node, false);
}

bool slide_advance(vantore_server &server, int64_t now)
{
    const vantore_sliding &s = server.sliding;
    if (s.from == nullptr)
        return false;
    if (now - s.t0 < slide_ms) {
        place(server, slide_at(now - s.t0, s.dir, s.width));
        return true;
    }
    slide_end(server);
    return false;
}
