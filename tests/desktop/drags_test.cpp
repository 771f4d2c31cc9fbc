// Dragging windows with the pointer, from the press to the drop.

#include "support/drags.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_seat.hpp"

#include "input/cursor_image.hpp"
#include "input/hit_test.hpp"
#include "input/interactive.hpp"
#include "session/lock.hpp"
#include "text.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/focus.hpp"

using test::drags;
using test::window;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

namespace
{

// Title bars

TEST_F(drags, of_the_title_bar_move_the_window)
{
    press_at(300, 185);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE);
    EXPECT_EQ(server.drag.grabbed_toplevel, &t());
    go(310.7, 190);
    EXPECT_EQ(box(*w), (wlr_box{210, 205, 400, 300}));
    EXPECT_EQ(t().scene_tree->node.parent, server.toplevel_tree);
    drop_at(330, 205);
    EXPECT_EQ(box(*w), (wlr_box{230, 220, 400, 300}));
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_EQ(server.drag.grabbed_toplevel, nullptr);
    EXPECT_EQ(t().scene_tree->node.parent, workspace(1).tree);
}

TEST_F(drags, keep_the_dialogs_of_the_window_above_it)
{
    window &dialog = map_dialog(*w, "dialog", {200, 100});
    place(dialog, 300, 180); // over the bar and the content
    surface_hit hit;
    press_at(210, 190);
    EXPECT_EQ(desktop_toplevel_at(server, 400, 220, hit), &record(dialog));
    go(220, 200);
    EXPECT_EQ(desktop_toplevel_at(server, 400, 220, hit), &record(dialog));
    drop_at(230, 210);
    EXPECT_EQ(desktop_toplevel_at(server, 400, 220, hit), &record(dialog));
    EXPECT_EQ(record(dialog).scene_tree->node.parent, workspace(1).tree);
}

TEST_F(drags, of_a_window_that_goes_leave_its_dialogs_on_their_workspace)
{
    window &dialog = map_dialog(*w);
    focus_toplevel_ex(&t(), true);
    press_at(210, 190);
    EXPECT_EQ(record(dialog).scene_tree->node.parent, server.toplevel_tree);
    w->unmap();
    EVENTUALLY(find_record(*w) == nullptr);
    EXPECT_EQ(record(dialog).scene_tree->node.parent, workspace(1).tree);
    pointer->release(BTN_LEFT);
}

TEST_F(drags, with_the_right_button_on_the_bar_do_the_same)
{
    press_at(300, 185, BTN_RIGHT);
    drop_at(350, 235, BTN_RIGHT);
    EXPECT_EQ(box(*w), (wlr_box{250, 250, 400, 300}));
}

TEST_F(drags, that_are_double_clicks_maximize)
{
    go(300, 185);
    pointer->click(BTN_LEFT);
    pointer->click(BTN_LEFT);
    EXPECT_TRUE(t().maximized);
    EVENTUALLY_EQ(box(*w), (wlr_box{0, 30, 1280, 674}));
    settle();
    go(300, 15);
    pointer->click(BTN_LEFT); // a double click starts anew, so this is a first click, which unsnaps
    EXPECT_FALSE(t().maximized);
}

TEST_F(drags, that_are_double_clicks_with_a_motion_between_move_and_then_maximize)
{
    drag(300, 185, 305, 185);
    EXPECT_EQ(box(*w), (wlr_box{205, 200, 400, 300}));
    pointer->click(BTN_LEFT);
    EXPECT_TRUE(t().maximized);
    EXPECT_EQ(t().saved_geo, (wlr_box{205, 200, 400, 300}));
    settle();
}

TEST_F(drags, of_two_bars_are_no_double_click)
{
    window &other = map_with_bar("other", {300, 200});
    place(other, 700, 200);
    go(300, 185);
    pointer->click(BTN_LEFT);
    go(800, 185);
    pointer->click(BTN_LEFT);
    EXPECT_FALSE(t().maximized);
    EXPECT_FALSE(record(other).maximized);
}

TEST_F(drags, that_are_slow_double_clicks_do_not_maximize)
{
    go(300, 185);
    pointer->click(BTN_LEFT);
    server.pointing.last_tb_msec -= 400;
    pointer->click(BTN_LEFT);
    EXPECT_FALSE(t().maximized);
}

