// Title bars that the compositor draws: a bar above the content with a title and three buttons. Positions are
// relative to the window's content, so that y is negative in the bar.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"
#include "dec_region.hpp"

// Makes the nodes of a new scene tree, all of them disabled. What the record knew of earlier ones is
// forgotten: they went with their tree. False when the scene has no memory.
bool dec_create_nodes(vantore_toplevel &t);

// Shows, hides and places everything according to the window's state and the size that it shows.
void dec_layout(vantore_toplevel &t);

// The colours of a window that has, or has not, the focus.
void dec_set_focused(vantore_toplevel &t, bool focused);

// Highlights the button of this region; a region without one takes the highlight away.
void dec_hover_set(vantore_toplevel &t, vantore_dec_region region);

// Draws the title anew, `width` pixels wide; what does not fit is cut off.
void dec_render_title(vantore_toplevel &t, int width);
// The title has changed: drawn anew at its present width.
void dec_refresh_title(vantore_toplevel &t);
// The title changes with the next dec_layout.
void dec_forget_title(vantore_toplevel &t);

// Draws a button into its node; `alt` is the glyph that brings a maximized window back. Null does nothing.
void dec_render_button(wlr_scene_buffer *node, vantore_dec_region region, bool alt);
void dec_refresh_max_button(vantore_toplevel &t);

// Everything once more in the colours of the settings; the focus is shown on the window raised last.
void recolor_all_decorations(vantore_server &server);
