// Effects that cost GPU time: rounded corners, shadows, dimming and blur.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"
#include "effect_plan.hpp"

// Whether effects are allowed. Safe graphics forbid them. Software rendering forbids them unless the settings
// force them.
bool fx_on();

// Whether translucent parts blur what lies behind them.
bool fx_blurs();

// Turns the blur on or off behind every buffer that hangs below the node now.
void effects_set_blur_tree(wlr_scene_node *node, bool on);

// Returns the effects that the window is to have now.
effect_plan effects_of(const vantore_toplevel &t);

// Brings the window's corners, shadow and dimming in line with its state and size. Call this when one of them
// has changed; dec_layout and arrange_workspace do. Does nothing for a window without a scene tree.
void effects_layout(vantore_toplevel &t);

// The same for what the focus changes: the colour of the shadow, and the dimming.
void effects_follow_focus(vantore_toplevel &t);

// Returns the buffer below the node that shows this very surface, not one of its subsurfaces or popups. Null
// if there is none.
wlr_scene_buffer *toplevel_main_buffer_in(wlr_scene_node *node, const wlr_surface *surface);
wlr_scene_buffer *toplevel_main_buffer(const vantore_toplevel &t);
