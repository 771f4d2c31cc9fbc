// Panels, docks, wallpapers and overlays, and what they leave for windows.

#include "support/layers.hpp"

#include "config/settings.hpp"
#include "outputs/power.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/transfer.hpp"

using test::ALL_EDGES;
using test::BOTTOM;
using test::desktop;
using test::layer;
using test::layer_surface;
using test::layer_traits;
using test::layers;
using test::LEFT;
using test::RIGHT;
using test::TOP;
using test::top_bar;
using test::window;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

constexpr uint32_t blue = 0xff3060c0, red = 0xffc03030, green = 0xff30c030;

TEST_F(layers, are_shown_where_they_are_anchored)
{
    layer_surface &l =
        show({.size = {200, 100}, .anchor = BOTTOM | RIGHT, .margins = {.right = 10, .bottom = 20}});
    EXPECT_EQ(box(l), (wlr_box{1280 - 200 - 10, 704 - 100 - 20, 200, 100}));
    EVENTUALLY_EQ(pixel("A", 1100, 600), blue);
}

TEST_F(layers, count_from_the_corner_of_their_output)
{
    plug("B", 640, 640);
    layer_surface &l = show({.output = "B", .size = {0, 40}, .anchor = TOP | LEFT | RIGHT});
    EXPECT_EQ(box(l), (wlr_box{1280, 0, 640, 40}));
}

TEST_F(layers, are_logged_with_their_namespace_and_layer)
{
    create({.name = "wallpaper", .on = layer::background, .size = {10, 10}});
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: layer surface 'wallpaper' on layer 0\n"));
}

TEST_F(layers, are_listed_newest_first_and_known_by_their_surface)
{
    layer_surface &first = create({.size = {10, 10}});
    layer_surface &second = create({.size = {10, 10}});
    EXPECT_EQ(each<&vantore_layer_surface::link>(server.layer_surfaces).first(), find(second));
    EXPECT_EQ(find(first)->layer_surface->data, find(first));
}

TEST_F(layers, hang_in_the_tree_of_the_layer_that_they_asked_for)
{
    for (const uint32_t number : {0U, 1U, 2U, 3U}) {
        layer_surface &l = create({.on = layer{number}, .size = {10, 10}});
        EXPECT_EQ(find(l)->scene->tree->node.parent, server.layers[number]) << number;
    }
}

TEST_F(layers, of_a_number_that_no_layer_has_are_a_protocol_error)
{
    layer_surface &l = create({.on = layer{4}, .size = {10, 10}});
    EVENTUALLY_EQ(l.owner().protocol_error(), (test::protocol_error{"zwlr_layer_shell_v1", 1}));
    EXPECT_TRUE(wl_list_empty(&server.layer_surfaces));
}

TEST_F(layers, that_change_their_layer_move_to_its_tree)
{
    window &w = map("page", {400, 300});
    place(w, 0, 0);
    w.fill(green);
    layer_surface &l = show({.on = layer::bottom, .size = {200, 100}, .anchor = TOP | LEFT, .argb = red});
    EVENTUALLY_EQ(pixel("A", 50, 50), green);
    for (const uint32_t number : {3U, 0U, 2U, 1U}) {
        l.move_to(layer{number});
        l.commit();
        EVENTUALLY_EQ(find(l)->scene->tree->node.parent, server.layers[number]);
        EVENTUALLY_EQ(pixel("A", 50, 50), number >= 2 ? red : green);
    }
}

TEST_F(layers, lie_below_or_above_windows)
{
    window &w = map("page", {400, 300});
    place(w, 0, 0);
    w.fill(green);
    show({.on = layer::bottom, .size = {200, 100}, .anchor = TOP | LEFT, .argb = red});
    EVENTUALLY_EQ(pixel("A", 50, 50), green);
    show({.on = layer::top, .size = {200, 100}, .anchor = TOP | LEFT, .argb = blue});
    EVENTUALLY_EQ(pixel("A", 50, 50), blue);
}

