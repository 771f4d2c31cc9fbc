#include "decoration_mode.hpp"

#include "../presentation/decorations.hpp"
#include "toplevel.hpp"

static bool wants_client_side(const wlr_xdg_toplevel_decoration_v1 &deco)
{
    return deco.requested_mode == WLR_XDG_TOPLEVEL_DECORATION_V1_MODE_CLIENT_SIDE;
}

static void send_mode(wlr_xdg_toplevel_decoration_v1 *deco)
{
    wlr_xdg_toplevel_decoration_v1_set_mode(deco, wants_client_side(*deco)
                                                      ? WLR_XDG_TOPLEVEL_DECORATION_V1_MODE_CLIENT_SIDE
                                                      : WLR_XDG_TOPLEVEL_DECORATION_V1_MODE_SERVER_SIDE);
}

static void deco_apply(vantore_decoration &d)
{
    if (vantore_toplevel *t = toplevel_of(*d.deco->toplevel->base)) {
        t->decoration = d.deco;
        t->deco_wrap = &d;
        d.owner = t;
        t->ssd = !wants_client_side(*d.deco);
        dec_layout(*t);
    }
    if (d.deco->toplevel->base->initialized)
        send_mode(d.deco);
}

static void deco_destroy(vantore_decoration &d)
{
    if (d.owner != nullptr) {
        if (d.owner->decoration == d.deco)
            d.owner->decoration = nullptr;
        d.owner->deco_wrap = nullptr;
    }
    delete &d;
}

void server_new_decoration(vantore_server &, wlr_xdg_toplevel_decoration_v1 *deco)
{
    auto *d = new vantore_decoration{};
    d->deco = deco;
    listen<&vantore_decoration::request_mode, deco_apply>(*d, deco->events.request_mode);
    listen<&vantore_decoration::destroy, deco_destroy>(*d, deco->events.destroy);
    deco_apply(*d);
}

void deco_answer_initial_commit(vantore_toplevel &t)
{
    if (t.decoration == nullptr)
        return;
    t.ssd = !wants_client_side(*t.decoration);
    dec_layout(t);
    send_mode(t.decoration);
}

void deco_forget_window(vantore_toplevel &t)
{
    if (t.deco_wrap != nullptr)
        t.deco_wrap->owner = nullptr;
    t.deco_wrap = nullptr;
}
