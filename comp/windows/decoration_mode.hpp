// Who draws a window's title bar, as client and compositor settle it by xdg-decoration.
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

// The first answer that a client gets: due at the window's initial commit. Nothing for a window without a
// decoration object.
void deco_answer_initial_commit(vantore_toplevel &t);

// The window goes.
void deco_forget_window(vantore_toplevel &t);