TEST_F(layers, without_an_output_of_their_choice_go_to_the_newest)
{
    plug("B", 640, 640);
    layer_surface &l = show({.size = {10, 10}});
    EXPECT_EQ(find(l)->layer_surface->output, output("B").wlr_output);
    layer_surface &other = show({.output = "A", .size = {10, 10}});
    EXPECT_EQ(find(other)->layer_surface->output, output("A").wlr_output);
}

TEST_F(desktop, closes_layer_surfaces_at_once_when_there_is_no_output)
{
    layer_surface l{connect(), top_bar(40)};
    EVENTUALLY(l.closed());
    EXPECT_EQ(l.owner().error(), 0);
    EXPECT_TRUE(wl_list_empty(&server.layer_surfaces));
}

TEST_F(layers, are_told_their_size_with_their_first_commit_and_not_before)
{
    layer_traits traits = top_bar(40);
    traits.opens = false;
    layer_surface &l = create(traits);
    map("page"); // a reason to arrange
    EXPECT_EQ(l.configure_count(), 0);
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), 1);
    EXPECT_EQ(l.last_size(), (test::size{1280, 40}));
}

// Both clients draw at each configure, so an answer to each drawing would go on for ever.
TEST_F(layers, rest_once_they_have_their_size)
{
    layer_surface &panel = show(top_bar(40));
    layer_surface &wallpaper = show({.on = layer::background, .anchor = ALL_EDGES, .zone = -1});
    settle();
    const int panel_before = panel.configure_count(), wallpaper_before = wallpaper.configure_count();
    panel.draw({1280, 40});
    wallpaper.draw({1280, 704});
    settle();
    EXPECT_EQ(panel.configure_count(), panel_before);
    EXPECT_EQ(wallpaper.configure_count(), wallpaper_before);
}

TEST_F(layers, are_answered_when_they_change_their_wishes)
{
    layer_surface &l = show({.size = {200, 100}});
    const int before = l.configure_count();
    l.anchor(TOP);
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), before + 1);
    l.size(300, 50);
    l.commit();
    EVENTUALLY_EQ(box(l), (wlr_box{490, 0, 300, 50}));
}

TEST_F(layers, may_be_unmapped_and_shown_again)
{
    layer_surface &l = show(top_bar(40));
    l.unmap();
    settle();
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
    const int before = l.configure_count();
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), before + 1);
    EVENTUALLY_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(l.owner().error(), 0);
}

// The zones

TEST_F(layers, reserve_their_zone_from_their_map_to_their_unmap)
{
    layer_traits traits = top_bar(40);
    traits.opens = false;
    layer_surface &l = create(traits);
    l.auto_draw = false;
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), 1);
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
    l.draw({1280, 40});
    EVENTUALLY_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
    l.unmap();
    EVENTUALLY_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(layers, reserve_zones_at_every_edge_margins_included)
{
    show(top_bar(40));
    show({.size = {0, 30}, .anchor = BOTTOM | LEFT | RIGHT, .zone = 30, .margins = {.top = 99, .bottom = 5}});
    show({.size = {60, 0}, .anchor = LEFT | TOP | BOTTOM, .zone = 60});
    show({.size = {50, 60}, .anchor = RIGHT, .zone = 50, .margins = {.right = 1}});
    EXPECT_EQ(usable(), (wlr_box{60, 40, 1280 - 60 - 51, 704 - 40 - 35}));
}

