#include "perf_mode.hpp"

#include "../broadcast.hpp"
#include "../input/modifier_tap.hpp"
#include "../presentation/effects.hpp"
#include "../server.hpp"
#include "../session/state_files.hpp"
#include "../windows/fullscreen.hpp"
#include "../windows/layer.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/workspace.hpp"
#include "output.hpp"

static bool fs_published;

static void write_file(const vantore_toplevel &t)
{
    const vantore_output *o = output_showing(t);
    write_fullscreen_file(o != nullptr ? o->wlr_output->name : nullptr, tl_app_id(t), t.id);
}

static void publish(vantore_server &server, const vantore_toplevel *window)
{
    if (window != nullptr)
        write_file(*window);
    else
        remove_fullscreen_file();
    ipc_broadcast(server, window != nullptr ? VNT_EVT_FULLSCREEN_ON : VNT_EVT_FULLSCREEN_OFF);
    if (window != nullptr)
        shortcuts_force_hide(server);
}

// Switches the blur off while a fullscreen window needs the GPU. The walk covers all layer surfaces, because
// a surface may just have stopped being a panel.
static void blur_behind_panels(vantore_server &server, bool on)
{
    for (auto &l : each<&vantore_layer_surface::link>(server.layer_surfaces))
        effects_set_blur_tree(&l.scene->tree->node, on && is_panel(l));
}

// The file names the fullscreen window that was shown first. While one is shown, another does not replace it.
// While the session is away, programs go on hearing of what it showed.
void refresh_perf_mode(vantore_server &server)
{
    const vantore_toplevel *window = shown_fullscreen_window(server);
    const bool any = window != nullptr;
    if (any != fs_published && server.absence.outputs.empty()) {
        fs_published = any;
        publish(server, window);
    }
    blur_behind_panels(server, !any && fx_blurs());
}

void perf_mode_reset()
{
    fs_published = false;
}
