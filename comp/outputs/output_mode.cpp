#include "output_mode.hpp"

#include "../config/settings.hpp"
#include "../handles.hpp"
#include "../records.hpp"
#include "lookup.hpp"

static constexpr int fallback_width = 1280;
static constexpr int fallback_height = 720;

static bool accepts_mode(wlr_output *output, wlr_output_state *state, wlr_output_mode *mode)
{
    wlr_output_state_set_mode(state, mode);
    return wlr_output_test_state(output, state);
}

static bool set_first_accepted_mode(wlr_output *output, wlr_output_state *state)
{
    wlr_output_mode *preferred = wlr_output_preferred_mode(output);
    if (preferred != nullptr && accepts_mode(output, state, preferred))
        return true;
    for (wl_list *at = output->modes.next; at != &output->modes; at = at->next) {
        wlr_output_mode *mode = owner_of<&wlr_output_mode::link>(at);
        if (mode != preferred && accepts_mode(output, state, mode))
            return true;
    }
    return false;
}

void output_set_best_mode(wlr_output *output, wlr_output_state *state)
{
    if (set_first_accepted_mode(output, state))
        return;
    const int width = output->width > 0 ? output->width : fallback_width;
    const int height = output->height > 0 ? output->height : fallback_height;
    wlr_output_state_set_custom_mode(state, width, height, 0);
}

bool output_light_up(wlr_output *output)
{
    output_state state;
    wlr_output_state_set_enabled(&state, true);
    output_set_best_mode(output, &state);
    if (!wlr_output_commit_state(output, &state)) {
        wlr_log(WLR_ERROR, "vantore-comp: output %s can't be lit", output_name(output));
        return false;
    }
    vrr_apply_output(output);
    return true;
}

// An output without modes keeps the size that it has. If it has none, it gets one when it is lit.
void output_foresee_size(wlr_output *output)
{
    output_state state;
    wlr_output_state_set_enabled(&state, true);
    output_set_best_mode(output, &state); // tests modes and shows nothing
    if (state.mode_type != WLR_OUTPUT_STATE_MODE_FIXED)
        return;
    output->width = state.mode->width;
    output->height = state.mode->height;
    output->refresh = state.mode->refresh;
}

void vrr_apply_output(wlr_output *output)
{
    if (!g_vrr)
        return;
    output_state state;
    wlr_output_state_set_adaptive_sync_enabled(&state, true);
    if (!wlr_output_commit_state(output, &state))
        wlr_log(WLR_INFO, "adaptive sync on not accepted on %s", output_name(output));
}
