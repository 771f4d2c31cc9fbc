// What an output shows, rendered once more into memory.
#pragma once

#include "../offscreen.hpp"

struct rendered {
    pixel_memory pixels; // red, green, blue, alpha; rows packed; null on failure
    int width = 0, height = 0;
};

// Opaque pixels at the output's resolution, before its transform. The next frame of the output loses nothing
// by it.
rendered vnt_render_output_rgba(vantore_server &server, vantore_output &o);
