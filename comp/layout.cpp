#include "layout.hpp"

const char *tile_mode_name(vantore_tile_mode mode)
{
    switch (mode) {
    case TM_MASTER:
        return "master";
    case TM_GRID:
        return "grid";
    case TM_COLUMNS:
        return "columns";
    case TM_MONOCLE:
        return "monocle";
    }
    return "master";
}

vantore_tile_mode tile_mode_from_name(std::string_view name)
{
    for (const vantore_tile_mode mode : {TM_GRID, TM_COLUMNS, TM_MONOCLE})
        if (name == tile_mode_name(mode))
            return mode;
    return TM_MASTER;
}
