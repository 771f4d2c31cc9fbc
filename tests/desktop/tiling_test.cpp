// Tiles of real windows.

#include "support/desktop.hpp"

#include "config/settings.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/direction.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/layout.hpp"
#include "workspaces/tiles.hpp"

using test::size;
using test::window;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

// 1920x1080 with gaps of 8 on a tiling first workspace.
struct tiling : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1920, 1088);
        g_gap = 8;
        workspace(1).master_ratio = 0.55;
        command("ws-layout 1 tiling");
    }
    wlr_box wanted(const window &w)
    {
        const vantore_toplevel &t = record(w);
        return {t.scene_tree->node.x, t.scene_tree->node.y, t.want_w, t.want_h};
    }
    void arrange() { arrange_workspace(&workspace(1)); }
    std::vector<window *> map_tiles(int count)
    {
        std::vector<window *> tiles;
        tiles.reserve(size_t(count));
        for (int i = 0; i < count; i++)
            tiles.push_back(&map("tile" + std::to_string(i)));
        return tiles;
    }
};

TEST_F(tiling, two_tiles_share_the_row_and_the_survivor_takes_all)
{
    window &first = map("editor"), &second = map("terminal");
    EVENTUALLY_EQ(box(first), (wlr_box{8, 8, 1043, 1072}));
    EVENTUALLY_EQ(box(second), (wlr_box{1059, 8, 853, 1072}));
    EXPECT_TRUE(first.has(test::TILED));
    second.destroy();
    EVENTUALLY_EQ(box(first), (wlr_box{8, 8, 1904, 1072}));
}

TEST_F(tiling, puts_the_title_bar_inside_the_tile)
{
    window &w = map("editor");
    record(w).ssd = true;
    arrange();
    EVENTUALLY_EQ(box(w), (wlr_box{8, 38, 1904, 1042}));
}

TEST_F(tiling, leaves_a_pixel_of_content_below_a_title_bar_that_fills_the_tile)
{
    window &w = map("editor");
    record(w).ssd = true;
    tile_place(record(w), {100, 200, 300, 20});
    EXPECT_EQ(wanted(w), (wlr_box{100, 230, 300, 1}));
    tile_place(record(w), {100, 200, 0, 31});
    EXPECT_EQ(wanted(w), (wlr_box{100, 230, 1, 1}));
}

TEST_F(tiling, tells_a_client_once_that_it_took_a_size_of_its_own)
{
    window &first = map("editor"), &second = map("stubborn");
    EVENTUALLY_EQ(box(second), (wlr_box{1059, 8, 853, 1072}));
    settle();
    second.auto_draw = false;
    const int before = second.configure_count();
    for (int i = 0; i < 5; i++) {
        second.draw({1200, 1072}, 0xff00ff00);
        settle();
    }
    EXPECT_EQ(second.configure_count(), before + 1);
    EXPECT_EQ(second.last().size(), (size{853, 1072}));
    EXPECT_EQ(box(second), (wlr_box{1059, 8, 1200, 1072})); // it overlaps
    EXPECT_EQ(box(first), (wlr_box{8, 8, 1043, 1072}));
    second.draw({1300, 1072}, 0xff00ff00);
    EVENTUALLY_EQ(second.configure_count(), before + 2);
}

TEST_F(tiling, wakes_no_client_that_has_its_size_already)
{
    window &w = map("editor");
    EVENTUALLY_EQ(box(w), (wlr_box{8, 8, 1904, 1072}));
    settle();
    const int before = w.configure_count();
    arrange();
    arrange();
    settle();
    EXPECT_EQ(w.configure_count(), before);
}

TEST_F(tiling, leaves_out_floating_minimized_and_fullscreen_windows)
{
    const auto tiles = map_tiles(4);
    record(*tiles[0]).floating = true;
    record(*tiles[1]).minimized = true;
    record(*tiles[2]).fullscreen = true;
    arrange();
    EXPECT_EQ(wanted(*tiles[3]), (wlr_box{8, 8, 1904, 1072}));
    for (const bool minimized : {true, false}) {
        record(*tiles[1]).minimized = minimized;
        EXPECT_EQ(tile_participates(record(*tiles[1])), !minimized);
    }
    record(*tiles[2]).fullscreen = false; // the checks at the end look at every window
    arrange();
}

