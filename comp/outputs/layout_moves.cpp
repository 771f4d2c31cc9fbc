#include "layout_moves.hpp"

#include "../input/modes.hpp"
#include "../input/resting_pointer.hpp"
#include "../server.hpp"
#include "../windows/maximized.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/transfer.hpp"
#include "layout_repair.hpp"
#include "lookup.hpp"
#include "output.hpp"

#include <algorithm>
#include <vector>

// An output that the layout has placed by itself would be placed anew when another one moves. The layout puts
// such outputs side by side, to the right of the others and in this order, so none moves on the way.
static void pin_outputs(wlr_output_layout &layout)
{
    for (const auto &place : each<&wlr_output_layout_output::link>(layout.outputs))
        if (place.auto_configured)
            wlr_output_layout_add(&layout, place.output, place.x, place.y);
}

static void shift_outputs(wlr_output_layout &layout, const layout_offset &by)
{
    pin_outputs(layout);
    for (const auto &place : each<&wlr_output_layout_output::link>(layout.outputs))
        wlr_output_layout_add(&layout, place.output, place.x + by.x, place.y + by.y);
}

static void shift_absent(vantore_absence &absence, const layout_offset &by)
{
    for (remembered_output &remembered : absence.outputs) {
        remembered.description.box.x += by.x;
        remembered.description.box.y += by.y;
    }
    absence.pointer_x += by.x;
    absence.pointer_y += by.y;
}

static void place_side_by_side(wlr_output_layout &layout)
{
    for (const auto &place : each<&wlr_output_layout_output::link>(layout.outputs))
        wlr_output_layout_add_auto(&layout, place.output);
}

void move_output(const vantore_output &o, int x, int y)
{
    end_modes(*o.server); // they remember places
    pin_outputs(*o.server->output_layout);
    wlr_output_layout_add(o.server->output_layout, o.wlr_output, x, y);
}

void deoverlap_moved(vantore_output &moved)
{
    std::vector<wlr_box> others;
    for (const auto &o : each<&vantore_output::link>(moved.server->outputs))
        if (&o != &moved && o.wlr_output->enabled)
            others.push_back(output_layout_box(o));
    const wlr_box box = output_layout_box(moved);
    const layout_offset way = way_out_of_overlaps(box, others);
    if (way != layout_offset{})
        move_output(moved, box.x + way.x, box.y + way.y);
}

// Many commands in a row can move outputs apart for ever.
static bool is_too_far(const wlr_box &box, const layout_offset &way)
{
    static constexpr int farthest = 4'000'000;
    return box.x + way.x > farthest || box.y + way.y > farthest;
}

void normalize_output_layout(vantore_server &server)
{
    std::vector<wlr_box> boxes;
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        if (o.wlr_output->enabled)
            boxes.push_back(output_layout_box(o));
    const auto way = way_to_origin(boxes);
    if (!way)
        return;
    if (std::ranges::any_of(boxes, [&](const wlr_box &box) { return is_too_far(box, *way); })) {
        place_side_by_side(*server.output_layout);
        return outputs_rearranged(server);
    }
    end_modes(server);
    const maximized_windows maximized{server};
    const double x = server.cursor->x, y = server.cursor->y; // it moves when its output does
    shift_outputs(*server.output_layout, *way);
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        shift_window(t, *way);
    shift_absent(server.absence, *way);
    wlr_cursor_warp(server.cursor, nullptr, x + way->x, y + way->y);
    outputs_rearranged(server);
    maximized.follow();
    pointer_look_again(server);
    wlr_log(WLR_INFO, "anchored live layout to 0,0 (shifted by %d,%d)", way->x, way->y);
}
