// Dragging windows with the pointer, from the press to the drop.

#include "support/desktop.hpp"
#include "support/server_check.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_seat.hpp"

#include "config/settings.hpp"
#include "input/cursor_image.hpp"
#include "input/interactive.hpp"
#include "input/pointer.hpp"
#include "input/tiler_zones.hpp"
#include "presentation/decorations.hpp"
#include "text.hpp"
#include "windows/states.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/stacks.hpp"

#include <linux/input-event-codes.h>

using test::made_up_keyboard;
using test::made_up_pointer;
using test::window;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

// A window of 400x300 with a title bar, its content at 200,200 of 1280x704. The Mouse Tiler is off.
struct drags : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        pointer = &plug_pointer();
        keyboard = &plug_keyboard();
        g_tiler = false;
        g_gap = 0;
        w = &map_with_bar("w", {400, 300});
        place(*w, 200, 200);
        settle();
        (void)heard();
    }
    window &map_with_bar(const std::string &app, test::size size)
    {
        window &made = map(app, size);
        record(made).ssd = true;
        dec_layout(record(made));
        return made;
    }
    void go(double lx, double ly) { point_at(*pointer, lx, ly); }
    // Never the second press of a double click.
    void press_at(double lx, double ly, uint32_t button = BTN_LEFT)
    {
        server.last_tb_id = 0;
        go(lx, ly);
        pointer->press(button);
    }
    void drop_at(double lx, double ly, uint32_t button = BTN_LEFT)
    {
        go(lx, ly);
        pointer->release(button);
        EXPECT_THAT(test::server_check(server), IsEmpty());
    }
    void drag(double from_x, double from_y, double to_x, double to_y)
    {
        press_at(from_x, from_y);
        drop_at(to_x, to_y);
    }
    wlr_box box(const window &of) { return toplevel_box(record(of)); }
    vantore_toplevel &t() { return record(*w); }
    bool shows(wlr_scene_rect *rect) { return rect->node.enabled; }

    made_up_pointer *pointer = nullptr;
    made_up_keyboard *keyboard = nullptr;
    window *w = nullptr;
};

// Title bars

TEST_F(drags, of_the_title_bar_move_the_window)
{
    press_at(300, 185);
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_MOVE);
    EXPECT_EQ(server.grabbed_toplevel, &t());
    go(310.7, 190);
    EXPECT_EQ(box(*w), (wlr_box{210, 205, 400, 300}));
    EXPECT_EQ(t().scene_tree->node.parent, server.toplevel_tree);
    drop_at(330, 205);
    EXPECT_EQ(box(*w), (wlr_box{230, 220, 400, 300}));
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_EQ(server.grabbed_toplevel, nullptr);
    EXPECT_EQ(t().scene_tree->node.parent, workspace(1).tree);
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
    pointer->click(BTN_LEFT); // the memory is empty: a new first click, which unsnaps
    EXPECT_FALSE(t().maximized);
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
    server.last_tb_msec -= 400;
    pointer->click(BTN_LEFT);
    EXPECT_FALSE(t().maximized);
}