TEST_F(tiling, leaves_the_65th_window_where_it_was)
{
    const auto tiles = map_tiles(64);
    EVENTUALLY(wanted(*tiles[63]).width > 0);
    window &late = map("late", {333, 222});
    const wlr_box before = box(late);
    settle();
    EXPECT_EQ(box(late), before);
    EXPECT_EQ(before.width, 333);
    EXPECT_FALSE(late.has(test::TILED));
    tiles[0]->destroy();
    EVENTUALLY(late.has(test::TILED)); // now it is the 64th
}

TEST_F(tiling, leaves_out_windows_of_fixed_size_and_child_windows)
{
    window &parent = map("editor");
    EXPECT_TRUE(record(map_dialog(parent)).floating);
    window &fixed = map_of_fixed_size("fixed", {200, 100});
    EXPECT_TRUE(record(fixed).floating);
    EVENTUALLY_EQ(box(parent), (wlr_box{8, 8, 1904, 1072}));
    EXPECT_EQ(box(fixed), (wlr_box{860, 494, 200, 100}));
}

TEST_F(tiling, waits_until_the_workspace_is_shown)
{
    window &w = map("editor");
    command("workspace 2");
    command("ws-layout 1 floating");
    EVENTUALLY_EQ(box(w).width, 1152);
    command("ws-layout 1 tiling");
    settle();
    EXPECT_EQ(w.last().width, 1152);
    command("workspace 1");
    EVENTUALLY_EQ(box(w), (wlr_box{8, 8, 1904, 1072}));
}

TEST_F(tiling, survives_an_area_narrower_than_its_gaps)
{
    g_gap = 200;
    plug("tiny", 320, 192);
    command("ws-layout 2 tiling");
    wlr_cursor_warp(server.cursor, nullptr, 1920 + 100, 100);
    const auto tiles = map_tiles(5);
    for (const char *mode : {"master", "grid", "columns", "monocle"}) {
        command(std::string{"ws-tile-mode 2 "} + mode);
        for (const window *w : tiles) {
            EXPECT_GE(wanted(*w).width, 1) << mode;
            EXPECT_GE(wanted(*w).height, 1) << mode;
        }
        settle();
    }
}

TEST_F(tiling, brings_a_float_back_only_when_no_pixel_of_it_is_on_the_output)
{
    window &w = map("float", {400, 300});
    record(w).floating = true;
    EVENTUALLY(w.last().states != 0);
    w.draw({400, 300}, 0xff0000ff);
    EVENTUALLY_EQ(box(w).width, 400);
    place(w, 1919, 1087);
    arrange();
    EXPECT_EQ(box(w), (wlr_box{1919, 1087, 400, 300}));
    place(w, 1920, 500);
    arrange();
    EXPECT_EQ(box(w), (wlr_box{760, 394, 400, 300}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{760, 394, 400, 300}));
    place(w, -400, 500);
    arrange();
    EXPECT_EQ(box(w), (wlr_box{760, 394, 400, 300}));
}

TEST_F(tiling, moves_no_fullscreen_window_back)
{
    window &w = map("film", {400, 300});
    record(w).floating = record(w).fullscreen = true;
    place(w, 5000, 5000);
    arrange();
    EXPECT_EQ(box(w).x, 5000);
    record(w).fullscreen = false; // the checks at the end look at every window
    arrange();
}

TEST_F(tiling, counts_tiles_before_a_window)
{
    const auto tiles = map_tiles(3);
    record(*tiles[0]).floating = true;
    EXPECT_EQ(tile_index(record(*tiles[0])), -1);
    EXPECT_EQ(tile_index(record(*tiles[1])), 0);
    EXPECT_EQ(tile_index(record(*tiles[2])), 1);
}

TEST_F(tiling, finds_the_tile_at_a_point_with_its_bar)
{
    window &first = map("first"), &second = map("second");
    EVENTUALLY_EQ(box(first), (wlr_box{8, 8, 1043, 1072}));
    EVENTUALLY_EQ(box(second), (wlr_box{1059, 8, 853, 1072}));
    const auto at = [&](double x, double y) { return tile_at(&workspace(1), x, y, nullptr); };
    EXPECT_EQ(at(8, 8), &record(first));
    EXPECT_EQ(at(1050.9, 1079.9), &record(first));
    EXPECT_EQ(at(1051, 8), nullptr);
    EXPECT_EQ(at(7.9, 8), nullptr);
    EXPECT_EQ(at(8, 1080), nullptr);
    EXPECT_EQ(at(8, 7.9), nullptr);
    EXPECT_EQ(at(1059, 8), &record(second));
    EXPECT_EQ(tile_at(&workspace(1), 8, 8, &record(first)), nullptr);
    EXPECT_EQ(tile_at(nullptr, 8, 8, nullptr), nullptr);
    record(first).ssd = true;
    EXPECT_EQ(at(8, 8 - 30), &record(first));
    EXPECT_EQ(at(8, 8 - 30.1), nullptr);
    record(first).stack_id = 7;
    EXPECT_EQ(at(8, 8 - 26), &record(first));
    EXPECT_EQ(at(8, 8 - 26.1), nullptr);
    record(first).floating = true;
    EXPECT_EQ(at(8, 8), nullptr);
}

