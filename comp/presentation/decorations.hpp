// Title bars that the compositor draws: a bar above the content with a title and three buttons. Positions are
// relative to the window's content, so y is negative in the bar.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"
#include "dec_region.hpp"

// Makes the nodes of a new scene tree, all of them disabled. The record forgets its earlier nodes, which died
// with their tree. Returns false when the scene has no memory.
bool dec_create_nodes(vantore_toplevel &t);

// Shows, hides and places all nodes according to the window's state and the size that it shows.
void dec_layout(vantore_toplevel &t);

// Gives the bar the colours of a window with or without the focus.
void dec_set_focused(vantore_toplevel &t, bool focused);

// Highlights the button of this region. A region without a button removes the highlight.
void dec_hover_set(vantore_toplevel &t, vantore_dec_region region);

// Draws the title anew, `width` pixels wide, and cuts off what does not fit.
void dec_render_title(vantore_toplevel &t, int width);
// Draws a changed title anew at its present width.
void dec_refresh_title(vantore_toplevel &t);
// Makes the next dec_layout draw the title anew.
void dec_forget_title(vantore_toplevel &t);

// Draws a button into its node. `alt` selects the symbol that restores a maximized window. Does nothing for
// null.
void dec_render_button(wlr_scene_buffer *node, vantore_dec_region region, bool alt);
void dec_refresh_max_button(vantore_toplevel &t);

// Draws the title bar anew in the colours of the settings, for a window with or without the focus.
void dec_recolor(vantore_toplevel &t, bool focused);
// Does the same for all mapped windows. The window raised last gets the colours of the focus.
void recolor_all_decorations(vantore_server &server);
