// Client and compositor agree by xdg-decoration on who draws a window's title bar.
//
// The decoration object and its window die in either order: each side clears the other's pointer to it.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"

struct vantore_decoration {
    wlr_xdg_toplevel_decoration_v1 *deco = nullptr;
    vantore_toplevel *owner = nullptr; // null once the window is gone
    listener request_mode, destroy;
};

void server_new_decoration(vantore_server &server, wlr_xdg_toplevel_decoration_v1 *deco);

// Sends the first answer about decorations, which is due at the window's initial commit. Does nothing for a
// window without a decoration object.
void deco_answer_initial_commit(vantore_toplevel &t);

// Clears the decoration record's pointer to a window that is being destroyed.
void deco_forget_window(vantore_toplevel &t);