// The commands

TEST_F(tiling, brings_every_window_back_to_its_old_box)
{
    command("ws-layout 1 floating");
    window &w = map("editor", {500, 400});
    place(w, 100, 200);
    command("ws-layout 1 tiling");
    EVENTUALLY_EQ(box(w), (wlr_box{8, 8, 1904, 1072}));
    command("ws-layout 1 floating");
    EVENTUALLY_EQ(box(w), (wlr_box{100, 200, 500, 400}));
    EXPECT_TRUE(w.has(test::TILED));
}

TEST_F(tiling, by_the_mode_key_remembers_no_boxes)
{
    command("ws-layout 1 floating");
    window &w = map("editor", {500, 400});
    place(w, 100, 200);
    (void)heard();
    cycle_tile_mode(server);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
    EXPECT_EQ(workspace(1).layout, VANTORE_LAYOUT_TILING);
    EXPECT_EQ(workspace(1).tile_mode, TM_MASTER);
    EVENTUALLY_EQ(box(w), (wlr_box{8, 8, 1904, 1072}));
    command("ws-layout 1 floating");
    EVENTUALLY_EQ(box(w), (wlr_box{384, 218, 1152, 652})); // where a new window floats
}

TEST_F(tiling, by_the_mode_key_goes_round_the_modes)
{
    for (const vantore_tile_mode mode : {TM_GRID, TM_COLUMNS, TM_MONOCLE, TM_MASTER}) {
        cycle_tile_mode(server);
        EXPECT_EQ(workspace(1).tile_mode, mode);
    }
}

TEST_F(tiling, toggles_on_the_workspace_of_the_current_output)
{
    toggle_ws_layout(server);
    EXPECT_EQ(workspace(1).layout, VANTORE_LAYOUT_FLOATING);
    toggle_ws_layout(server);
    EXPECT_EQ(workspace(1).layout, VANTORE_LAYOUT_TILING);
    EXPECT_EQ(workspace(2).layout, VANTORE_LAYOUT_FLOATING);
}

TEST_F(tiling, lets_a_window_out_and_in_again)
{
    window &w = map("editor"), &other = map("other");
    EVENTUALLY_EQ(box(w), (wlr_box{8, 8, 1043, 1072}));
    focus_toplevel_ex(&record(w), true);
    settle();
    (void)heard();
    toggle_float_focused(server);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS));
    EVENTUALLY_EQ(box(w), (wlr_box{384, 218, 1152, 652}));
    EXPECT_FALSE(w.has(test::TILED));
    EVENTUALLY_EQ(box(other), (wlr_box{8, 8, 1904, 1072}));
    place(w, 50, 60);
    toggle_float_focused(server);
    EVENTUALLY_EQ(box(w), (wlr_box{8, 8, 1043, 1072}));
    EXPECT_TRUE(w.has(test::TILED));
    toggle_float_focused(server);
    EVENTUALLY_EQ(box(w), (wlr_box{50, 60, 1152, 652}));
}

TEST_F(tiling, does_not_let_a_fullscreen_window_out)
{
    window &w = map("film");
    record(w).fullscreen = true;
    toggle_float_focused(server);
    EXPECT_FALSE(record(w).floating);
    record(w).fullscreen = false;
}

TEST_F(tiling, moves_a_tile_in_the_order_without_wrapping)
{
    const auto tiles = map_tiles(3);
    const auto order = [&] {
        std::vector<int> indices;
        indices.reserve(tiles.size());
        for (const window *w : tiles)
            indices.push_back(tile_index(record(*w)));
        return indices;
    };
    record(*tiles[1]).floating = true; // a float is passed over
    focus_toplevel_ex(&record(*tiles[0]), true);
    (void)heard();
    move_direction(server, -1, 0);
    EXPECT_THAT(order(), ElementsAre(0, -1, 1));
    EXPECT_THAT(heard(), IsEmpty());
    move_direction(server, 0, 1);
    EXPECT_THAT(order(), ElementsAre(1, -1, 0));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
    move_direction(server, 1, 0);
    EXPECT_THAT(order(), ElementsAre(1, -1, 0));
    move_direction(server, 0, -1);
    EXPECT_THAT(order(), ElementsAre(0, -1, 1));
}

