// Blur behind a rectangle or a buffer: a node of its own right below it, with its place and size.
#pragma once

#include "../wlr.hpp"

// Turns it on or off; `blur` is null until it was on once and belongs to the scene. Without memory there is
// no blur.
void backdrop_blur_set(wlr_scene_blur *&blur, wlr_scene_rect *rect, bool on);

// After the rectangle was moved, resized, shown or hidden. Null does nothing.
void backdrop_blur_follow(wlr_scene_blur *blur, const wlr_scene_rect *rect);

// The same behind a buffer, where that is not fully transparent. It follows the commits of the buffer's
// surface and goes with the buffer. Without memory there is no blur.
void backdrop_blur_set(wlr_scene_buffer &buffer, bool on);
