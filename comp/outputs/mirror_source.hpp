// What an output mirrors: another output, or a window.
#pragma once

#include <cstdint>
#include <string>

struct mirror_source {
    bool mir_is_output = false;
    std::string mir_src_out; // the output's name; empty for a window
    uint32_t mir_src_wid = 0; // the window's id; 0 for an output
};
