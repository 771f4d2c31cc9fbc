#include "lookup.hpp"

#include "../config/settings.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "../windows/placement.hpp"
#include "absent.hpp"
#include "output.hpp"
#include "output_token.hpp"

vantore_output *output_by_name(vantore_server &server, std::string_view name)
{
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (o.wlr_output->name != nullptr && name == o.wlr_output->name)
            return &o;
    return nullptr;
}

vantore_output *output_of(vantore_server &server, const struct wlr_output *wlr_output)
{
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (o.wlr_output == wlr_output)
            return &o;
    return nullptr;
}

bool is_usual_screen(const vantore_output &o)
{
    return !o.turned_off && !o.mirror.mir_on;
}

bool shows_desktop(const vantore_output &o)
{
    return o.wlr_output->enabled && !o.mirror.mir_on;
}

struct wlr_output *layout_output_at(const vantore_server &server, double lx, double ly)
{
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        if (shows_desktop(o) && box_contains(output_layout_box(o), lx, ly))
            return o.wlr_output;
    return wlr_output_layout_output_at(server.output_layout, lx, ly);
}

vantore_output *output_at(vantore_server &server, double lx, double ly)
{
    return output_of(server, layout_output_at(server, lx, ly));
}

vantore_output *current_output(vantore_server &server)
{
    vantore_output *at = output_at(server, server.cursor->x, server.cursor->y);
    if (at != nullptr && is_usual_screen(*at))
        return at;
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (is_usual_screen(o))
            return &o;
    return at != nullptr ? at : each<&vantore_output::link>(server.outputs).first();
}

vantore_output *resolve_primary_output(vantore_server &server)
{
    const std::string_view wanted = text_of(g_primary_pref);
    vantore_output *first = nullptr;
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        if (!shows_desktop(o))
            continue;
        if (!wanted.empty() &&
            (output_name(o.wlr_output) == wanted || output_token_id(*o.wlr_output) == wanted))
            return &o;
        if (first == nullptr)
            first = &o;
    }
    return first;
}

int outputs_enabled_count(vantore_server &server)
{
    int count = 0;
    for (auto &o : each<&vantore_output::link>(server.outputs))
        count += o.wlr_output->enabled ? 1 : 0;
    return count;
}

const char *output_name(const struct wlr_output *wlr_output)
{
    return wlr_output->name != nullptr ? wlr_output->name : "?";
}

wlr_box output_layout_box(const vantore_output &o)
{
    wlr_box box{};
    wlr_output_layout_get_box(o.server->output_layout, o.wlr_output, &box);
    return box;
}

wlr_box output_usable_at(vantore_server &server, double lx, double ly)
{
    struct wlr_output *at = layout_output_at(server, lx, ly);
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
    if (const remembered_output *absent = absent_output_under_pointer(server))
        return absent->description.box;
    return output_usable_at(server, server.cursor->x, server.cursor->y);
}
