// Names for outputs in commands and files that stay with a display when it is plugged in elsewhere.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <string>
#include <string_view>

// Returns make, model and serial number as one word. It is the output's name if those tell nothing, and "?"
// if it has no name.
std::string output_token_id(const struct wlr_output &output);

// Returns the output with this name, else the newest one with this id, else null.
vantore_output *resolve_output_token(vantore_server &server, std::string_view token);
