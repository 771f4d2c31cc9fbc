#include "gamma.hpp"

#include "../handles.hpp"

void server_gamma_set(vantore_server &, wlr_gamma_control_manager_v1_set_gamma_event *event)
{
    output_state state;
    if (wlr_gamma_control_v1_apply(event->control, &state) && wlr_output_test_state(event->output, &state))
        wlr_output_commit_state(event->output, &state);
    else if (event->control != nullptr)
        wlr_gamma_control_v1_send_failed_and_destroy(event->control); // frees the control
}