TEST_F(drags, from_the_buttons_do_what_the_buttons_say)
{
    const test::seat ears{w->owner()};
    settle();
    press_at(600 - 16, 185);
    EVENTUALLY_EQ(w->closes(), 1);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    pointer->release(BTN_LEFT);
    press_at(600 - 38, 185);
    EXPECT_TRUE(t().maximized);
    pointer->release(BTN_LEFT);
    EVENTUALLY_EQ(box(*w), (wlr_box{0, 30, 1280, 674}));
    settle();
    press_at(1280 - 60, 15);
    pointer->release(BTN_LEFT);
    EXPECT_TRUE(t().minimized);
    EXPECT_FALSE(t().scene_tree->node.enabled);
}

TEST_F(drags, focus_the_window_and_hide_it_from_nobody)
{
    window &other = map("other", {300, 200});
    place(other, 800, 400);
    focus_toplevel_ex(&record(other), true);
    press_at(300, 185);
    EXPECT_EQ(focused_toplevel(server), &t());
    EVENTUALLY(w->has(test::ACTIVATED));
    drop_at(300, 185);
}

TEST_F(drags, that_are_double_clicks_of_the_right_button_maximize_too)
{
    go(300, 185);
    pointer->click(BTN_RIGHT);
    pointer->click(BTN_RIGHT);
    EXPECT_TRUE(t().maximized);
    settle();
}

TEST_F(drags, with_logo_on_a_panel_are_the_panels)
{
    test::layer_surface panel{w->owner(), {.size = {600, 300}}};
    settle();
    go(640, 352);
    keyboard->press(KEY_LEFTMETA);
    pointer->press(BTN_LEFT);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    pointer->release(BTN_LEFT);
    keyboard->release(KEY_LEFTMETA);
}

TEST_F(drags, are_logged_on_request)
{
    g_debug_input = true;
    go(400, 350);
    pointer->press(BTN_LEFT);
    EXPECT_THAT(world.log(),
                testing::HasSubstr("button: press btn=272 cursor=400,350 → xdg:'w' sxy=200,150"));
    pointer->release(BTN_LEFT);
    EXPECT_THAT(world.log(), testing::HasSubstr("button: release btn=272 cursor=400,350 → xdg:'w'"));
    go(1000, 600);
    pointer->press(BTN_LEFT);
    EXPECT_THAT(world.log(), testing::HasSubstr("cursor=1000,600 → (none)"));
    pointer->release(BTN_LEFT);
    test::layer_surface panel{w->owner(), {.name = "bar", .size = {600, 300}}};
    settle();
    go(640, 352);
    pointer->press(BTN_LEFT);
    EXPECT_THAT(world.log(), testing::HasSubstr("→ layer:'bar'"));
    pointer->release(BTN_LEFT);
}

// Unsnapping

TEST_F(drags, of_a_maximized_window_bring_it_back_under_the_pointer)
{
    toplevel_toggle_maximize(t());
    EVENTUALLY_EQ(box(*w), (wlr_box{0, 30, 1280, 674}));
    press_at(960, 15); // three quarters of its width
    EXPECT_FALSE(t().maximized);
    EXPECT_EQ(t().scene_tree->node.x, 660);
    EXPECT_EQ(t().scene_tree->node.y, 45);
    EVENTUALLY_EQ(box(*w), (wlr_box{660, 45, 400, 300}));
    EXPECT_FALSE(w->has(test::MAXIMIZED));
    drop_at(970, 25);
    EXPECT_EQ(box(*w), (wlr_box{670, 55, 400, 300}));
}

TEST_F(drags, of_a_maximized_window_of_1000_pixels_at_three_quarters_keep_the_pointer_there)
{
    plug("B", 1000, 704);
    go(1280 + 500, 400); // where it opens and maximizes
    window &wide = map_with_bar("wide", {500, 300});
    toplevel_toggle_maximize(record(wide));
    EVENTUALLY_EQ(box(wide), (wlr_box{1280, 30, 1000, 674}));
    press_at(1280 + 750, 15);
    EVENTUALLY_EQ(box(wide), (wlr_box{1280 + 750 - 375, 45, 500, 300}));
    drop_at(1280 + 750, 15);
}

