#include "absent.hpp"

#include "../input/resting_pointer.hpp"
#include "../server.hpp"
#include "../workspaces/workspace.hpp"
#include "lookup.hpp"
#include "output.hpp"

#include <algorithm>
#include <ranges>

static bool same_text(const char *text, const std::string &other)
{
    return other == (text != nullptr ? text : "");
}

bool will_come_back(const vantore_output &o)
{
    const wlr_session *session = o.server->session;
    return session != nullptr && !session->active && !wlr_output_is_headless(o.wlr_output);
}

static remembered_output remember(const vantore_output &o, bool automatic)
{
    return {
        .description = describe_output(o),
        .workspace = o.current_ws != nullptr ? o.current_ws->num : 0,
        .automatic = automatic,
    };
}

// In the order of the layout.
static std::vector<remembered_output> remember_all(vantore_server &server)
{
    std::vector<remembered_output> outputs;
    for (const auto &place : each<&wlr_output_layout_output::link>(server.output_layout->outputs))
        if (const vantore_output *o = output_of(server, place.output))
            outputs.push_back(remember(*o, place.auto_configured));
    return outputs;
}

void remember_absent(const vantore_output &o)
{
    vantore_server &server = *o.server;
    vantore_absence &absence = server.absence;
    if (std::ranges::none_of(absence.outputs, &remembered_output::absent))
        absence = {
            .outputs = remember_all(server), .pointer_x = server.cursor->x, .pointer_y = server.cursor->y};
    for (remembered_output &remembered : absence.outputs)
        if (!remembered.absent && same_text(o.wlr_output->name, remembered.description.name))
            remembered.absent = true;
}

static bool is_same_display(const struct wlr_output &output, const output_description &d)
{
    return same_text(output.make, d.make) && same_text(output.model, d.model) &&
           same_text(output.serial, d.serial);
}

static bool has_identity(const struct wlr_output &output)
{
    return output.make != nullptr || output.model != nullptr || output.serial != nullptr;
}

// Of two displays that can't be told apart, the one on the same connector is taken.
static int likeness(const struct wlr_output &output, const output_description &d)
{
    const bool same_name = same_text(output.name, d.name);
    if (has_identity(output) && is_same_display(output, d))
        return same_name ? 3 : 2;
    return same_name ? 1 : 0;
}

std::optional<remembered_output> recognise(vantore_server &server, const struct wlr_output &output)
{
    remembered_output *best = nullptr;
    for (remembered_output &remembered : server.absence.outputs) {
        if (!remembered.absent || likeness(output, remembered.description) == 0)
            continue;
        if (best == nullptr || likeness(output, remembered.description) > likeness(output, best->description))
            best = &remembered;
    }
    if (best == nullptr)
        return std::nullopt;
    best->absent = false;
    best->description.name = output_name(&output); // it may be on another connector now
    return *best;
}

static wlr_output_layout_output *place_of(const vantore_server &server, const std::string &name)
{
    for (auto &place : each<&wlr_output_layout_output::link>(server.output_layout->outputs))
        if (same_text(place.output->name, name))
            return &place;
    return nullptr;
}

void restore_layout_order(vantore_server &server)
{
    wlr_output_layout &layout = *server.output_layout;
    for (const remembered_output &remembered : std::views::reverse(server.absence.outputs)) {
        wlr_output_layout_output *place = place_of(server, remembered.description.name);
        if (place == nullptr || !remembered.automatic)
            continue;
        wl_list_remove(&place->link);
        wl_list_insert(&layout.outputs, &place->link);
        wlr_output_layout_add_auto(&layout, place->output); // places all of them again
    }
}

static bool is_on_output(const vantore_server &server, double lx, double ly)
{
    return wlr_output_layout_output_at(server.output_layout, lx, ly) != nullptr;
}

void restore_pointer(vantore_server &server)
{
    const vantore_absence &absence = server.absence;
    if (!is_on_output(server, absence.pointer_x, absence.pointer_y))
        return;
    wlr_cursor_warp(server.cursor, nullptr, absence.pointer_x, absence.pointer_y);
    pointer_look_again(server);
}

bool forget_absent(vantore_server &server)
{
    const bool missing = std::ranges::any_of(server.absence.outputs, &remembered_output::absent);
    server.absence.outputs.clear();
    return missing;
}

const remembered_output *absent_output_of(const vantore_workspace &ws)
{
    if (ws.output != nullptr) // another output shows it meanwhile
        return nullptr;
    for (const remembered_output &remembered : ws.server->absence.outputs)
        if (remembered.absent && remembered.workspace == ws.num)
            return &remembered;
    return nullptr;
}

const remembered_output *absent_output_under_pointer(const vantore_server &server)
{
    const vantore_absence &absence = server.absence;
    if (is_on_output(server, server.cursor->x, server.cursor->y))
        return nullptr;
    for (const remembered_output &remembered : absence.outputs)
        if (remembered.absent &&
            wlr_box_contains_point(&remembered.description.box, absence.pointer_x, absence.pointer_y))
            return &remembered;
    return nullptr;
}
