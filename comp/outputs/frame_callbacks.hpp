// Sends frame callbacks, also to surfaces that the scene leaves out. It holds that a surface is on no output
// while every output shows less than a tenth of what nothing covers of it, so a window that was almost
// dragged off the screen would stand still.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Tells the clients whose surfaces show on this output to draw their next frame.
void send_frame_callbacks(vantore_output &o);

// Follows a new surface until it is destroyed. An output that rests paints when a surface that the scene
// leaves out asks for a frame callback.
void frame_callbacks_follow(vantore_server &server, wlr_surface *surface);