TEST_F(drags, from_the_buttons_do_what_the_buttons_say)
{
    const test::seat ears{w->owner()};
    settle();
    press_at(600 - 16, 185);
    EVENTUALLY_EQ(w->closes(), 1);
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
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
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
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

// Focus that follows the mouse

struct hover_focus : drags {
    void SetUp() override
    {
        drags::SetUp();
        g_focus_follows_mouse = true;
        other = &map("other", {300, 200});
        place(*other, 800, 300);
        go(400, 350); // the first window, which is the lower one in the list
        EVENTUALLY(w->has(test::ACTIVATED));
    }
    window *other = nullptr;
};

TEST_F(hover_focus, does_not_raise_and_commands_act_on_the_window_raised_last)
{
    EXPECT_EQ(focused_toplevel(server), &record(*other));
    EXPECT_EQ(server.seat->keyboard_state.focused_surface, tl_surface(t()));
    keyboard->press(KEY_LEFTMETA);
    keyboard->tap(KEY_Q);
    keyboard->release(KEY_LEFTMETA);
    EVENTUALLY_EQ(other->closes(), 1);
    EXPECT_EQ(w->closes(), 0);
}

TEST_F(hover_focus, leaves_a_window_that_opens_under_a_resting_pointer_until_it_has_moved_eight_pixels)
{
    window &late = map("late", {200, 200});
    place(late, 350, 300);
    focus_toplevel_ex(&record(*other), true);
    process_cursor_motion(server, 0);
    const wlr_surface *others = tl_surface(record(*other));
    EXPECT_EQ(server.seat->keyboard_state.focused_surface, others);
    pointer->move(7, 0);
    EXPECT_EQ(server.seat->keyboard_state.focused_surface, others);
    pointer->move(1, 0);
    EXPECT_EQ(server.seat->keyboard_state.focused_surface, tl_surface(record(late)));
}

TEST_F(hover_focus, keeps_its_anchor_over_the_empty_desktop)
{
    const double anchor = server.ffm_anchor_x;
    go(100, 600);
    EXPECT_EQ(server.ffm_anchor_x, anchor);
    EXPECT_EQ(server.seat->keyboard_state.focused_surface, tl_surface(t()));
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
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_MOVE);
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
    t().snapped = true;
    t().snap_geo = {0, 0, 400, 300};
    drag(300, 185, 500, 400);
    EXPECT_FALSE(t().snapped);
}

// Resizing

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
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    drop_at(2, 350);
}

TEST_F(drags, over_a_border_change_the_image_and_take_the_pointer_from_the_client)
{
    go(400, 350);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(t()));
    go(202, 350);
    EXPECT_EQ(text_of(server.cur_cursor_name), "left_side");
    EXPECT_EQ(server.seat->pointer_state.focused_surface, nullptr);
    go(598, 498);
    EXPECT_EQ(text_of(server.cur_cursor_name), "bottom_right_corner");
    go(400, 203); // the top is the client's
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
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_MOVE);
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
    server.wm_modifier = WLR_MODIFIER_ALT; // it is Logo all the same
    keyboard->press(KEY_LEFTMETA);
    for (const corner_case &c : {corner_case{300, 300, WLR_EDGE_LEFT | WLR_EDGE_TOP},
                                 {500, 300, WLR_EDGE_RIGHT | WLR_EDGE_TOP},
                                 {300, 400, WLR_EDGE_LEFT | WLR_EDGE_BOTTOM},
                                 {500, 400, WLR_EDGE_RIGHT | WLR_EDGE_BOTTOM}}) {
        press_at(c.x, c.y, BTN_RIGHT);
        EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_RESIZE);
        EXPECT_EQ(server.resize_edges, c.edges);
        drop_at(c.x, c.y, BTN_RIGHT);
    }
    keyboard->release(KEY_LEFTMETA);
    keyboard->press(KEY_LEFTALT);
    press_at(400, 350);
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    drop_at(400, 350);
}

// Tiles

struct tile_drags : drags {
    void SetUp() override
    {
        drags::SetUp();
        g_tiler = true; // edges of the screen don't snap
        w->destroy();
        settle();
        workspace(1).master_ratio = 0.5;
        command("ws-layout 1 tiling");
        command("ws-tile-mode 1 columns");
        for (const char *app : {"a", "b", "c", "d"})
            tiles.push_back(&map_with_bar(app, {300, 300}));
        arrange_workspace(&workspace(1));
        settle();
        (void)heard();
    }
    // Where a tile is in the order.
    std::string order()
    {
        std::string result;
        for (auto &each_tile : each<&vantore_toplevel::ws_link>(workspace(1).toplevels))
            result += tl_app_id(each_tile);
        return result;
    }
    // From the bar of one tile to a point of another's column; columns are 320 wide.
    void carry(int from, int to, double fx, double y)
    {
        drag(320 * from + 100, 10, 320 * to + 320 * fx, y);
        settle();
    }
    std::vector<window *> tiles;
};