TEST_F(drags, of_a_snapped_window_by_its_client_bring_it_back)
{
    const test::seat ears{w->owner()};
    drag(300, 185, 1279, 300); // to the right edge
    EVENTUALLY_EQ(box(*w), (wlr_box{640, 30, 640, 674}));
    go(640 + 480, 350); // three quarters of its width
    pointer->press(BTN_LEFT);
    settle();
    w->request_move(ears.get(), ears.press_serial());
    EVENTUALLY(!t().snapped);
    EVENTUALLY_EQ(box(*w), (wlr_box{640 + 480 - 300, 380, 400, 300}));
    EXPECT_FALSE(w->has(test::TILED));
    drop_at(700, 400);
}

TEST_F(drags, of_a_snapped_window_bring_it_back)
{
    drag(300, 185, 1279, 300); // to the right edge
    EXPECT_TRUE(t().snapped);
    EVENTUALLY_EQ(box(*w), (wlr_box{640, 30, 640, 674}));
    EXPECT_TRUE(w->has(test::TILED));
    press_at(960, 15); // half of its width
    EXPECT_FALSE(t().snapped);
    EVENTUALLY_EQ(box(*w), (wlr_box{760, 45, 400, 300}));
    EXPECT_FALSE(w->has(test::TILED));
    drop_at(700, 300);
}

TEST_F(drags, of_a_snapped_tile_take_it_out_of_the_tiles)
{
    command("ws-layout 1 tiling");
    t().snapped = true;
    t().snap_geo = {1, 2, 300, 200};
    EVENTUALLY_EQ(box(*w).width, 1280);
    press_at(640, 15);
    EXPECT_TRUE(t().floating);
    EVENTUALLY_EQ(box(*w).width, 300);
    drop_at(640, 300);
}

TEST_F(drags, of_a_fullscreen_window_do_not_unsnap)
{
    t().fullscreen = t().maximized = true;
    begin_interactive(t(), VANTORE_CURSOR_MOVE, 0);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE);
    EXPECT_TRUE(t().maximized);
    EXPECT_EQ(t().scene_tree->node.parent, workspace(1).tree);
    reset_cursor_mode(server);
    t().fullscreen = t().maximized = false;
}

// Edge snapping

TEST_F(drags, to_an_edge_of_the_screen_show_where_the_window_will_land)
{
    press_at(300, 185);
    go(24, 350);
    EXPECT_TRUE(shows(server.snap_preview));
    EXPECT_EQ(server.snap_preview->width, 640);
    EXPECT_EQ(server.snap_preview->height, 704);
    go(25, 350);
    EXPECT_FALSE(shows(server.snap_preview));
    go(24, 350);
    pointer->release(BTN_LEFT);
    EXPECT_FALSE(shows(server.snap_preview));
    EXPECT_TRUE(t().snapped);
    EXPECT_EQ(t().snap_geo.width, 400);
    EVENTUALLY_EQ(box(*w), (wlr_box{0, 30, 640, 674}));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
}

TEST_F(drags, within_eight_pixels_do_not_snap)
{
    place(*w, 0, 30);
    drag(20, 15, 12, 15);
    EXPECT_FALSE(t().snapped);
    drag(12, 15, 3, 15);
    EXPECT_TRUE(t().snapped);
}

TEST_F(drags, dropped_in_the_middle_end_snapping)
{
    press_at(300, 185);
    t().snapped = true; // as a key does meanwhile
    drop_at(500, 400);
    EXPECT_FALSE(t().snapped);
}

TEST_F(drags, of_a_tile_to_an_edge_take_it_out_of_the_tiles)
{
    window &other = map_with_bar("other", {300, 200});
    command("ws-layout 1 tiling");
    EVENTUALLY(box(other).height == 674 && box(*w).height == 674);
    const wlr_box tile = box(*w);
    drag(tile.x + 100, 15, 1279, 350);
    EXPECT_TRUE(t().floating);
    EXPECT_TRUE(t().snapped);
    EXPECT_EQ(t().snap_geo.width, tile.width);
    EVENTUALLY_EQ(box(*w), (wlr_box{640, 30, 640, 674}));
    EVENTUALLY_EQ(box(other), (wlr_box{0, 30, 1280, 674}));
}

TEST_F(drags, of_a_fullscreen_window_to_an_edge_leave_it_as_it_is)
{
    press_at(300, 185);
    toplevel_set_fullscreen(t(), true);
    go(5, 350);
    EXPECT_FALSE(shows(server.snap_preview));
    drop_at(5, 350);
    EXPECT_FALSE(t().snapped);
    toplevel_set_fullscreen(t(), false);
}