struct resize_case {
    vantore_tile_mode mode;
    int dx, dy;
    double width, height, ratio; // weights and ratio afterwards
};

class resize_step : public tiling, public testing::WithParamInterface<resize_case>
{
};

// Resizes the second of three tiles, starting with fresh weights.
TEST_P(resize_step, changes_what_the_mode_has)
{
    const auto tiles = map_tiles(3);
    workspace(1).tile_mode = GetParam().mode;
    focus_toplevel_ex(&record(*tiles[1]), true);
    resize_direction(server, GetParam().dx, GetParam().dy);
    EXPECT_DOUBLE_EQ(record(*tiles[1]).tile_weight, GetParam().width);
    EXPECT_DOUBLE_EQ(record(*tiles[1]).tile_hweight, GetParam().height);
    EXPECT_DOUBLE_EQ(workspace(1).master_ratio, GetParam().ratio);
    for (const int other : {0, 2}) {
        EXPECT_EQ(record(*tiles[size_t(other)]).tile_weight, 0);
        EXPECT_EQ(record(*tiles[size_t(other)]).tile_hweight, 0);
    }
}

const resize_case resize_cases[]{
    {TM_MASTER, 1, 0, 0, 0, 0.60},      {TM_MASTER, -1, 0, 0, 0, 0.50},  {TM_MASTER, 0, 1, 1.15, 0, 0.55},
    {TM_MASTER, 0, -1, 0.85, 0, 0.55},  {TM_GRID, 1, 0, 1.15, 0, 0.55},  {TM_GRID, -1, 0, 0.85, 0, 0.55},
    {TM_GRID, 0, 1, 0, 1.15, 0.55},     {TM_GRID, 0, -1, 0, 0.85, 0.55}, {TM_COLUMNS, 1, 0, 1.15, 0, 0.55},
    {TM_COLUMNS, -1, 0, 0.85, 0, 0.55}, {TM_COLUMNS, 0, 1, 0, 0, 0.55},  {TM_COLUMNS, 0, -1, 0, 0, 0.55},
    {TM_MONOCLE, 1, 0, 0, 0, 0.55},     {TM_MONOCLE, 0, 1, 0, 0, 0.55},
};
INSTANTIATE_TEST_SUITE_P(modes, resize_step, testing::ValuesIn(resize_cases));

TEST_F(tiling, gives_the_master_no_height_of_its_own)
{
    const auto tiles = map_tiles(2);
    focus_toplevel_ex(&record(*tiles[0]), true);
    resize_direction(server, 0, 1);
    EXPECT_EQ(record(*tiles[0]).tile_weight, 0);
    resize_direction(server, 1, 0);
    EXPECT_DOUBLE_EQ(workspace(1).master_ratio, 0.60);
}

TEST_F(tiling, keeps_weights_and_the_masters_share_within_bounds)
{
    const auto tiles = map_tiles(2);
    vantore_toplevel &t = record(*tiles[1]);
    t.tile_weight = 0.3;
    resize_direction(server, 0, -1);
    EXPECT_EQ(t.tile_weight, 0.3);
    t.tile_weight = 5.0;
    resize_direction(server, 0, 1);
    EXPECT_EQ(t.tile_weight, 5.0);
    for (int i = 0; i < 20; i++)
        adjust_master(server, 0.05);
    EXPECT_EQ(workspace(1).master_ratio, 0.8);
    for (int i = 0; i < 20; i++)
        adjust_master(server, -0.05);
    EXPECT_EQ(workspace(1).master_ratio, 0.2);
}

