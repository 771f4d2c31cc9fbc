#include "absent.hpp"

#include "../input/resting_pointer.hpp"
#include "../server.hpp"
#include "../windows/placement.hpp"
#include "../workspaces/workspace.hpp"
#include "lookup.hpp"
#include "output.hpp"

#include <algorithm>

static bool same_text(const char *text, const std::string &other)
{
    return other == (text != nullptr ? text : "");
}

bool will_come_back(const vantore_output &o)
{
    const wlr_session *session = o.server->session;
    return session != nullptr && !session->active && !wlr_output_is_headless(o.wlr_output);
}

static remembered_output remember(const vantore_output &o, bool has_own_place)
{
    return {.description = describe_output(o),
            .name_before = output_name(o.wlr_output),
            .workspace = o.current_ws != nullptr ? o.current_ws->num : 0,
            .has_own_place = has_own_place,
            .turned_off = o.turned_off};
}

// Outputs that the layout places by itself would move into the gaps that others leave.
static void stay_in_place(vantore_server &server, const remembered_output &remembered)
{
    const wlr_box &box = remembered.description.box;
    if (const vantore_output *o = output_by_name(server, remembered.description.name))
        wlr_output_layout_add(server.output_layout, o->wlr_output, box.x, box.y);
}

static vantore_absence remember_all(vantore_server &server)
{
    vantore_absence absence{.outputs = {},
                            .pointer_x = server.cursor->x,
                            .pointer_y = server.cursor->y,
                            .focused = server.last_focused};
    for (const auto &place : each<&wlr_output_layout_output::link>(server.output_layout->outputs))
        if (const vantore_output *o = output_of(server, place.output))
            absence.outputs.push_back(remember(*o, !place.auto_configured));
    for (const remembered_output &remembered : absence.outputs)
        stay_in_place(server, remembered);
    return absence;
}

void remember_absent(const vantore_output &o)
{
    vantore_absence &absence = o.server->absence;
    if (std::ranges::none_of(absence.outputs, &remembered_output::absent))
        absence = remember_all(*o.server);
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

static bool has_identity(const output_description &d)
{
    return !d.make.empty() || !d.model.empty() || !d.serial.empty();
}

static likeness likeness_of(const struct wlr_output &output, const output_description &d)
{
    const bool same_name = same_text(output.name, d.name);
    if (!has_identity(output) && !has_identity(d))
        return same_name ? likeness::both : likeness::none; // neither tells more than its name
    if (is_same_display(output, d))
        return same_name ? likeness::both : likeness::display;
    return same_name ? likeness::connector : likeness::none;
}

std::optional<remembered_output> recognise(vantore_server &server, const struct wlr_output &output,
                                           likeness least)
{
    remembered_output *found = nullptr;
    likeness best = likeness::none;
    for (remembered_output &remembered : server.absence.outputs) {
        const likeness like = likeness_of(output, remembered.description);
        if (!remembered.absent || like < least || like <= best)
            continue;
        found = &remembered;
        best = like;
    }
    if (found == nullptr)
        return std::nullopt;
    found->absent = false;
    found->description.name = output_name(&output); // it may be on another connector now
    return *found;
}

static void place_automatically(vantore_server &server, struct wlr_output &output)
{
    wlr_output_layout &layout = *server.output_layout;
    wlr_output_layout_output *place = wlr_output_layout_get(&layout, &output);
    if (place == nullptr)
        return;
    wl_list_remove(&place->link);
    wl_list_insert(layout.outputs.prev, &place->link);
    wlr_output_layout_add_auto(&layout, place->output);
}

void restore_order(vantore_server &server)
{
    std::vector<vantore_output *> in_order;
    for (const remembered_output &remembered : server.absence.outputs)
        if (vantore_output *o = output_by_name(server, remembered.description.name))
            in_order.push_back(o);
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (!std::ranges::contains(in_order, &o))
            in_order.push_back(&o);
    for (vantore_output *o : in_order) {
        place_automatically(server, *o->wlr_output);
        move_to_front(server.outputs, o->link);
    }
    for (const remembered_output &remembered : server.absence.outputs)
        if (remembered.has_own_place)
            stay_in_place(server, remembered);
}

bool was_recognised(const vantore_output &o)
{
    return std::ranges::any_of(o.server->absence.outputs, [&](const remembered_output &remembered) {
        return !remembered.absent && same_text(o.wlr_output->name, remembered.description.name);
    });
}

bool is_as_remembered(const vantore_output &o)
{
    return std::ranges::any_of(o.server->absence.outputs, [&](const remembered_output &remembered) {
        return same_text(o.wlr_output->name, remembered.description.name) && o.current_ws != nullptr &&
               o.current_ws->num == remembered.workspace &&
               same_box(output_layout_box(o), remembered.description.box);
    });
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