TEST_F(drags, dropped_at_an_edge_or_on_another_output_focus_the_window)
{
    plug("B", 640, 512);
    window &other = map("other", {100, 100});
    for (const double x : {5.0, 1280.0 + 300}) {
        const wlr_box before = box(*w);
        press_at(before.x + 100, before.y - 15);
        focus_toplevel_ex(&record(other), true); // as a key does meanwhile
        drop_at(x, 300);
        EXPECT_EQ(focused_toplevel(server), &t()) << x;
        settle();
    }
}

TEST_F(drags, dropped_anywhere_leave_the_window_on_top)
{
    window &other = map("other", {100, 100});
    press_at(300, 185);
    focus_toplevel_ex(&record(other), true); // as a key does meanwhile
    drop_at(500, 400);
    EXPECT_EQ(workspace(1).tree->children.prev, &t().scene_tree->node.link);
}

TEST_F(drags, of_a_lifted_window_leave_it_where_it_is_lifted_to)
{
    t().overlay_lift = true;
    restore_toplevel_parent(t());
    press_at(300, 185);
    EXPECT_EQ(t().scene_tree->node.parent, server.layers[3]);
    drop_at(350, 235);
    EXPECT_EQ(box(*w), (wlr_box{250, 250, 400, 300}));
    t().overlay_lift = false;
    restore_toplevel_parent(t());
}

// Resizing

TEST_F(drags, of_a_border_neither_snap_nor_join_another_output)
{
    plug("B", 640, 512);
    press_at(597, 350);
    go(1275, 350);
    EXPECT_FALSE(shows(server.snap_preview));
    drop_at(1275, 350);
    EXPECT_FALSE(t().snapped);
    settle();
    drag(box(*w).x + box(*w).width - 2, 350, 1280 + 300, 350);
    EXPECT_EQ(t().workspace, &workspace(1));
    settle();
}

TEST_F(drags, of_the_borders_resize_a_floating_window)
{
    drag(202, 350, 152, 350);
    EVENTUALLY_EQ(box(*w), (wlr_box{150, 200, 450, 300}));
    settle();
    drag(597, 350, 647, 350);
    EVENTUALLY_EQ(box(*w), (wlr_box{150, 200, 500, 300}));
    settle();
    drag(400, 497, 400, 547);
    EVENTUALLY_EQ(box(*w), (wlr_box{150, 200, 500, 350}));
}

TEST_F(drags, of_the_border_stop_at_the_least_size_and_pin_the_other_edge)
{
    drag(202, 350, 900, 350);
    EVENTUALLY_EQ(box(*w), (wlr_box{480, 200, 120, 300}));
}

TEST_F(drags, of_the_border_respect_the_clients_minimum)
{
    w->min_size({350, 280});
    w->fill(0xff00ff00);
    settle();
    drag(597, 350, 250, 350);
    EVENTUALLY_EQ(box(*w), (wlr_box{200, 200, 350, 300}));
    settle();
    drag(400, 497, 400, 100);
    EVENTUALLY_EQ(box(*w), (wlr_box{200, 200, 350, 280}));
}

TEST_F(drags, of_the_left_border_keep_the_right_edge_whatever_size_the_client_takes)
{
    w->auto_draw = false;
    press_at(202, 350);
    go(152, 350);
    settle();
    w->draw({420, 300}, 0xff00ff00); // less than it was offered
    EVENTUALLY_EQ(box(*w), (wlr_box{180, 200, 420, 300}));
    drop_at(152, 350);
}

TEST_F(drags, of_a_tiles_border_are_the_clients)
{
    command("ws-layout 1 tiling");
    EVENTUALLY_EQ(box(*w).width, 1280);
    press_at(2, 350);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    drop_at(2, 350);
}

TEST_F(drags, over_a_border_change_the_image_and_take_the_pointer_from_the_client)
{
    go(400, 350);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(t()));
    go(202, 350);
    EXPECT_EQ(text_of(server.cursor_shown.cur_cursor_name), "left_side");
    EXPECT_EQ(server.seat->pointer_state.focused_surface, nullptr);
    go(598, 498);
    EXPECT_EQ(text_of(server.cursor_shown.cur_cursor_name), "bottom_right_corner");
    go(400, 203); // the top edge belongs to the client
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(t()));
}

