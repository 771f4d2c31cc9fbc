// A pointer that rests while the desktop changes around it. A frame costs one comparison of regions here, and
// a motion costs nothing.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Call this when something else may lie under the pointer although it has not moved. Once the event loop is
// idle, the pointer is looked up anew, once for all calls until then. Nothing happens while a window or data
// is dragged, because the drag has the pointer and its end calls this again.
void pointer_look_again(vantore_server &server);

// Positions a node in its tree. If that moves the node, something else may lie under the pointer.
void scene_node_move(vantore_server &server, wlr_scene_node &node, int x, int y);

// Follows a new surface until it is destroyed. When it appears, goes, or takes input elsewhere than before,
// the pointer looks again.
void pointer_follow_surface(vantore_server &server, wlr_surface *surface);

// Drops a look that is still due. For the end of the session.
void pointer_look_again_cancel(vantore_server &server);
