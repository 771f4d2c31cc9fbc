#include "slide.hpp"

#include "../clock.hpp"
#include "../config/settings.hpp"
#include "../input/resting_pointer.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../workspaces/workspace.hpp"
#include "animation.hpp"
#include "effects.hpp"
#include "motion.hpp"

#include <utility>

static void place(vantore_server &server, const slide_offsets &offsets)
{
    wlr_scene_node_set_position(&server.sliding.from->tree->node, offsets.from, 0);
    wlr_scene_node_set_position(&server.sliding.to->tree->node, offsets.to, 0);
    pointer_look_again(server);
}

static bool may_slide(const vantore_server &server)
{
    return g_animations && fx_on() && !server.locked && wl_list_length(&server.outputs) == 1;
}

void slide_start(vantore_output &o, vantore_workspace &from, vantore_workspace &to)
{
    vantore_server &server = *o.server;
    const wlr_box box = output_layout_box(o);
    if (!may_slide(server) || box.width <= 0)
        return;
    slide_end(server);
    server.sliding = {.active = true,
                      .from = &from,
                      .to = &to,
                      .t0 = mono_ms(),
                      .dir = to.num > from.num ? 1 : -1,
                      .width = box.width};
    wlr_scene_node_set_enabled(&from.tree->node, true);
    place(server, slide_at(0, server.sliding.dir, box.width));
    anim_kick(server);
}

void slide_end(vantore_server &server)
{
    if (!server.sliding.active)
        return;
    place(server, {.from = 0, .to = 0});
    const vantore_sliding ended = std::exchange(server.sliding, {});
    for (vantore_workspace *ws : {ended.from, ended.to})
        wlr_scene_node_set_enabled(&ws->tree->node, ws->output != nullptr);
}

bool slide_advance(vantore_server &server, int64_t now)
{
    const vantore_sliding &s = server.sliding;
    if (s.active && now - s.t0 >= slide_ms)
        slide_end(server);
    if (s.active)
        place(server, slide_at(now - s.t0, s.dir, s.width));
    return s.active;
}