TEST_F(tile_drags, to_the_middle_of_another_swap)
{
    carry(0, 3, 0.5, 350);
    EXPECT_EQ(order(), "dbca");
    EXPECT_THAT(heard(), Contains(VNT_EVT_WORKSPACES));
    EVENTUALLY_EQ(box(*tiles[0]), (wlr_box{960, 30, 320, 674}));
}

TEST_F(tile_drags, to_the_middle_of_a_neighbour_swap_in_both_orders)
{
    carry(1, 2, 0.5, 350);
    EXPECT_EQ(order(), "acbd");
    carry(2, 1, 0.5, 350);
    EXPECT_EQ(order(), "abcd");
}

TEST_F(tile_drags, to_the_upper_half_go_before_and_to_the_lower_after)
{
    carry(0, 2, 0.1, 100);
    EXPECT_EQ(order(), "bacd");
    carry(0, 3, 0.1, 600);
    EXPECT_EQ(order(), "acdb");
}

TEST_F(tile_drags, to_the_top_of_another_stack)
{
    carry(0, 2, 0.5, 20);
    EXPECT_NE(record(*tiles[0]).stack_id, 0);
    EXPECT_EQ(record(*tiles[0]).stack_id, record(*tiles[2]).stack_id);
    EXPECT_TRUE(record(*tiles[0]).scene_tree->node.enabled);
    EXPECT_FALSE(record(*tiles[2]).scene_tree->node.enabled);
    EXPECT_FALSE(record(*tiles[0]).titlebar->node.enabled);
}

TEST_F(tile_drags, show_on_the_tile_below_where_it_will_land)
{
    press_at(100, 10);
    go(320 * 2 + 160, 350);
    EXPECT_TRUE(shows(server.drag_hint));
    EXPECT_EQ(server.drag_hint->node.x, 640);
    EXPECT_EQ(server.drag_hint->height, 704);
    go(320 * 2 + 160, 20);
    EXPECT_EQ(server.drag_hint->height, 32);
    go(320 * 2 + 20, 600);
    EXPECT_EQ(server.drag_hint->node.y, 352);
    go(160, 350); // over its own place
    EXPECT_FALSE(shows(server.drag_hint));
    pointer->release(BTN_LEFT);
    EXPECT_FALSE(shows(server.drag_hint));
}

TEST_F(tile_drags, that_end_where_they_began_fall_back_into_their_slot)
{
    carry(1, 1, 0.5, 300);
    EXPECT_EQ(order(), "abcd");
    EVENTUALLY_EQ(box(*tiles[1]), (wlr_box{320, 30, 320, 674}));
}

TEST_F(tile_drags, from_a_stack_leave_it_and_onto_the_own_tab_do_nothing)
{
    carry(0, 1, 0.5, 20); // a joins b
    const int id = record(*tiles[0]).stack_id;
    keyboard->press(KEY_LEFTMETA);
    EVENTUALLY_EQ(box(*tiles[0]).y, 26);
    // the stack is the first column; its tabs are b's and a's... by their order
    const wlr_box stack = box(*tiles[0]);
    press_at(stack.x + 50, 300);
    drop_at(stack.x + stack.width - 10, 300);
    EXPECT_EQ(record(*tiles[0]).stack_id, id);
    press_at(stack.x + 50, 300);
    drop_at(1200, 600); // after the last tile
    keyboard->release(KEY_LEFTMETA);
    EXPECT_EQ(record(*tiles[0]).stack_id, 0);
    EXPECT_EQ(order(), "bcda");
}

TEST_F(tile_drags, press_on_a_tab_shows_its_window)
{
    stack_join(record(*tiles[1]), record(*tiles[0]));
    settle();
    const wlr_box stack = box(*tiles[1]);
    press_at(stack.x + 20, 10);
    pointer->release(BTN_LEFT);
    EXPECT_EQ(focused_toplevel(server), &record(*tiles[0]));
    press_at(stack.x + 20, 10, BTN_RIGHT); // other buttons mean nothing there
    pointer->release(BTN_RIGHT);
    EXPECT_EQ(focused_toplevel(server), &record(*tiles[0]));
}

// A drag survives everything

