// The names of tile modes, in configuration files and on the IPC socket.
#pragma once

#include "workspace.hpp"

#include <string_view>

const char *tile_mode_name(vantore_tile_mode mode);

// TM_MASTER for every text that is no name.
vantore_tile_mode tile_mode_from_name(std::string_view name);