TEST_F(drags, know_the_images_of_their_edges)
{
    EXPECT_STREQ(resize_cursor_name(WLR_EDGE_LEFT | WLR_EDGE_BOTTOM), "bottom_left_corner");
    EXPECT_STREQ(resize_cursor_name(WLR_EDGE_RIGHT | WLR_EDGE_BOTTOM), "bottom_right_corner");
    EXPECT_STREQ(resize_cursor_name(WLR_EDGE_BOTTOM), "bottom_side");
    EXPECT_STREQ(resize_cursor_name(WLR_EDGE_LEFT), "left_side");
    EXPECT_STREQ(resize_cursor_name(WLR_EDGE_RIGHT), "right_side");
    EXPECT_STREQ(resize_cursor_name(WLR_EDGE_TOP), "default");
}

// The Logo key

TEST_F(drags, with_logo_move_from_anywhere_and_the_client_hears_nothing)
{
    test::seat ears{w->owner()};
    settle();
    keyboard->press(KEY_LEFTMETA);
    (void)ears.take();
    press_at(400, 350);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE);
    settle();
    EXPECT_THAT(ears.take(), Not(Contains(testing::StartsWith("button"))));
    drop_at(450, 400);
    EXPECT_EQ(box(*w), (wlr_box{250, 250, 400, 300}));
    keyboard->release(KEY_LEFTMETA);
}

struct corner_case {
    double x, y;
    uint32_t edges;
};

TEST_F(drags, with_logo_and_the_right_button_resize_from_the_nearest_corner)
{
    server.wm_modifier = WLR_MODIFIER_ALT; // Logo moves and resizes whatever this says
    keyboard->press(KEY_LEFTMETA);
    for (const corner_case &c : {corner_case{300, 300, WLR_EDGE_LEFT | WLR_EDGE_TOP},
                                 {500, 300, WLR_EDGE_RIGHT | WLR_EDGE_TOP},
                                 {300, 400, WLR_EDGE_LEFT | WLR_EDGE_BOTTOM},
                                 {500, 400, WLR_EDGE_RIGHT | WLR_EDGE_BOTTOM}}) {
        press_at(c.x, c.y, BTN_RIGHT);
        EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_RESIZE);
        EXPECT_EQ(server.drag.resize_edges, c.edges);
        drop_at(c.x, c.y, BTN_RIGHT);
    }
    keyboard->release(KEY_LEFTMETA);
    keyboard->press(KEY_LEFTALT);
    press_at(400, 350);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    drop_at(400, 350);
}

// What a drag survives

TEST_F(drags, end_with_their_window)
{
    press_at(300, 185);
    go(10, 350);
    EXPECT_TRUE(shows(server.snap_preview));
    w->unmap();
    EVENTUALLY(server.drag.grabbed_toplevel == nullptr);
    EXPECT_FALSE(shows(server.snap_preview));
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    w->open();
    EVENTUALLY(find_record(*w) != nullptr);
    press_at(t().scene_tree->node.x + 50, t().scene_tree->node.y - 10);
    w->owner().vanish();
    EVENTUALLY(server.drag.grabbed_toplevel == nullptr);
    drop_at(900, 600);
}