TEST_F(drags, end_with_their_window)
{
    press_at(300, 185);
    go(10, 350);
    EXPECT_TRUE(shows(server.snap_preview));
    w->unmap();
    EVENTUALLY(server.grabbed_toplevel == nullptr);
    EXPECT_FALSE(shows(server.snap_preview));
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    w->open();
    EVENTUALLY(find_record(*w) != nullptr);
    press_at(t().scene_tree->node.x + 50, t().scene_tree->node.y - 10);
    w->owner().vanish();
    EVENTUALLY(server.grabbed_toplevel == nullptr);
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
    test::unplug(test::made_up(output("A").wlr_output));
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

TEST_F(drags, asked_for_by_the_client_need_a_press_on_it)
{
    test::seat ears{w->owner()};
    settle();
    go(400, 350);
    w->request_move(ears.get(), 1234);
    settle();
    EXPECT_EQ(server.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    pointer->press(BTN_LEFT);
    settle();
    w->request_move(ears.get(), ears.press_serial());
    EVENTUALLY_EQ(server.cursor_mode, VANTORE_CURSOR_MOVE);
    drop_at(420, 350);
    EXPECT_EQ(box(*w), (wlr_box{220, 200, 400, 300}));
    go(400, 350);
    pointer->press(BTN_LEFT);
    settle();
    w->request_resize(ears.get(), ears.press_serial(), WLR_EDGE_RIGHT);
    EVENTUALLY_EQ(server.cursor_mode, VANTORE_CURSOR_RESIZE);
    drop_at(450, 350);
    EVENTUALLY_EQ(box(*w).width, 450);
    w->request_minimize();
    EVENTUALLY(t().minimized);
}

// The Mouse Tiler

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
    EXPECT_FALSE(server.mt_visible);
    go(341, 185);
    EXPECT_TRUE(server.mt_visible);
    EXPECT_TRUE(server.mt_hud->node.enabled);
    EXPECT_EQ(server.mt_hud->node.x, int(hud_x));
    EXPECT_EQ(server.mt_hud->node.y, int(hud_y));
    pointer->release(BTN_LEFT);
    EXPECT_FALSE(server.mt_visible);
    EXPECT_FALSE(server.mt_hud->node.enabled);
}

TEST_F(tiler, does_not_show_for_tiles_and_fullscreen_windows)
{
    command("ws-layout 1 tiling");
    settle();
    press_at(300, 15);
    go(300, 300);
    EXPECT_FALSE(server.mt_visible);
    pointer->release(BTN_LEFT);
    command("ws-layout 1 floating");
    t().fullscreen = true;
    begin_interactive(t(), VANTORE_CURSOR_MOVE, 0);
    go(900, 600);
    EXPECT_FALSE(server.mt_visible);
    pointer->release(BTN_LEFT);
    t().fullscreen = false;
}

TEST_F(tiler, puts_the_window_into_the_zone_that_is_picked)
{
    start_drag();
    point_at_zone(0);
    EXPECT_EQ(server.mt_zone, 0);
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
    EXPECT_EQ(server.mt_ws, 4);
    EXPECT_FALSE(shows(server.snap_preview));
    pointer->release(BTN_LEFT);
    EXPECT_EQ(t().workspace, &workspace(5));
    EXPECT_EQ(output("A").current_ws, &workspace(5));
    EXPECT_TRUE(toplevel_visible(t()));
}

TEST_F(tiler, leaves_a_window_alone_that_is_dropped_beside_the_zones)
{
    t().snapped = true;
    t().snap_geo = {0, 0, 400, 300};
    start_drag();
    go(hud_x + 3, hud_y + 3);
    pointer->release(BTN_LEFT);
    EXPECT_FALSE(t().snapped);
    EXPECT_EQ(box(*w).width, 400);
}

TEST_F(tiler, forgets_a_pick_on_the_way_to_another_output)
{
    plug("B", 1280, 704);
    start_drag();
    point_at_zone(0);
    go(1280 + 640, 400);
    EXPECT_EQ(server.mt_zone, -1);
    EXPECT_EQ(server.mt_hud->node.x, 1280 + int(hud_x));
    EXPECT_EQ(server.mt_output, output("B").wlr_output);
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
