#include "layer.hpp"

#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../workspaces/arrange.hpp"

void arrange_layers(vantore_output &o)
{
    if (!o.wlr_output->enabled)
        return;
    const wlr_box usable = output_layout_box(o);
    if (wlr_box_equal(&usable, &o.usable))
        return;
    o.usable = usable;
    arrange_workspace(o.current_ws);
}

void arrange_all_layers(vantore_server &server)
{
    for (auto &o : each<&vantore_output::link>(server.outputs))
        arrange_layers(o);
}

wlr_box output_usable_at(vantore_server &server, double lx, double ly)
{
    wlr_output *at = wlr_output_layout_output_at(server.output_layout, lx, ly);
    if (at == nullptr)
        return {};
    const vantore_output *o = output_of(server, at);
    if (o != nullptr && o->usable.width > 0 && o->usable.height > 0)
        return o->usable;
    wlr_box box{};
    wlr_output_layout_get_box(server.output_layout, at, &box);
    return box;
}

wlr_box usable_at_cursor(vantore_server &server)
{
    return output_usable_at(server, server.cursor->x, server.cursor->y);
}
