// X11 windows that place themselves: menus, tooltips, and windows of games.

#include "support/server_check.hpp"
#include "support/x11_desk.hpp"

#include "config/settings.hpp"
#include "input/cursor_image.hpp"
#include "input/hit_test.hpp"
#include "text.hpp"
#include "windows/fullscreen.hpp"
#include "workspaces/focus.hpp"

#include <linux/input-event-codes.h>

using test::x11_place;
using test::x11_window;
using testing::IsEmpty;

namespace
{

struct unmanaged : test::x11_desk {
    void SetUp() override
    {
        x11_desk::SetUp();
        // A menu takes the keyboard, and nobody tells the window that had it.
        active_windows = test::activity::may_lag;
    }
    vantore_unmanaged &menu_record(const x11_window &w) { return *find_unmanaged(w); }
    bool has_keyboard_unmanaged(const x11_window &w)
    {
        return keyboard_focus() != nullptr && keyboard_focus() == menu_record(w).xwl->surface;
    }
    static const wlr_scene_node *topmost(const wlr_scene_tree *tree)
    {
        const wlr_scene_node *last = nullptr;
        const wlr_scene_node *node = nullptr;
        wl_list_for_each(node, &tree->children, link)
        {
            last = node;
        }
        return last;
    }
};

TEST_F(unmanaged, window_lies_where_it_asks_without_decorations_and_workspace)
{
    x11_window &menu = map_unmanaged({.x = 40, .y = 50, .width = 100, .height = 80});
    const wlr_scene_tree *tree = menu_record(menu).scene_tree;
    EXPECT_EQ(tree->node.parent, server.unmanaged);
    EXPECT_EQ(tree->node.x, 40);
    EXPECT_EQ(tree->node.y, 50);
    EXPECT_EQ(tree->node.data, nullptr);
    EXPECT_EQ(find_record(menu), nullptr);
    EXPECT_TRUE(wl_list_empty(&workspace(1).toplevels));
    EXPECT_EQ(menu.told(), x11_place{}) << "nobody moved it";
    EVENTUALLY_EQ(pixel("A", 45, 55), 0xff3366ccU);
}

TEST_F(unmanaged, window_takes_the_keyboard_and_does_not_hand_it_back)
{
    test::window &native = map("native");
    x11_window &tooltip = map_unmanaged({});
    EXPECT_TRUE(has_keyboard_unmanaged(tooltip));
    tooltip.unmap();
    EVENTUALLY_EQ(menu_record(tooltip).scene_tree, nullptr);
    settle();
    EXPECT_EQ(keyboard_focus(), nullptr);
    EXPECT_TRUE(find_record(native) != nullptr);
}

struct unmanaged_with_protected_focus : unmanaged {
    void SetUp() override
    {
        unmanaged::SetUp();
        g_protect_focus = true;
    }
};

TEST_F(unmanaged_with_protected_focus, tooltip_leaves_the_keyboard_to_the_window)
{
    test::window &native = map("native");
    for (const char *type : {"TOOLTIP", "POPUP_MENU", "NOTIFICATION"}) {
        x11_window &w = connect_x11().create({.override_redirect = true});
        w.window_type(type);
        w.map();
        EVENTUALLY(find_unmanaged(w) != nullptr && menu_record(w).scene_tree != nullptr);
        settle();
        EXPECT_TRUE(has_keyboard(native)) << type;
        w.unmap();
        EVENTUALLY_EQ(menu_record(w).scene_tree, nullptr);
        EXPECT_TRUE(has_keyboard(native)) << type;
    }
}

TEST_F(unmanaged_with_protected_focus, window_that_is_no_menu_takes_the_keyboard_and_gives_it_back)
{
    test::window &native = map("native");
    x11_window &launcher = map_unmanaged({});
    EXPECT_TRUE(has_keyboard_unmanaged(launcher));
    x11_window &list = map_unmanaged({});
    EXPECT_TRUE(has_keyboard_unmanaged(list));
    list.unmap();
    EVENTUALLY(has_keyboard_unmanaged(launcher));
    launcher.unmap();
    EVENTUALLY(has_keyboard(native));
}

TEST_F(unmanaged, window_is_shown_during_a_lock_but_gets_no_keyboard)
{
    map("native");
    const wlr_surface *before = keyboard_focus();
    server.locked = true;
    x11_window &menu = map_unmanaged({});
    EXPECT_NE(menu_record(menu).scene_tree, nullptr);
    EXPECT_EQ(keyboard_focus(), before);
    server.locked = false;
}

TEST_F(unmanaged, windows_move_as_they_like_and_come_to_the_top)
{
    x11_window &low = map_unmanaged({}), &high = map_unmanaged({});
    EXPECT_EQ(topmost(server.unmanaged), &menu_record(high).scene_tree->node);
    low.place(70, 80, 90, 60);
    EVENTUALLY_EQ(menu_record(low).scene_tree->node.x, 70);
    EXPECT_EQ(menu_record(low).scene_tree->node.y, 80);
    EXPECT_EQ(topmost(server.unmanaged), &menu_record(low).scene_tree->node);
}

// The X server sends no requests for windows that place themselves. A managed window that becomes one may
// still have a request under way.
TEST_F(unmanaged, request_for_a_place_is_granted_as_it_stands)
{
    x11_window &menu = map_unmanaged({});
    map_unmanaged({});
    wlr_xwayland_surface *xwl = menu_record(menu).xwl;
    wlr_xwayland_surface_configure_event event{
        .surface = xwl, .x = -20, .y = 33, .width = 44, .height = 55, .mask = 0};
    wl_signal_emit_mutable(&xwl->events.request_configure, &event);
    EXPECT_EQ(menu_record(menu).scene_tree->node.x, -20);
    EXPECT_EQ(topmost(server.unmanaged), &menu_record(menu).scene_tree->node);
    EVENTUALLY_EQ(menu.told(), (x11_place{-20, 33, 44, 55}));
}

TEST_F(unmanaged, click_goes_to_the_window_alone)
{
    map("native");
    x11_window &under = map_x11();
    x11_window &menu = map_unmanaged({.x = 550, .y = 300, .width = 50, .height = 50});
    focus_toplevel_ex(find_record(under), true);
    map("other");
    const vantore_toplevel *top = focused_toplevel(server);
    const wlr_surface *focused = keyboard_focus();
    point_at(*pointer, 560, 310);
    pointer->click(BTN_LEFT);
    EVENTUALLY(menu.heard("button 1 10,10"));
    EXPECT_EQ(keyboard_focus(), focused);
    EXPECT_EQ(focused_toplevel(server), top);
}

TEST_F(unmanaged, menu_above_a_title_bar_takes_the_click)
{
    x11_window &under = map_x11();
    const wlr_box at = box(under);
    x11_window &menu = map_unmanaged({.x = at.x + 50, .y = at.y - 40, .width = 100, .height = 80});
    point_at(*pointer, at.x + 60, at.y - 10);
    EXPECT_EQ(record(under).hover_region, DEC_NONE);
    pointer->click(BTN_LEFT);
    EVENTUALLY(menu.heard("button 1 10,30"));
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    menu.destroy();
    EVENTUALLY_EQ(find_unmanaged(menu), nullptr);
    point_at(*pointer, at.x + 60, at.y - 9);
    EXPECT_EQ(record(under).hover_region, DEC_TITLEBAR);
}

TEST_F(unmanaged, window_is_a_surface_of_no_window_to_the_pointer)
{
    map_x11();
    x11_window &menu = map_unmanaged({.x = 550, .y = 300, .width = 50, .height = 50});
    surface_hit hit;
    EXPECT_EQ(desktop_toplevel_at(server, 560, 310, hit), nullptr);
    EXPECT_EQ(hit.surface, menu_record(menu).xwl->surface);
}

TEST_F(unmanaged, menu_keeps_the_cursor_image_that_it_sets)
{
    map_unmanaged({.x = 550, .y = 300, .width = 50, .height = 50});
    point_at(*pointer, 560, 310);
    settle();
    wlr_cursor_shape_manager_v1_request_set_shape_event event{};
    event.seat_client = server.seat->pointer_state.focused_client;
    event.device_type = WLR_CURSOR_SHAPE_MANAGER_V1_DEVICE_TYPE_POINTER;
    event.shape = WP_CURSOR_SHAPE_DEVICE_V1_SHAPE_TEXT;
    seat_request_set_cursor_shape(server, &event);
    pointer->move(5, 5);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "text"));
}

