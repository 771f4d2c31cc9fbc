#include "modes.hpp"

#include "../windows/toplevel.hpp"
#include "interactive.hpp"
#include "modifier_tap.hpp"
#include "mouse_tiler.hpp"
#include "overview.hpp"
#include "pointer.hpp"
#include "switcher.hpp"

struct mode {
    void (*end)(vantore_server &server);
    void (*window_leaves)(vantore_server &server, const vantore_toplevel &t);
    void (*window_left)(vantore_server &server);
    void (*output_leaves)(vantore_server &server, const wlr_output *output);
};

static void keep(vantore_server &) {}
static void keep(vantore_server &, const vantore_toplevel &) {}
static void keep(vantore_server &, const wlr_output *) {}

static constexpr mode modes[]{
    {drag_end, drag_window_leaves, keep, keep},
    {mt_hide, keep, keep, mt_output_leaves},
    {shortcuts_force_hide, keep, keep, keep},
    {switcher_cancel, switcher_window_leaves, keep, switcher_output_leaves},
    {overview_end, overview_window_leaves, overview_window_left, overview_output_leaves},
    {pointer_leaves_decorations, hover_window_leaves, keep, keep},
};

void end_modes(vantore_server &server)
{
    for (const mode &m : modes)
        m.end(server);
}

void window_leaves(vantore_toplevel &t)
{
    for (const mode &m : modes)
        m.window_leaves(*t.server, t);
}

void window_left(vantore_server &server)
{
    for (const mode &m : modes)
        m.window_left(server);
}

void output_leaves(vantore_server &server, const wlr_output *output)
{
    for (const mode &m : modes)
        m.output_leaves(server, output);
}
