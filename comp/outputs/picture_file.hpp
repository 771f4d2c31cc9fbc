// Decodes picture files. Everything here may run on any thread.
#pragma once

#include "../handles.hpp"

#include <cairo.h>
#include <cstdint>

using picture = handle<cairo_surface_t, cairo_surface_destroy>;

// Larger pictures are not decoded. A decoded pixel takes four bytes, and decoders need up to three times as
// much again while they work.
inline constexpr int64_t most_picture_pixels = int64_t{128} * 1024 * 1024;
inline constexpr int longest_picture_side = 32767; // the longest that cairo draws

// Decodes a PNG, JPEG, BMP, GIF or WebP file, whatever its name is, and the first picture of an animation.
// Returns a premultiplied ARGB32 surface, or null if the file is not a regular one, can't be read, is too
// large or is damaged.
picture load_image_surface(const char *path);
