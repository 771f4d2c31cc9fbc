// A layer surface's record lives from the client's request to the end of its role. The library asserts that
// no configure is sent to a surface before its first commit or after it was unmapped.

#include "layer.hpp"

#include "../input/overview.hpp"
#include "../input/resting_pointer.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../visibility.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/focus.hpp"
#include "layer_keyboard.hpp"
#include "layer_placement.hpp"
#include "maximized.hpp"
#include "placement.hpp"
#include "popup.hpp"

#include <algorithm>
#include <cstring>

static layer_wish wish_of(const wlr_layer_surface_v1_state &state)
{
    return {
        .width = int(state.desired_width),
        .height = int(state.desired_height),
        .anchor = state.anchor,
        .exclusive_zone = state.exclusive_zone,
        .top = state.margin.top,
        .right = state.margin.right,
        .bottom = state.margin.bottom,
        .left = state.margin.left,
    };
}

static int margin_at(const layer_wish &wish, wlr_edges edge)
{
    switch (edge) {
    case WLR_EDGE_TOP:
        return wish.top;
    case WLR_EDGE_BOTTOM:
        return wish.bottom;
    case WLR_EDGE_LEFT:
        return wish.left;
    case WLR_EDGE_RIGHT:
        return wish.right;
    case WLR_EDGE_NONE:
        return 0;
    }
    return 0;
}

static void tell_size(vantore_layer_surface &l, const wlr_box &box)
{
    if (box.width == l.told_width && box.height == l.told_height)
        return;
    l.told_width = box.width;
    l.told_height = box.height;
    wlr_layer_surface_v1_configure(l.layer_surface, uint32_t(box.width), uint32_t(box.height));
}

static wlr_scene_tree *layer_tree(vantore_server &server, uint32_t layer)
{
    return server.layers[std::min<size_t>(layer, server.layers.size() - 1)];
}

// The popups of wallpapers and desktop icons hang in the top layer, so that windows don't hide them.
static void place_popups(vantore_layer_surface &l)
{
    if (l.popups == nullptr)
        return;
    const uint32_t layer = l.layer_surface->current.layer;
    if (layer >= ZWLR_LAYER_SHELL_V1_LAYER_TOP) {
        wlr_scene_node_reparent(&l.popups->node, l.scene->tree);
        wlr_scene_node_set_position(&l.popups->node, 0, 0);
    } else {
        wlr_scene_node_reparent(&l.popups->node, layer_tree(*l.server, ZWLR_LAYER_SHELL_V1_LAYER_TOP));
        wlr_scene_node_set_position(&l.popups->node, l.scene->tree->node.x, l.scene->tree->node.y);
    }
}

// Shrinks `usable` by the surface's exclusive zone. A surface that is not mapped reserves nothing.
static void place_layer(vantore_layer_surface &l, const wlr_box &full, wlr_box &usable)
{
    wlr_layer_surface_v1 *surface = l.layer_surface;
    const layer_wish wish = wish_of(surface->current);
    const wlr_box box = layer_box(wish, full, usable);
    scene_node_move(*l.server, l.scene->tree->node, box.x, box.y);
    place_popups(l);
    tell_size(l, box);
    if (!surface->surface->mapped)
        return;
    const wlr_edges edge = wlr_layer_surface_v1_get_exclusive_edge(surface);
    usable = without_zone(usable, edge, wish.exclusive_zone, margin_at(wish, edge));
}

// Places the surfaces that reserve space first, so that the others fit into what is left. Skips `leaving`,
// which is being unmapped.
static wlr_box place_layers(vantore_server &server, const wlr_output *output, const wlr_box &full,
                            const vantore_layer_surface *leaving)
{
    wlr_box usable = full;
    for (const bool reserving : {true, false})
        for (auto &l : each<&vantore_layer_surface::link>(server.layer_surfaces))
            if (l.layer_surface->output == output && l.layer_surface->initialized && &l != leaving &&
                (l.layer_surface->current.exclusive_zone > 0) == reserving)
                place_layer(l, full, usable);
    return usable;
}

static void arrange_layers_without(vantore_server &server, wlr_output *output,
                                   const vantore_layer_surface *leaving)
{
    if (output == nullptr || !output->enabled)
        return;
    wlr_box full{};
    wlr_output_layout_get_box(server.output_layout, output, &full);
    const wlr_box usable = place_layers(server, output, full, leaving);
    vantore_output *o = output_of(server, output);
    if (o == nullptr || same_box(usable, o->usable))
        return;
    const maximized_windows maximized{server};
    o->usable = usable;
    arrange_workspace(o->current_ws);
    maximized.follow();
    overview_output_changed(server, *o);
}

void arrange_layers(vantore_server &server, wlr_output *output)
{
    arrange_layers_without(server, output, nullptr);
}

// Outputs that move take each other's former places, so all maximized windows are looked up first.
void arrange_all_layers(vantore_server &server)
{
    const maximized_windows maximized{server};
    for (auto &o : each<&vantore_output::link>(server.outputs))
        arrange_layers(server, o.wlr_output);
    maximized.follow();
}

void layer_surfaces_of_output_gone(vantore_server &server, const wlr_output *output)
{
    for (auto &l : each<&vantore_layer_surface::link>(server.layer_surfaces)) {
        if (l.layer_surface->output != output)
            continue;
        l.layer_surface->output = nullptr;
        wlr_layer_surface_v1_destroy(l.layer_surface); // deletes the record
    }
}

