// Fits a picture to an output. Everything here may run on any thread.
#pragma once

#include "../config/settings.hpp"
#include "../picture_size.hpp"
#include "picture_file.hpp"

struct picture_place {
    double x, y; // of the picture's top left corner on the output
    double scale_x, scale_y;
    friend bool operator==(const picture_place &, const picture_place &) = default;
};

// Returns where a picture goes on an output. Both sizes are at least 1 by 1.
picture_place place_picture(picture_size image, picture_size output, wp_mode mode);

// Returns an opaque picture of the output's size, black where the image does not reach. Returns null if there
// is not enough memory.
picture scale_picture(cairo_surface_t *image, picture_size output, wp_mode mode);
