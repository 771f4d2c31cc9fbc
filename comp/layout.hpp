// How a workspace lays out its windows, and the names of tile modes in files and on the IPC socket.
#pragma once

#include <string_view>

enum vantore_layout : unsigned char { VANTORE_LAYOUT_FLOATING, VANTORE_LAYOUT_TILING };

enum vantore_tile_mode : unsigned char { TM_MASTER, TM_GRID, TM_COLUMNS, TM_MONOCLE };

const char *tile_mode_name(vantore_tile_mode mode);

// Returns TM_MASTER for a text that names no mode.
vantore_tile_mode tile_mode_from_name(std::string_view name);