bool is_panel(const vantore_layer_surface &l)
{
    return l.layer_surface->current.layer == ZWLR_LAYER_SHELL_V1_LAYER_TOP &&
           strcmp(l.layer_surface->namespace_, "vantore-panel") == 0;
}

// Puts our panels above docks and everything else on the top layer.
static void raise_panels(vantore_server &server)
{
    for (auto &l : each<&vantore_layer_surface::link>(server.layer_surfaces))
        if (is_panel(l))
            wlr_scene_node_raise_to_top(&l.scene->tree->node);
}

static void layer_surface_map(vantore_layer_surface &l)
{
    if (l.layer_surface->current.layer == ZWLR_LAYER_SHELL_V1_LAYER_TOP)
        raise_panels(*l.server);
    arrange_layers(*l.server, l.layer_surface->output);
    visible_changed(*l.server);
    layer_take_keyboard_on_demand(l);
}

static void layer_surface_unmap(vantore_layer_surface &l)
{
    if (has_keyboard(*l.server, l.layer_surface->surface))
        focus_back(*l.server);
    arrange_layers_without(*l.server, l.layer_surface->output, &l);
}

static void change_layer(vantore_layer_surface &l)
{
    wlr_scene_node_reparent(&l.scene->tree->node, layer_tree(*l.server, l.layer_surface->current.layer));
    place_popups(l);
    raise_panels(*l.server);
    visible_changed(*l.server); // the surface may have become a panel or stopped being one
}

// A client that starts over or changes its requests may wait for a configure, even when its size stays the
// same.
static void layer_surface_commit(vantore_layer_surface &l)
{
    if (l.layer_surface->initial_commit || l.layer_surface->current.committed != 0)
        l.told_width = l.told_height = 0;
    if ((l.layer_surface->current.committed & WLR_LAYER_SURFACE_V1_STATE_LAYER) != 0)
        change_layer(l);
    arrange_layers(*l.server, l.layer_surface->output);
    if (l.layer_surface->surface->mapped && !l.server->locked)
        layer_update_keyboard(l);
}

static void handle_popups_destroy(vantore_layer_surface &l)
{
    unlisten(l.popups_destroy);
    l.popups = nullptr;
}

static void layer_surface_new_popup(vantore_layer_surface &l, wlr_xdg_popup *popup)
{
    if (l.popups == nullptr) {
        l.popups = wlr_scene_tree_create(l.scene->tree);
        if (l.popups == nullptr)
            return wl_resource_post_no_memory(popup->resource);
        l.popups->node.data = &l.tag;
        listen<&vantore_layer_surface::popups_destroy, handle_popups_destroy>(l,
                                                                              l.popups->node.events.destroy);
    }
    place_popups(l);
    popup_show(*l.server, *popup, l.popups);
}

// The scene has destroyed its own tree before this, and with it the popups of panels.
static void layer_surface_destroy(vantore_layer_surface &l)
{
    vantore_server &server = *l.server;
    wlr_output *output = l.layer_surface->output;
    l.layer_surface->data = nullptr; // a menu that goes looks for its panel here
    if (l.popups != nullptr)
        wlr_scene_node_destroy(&l.popups->node);
    delete &l;
    arrange_layers(server, output);
}

static void attach_listeners(vantore_layer_surface &l)
{
    auto &surface = l.layer_surface->surface->events;
    listen<&vantore_layer_surface::map, layer_surface_map>(l, surface.map);
    listen<&vantore_layer_surface::unmap, layer_surface_unmap>(l, surface.unmap);
    listen<&vantore_layer_surface::commit, layer_surface_commit>(l, surface.commit);
    listen<&vantore_layer_surface::new_popup, layer_surface_new_popup>(l, l.layer_surface->events.new_popup);
    listen<&vantore_layer_surface::destroy, layer_surface_destroy>(l, l.layer_surface->events.destroy);
}

// Returns the newest usual screen, or else the newest output. A client on one that is turned off would wait
// for its first configure, and nobody would see one on a mirror.
static wlr_output *newest_output(vantore_server &server)
{
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        if (is_usual_screen(o))
            return o.wlr_output;
    const vantore_output *o = each<&vantore_output::link>(server.outputs).first();
    return o != nullptr ? o->wlr_output : nullptr;
}

void server_new_layer_surface(vantore_server &server, wlr_layer_surface_v1 *layer_surface)
{
    if (layer_surface->output == nullptr)
        layer_surface->output = newest_output(server);
    if (layer_surface->output == nullptr) {
        wlr_layer_surface_v1_destroy(layer_surface);
        return;
    }
    const uint32_t layer = layer_surface->pending.layer;
    auto *scene = wlr_scene_layer_surface_v1_create(layer_tree(server, layer), layer_surface);
    if (scene == nullptr) {
        wl_resource_post_no_memory(layer_surface->resource);
        return;
    }
    auto *l = new vantore_layer_surface{};
    l->server = &server;
    l->layer_surface = layer_surface;
    l->scene = scene;
    layer_surface->data = l;
    scene->tree->node.data = &l->tag;
    attach_listeners(*l);
    wl_list_insert(&server.layer_surfaces, &l->link);
    wlr_log(WLR_INFO, "vantore-comp: layer surface '%s' on layer %d", layer_surface->namespace_, int(layer));
}