TEST_F(unmanaged, menu_takes_a_resting_pointer_and_gives_it_back)
{
    x11_window &under = map_x11();
    const wlr_box at = box(under);
    point_at(*pointer, at.x + 60, at.y + 60);
    const auto pointed = [&] { return server.seat->pointer_state.focused_surface; };
    x11_window &menu = map_unmanaged({.x = at.x + 50, .y = at.y + 50, .width = 100, .height = 80});
    EVENTUALLY_EQ(pointed(), menu_record(menu).xwl->surface);
    menu.place(at.x, at.y, 20, 20);
    EVENTUALLY_EQ(pointed(), tl_surface(record(under)));
    menu.place(at.x + 50, at.y + 50, 100, 80);
    EVENTUALLY_EQ(pointed(), menu_record(menu).xwl->surface);
    menu.unmap();
    EVENTUALLY_EQ(pointed(), tl_surface(record(under)));
}

TEST_F(unmanaged, menu_that_loses_its_surface_first_gives_a_resting_pointer_back)
{
    x11_window &under = map_x11();
    const wlr_box at = box(under);
    point_at(*pointer, at.x + 60, at.y + 60);
    const auto pointed = [&] { return server.seat->pointer_state.focused_surface; };
    x11_window &menu = map_unmanaged({.x = at.x + 50, .y = at.y + 50, .width = 100, .height = 80});
    wlr_surface *surface = menu_record(menu).xwl->surface;
    EVENTUALLY_EQ(pointed(), surface);
    wl_resource_destroy(surface->resource); // the X server speaks over two sockets, in any order
    EVENTUALLY_EQ(pointed(), tl_surface(record(under)));
}

