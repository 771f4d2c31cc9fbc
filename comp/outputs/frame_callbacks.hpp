// Sends frame callbacks, also to surfaces that the scene leaves out. While less than a tenth of a surface
// shows, the scene holds that the surface is on no output: a window that only peeks out from behind another
// or over the edge of the screen would stand still.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Tells the clients whose surfaces show on this output to draw their next frame.
void send_frame_callbacks(vantore_output &o);

// Follows a new surface until it is destroyed. An output that rests paints when a surface that the scene
// leaves out asks for a frame callback.
void frame_callbacks_follow(vantore_server &server, wlr_surface *surface);
