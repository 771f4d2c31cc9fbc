// Where the picture of a mirror and the copy of the pointer lie on the output that shows them. The functions
// are pure.
#pragma once

#include "../wlr.hpp"

// Output units count from the top left corner of the output.
struct mirror_fit {
    wlr_box box{}; // of the picture, in output units
    double scale = 1; // output units for a pixel of the source
};

// Fits a picture of this size, in pixels, into an output of this size, in output units. It keeps its shape
// and is centred. All sizes are at least 1.
mirror_fit fit_picture(int picture_width, int picture_height, int width, int height);

// Returns the box in output units of a pointer image. Sizes and places are pixels of the source: x and y are
// the pointer's, hx and hy the hotspot's inside the image.
wlr_box fit_pointer(const mirror_fit &fit, double x, double y, double hx, double hy, int width, int height);