TEST_F(unmanaged, menu_keeps_the_keyboard_from_a_pointer_that_hovers)
{
    g_focus_follows_mouse = true;
    x11_window &w = map_x11();
    x11_window &menu = map_unmanaged({.x = 10, .y = 10, .width = 50, .height = 50});
    point_at(*pointer, 600, 300);
    pointer->move(30, 30);
    EXPECT_TRUE(has_keyboard_unmanaged(menu));
    menu.destroy();
    EVENTUALLY_EQ(find_unmanaged(menu), nullptr);
    pointer->move(30, 30);
    EXPECT_TRUE(has_keyboard(w));
}

// Owning the screen

TEST_F(unmanaged, window_of_the_output_s_size_counts_as_fullscreen)
{
    map_unmanaged({.width = 1280, .height = 704});
    EXPECT_TRUE(focused_is_fullscreen(server));
}

TEST_F(unmanaged, window_of_the_output_s_size_is_spared_the_overlay_of_shortcuts)
{
    test::made_up_keyboard &keyboard = plug_keyboard();
    for (const int width : {1279, 1280}) {
        x11_window &game = map_unmanaged({.x = 0, .y = 0, .width = width, .height = 704});
        keyboard.press(KEY_LEFTMETA);
        advance_clock_ms(1500);
        EXPECT_EQ(server.tap.shortcuts_shown, width < 1280);
        keyboard.release(KEY_LEFTMETA);
        game.destroy();
        EVENTUALLY_EQ(find_unmanaged(game), nullptr);
    }
}

TEST_F(unmanaged, smaller_window_does_not_count_as_fullscreen)
{
    x11_window &menu = map_unmanaged({.width = 1280, .height = 703});
    EXPECT_TRUE(has_keyboard_unmanaged(menu));
    EXPECT_FALSE(focused_is_fullscreen(server));
}

TEST_F(unmanaged, window_is_measured_by_the_output_under_its_centre)
{
    plug("B", 640, 640);
    x11_window &game = map_unmanaged({.x = 1280, .width = 640, .height = 640});
    EXPECT_TRUE(focused_is_fullscreen(server));
    game.move(0, 0);
    EVENTUALLY_EQ(menu_record(game).scene_tree->node.x, 0);
    EXPECT_FALSE(focused_is_fullscreen(server));
    game.move(-5000, 0);
    EVENTUALLY_EQ(menu_record(game).scene_tree->node.x, -5000);
    EXPECT_FALSE(focused_is_fullscreen(server));
}

TEST_F(unmanaged, window_that_is_not_mapped_covers_nothing)
{
    x11_window &game = map_unmanaged({.width = 1280, .height = 704});
    EXPECT_TRUE(any_unmanaged_covers_output(server));
    game.unmap();
    EVENTUALLY_EQ(menu_record(game).scene_tree, nullptr);
    EXPECT_FALSE(any_unmanaged_covers_output(server));
}

