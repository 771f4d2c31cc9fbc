#include "pacing.hpp"

#include "../clock.hpp"
#include "output.hpp"

// Frame callbacks go out whether or not the commit worked, so that no client waits for ever.
static void output_do_repaint(vantore_output &o)
{
    wlr_scene_output_commit(o.scene_output, nullptr);
    timespec now = mono_timespec();
    wlr_scene_output_send_frame_done(o.scene_output, &now);
}

void output_frame(vantore_output &o)
{
    output_do_repaint(o);
}
