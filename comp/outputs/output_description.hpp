// What other programs are told about an output.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"
#include "mirror_source.hpp"

#include <optional>
#include <string>
#include <vector>

struct output_description {
    struct mode {
        int width, height, refresh_mhz;
    };
    std::string name, make, model, serial; // empty for unknown
    bool enabled = false;
    float scale = 1;
    wl_output_transform transform = WL_OUTPUT_TRANSFORM_NORMAL;
    wlr_box box{}; // layout coordinates
    mode current{};
    std::vector<mode> modes;
    std::optional<mirror_source> mirror; // what it mirrors
};

output_description describe_output(const vantore_output &o);
