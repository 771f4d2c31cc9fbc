// Mirrors: an output shows a copy of a window or of another output instead of a workspace. It then has no
// windows, no wallpaper and no pointer.
#pragma once

#include "../fwd.hpp"
#include "mirroring.hpp"

inline int g_mirror_any; // outputs that mirror something
inline int g_output_mirror_count; // those that mirror another output

// Begin to mirror. An output that mirrors something already ends that first. A refusal changes nothing, and
// the user is told.
void mirror_enable(vantore_output &o, vantore_toplevel &t);
void mirror_enable_output(vantore_output &o, const vantore_output &src);

// Mirrors again what an output mirrored before it was away. If that is not there, the caller gives the output
// a workspace.
void mirror_resume(vantore_output &o, const mirror_source &source);

// Ends a mirror, if there is one. With `restore`, the output becomes a usual screen with a workspace again.
void mirror_disable(vantore_output &o, bool restore);

// Ends the mirrors of outputs that are no longer there.
void mirror_drop_lost(vantore_server &server);

// If only mirrors are lit, ends one, so that the windows can be seen again. The caller gives it a workspace.
void keep_one_desktop(vantore_server &server);

// Draws what a mirror shows anew and fits it to the output. Does nothing on other outputs.
void mirror_refresh(vantore_output &o);

// Call it when an output is about to paint. Brings its mirror, if it has one, up to date.
void mirror_before_paint(vantore_output &o);
// Whether another output shows this one. Both would take turns in composing the scene and in showing a
// client's buffer directly, at the price of painting everything.
bool is_mirrored(const vantore_output &o);
// Call it when an output has painted. Wakes the mirrors that show it.
void mirror_wake_for_source(const vantore_output &o);
// Call it when the pointer has moved.
void mirror_follow_pointer(const vantore_server &server);
