// The buffer is looked up at each step, because the client may replace it or destroy its surface meanwhile.

#include "open_fade.hpp"

#include "../clock.hpp"
#include "../config/settings.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "animation.hpp"
#include "effects.hpp"
#include "motion.hpp"

// The client may have made its surface translucent itself (alpha-modifier).
static float own_opacity(wlr_surface *surface)
{
    const wlr_alpha_modifier_surface_v1_state *alpha = wlr_alpha_modifier_v1_get_surface_state(surface);
    return alpha != nullptr ? float(alpha->multiplier) : 1;
}

static void set_opacity(const vantore_toplevel &t, float opacity)
{
    if (wlr_scene_buffer *buffer = toplevel_main_buffer(t))
        wlr_scene_buffer_set_opacity(buffer, opacity * own_opacity(tl_surface(t)));
}

void anim_open_start(vantore_toplevel &t)
{
    if (!g_animations || !fx_on() || t.fullscreen || t.server->anim_timer == nullptr)
        return;
    t.anim_open_t0 = mono_ms();
    set_opacity(t, open_fade_opacity(0));
    anim_kick(*t.server);
}

void anim_open_end(vantore_toplevel &t)
{
    if (t.anim_open_t0 == 0)
        return;
    t.anim_open_t0 = 0;
    set_opacity(t, 1);
}

void anim_open_hold(const vantore_toplevel &t)
{
    if (t.anim_open_t0 != 0)
        set_opacity(t, open_fade_opacity(mono_ms() - t.anim_open_t0));
}

bool anim_open_advance(vantore_server &server, int64_t now)
{
    bool more = false;
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
        if (t.anim_open_t0 == 0)
            continue;
        const int64_t elapsed = now - t.anim_open_t0;
        if (elapsed >= open_fade_ms) {
            anim_open_end(t);
        } else {
            set_opacity(t, open_fade_opacity(elapsed));
            more = true;
        }
    }
    return more;
}
