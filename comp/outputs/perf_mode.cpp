#include "perf_mode.hpp"

#include "../input/modifier_tap.hpp"
#include "../ipc/broadcast.hpp"
#include "../presentation/effects.hpp"
#include "../server.hpp"
#include "../session/state_files.hpp"
#include "../windows/layer.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/workspace.hpp"

static bool fs_published;

static const vantore_toplevel *shown_fullscreen_window(vantore_server &server)
{
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (t.fullscreen && toplevel_visible(t))
            return &t;
    return nullptr;
}

static void publish(vantore_server &server, const vantore_toplevel *window)
{
    if (window != nullptr)
        write_fullscreen_file(*window);
    else
        remove_fullscreen_file();
    ipc_broadcast(server, window != nullptr ? VNT_EVT_FULLSCREEN_ON : VNT_EVT_FULLSCREEN_OFF);
    if (window != nullptr)
        shortcuts_force_hide(server);
}

// The GPU is wanted elsewhere while a window is fullscreen.
static void blur_behind_panels(vantore_server &server, bool on)
{
    for (auto &l : each<&vantore_layer_surface::link>(server.layer_surfaces))
        if (is_panel(l))
            effects_set_blur_tree(&l.scene->tree->node, on);
}

// The file names the window that came first; another one does not replace it.
void refresh_perf_mode(vantore_server &server)
{
    const vantore_toplevel *window = shown_fullscreen_window(server);
    const bool any = window != nullptr;
    if (any != fs_published) {
        fs_published = any;
        publish(server, window);
    }
    blur_behind_panels(server, !any && fx_blurs());
}

void perf_mode_reset()
{
    fs_published = false;
}
