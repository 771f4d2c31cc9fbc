#include "layer_keyboard.hpp"

#include "../config/settings.hpp"
#include "../input/constraints.hpp"
#include "../server.hpp"
#include "../workspaces/focus.hpp"
#include "layer.hpp"
#include "popup.hpp"

static bool wants_keyboard(const vantore_layer_surface &l)
{
    return l.layer_surface->current.keyboard_interactive != ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE;
}

static void take_keyboard(vantore_layer_surface &l)
{
    keyboard_enter(l.server->seat, l.layer_surface->surface);
    constrain_to_surface(*l.server, l.layer_surface->surface);
}

// Whether the surface takes the keyboard when it maps and by a click, and not with each commit.
static bool takes_keyboard_on_demand_only(const vantore_layer_surface &l)
{
    return g_protect_focus && l.layer_surface->current.keyboard_interactive ==
                                  ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_ON_DEMAND;
}

void layer_take_keyboard_on_demand(vantore_layer_surface &l)
{
    if (takes_keyboard_on_demand_only(l) && !l.server->locked)
        take_keyboard(l);
}

void layer_pressed(wlr_surface *surface)
{
    wlr_layer_surface_v1 *layer = wlr_layer_surface_v1_try_from_wlr_surface(surface);
    if (layer != nullptr && layer->data != nullptr)
        layer_take_keyboard_on_demand(*static_cast<vantore_layer_surface *>(layer->data));
}

// If a window took the keyboard from the surface, the surface takes it back with its next commit. A menu of a
// layer surface keeps the keyboard while it is open.
void layer_update_keyboard(vantore_layer_surface &l)
{
    const bool wanted = wants_keyboard(l);
    if (wanted == has_keyboard(*l.server, l.layer_surface->surface) || popup_has_keyboard(l))
        return;
    if (!wanted)
        focus_back(*l.server);
    else if (!takes_keyboard_on_demand_only(l))
        take_keyboard(l);
}

void layer_take_keyboard_back(vantore_layer_surface &l)
{
    if (l.layer_surface->surface->mapped && wants_keyboard(l))
        take_keyboard(l);
    else
        focus_back(*l.server);
}