TEST_F(layers, in_a_corner_or_between_edges_reserve_nothing)
{
    show({.size = {100, 40}, .anchor = TOP | LEFT, .zone = 40});
    show({.size = {100, 40}, .zone = 40});
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(layers, that_reserve_nothing_are_placed_below_a_panel_that_comes_later)
{
    layer_surface &second = show({.size = {0, 30}, .anchor = TOP | LEFT | RIGHT});
    EXPECT_EQ(box(second), (wlr_box{0, 0, 1280, 30}));
    show(top_bar(40));
    EXPECT_EQ(box(second), (wlr_box{0, 40, 1280, 30}));
    EXPECT_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
}

TEST_F(layers, that_reserve_nothing_are_placed_below_a_panel_that_was_there)
{
    show(top_bar(40));
    layer_surface &second = show({.size = {0, 30}, .anchor = TOP | LEFT | RIGHT});
    EXPECT_EQ(box(second), (wlr_box{0, 40, 1280, 30}));
}

TEST_F(layers, with_a_zone_of_minus_one_cover_the_zones_of_others)
{
    layer_surface &wallpaper = show({.on = layer::background, .anchor = ALL_EDGES, .zone = -1});
    layer_surface &notes = show({.on = layer::bottom, .anchor = ALL_EDGES});
    show(top_bar(40));
    EVENTUALLY_EQ(box(notes), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(box(wallpaper), (wlr_box{0, 0, 1280, 704}));
    EXPECT_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
}

TEST_F(layers, with_zones_at_the_same_edge_stack_the_newest_outermost)
{
    layer_surface &first = show(top_bar(40));
    layer_surface &second = show(top_bar(20));
    EXPECT_EQ(box(second), (wlr_box{0, 0, 1280, 20}));
    EXPECT_EQ(box(first), (wlr_box{0, 20, 1280, 40}));
    EXPECT_EQ(usable(), (wlr_box{0, 60, 1280, 644}));
}

TEST_F(layers, leave_other_outputs_alone)
{
    plug("B", 640, 640);
    layer_traits traits = top_bar(40);
    traits.output = "A";
    show(traits);
    EXPECT_EQ(usable("A"), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(usable("B"), (wlr_box{1280, 0, 640, 640}));
}

TEST_F(layers, make_room_for_windows_to_open_in)
{
    show(top_bar(100));
    EXPECT_EQ(toplevel_box(record(map("page", {640, 300}))), (wlr_box{320, 100 + 152, 640, 300}));
}

TEST_F(layers, leave_what_is_usable_for_maximized_windows)
{
    show(top_bar(40));
    window &w = connect().create_window("page");
    w.title("page");
    w.request_maximize();
    map(w);
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{0, 40, 1280, 664}));
}

// Arranging a workspace brings back a window that lies outside, so such a window shows when it happens.
TEST_F(layers, arrange_the_workspace_only_when_the_usable_box_changes)
{
    layer_surface &panel = show(top_bar(40));
    window &lost = map("lost", {200, 100});
    place(lost, -5000, 0);
    panel.draw({1280, 40});
    panel.commit();
    settle();
    EXPECT_EQ(toplevel_box(record(lost)).x, -5000);
    panel.zone(50);
    panel.commit();
    EVENTUALLY_EQ(usable(), (wlr_box{0, 50, 1280, 654}));
    EXPECT_EQ(toplevel_box(record(lost)).x, 540);
    place(lost, -5000, 0);
    panel.destroy();
    EVENTUALLY_EQ(toplevel_box(record(lost)).x, 540);
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(layers, change_the_size_of_maximized_windows_shown_or_not)
{
    window &w = map("w", {400, 300}), &hidden = map("hidden", {400, 300});
    for (window *each : {&w, &hidden})
        toplevel_toggle_maximize(record(*each));
    move_toplevel_to_workspace(record(hidden), 5);
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1280, 704}));
    EVENTUALLY_EQ(box(hidden), (wlr_box{0, 0, 1280, 704}));
    layer_surface &panel = show(top_bar(40));
    EVENTUALLY_EQ(box(w), (wlr_box{0, 40, 1280, 664}));
    EVENTUALLY_EQ(box(hidden), (wlr_box{0, 40, 1280, 664}));
    panel.destroy();
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1280, 704}));
    toplevel_toggle_maximize(record(w));
    EVENTUALLY_EQ(box(w), (wlr_box{440, 202, 400, 300}));
}

