// Blur behind a rectangle or a buffer. The blur is a scene node of its own right below it, with its position
// and size.
#pragma once

#include "../wlr.hpp"

// Turns the blur on or off. `blur` is null until the first use, and the scene owns it. Without memory, there
// is no blur.
void backdrop_blur_set(wlr_scene_blur *&blur, wlr_scene_rect *rect, bool on);

// Call this after the rectangle was moved, resized, shown or hidden. Does nothing for null.
void backdrop_blur_follow(wlr_scene_blur *blur, const wlr_scene_rect *rect);

// Does the same for a buffer and blurs only where the buffer is not fully transparent. The blur follows the
// commits of the buffer's surface and is destroyed with the buffer. Without memory, there is no blur.
void backdrop_blur_set(wlr_scene_buffer &buffer, bool on);
