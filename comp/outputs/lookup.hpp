// Finds outputs and tells what they cover. Boxes and points are in layout coordinates.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <string_view>

// Returns the first output of exactly this name, or null.
vantore_output *output_by_name(vantore_server &server, std::string_view name);
// Returns the record of a wlr_output, or null if there is no record or the wlr_output is null.
vantore_output *output_of(vantore_server &server, const struct wlr_output *wlr_output);
// Whether the output has a workspace when it is lit. One that is turned off or mirrors something has none.
bool is_usual_screen(const vantore_output &o);
// Whether the output is lit and mirrors nothing.
bool shows_desktop(const vantore_output &o);

// Returns the output at a point, or null. Where several lie, it is one that shows the desktop.
struct wlr_output *layout_output_at(const vantore_server &server, double lx, double ly);
// Returns its record.
vantore_output *output_at(vantore_server &server, double lx, double ly);
// Returns the output under the pointer if it is a usual screen, else the newest usual screen. If there is
// none, returns the output under the pointer, else the newest, else null.
vantore_output *current_output(vantore_server &server);
// Returns the output to use when only one is wanted: of those that show the desktop that of the setting
// `primary`, else the newest. Null if there is none.
vantore_output *resolve_primary_output(vantore_server &server);
int outputs_enabled_count(vantore_server &server);

// Returns a name for messages, never null.
const char *output_name(const struct wlr_output *wlr_output);

// Returns the whole output, or an empty box if it is not in the layout.
wlr_box output_layout_box(const vantore_output &o);
// Returns what panels leave of the output at a point, or the whole output if they leave nothing. The box is
// empty if there is no output.
wlr_box output_usable_at(vantore_server &server, double lx, double ly);
// The same for the pointer's place. While the session is away, it is the absent output on which the pointer
// was.
wlr_box usable_at_cursor(vantore_server &server);
