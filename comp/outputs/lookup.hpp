// Finding outputs, and asking what they cover. Boxes and points are in layout coordinates.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <string_view>

// The first output of exactly this name, or null.
vantore_output *output_by_name(vantore_server &server, std::string_view name);
// The record of a wlr_output; null for null, and where it has none.
vantore_output *output_of(vantore_server &server, const struct wlr_output *wlr_output);
// The output at a point, or null.
vantore_output *output_at(vantore_server &server, double lx, double ly);
// The output under the pointer, else the newest one, else null.
vantore_output *current_output(vantore_server &server);
// The output that comes first where only one is wanted: the newest enabled one, or null.
vantore_output *resolve_primary_output(vantore_server &server);
int outputs_enabled_count(vantore_server &server);

// For messages: never null.
const char *output_name(const struct wlr_output *wlr_output);

// The whole output; all zero when it is not in the layout.
wlr_box output_layout_box(const vantore_output &o);
// What panels leave of the output at a point; all zero where there is no output.
wlr_box output_usable_at(vantore_server &server, double lx, double ly);
wlr_box usable_at_cursor(vantore_server &server);