TEST_F(drags, survive_another_workspace_an_unplugged_output_and_a_second_button)
{
    press_at(300, 185);
    command("workspace 5");
    go(320, 200);
    pointer->press(BTN_RIGHT);
    go(340, 220);
    pointer->release(BTN_RIGHT);
    EXPECT_THAT(test::server_check(server), IsEmpty());
    pointer->release(BTN_LEFT);
    command("workspace 1");
    press_at(t().scene_tree->node.x + 50, t().scene_tree->node.y - 10);
    plug("B", 640, 512);
    unplug("A");
    go(100, 100);
    pointer->release(BTN_LEFT);
    settle();
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(drags, survive_a_change_of_layout_and_another_window_that_wants_to_be_dragged)
{
    window &other = map_with_bar("other", {300, 200});
    press_at(300, 185);
    command("ws-layout 1 tiling");
    go(500, 300);
    begin_interactive(record(other), VANTORE_CURSOR_RESIZE, WLR_EDGE_RIGHT);
    EXPECT_EQ(t().scene_tree->node.parent, workspace(1).tree);
    command("ws-layout 1 floating");
    drop_at(600, 400);
    settle();
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(drags, to_another_output_join_its_workspace)
{
    plug("B", 640, 512);
    press_at(300, 185);
    drop_at(1280 + 200, 185);
    EXPECT_EQ(t().workspace, &workspace(2));
    EXPECT_EQ(t().float_geo.x, 1380);
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
}

TEST_F(drags, within_eight_pixels_join_no_other_output)
{
    g_tiler = true; // edges of the screen don't snap
    plug("B", 640, 512);
    place(*w, 1000, 200);
    drag(1276, 185, 1284, 185);
    EXPECT_EQ(t().workspace, &workspace(1));
    place(*w, 1000, 200);
    drag(1276, 185, 1285, 185);
    EXPECT_EQ(t().workspace, &workspace(2));
}

TEST_F(drags, of_a_fullscreen_window_join_no_other_output)
{
    plug("B", 640, 512);
    press_at(300, 185);
    toplevel_set_fullscreen(t(), true);
    drop_at(1280 + 200, 185);
    EXPECT_EQ(t().workspace, &workspace(1));
    toplevel_set_fullscreen(t(), false);
}

TEST_F(drags, asked_for_by_the_client_need_a_press_on_it)
{
    test::seat ears{w->owner()};
    settle();
    go(400, 350);
    w->request_move(ears.get(), 1234);
    settle();
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    pointer->press(BTN_LEFT);
    settle();
    w->request_move(ears.get(), ears.press_serial());
    EVENTUALLY_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE);
    drop_at(420, 350);
    EXPECT_EQ(box(*w), (wlr_box{220, 200, 400, 300}));
    go(400, 350);
    pointer->press(BTN_LEFT);
    settle();
    w->request_resize(ears.get(), ears.press_serial(), WLR_EDGE_RIGHT);
    EVENTUALLY_EQ(server.drag.cursor_mode, VANTORE_CURSOR_RESIZE);
    drop_at(450, 350);
    EVENTUALLY_EQ(box(*w).width, 450);
    w->request_minimize();
    EVENTUALLY(t().minimized);
}

// A lock, and outputs that go

TEST_F(drags, end_where_they_are_when_a_lock_begins)
{
    press_at(300, 185);
    go(400, 285);
    ASSERT_EQ(server.drag.grabbed_toplevel, &t());
    session_lock_begin(server);
    EXPECT_EQ(server.drag.grabbed_toplevel, nullptr);
    EXPECT_EQ(t().scene_tree->node.parent, workspace(1).tree);
    pointer->release(BTN_LEFT);
    server.locked = false;
    go(600, 400);
    EXPECT_EQ(box(*w), (wlr_box{300, 300, 400, 300}));
}

TEST_F(drags, that_resize_end_when_a_lock_begins)
{
    press_at(598, 350);
    ASSERT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_RESIZE);
    session_lock_begin(server);
    pointer->release(BTN_LEFT);
    server.locked = false;
    go(700, 350);
    settle();
    EXPECT_EQ(box(*w), (wlr_box{200, 200, 400, 300}));
}

TEST_F(drags, of_a_tile_bring_it_back_to_its_tile_when_a_lock_begins)
{
    command("ws-layout 1 tiling");
    map("other");
    EVENTUALLY_EQ(box(*w).width, 704);
    const wlr_box tile = box(*w);
    press_at(300, 15);
    go(900, 300);
    ASSERT_NE(box(*w).x, tile.x);
    session_lock_begin(server);
    EXPECT_EQ(box(*w), tile);
    pointer->release(BTN_LEFT);
    server.locked = false;
}

TEST_F(drags, to_another_output_leave_the_window_there_when_a_lock_begins)
{
    plug("B", 1280, 704);
    press_at(300, 185);
    go(1280 + 400, 350);
    session_lock_begin(server);
    EXPECT_EQ(t().workspace, output("B").current_ws);
    pointer->release(BTN_LEFT);
    server.locked = false;
}

TEST_F(drags, show_no_preview_once_a_lock_has_begun)
{
    press_at(300, 185);
    go(10, 350);
    ASSERT_TRUE(shows(server.snap_preview));
    session_lock_begin(server);
    EXPECT_FALSE(shows(server.snap_preview));
    pointer->release(BTN_LEFT);
    server.locked = false;
}

TEST_F(drags, forget_the_output_of_the_mouse_tiler_when_it_goes)
{
    g_tiler = true;
    test::made_up_output &other = plug("B", 1280, 704);
    press_at(300, 185);
    go(1280 + 400, 350);
    ASSERT_TRUE(server.tiler.mt_visible);
    test::unplug(other);
    EXPECT_EQ(server.tiler.mt_output, nullptr);
    drop_at(500, 300);
}

} // namespace