TEST_F(tiling, shares_a_row_of_the_grid_by_its_own_weights_only)
{
    const auto tiles = map_tiles(4);
    command("ws-tile-mode 1 grid");
    EVENTUALLY_EQ(box(*tiles[3]), (wlr_box{964, 548, 948, 532}));
    focus_toplevel_ex(&record(*tiles[0]), true);
    resize_direction(server, 1, 0);
    EVENTUALLY_EQ(box(*tiles[0]), (wlr_box{8, 8, 1014, 532}));
    EVENTUALLY_EQ(box(*tiles[1]), (wlr_box{1030, 8, 882, 532}));
    EXPECT_EQ(wanted(*tiles[2]), (wlr_box{8, 548, 948, 532}));
    EXPECT_EQ(wanted(*tiles[3]), (wlr_box{964, 548, 948, 532}));
}

TEST_F(tiling, leaves_arrow_keys_on_a_floating_window_to_steps_of_forty)
{
    window &w = map("float", {400, 300});
    toggle_float_focused(server);
    EVENTUALLY_EQ(box(w), (wlr_box{384, 218, 1152, 652}));
    move_direction(server, 1, 0);
    move_direction(server, 0, -1);
    EXPECT_EQ(box(w), (wlr_box{424, 178, 1152, 652}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{424, 178, 1152, 652}));
    resize_direction(server, -1, 0);
    EVENTUALLY_EQ(box(w), (wlr_box{424, 178, 1112, 652}));
    resize_direction(server, 0, 1);
    EVENTUALLY_EQ(box(w), (wlr_box{424, 178, 1112, 692}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{424, 178, 1112, 692}));
    for (int i = 0; i < 40; i++) {
        resize_direction(server, -1, 0);
        settle();
    }
    EXPECT_EQ(box(w).width, 120);
    record(w).fullscreen = true;
    move_direction(server, 1, 0);
    resize_direction(server, 1, 0);
    EXPECT_EQ(box(w), (wlr_box{424, 178, 120, 692}));
    record(w).fullscreen = false;
}

TEST_F(tiling, commands_without_any_window_do_nothing)
{
    (void)heard();
    toggle_float_focused(server);
    move_direction(server, 1, 0);
    resize_direction(server, 1, 0);
    focus_direction(server, 1, 0);
    EXPECT_THAT(heard(), IsEmpty());
}

// Focus

TEST_F(tiling, follows_the_arrow_keys_to_the_nearest_tile)
{
    const auto tiles = map_tiles(3); // a master and two beside it
    settle();
    const auto focused = [&] { return focused_toplevel(server); };
    EXPECT_EQ(focused(), &record(*tiles[2]));
    focus_direction(server, 0, -1);
    EXPECT_EQ(focused(), &record(*tiles[1]));
    focus_direction(server, -1, 0);
    EXPECT_EQ(focused(), &record(*tiles[0]));
    focus_direction(server, -1, 0);
    EXPECT_EQ(focused(), &record(*tiles[0]));
    EVENTUALLY(tiles[0]->has(test::ACTIVATED));
    focus_direction(server, 1, 0); // both are equally near, so the one raised last counts
    EXPECT_EQ(focused(), &record(*tiles[1]));
}

TEST_F(tiling, restores_a_minimized_tile_that_is_focused)
{
    const auto tiles = map_tiles(2);
    settle();
    record(*tiles[1]).minimized = true;
    wlr_scene_node_set_enabled(&record(*tiles[1]).scene_tree->node, false);
    focus_toplevel_ex(&record(*tiles[0]), true);
    arrange();
    EXPECT_EQ(wanted(*tiles[0]), (wlr_box{8, 8, 1904, 1072}));
    focus_toplevel_ex(&record(*tiles[1]), true);
    EXPECT_FALSE(record(*tiles[1]).minimized);
    EXPECT_EQ(wanted(*tiles[0]), (wlr_box{8, 8, 1043, 1072}));
    EXPECT_EQ(wanted(*tiles[1]), (wlr_box{1059, 8, 853, 1072}));
}

TEST_F(tiling, passes_over_hidden_windows_and_looks_on_other_outputs)
{
    window &here = map("here");
    plug("B", 800, 576);
    command("workspace 2");
    window &there = map("there", {300, 200});
    focus_toplevel_ex(&record(here), true);
    focus_direction(server, 1, 0);
    EXPECT_EQ(focused_toplevel(server), &record(there));
    focus_direction(server, -1, 0);
    EXPECT_EQ(focused_toplevel(server), &record(here));
    wlr_cursor_warp(server.cursor, nullptr, 100, 100);
    command("workspace 3"); // hides the window on the first output
    focus_toplevel_ex(&record(there), true);
    focus_direction(server, -1, 0);
    EXPECT_EQ(focused_toplevel(server), &record(there));
}

} // namespace
