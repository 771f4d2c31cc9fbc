// Renders once more, into memory, what an output shows.
#pragma once

#include "../offscreen.hpp"

struct rendered {
    pixel_memory pixels; // red, green, blue, alpha; rows packed; null on failure
    int width = 0, height = 0;
};

// Returns opaque pixels as the output's buffer holds them: in the pixels of its mode and with its transform
// applied. The output's next frame keeps all its damage.
rendered vnt_render_output_rgba(vantore_server &server, vantore_output &o);
