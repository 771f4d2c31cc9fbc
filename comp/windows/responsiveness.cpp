#include "responsiveness.hpp"

#include "../broadcast.hpp"
#include "../presentation/decorations.hpp"
#include "toplevel.hpp"

static void set_unresponsive(vantore_toplevel &t, bool unresponsive)
{
    if (t.unresponsive == unresponsive)
        return;
    t.unresponsive = unresponsive;
    if (t.scene_tree != nullptr) {
        dec_forget_title(t);
        dec_layout(t);
    }
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
}

void tl_handle_ping_timeout(vantore_toplevel &t)
{
    if (t.scene_tree != nullptr)
        set_unresponsive(t, true);
}

void tl_note_sign_of_life(vantore_toplevel &t)
{
    set_unresponsive(t, false);
}
