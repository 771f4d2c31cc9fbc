#include "overview_zoom.hpp"

#include "../clock.hpp"
#include "../presentation/animation.hpp"
#include "../presentation/motion.hpp"
#include "../records.hpp"
#include "../server.hpp"
#include "overview.hpp"
#include "overview_boxes.hpp"
#include "overview_display.hpp"

static void fade(const vantore_overviewing &overview, float opacity)
{
    for (wlr_scene_node &node : each<&wlr_scene_node::link>(overview.tree->children))
        if (node.type == WLR_SCENE_NODE_BUFFER)
            wlr_scene_buffer_set_opacity(wlr_scene_buffer_from_node(&node), opacity * overview.opacity);
}

// Shows the pictures on their way from one of their boxes to the other.
static void show(const vantore_overviewing &overview, const zoom &z, wlr_box overview_item::*from,
                 wlr_box overview_item::*to)
{
    fade(overview, z.opacity);
    for (const overview_item &item : overview.items) {
        if (item.node == nullptr || item.start.width <= 0 || item.start.height <= 0)
            continue;
        const wlr_box box = overview_between(item.*from, item.*to, z.part);
        wlr_scene_buffer_set_dest_size(item.node, box.width, box.height);
        wlr_scene_node_set_position(&item.node->node, box.x, box.y);
    }
}

static void show_opening(const vantore_overviewing &overview, int64_t elapsed_ms)
{
    show(overview, overview_opening_at(elapsed_ms), &overview_item::start, &overview_item::rect);
}

static void show_closing(const vantore_overviewing &overview, int64_t elapsed_ms)
{
    show(overview, overview_closing_at(elapsed_ms), &overview_item::rect, &overview_item::start);
}

void overview_zoom_in(vantore_server &server)
{
    server.overview.anim_t0 = mono_ms();
    show_opening(server.overview, 0);
    anim_kick(server);
}

void overview_zoom_finish(vantore_server &server)
{
    vantore_overviewing &overview = server.overview;
    if (overview.anim_t0 == 0)
        return;
    overview.anim_t0 = 0;
    show_opening(overview, overview_zoom_ms);
}

void overview_zoom_out(vantore_server &server)
{
    vantore_overviewing &overview = server.overview;
    overview_free_input(server);
    overview.closing = true;
    overview.close_t0 = mono_ms();
    overview.anim_t0 = 0;
    overview.sel = overview.press = -1;
    overview.drag = false;
    overview_ring_show(overview, nullptr, 0);
    anim_kick(server);
}

bool overview_zoom_advance(vantore_server &server, int64_t now)
{
    const vantore_overviewing &overview = server.overview;
    if (overview.anim_t0 != 0 && now - overview.anim_t0 >= overview_zoom_ms)
        overview_zoom_finish(server);
    else if (overview.anim_t0 != 0)
        show_opening(overview, now - overview.anim_t0);
    else if (overview.closing && now - overview.close_t0 >= overview_zoom_ms)
        overview_end(server);
    else if (overview.closing)
        show_closing(overview, now - overview.close_t0);
    return overview.anim_t0 != 0 || overview.closing;
}
