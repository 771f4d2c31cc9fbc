#include "gamma.hpp"

#include "../handles.hpp"

using color_transform = handle<wlr_color_transform, wlr_color_transform_unref>;

// Does the same as wlr_gamma_control_v1_apply, which leaks a reference to the table with each call (wlroots
// 0.20). Without a control or a table, the output loses its transform.
static bool gamma_control_apply(wlr_gamma_control_v1 *control, wlr_output_state *state)
{
    if (control == nullptr || control->table == nullptr) {
        wlr_output_state_set_color_transform(state, nullptr);
        return true;
    }
    const color_transform table{wlr_gamma_control_v1_get_color_transform(control)};
    if (table == nullptr)
        return false;
    wlr_output_state_set_color_transform(state, table.get());
    return true;
}

void server_gamma_set(vantore_server &, wlr_gamma_control_manager_v1_set_gamma_event *event)
{
    output_state state;
    if (gamma_control_apply(event->control, &state) && wlr_output_test_state(event->output, &state))
        wlr_output_commit_state(event->output, &state);
    else if (event->control != nullptr)
        wlr_gamma_control_v1_send_failed_and_destroy(event->control); // frees the control
}
