// The display that appears while the user drags a floating window, and what a drop on it does.

#include "support/drags.hpp"

#include "input/interactive.hpp"
#include "input/mouse_tiler.hpp"
#include "input/tiler_zones.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"

using test::drags;
using test::window;
using testing::Contains;

namespace
{

struct tiler : drags {
    void SetUp() override
    {
        drags::SetUp();
        g_tiler = true;
        g_tiler_top = true;
    }
    // The display lies at 337,22 of the output.
    static constexpr double hud_x = 337, hud_y = 22;
    void start_drag()
    {
        press_at(300, 185);
        go(300, 235);
    }
    void point_at_zone(int zone)
    {
        const wlr_fbox shape = mt_zone_shape(MT_ZONES[size_t(zone)]);
        go(hud_x + shape.x + 5, hud_y + shape.y + 5);
    }
};

TEST_F(tiler, shows_after_forty_pixels)
{
    press_at(300, 185);
    go(340, 185);
    EXPECT_FALSE(server.tiler.mt_visible);
    go(341, 185);
    EXPECT_TRUE(server.tiler.mt_visible);
    EXPECT_TRUE(server.tiler.mt_hud.node->node.enabled);
    EXPECT_EQ(server.tiler.mt_hud.node->node.x, int(hud_x));
    EXPECT_EQ(server.tiler.mt_hud.node->node.y, int(hud_y));
    pointer->release(BTN_LEFT);
    EXPECT_FALSE(server.tiler.mt_visible);
    EXPECT_FALSE(server.tiler.mt_hud.node->node.enabled);
}

TEST_F(tiler, does_not_show_for_tiles_and_fullscreen_windows)
{
    command("ws-layout 1 tiling");
    settle();
    press_at(300, 15);
    go(300, 300);
    EXPECT_FALSE(server.tiler.mt_visible);
    pointer->release(BTN_LEFT);
    command("ws-layout 1 floating");
    toplevel_set_fullscreen(t(), true);
    begin_interactive(t(), VANTORE_CURSOR_MOVE, 0);
    go(900, 600);
    EXPECT_FALSE(server.tiler.mt_visible);
    pointer->release(BTN_LEFT);
    toplevel_set_fullscreen(t(), false);
}

TEST_F(tiler, puts_the_window_into_the_zone_that_is_picked)
{
    start_drag();
    point_at_zone(0);
    EXPECT_EQ(server.tiler.mt_zone, 0);
    EXPECT_TRUE(shows(server.snap_preview));
    EXPECT_EQ(server.snap_preview->width, 640);
    (void)heard();
    pointer->release(BTN_LEFT);
    EXPECT_TRUE(t().snapped);
    EXPECT_FALSE(shows(server.snap_preview));
    EVENTUALLY_EQ(box(*w), (wlr_box{0, 30, 640, 674}));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
    EXPECT_EQ(t().scene_tree->node.parent, workspace(1).tree);
}

TEST_F(tiler, focuses_what_it_has_placed)
{
    window &other = map("other", {100, 100});
    start_drag();
    point_at_zone(0);
    focus_toplevel_ex(&record(other), true); // as a key does meanwhile
    pointer->release(BTN_LEFT);
    EXPECT_EQ(focused_toplevel(server), &t());
}

TEST_F(tiler, maximizes)
{
    start_drag();
    point_at_zone(14);
    EXPECT_EQ(server.snap_preview->width, 1280);
    pointer->release(BTN_LEFT);
    EXPECT_TRUE(t().maximized);
    EVENTUALLY_EQ(box(*w), (wlr_box{0, 30, 1280, 674}));
}

TEST_F(tiler, pushes_the_outermost_neighbours_aside)
{
    window &left = map("left", {100, 100}), &middle = map("middle", {100, 100}),
           &right = map("right", {100, 100});
    place(left, 0, 500);
    place(middle, 700, 500);
    place(right, 1100, 500);
    start_drag();
    point_at_zone(13);
    pointer->release(BTN_LEFT);
    EVENTUALLY_EQ(box(left), (wlr_box{0, 0, 426, 704}));
    EVENTUALLY_EQ(box(right), (wlr_box{853, 0, 426, 704}));
    EVENTUALLY_EQ(box(*w), (wlr_box{426, 30, 426, 674}));
    EXPECT_EQ(box(middle), (wlr_box{700, 500, 100, 100}));
}

TEST_F(tiler, pushes_no_minimized_and_no_fullscreen_neighbour)
{
    window &hidden = map("hidden", {100, 100}), &whole = map("whole", {100, 100}),
           &only = map("only", {100, 100});
    place(hidden, 0, 500);
    place(whole, 50, 500);
    place(only, 1100, 500);
    toplevel_minimize(record(hidden));
    toplevel_set_fullscreen(record(whole), true);
    focus_toplevel_ex(&t(), true);
    start_drag();
    point_at_zone(13);
    pointer->release(BTN_LEFT);
    EVENTUALLY_EQ(box(only), (wlr_box{0, 0, 426, 704}));
    EXPECT_FALSE(record(hidden).snapped);
    EXPECT_FALSE(record(whole).snapped);
    toplevel_set_fullscreen(record(whole), false);
}

TEST_F(tiler, pushes_a_single_neighbour_to_the_left)
{
    window &only = map("only", {100, 100});
    place(only, 1100, 500);
    start_drag();
    point_at_zone(13);
    pointer->release(BTN_LEFT);
    EVENTUALLY_EQ(box(only), (wlr_box{0, 0, 426, 704}));
}

TEST_F(tiler, sends_the_window_to_a_workspace_and_follows)
{
    start_drag();
    go(hud_x + 103 + 45 * 4 + 5, hud_y + 115);
    EXPECT_EQ(server.tiler.mt_ws, 4);
    EXPECT_FALSE(shows(server.snap_preview));
    pointer->release(BTN_LEFT);
    EXPECT_EQ(t().workspace, &workspace(5));
    EXPECT_EQ(output("A").current_ws, &workspace(5));
    EXPECT_TRUE(toplevel_visible(t()));
}

TEST_F(tiler, leaves_a_window_alone_that_is_dropped_beside_the_zones)
{
    start_drag();
    t().snapped = true; // as a key does meanwhile
    go(hud_x + 3, hud_y + 3);
    EXPECT_EQ(server.tiler.mt_zone, -1);
    pointer->release(BTN_LEFT);
    EXPECT_FALSE(t().snapped);
    EXPECT_EQ(box(*w), (wlr_box{240, 40, 400, 300}));
}

TEST_F(tiler, leaves_a_window_maximized_that_is_so_already)
{
    start_drag();
    toplevel_toggle_maximize(t()); // as a key does meanwhile
    EVENTUALLY_EQ(box(*w).width, 1280);
    point_at_zone(14);
    const wlr_box saved = t().saved_geo;
    (void)heard();
    pointer->release(BTN_LEFT);
    EXPECT_TRUE(t().maximized);
    EXPECT_FALSE(t().snapped);
    EXPECT_EQ(t().saved_geo, saved);
    EXPECT_EQ(focused_toplevel(server), &t());
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
}

TEST_F(tiler, leaves_a_window_where_it_is_that_is_sent_to_its_own_workspace)
{
    start_drag();
    go(hud_x + 103 + 5, hud_y + 115);
    EXPECT_EQ(server.tiler.mt_ws, 0);
    const wlr_box there = box(*w);
    (void)heard();
    pointer->release(BTN_LEFT);
    EXPECT_EQ(t().workspace, &workspace(1));
    EXPECT_EQ(output("A").current_ws, &workspace(1));
    EXPECT_EQ(box(*w), there);
    EXPECT_EQ(t().float_geo, there);
    EXPECT_FALSE(server.tiler.mt_visible);
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
}

TEST_F(tiler, knows_no_workspace_that_does_not_exist)
{
    EXPECT_FALSE(mt_apply(server, t(), -1, 9));
    EXPECT_FALSE(mt_apply(server, t(), -1, -1));
    EXPECT_EQ(t().workspace, &workspace(1));
}

TEST_F(tiler, applies_nothing_to_a_window_that_has_become_fullscreen)
{
    start_drag();
    point_at_zone(0);
    toplevel_set_fullscreen(t(), true);
    pointer->release(BTN_LEFT);
    EXPECT_FALSE(t().snapped);
    EXPECT_FALSE(server.tiler.mt_visible);
    toplevel_set_fullscreen(t(), false);
}

TEST_F(tiler, draws_anew_only_when_the_pick_changes)
{
    start_drag();
    const wlr_buffer *plain = server.tiler.mt_hud.node->buffer;
    go(300, 300);
    go(320, 320);
    EXPECT_EQ(server.tiler.mt_hud.node->buffer, plain);
    point_at_zone(0);
    const wlr_buffer *picked = server.tiler.mt_hud.node->buffer;
    EXPECT_NE(picked, plain);
    pointer->move(1, 1);
    EXPECT_EQ(server.tiler.mt_hud.node->buffer, picked);
    pointer->release(BTN_LEFT);
}

TEST_F(tiler, forgets_a_pick_on_the_way_to_another_output)
{
    plug("B", 1280, 704);
    start_drag();
    point_at_zone(0);
    go(1280 + 640, 400);
    EXPECT_EQ(server.tiler.mt_zone, -1);
    EXPECT_EQ(server.tiler.mt_hud.node->node.x, 1280 + int(hud_x));
    EXPECT_EQ(server.tiler.mt_output, output("B").wlr_output);
    pointer->release(BTN_LEFT);
    EXPECT_EQ(t().workspace, &workspace(2));
}

TEST_F(tiler, draws_pads_tiles_and_the_pick_in_the_accent)
{
    start_drag();
    point_at_zone(1); // its landing box leaves most of the display uncovered
    const auto shown = [&](double x, double y) { return pixel("A", int(hud_x + x), int(hud_y + y)); };
    EVENTUALLY((shown(70, 40) & 0xff00) > 0xa000); // the accent is green
    EXPECT_LT(shown(30, 40) & 0xff00, 0x4000U); // the zone beside it is not picked
    settle();
    EXPECT_TRUE(test::matches_golden(picture("A"), "mouse_tiler", 8));
}

} // namespace