TEST_F(layers, leave_maximized_windows_of_other_outputs_and_fullscreen_ones_alone)
{
    plug("B", 640, 640);
    wlr_cursor_warp(server.cursor, nullptr, 1600, 300);
    window &w = map("w", {400, 300}), &film = map("film", {400, 300});
    for (window *each : {&w, &film})
        toplevel_toggle_maximize(record(*each));
    EVENTUALLY_EQ(box(w), (wlr_box{1280, 0, 640, 640}));
    toplevel_set_fullscreen(record(film), true);
    settle();
    const int configures = w.configure_count();
    const wlr_box screen = box(film);
    show({.output = "A", .size = {0, 40}, .anchor = TOP | LEFT | RIGHT, .zone = 40});
    show({.output = "B", .size = {0, 40}, .anchor = BOTTOM | LEFT | RIGHT, .zone = 40});
    EVENTUALLY_EQ(box(w), (wlr_box{1280, 0, 640, 600}));
    EXPECT_EQ(w.configure_count(), configures + 1);
    EXPECT_EQ(box(film), screen);
}

TEST_F(layers, leave_the_title_bar_of_a_window_that_is_brought_back_in_reach)
{
    window &lost = map("lost", {200, 704});
    record(lost).ssd = true;
    place(lost, -5000, 0);
    layer_surface &panel = show(top_bar(40));
    EVENTUALLY_EQ(box(lost), (wlr_box{540, 70, 200, 704}));
    place(lost, -5000, 0);
    panel.destroy();
    EVENTUALLY_EQ(box(lost), (wlr_box{540, 30, 200, 704}));
    EXPECT_EQ(record(lost).float_geo, (wlr_box{540, 30, 200, 704}));
}

TEST_F(layers, that_go_or_hide_give_their_space_back_to_the_tiles)
{
    g_gap = 8;
    command("ws-layout 1 tiling");
    window &tile = map("tile");
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{8, 8, 1264, 688}));
    layer_surface &panel = show(top_bar(40));
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{8, 48, 1264, 648}));
    panel.unmap();
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{8, 8, 1264, 688}));
    layer_surface &dock = show({.size = {100, 0}, .anchor = LEFT | TOP | BOTTOM, .zone = 100});
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{108, 8, 1164, 688}));
    dock.owner().vanish();
    EVENTUALLY_EQ(toplevel_box(record(tile)), (wlr_box{8, 8, 1264, 688}));
}

TEST_F(layers, that_take_everything_leave_the_whole_output_to_ask_for)
{
    show({.size = {0, 40}, .anchor = TOP | LEFT | RIGHT, .zone = 5000});
    EXPECT_EQ(usable(), (wlr_box{0, 704, 1280, 0}));
    EXPECT_EQ(output_usable_at(server, 10, 10), (wlr_box{0, 0, 1280, 704}));
    EXPECT_EQ(output_usable_at(server, -10, 10), (wlr_box{}));
}

TEST_F(layers, that_take_everything_take_it_where_their_output_moves_to)
{
    plug("B", 640, 640);
    show({.output = "B", .size = {0, 40}, .anchor = TOP | LEFT | RIGHT, .zone = 5000});
    EXPECT_EQ(usable("B"), (wlr_box{1280, 640, 640, 0}));
    unplug("A");
    EXPECT_EQ(usable("B"), (wlr_box{0, 640, 640, 0}));
}

