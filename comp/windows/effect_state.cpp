#include "effect_state.hpp"

#include "../workspaces/tiles.hpp"
#include "toplevel.hpp"

effect_state effect_state_of(const vantore_toplevel &t)
{
    return {.ssd = t.ssd,
            .fullscreen = t.fullscreen,
            .minimized = t.minimized,
            .snapped = t.snapped,
            .tiled = toplevel_is_tiled(t),
            .stacked = t.stack_id != 0,
            .dimmed = t.dimmed,
            .no_shadow = t.no_shadow,
            .no_round = t.no_round};
}
