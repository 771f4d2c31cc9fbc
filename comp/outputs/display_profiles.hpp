// Arrangements of displays that the user has saved in displays.conf, and the choice of the one that fits the
// displays that are connected.
#pragma once

#include "layout_repair.hpp"

#include <string>
#include <string_view>
#include <vector>

struct display_profile {
    std::vector<std::string> lines; // commands such as "output DP-1 enable mode 2560x1440"; at most 64
};

// Reads the text of the file, whatever bytes it has. Each line that begins with '[' starts a profile.
std::vector<display_profile> display_profiles_in(std::string_view text);

struct connected_display {
    std::string name, id; // see output_token_id
};

struct chosen_profile {
    display_profile profile;
    int enabled = 0; // how many of its lines enable a display
};

// Returns the profile that speaks of every connected display and enables none that is missing. If several do,
// it is the one that enables the fewest, and of those the first.
std::optional<chosen_profile> display_profile_for(std::span<const display_profile> profiles,
                                                  std::span<const connected_display> connected);

// Moves the positions in a profile so that none is negative. Returns how far they went, nothing where none
// was.
std::optional<layout_offset> anchor_to_origin(display_profile &profile);