TEST_F(layers, on_an_output_that_is_off_wait_until_it_is_on_again)
{
    layer_surface &panel = show(top_bar(40));
    set_dpms(server, false);
    panel.zone(60);
    panel.commit();
    layer_surface &late = create(top_bar(20));
    settle();
    EXPECT_EQ(usable(), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(late.configure_count(), 0);
    set_dpms(server, true);
    EVENTUALLY_EQ(usable(), (wlr_box{0, 80, 1280, 624}));
    EXPECT_EQ(late.configure_count(), 1);
}

TEST_F(layers, of_an_output_that_goes_are_closed_and_not_moved)
{
    plug("B", 640, 640);
    layer_traits traits = top_bar(40);
    traits.output = "B";
    layer_surface &panel = show(traits);
    layer_traits of_a = top_bar(30);
    of_a.output = "A";
    layer_surface &other = show(of_a);
    unplug("B");
    EVENTUALLY(panel.closed());
    EXPECT_FALSE(other.closed());
    EXPECT_EQ(wl_list_length(&server.layer_surfaces), 1);
    EXPECT_EQ(usable("A"), (wlr_box{0, 30, 1280, 674}));
    panel.commit();
    panel.draw({640, 40});
    panel.zone(10);
    settle();
    EXPECT_EQ(panel.owner().error(), 0);
}

TEST_F(layers, that_name_an_output_that_has_gone_meanwhile_go_to_another)
{
    plug("B", 640, 640);
    test::client &c = connect();
    unplug("B");
    layer_traits traits = top_bar(40);
    traits.output = "B"; // the client has not heard yet that B is gone
    layer_surface &l = create(c, traits);
    EVENTUALLY_EQ(usable("A"), (wlr_box{0, 40, 1280, 664}));
    EXPECT_EQ(l.owner().error(), 0);
}

TEST_F(layers, follow_their_output_when_its_place_or_size_changes)
{
    plug("B", 640, 640);
    layer_traits traits = top_bar(40);
    traits.output = "B";
    layer_surface &panel = show(traits);
    unplug("A");
    EVENTUALLY_EQ(box(panel), (wlr_box{0, 0, 640, 40}));
    EXPECT_EQ(usable("B"), (wlr_box{0, 40, 640, 600}));
}

// Which surface is on top

struct panels : layers {
    // The top layer's surfaces, from top to bottom.
    std::vector<std::string> on_top()
    {
        std::vector<std::string> names;
        wlr_scene_node *node = nullptr;
        wl_list_for_each_reverse(node, &server.layers[2]->children,
                                 link) for (auto &l :
                                            each<&vantore_layer_surface::link>(
                                                server.layer_surfaces)) if (&l.scene->tree->node == node)
            names.emplace_back(l.layer_surface->namespace_);
        return names;
    }
};

TEST_F(panels, stay_above_whatever_comes_to_the_top_layer_later)
{
    show({.name = "vantore-panel", .size = {10, 10}});
    show({.name = "dock", .size = {10, 10}});
    show({.name = "launcher", .size = {10, 10}});
    EXPECT_THAT(on_top(), ElementsAre("vantore-panel", "launcher", "dock"));
}

TEST_F(panels, stay_above_whatever_moves_to_the_top_layer)
{
    layer_surface &dock = show({.name = "dock", .on = layer::bottom, .size = {10, 10}});
    show({.name = "vantore-panel", .size = {10, 10}});
    dock.move_to(layer::top);
    dock.commit();
    EVENTUALLY_EQ(on_top().size(), 2U);
    EXPECT_THAT(on_top(), ElementsAre("vantore-panel", "dock"));
}

TEST_F(panels, are_not_raised_by_surfaces_of_other_layers)
{
    show({.name = "vantore-panel", .size = {10, 10}});
    layer_surface &dock = show({.name = "dock", .size = {10, 10}});
    wlr_scene_node_raise_to_top(&find(dock)->scene->tree->node);
    show({.name = "overlay", .on = layer::overlay, .size = {10, 10}});
    EXPECT_THAT(on_top(), ElementsAre("dock", "vantore-panel"));
}

TEST_F(panels, are_told_by_their_whole_namespace)
{
    show({.name = "vantore-panel-clock", .size = {10, 10}});
    show({.name = "dock", .size = {10, 10}});
    EXPECT_THAT(on_top(), ElementsAre("dock", "vantore-panel-clock"));
}

} // namespace