// Windows that change sides

TEST_F(unmanaged, managed_window_turns_into_a_menu_while_it_is_mapped)
{
    x11_window &w = map_x11();
    x11_window &other = map_x11();
    w.override_redirect(true);
    w.move(20, 30);
    EVENTUALLY(find_unmanaged(w) != nullptr);
    EXPECT_EQ(find_record(w), nullptr);
    ASSERT_NE(menu_record(w).scene_tree, nullptr);
    EXPECT_TRUE(has_keyboard_unmanaged(w));
    EVENTUALLY_EQ(menu_record(w).scene_tree->node.x, 20);
    EXPECT_THAT(test::server_check(server, active_windows), IsEmpty());
    w.unmap();
    EVENTUALLY_EQ(menu_record(w).scene_tree, nullptr);
    EXPECT_TRUE(find_record(other) != nullptr);
}

TEST_F(unmanaged, menu_turns_into_a_new_window_while_it_is_mapped)
{
    x11_window &first = map_x11();
    const uint32_t last_id = record(first).id;
    x11_window &w = map_unmanaged({});
    w.override_redirect(false);
    w.move(20, 30);
    EVENTUALLY(find_record(w) != nullptr);
    EXPECT_EQ(find_unmanaged(w), nullptr);
    EXPECT_EQ(record(w).id, last_id + 1);
    EXPECT_EQ(record(w).workspace, &workspace(1));
    EXPECT_TRUE(has_keyboard(w));
    EVENTUALLY(w.has_focus());
    EXPECT_THAT(test::server_check(server, active_windows), IsEmpty());
}

TEST_F(unmanaged, menu_that_turns_into_a_hidden_window_hands_the_keyboard_on)
{
    write_config("rules.conf", "xapp -> workspace=4\n");
    test::window &native = map("native");
    x11_window &w = map_unmanaged({});
    EXPECT_TRUE(has_keyboard_unmanaged(w));
    w.override_redirect(false);
    w.move(5, 5);
    EVENTUALLY(find_record(w) != nullptr);
    EXPECT_EQ(record(w).workspace, &workspace(4));
    EXPECT_EQ(keyboard_focus(), tl_surface(record(native)));
}

TEST_F(unmanaged, window_changes_sides_while_it_is_not_mapped)
{
    x11_window &w = map_x11();
    w.unmap();
    EVENTUALLY_EQ(find_record(w), nullptr);
    w.override_redirect(true);
    w.map();
    EVENTUALLY(find_unmanaged(w) != nullptr && menu_record(w).scene_tree != nullptr);
    w.unmap();
    w.override_redirect(false);
    w.map();
    EVENTUALLY(find_record(w) != nullptr);
    EXPECT_EQ(find_unmanaged(w), nullptr);
}

TEST_F(unmanaged, window_changes_sides_again_and_again)
{
    x11_window &w = map_x11();
    for (int i = 0; i < 100; i++) {
        w.override_redirect(i % 2 == 0);
        w.move(i, i);
        if (i % 5 == 0)
            w.unmap();
        if (i % 7 == 0)
            w.map();
        if (i % 11 == 0)
            settle();
    }
    w.override_redirect(true);
    w.unmap();
    w.map();
    EVENTUALLY(find_unmanaged(w) != nullptr && menu_record(w).scene_tree != nullptr);
    settle();
    EXPECT_THAT(test::server_check(server, active_windows), IsEmpty());
}

TEST_F(unmanaged, dragged_window_that_turns_into_a_menu_ends_its_drag)
{
    x11_window &w = map_x11();
    w.request_drag(8);
    EVENTUALLY_EQ(server.drag.grabbed_toplevel, &record(w));
    w.override_redirect(true);
    w.move(20, 30);
    EVENTUALLY(find_unmanaged(w) != nullptr);
    EXPECT_EQ(server.drag.grabbed_toplevel, nullptr);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
}

TEST_F(unmanaged, windows_go_with_the_x_server)
{
    map_unmanaged({});
    connect_x11().create({.override_redirect = true});
    kill_x_server();
    EXPECT_TRUE(wl_list_empty(&server.xwl_unmanaged));
}

} // namespace
