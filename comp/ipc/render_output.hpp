// What an output shows, rendered once more into memory.
#pragma once

#include "../fwd.hpp"
#include "../handles.hpp"

#include <cstdlib>

using pixel_memory = handle<unsigned char, free>;

struct rendered {
    pixel_memory pixels; // red, green, blue, alpha; rows packed; null on failure
    int width = 0, height = 0;
};

// Opaque pixels at the output's resolution, before its transform. Nothing is committed, and the next frame of
// the output is none the poorer: what was damaged before stays damaged.
rendered vnt_render_output_rgba(vantore_server &server, vantore_output &o);

// The texture's pixels in the same layout, with their alpha. Null without memory or where the texture can't
// be read.
pixel_memory read_rgba(wlr_texture *texture);
