// The slide from one workspace of an output to another. The trees of both move as a whole, so that windows
// keep their own positions. Windows of the workspace that leaves are no longer found by the pointer.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Begins a slide after an output of this width has changed from one workspace to the other, whose trees these
// are. `dir` is 1 when they move to the left, and -1 when they move to the right. Does nothing where
// animations are off, while the session is locked, and with several outputs, because the workspaces would
// move across the neighbours.
void slide_start(vantore_server &server, wlr_scene_tree *from, wlr_scene_tree *to, int dir, int width);

// Ends the slide at once: the workspace that arrives is in its place, and the other one is hidden. Does
// nothing when there is none.
void slide_end(vantore_server &server);

// Moves the workspaces to where they are at a time of mono_ms. Returns false when there is no slide any more.
bool slide_advance(vantore_server &server, int64_t now);
