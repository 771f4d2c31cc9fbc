// Menus of windows, and who draws their title bars.

#include "support/desktop.hpp"
#include "support/scene_nodes.hpp"
#include "support/server_check.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_seat.hpp"

#include "presentation/decorations.hpp"
#include "workspaces/focus.hpp"

#include <linux/input-event-codes.h>

using test::CLIENT_SIDE;
using test::placement;
using test::popup;
using test::scene_nodes;
using test::SERVER_SIDE;
using test::window;
using testing::IsEmpty;

namespace
{

enum adjustment : uint32_t { SLIDE_X = 1, SLIDE_Y = 2, FLIP_X = 4, FLIP_Y = 8, RESIZE_X = 16 };

// A window of 400x300 at 100,100 on an output of 1280x704, with a second output on the right.
struct menus : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        plug("B", 640, 640);
        page = &map("page", {400, 300});
        move_to(100, 100);
    }

    void move_to(int x, int y) { place(*page, x, y); }

    window *page = nullptr;
};

TEST_F(menus, open_where_they_ask_when_there_is_room)
{
    popup menu{*page, {.x = 20, .y = 30, .size = {150, 80}}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EXPECT_EQ(menu.x(), 20);
    EXPECT_EQ(menu.y(), 30);
    EXPECT_EQ(menu.size(), (test::size{150, 80}));
    EVENTUALLY_EQ(pixel("A", 100 + 20 + 5, 100 + 30 + 5), 0xffd0d0d0U);
}

TEST_F(menus, slide_back_onto_the_output)
{
    move_to(900, 500);
    popup menu{*page, {.x = 350, .y = 190, .size = {150, 80}, .adjustment = SLIDE_X | SLIDE_Y}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EXPECT_EQ(menu.x(), 1280 - 900 - 150);
    EXPECT_EQ(menu.y(), 704 - 500 - 80);
}

TEST_F(menus, flip_at_the_edge_of_the_output)
{
    move_to(900, 100);
    popup menu{*page, {.x = 350, .y = 30, .size = {150, 80}, .adjustment = FLIP_X}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EXPECT_EQ(menu.x(), 351 - 150); // from the other edge of the anchor, which is one pixel wide
}

TEST_F(menus, above_a_border_or_a_title_bar_take_the_click)
{
    window &behind = map("behind", {400, 300});
    record(behind).ssd = true;
    dec_layout(record(behind));
    place(behind, 100, 500);
    focus_toplevel_ex(&record(*page), true);
    auto &pointer = plug_pointer();
    test::seat ears{page->owner()};
    settle();
    popup menu{*page, {.x = 0, .y = 250, .size = {150, 150}}}; // covers its window's border and more
    EVENTUALLY_EQ(pixel("A", 105, 355), 0xffd0d0d0U);
    for (const int y : {355, 480}) {
        point_at(pointer, 104, y);
        pointer.press(BTN_LEFT);
        EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
        EVENTUALLY(ears.heard("button down 272"));
        pointer.release(BTN_LEFT);
        settle();
        (void)ears.take();
    }
    EXPECT_EQ(record(behind).hover_region, DEC_NONE);
}

TEST_F(menus, that_would_be_cut_to_nothing_keep_their_size)
{
    move_to(1100, 100);
    popup menu{*page, {.x = 300, .y = 30, .size = {150, 80}, .adjustment = RESIZE_X}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EXPECT_EQ(menu.size(), (test::size{150, 80}));
    EXPECT_EQ(menu.x(), 300);
}

TEST_F(menus, count_from_the_window_geometry)
{
    page->geometry(10, 20, 380, 280);
    page->commit();
    settle();
    move_to(900, 500);
    popup menu{*page, {.x = 350, .y = 190, .size = {150, 80}, .adjustment = SLIDE_X | SLIDE_Y}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EVENTUALLY_EQ(pixel("A", 1279, 703), 0xffd0d0d0U);
    EXPECT_EQ(menu.x(), 1280 - 900 - 150);
}

TEST_F(menus, of_a_window_stay_with_the_output_of_its_corner)
{
    move_to(1100, 100); // most of it on B
    popup menu{*page, {.x = 300, .y = 30, .size = {150, 80}, .adjustment = SLIDE_X}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EXPECT_EQ(menu.x(), 1280 - 1100 - 150);
}

TEST_F(menus, nested_in_menus_keep_to_the_same_output_as_their_window)
{
    move_to(1000, 100);
    popup menu{*page, {.x = 250, .y = 30, .size = {100, 80}}}; // from 1250 to 1350, across the edge
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EXPECT_EQ(menu.x(), 250);
    popup submenu{menu, {.x = 90, .y = 10, .size = {100, 60}, .adjustment = SLIDE_X}}; // or it would be on B
    EVENTUALLY_EQ(submenu.configure_count(), 1);
    EXPECT_EQ(1000 + menu.x() + submenu.x(), 1280 - 100);
}

TEST_F(menus, of_a_window_outside_all_outputs_stay_where_they_ask)
{
    move_to(-500, -500);
    popup menu{*page, {.x = 20, .y = 30, .size = {150, 80}, .adjustment = SLIDE_X | SLIDE_Y}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EXPECT_EQ(menu.x(), 20);
}

TEST_F(menus, are_kept_on_the_output_when_they_move)
{
    popup menu{*page, {.x = 20, .y = 30, .size = {150, 80}}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    move_to(900, 100);
    menu.reposition({.x = 350, .y = 40, .size = {150, 80}, .adjustment = SLIDE_X}, 7);
    EVENTUALLY_EQ(menu.last_token(), 7U);
    EXPECT_EQ(menu.x(), 1280 - 900 - 150);
    EXPECT_EQ(menu.y(), 40);
}

TEST_F(menus, that_move_before_their_first_commit_stay_where_they_were_asked_to_open)
{
    popup menu{*page, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    menu.drop_role();
    menu.take_role_again(page->shell_surface(), {.x = 40, .y = 50});
    menu.reposition({.x = 10, .y = 10}, 3);
    menu.attach_nothing();
    EVENTUALLY_EQ(menu.configure_count(), 2);
    EXPECT_EQ(menu.x(), 40);
    EXPECT_EQ(menu.last_token(), 0U);
}

TEST_F(menus, move_and_hide_with_their_window)
{
    popup menu{*page, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(pixel("A", 130, 140), 0xffd0d0d0U);
    move_to(300, 100);
    EVENTUALLY_EQ(pixel("A", 330, 140), 0xffd0d0d0U);
    toplevel_set_workspace(record(*page), &workspace(5));
    EVENTUALLY(pixel("A", 330, 140) != 0xffd0d0d0U);
}

TEST_F(menus, leave_nothing_in_the_scene)
{
    settle();
    const int before = scene_nodes(server.scene->tree);
    {
        popup menu{*page, {.x = 20, .y = 30}};
        popup submenu{menu, {.x = 90, .y = 10}};
        EVENTUALLY_EQ(submenu.configure_count(), 1);
        EXPECT_GT(scene_nodes(server.scene->tree), before);
    }
    settle();
    EXPECT_EQ(scene_nodes(server.scene->tree), before);
}

TEST_F(menus, without_an_xdg_surface_above_get_no_scene_node)
{
    auto &other = connect();
    settle();
    const int before = scene_nodes(server.scene->tree);
    popup menu{other, nullptr, {.x = 20, .y = 30}};
    settle();
    EXPECT_EQ(scene_nodes(server.scene->tree), before);
    EXPECT_EQ(menu.configure_count(), 0);
}

TEST_F(menus, die_with_the_client_in_any_order_of_theirs)
{
    for (int order = 0; order < 4; order++) {
        auto &w = map("short-lived");
        auto menu = std::make_unique<popup>(w, placement{.x = 20, .y = 30});
        auto submenu = std::make_unique<popup>(*menu, placement{.x = 90, .y = 10});
        EVENTUALLY_EQ(submenu->configure_count(), 1);
        switch (order) {
        case 0:
            w.owner().vanish();
            break;
        case 1:
            menu->destroy(); // a protocol error, because its submenu lives
            break;
        case 2:
            w.destroy_role();
            break;
        default:
            submenu->destroy_surface();
        }
        settle();
        EXPECT_THAT(test::server_check(server), IsEmpty()) << order;
    }
    EXPECT_EQ(page->owner().error(), 0);
}

TEST_F(menus, close_when_their_window_is_unmapped)
{
    popup menu{*page, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    page->unmap();
    EVENTUALLY(menu.dismissed());
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(menus, of_parents_that_have_gone_are_harmless)
{
    auto &unmapped = map("unmapped");
    unmapped.unmap();
    popup of_unmapped{unmapped, {.x = 20, .y = 30}};
    auto &roleless = map("roleless");
    roleless.destroy_toplevel();
    popup of_roleless{roleless, {.x = 20, .y = 30}};
    auto &third = map("third");
    popup menu{third, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    third.unmap(); // dismisses the menu
    popup submenu{menu, {.x = 90, .y = 10}};
    settle();
    EXPECT_THAT(test::server_check(server), IsEmpty());
    EXPECT_EQ(page->owner().error(), 0);
}

TEST_F(menus, may_be_opened_again_from_the_same_surface)
{
    settle();
    const int before = scene_nodes(server.scene->tree);
    popup menu{*page, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    settle();
    const int with_menu = scene_nodes(server.scene->tree);
    for (int i = 0; i < 3; i++) {
        menu.drop_role();
        settle();
        EXPECT_EQ(scene_nodes(server.scene->tree), before);
        menu.take_role_again(page->shell_surface(), {.x = 40, .y = 50});
        menu.attach_nothing(); // a first commit has no buffer
        settle();
        EXPECT_EQ(scene_nodes(server.scene->tree), with_menu);
    }
    EXPECT_EQ(page->owner().error(), 0);
}

TEST_F(menus, of_a_menu_that_has_gone_are_a_protocol_error)
{
    auto &other = map("other");
    popup menu{other, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    menu.drop_role();
    other.destroy_toplevel();
    popup submenu{menu, {.x = 90, .y = 10}};
    EVENTUALLY(other.owner().protocol_error().has_value());
    EXPECT_EQ(other.owner().protocol_error(), (test::protocol_error{"xdg_wm_base", 3}));
    settle();
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(menus, can_not_be_each_others_parents)
{
    auto &other = map("other");
    popup menu{other, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    menu.drop_role();
    popup submenu{menu, {.x = 90, .y = 10}};
    menu.take_role_again(submenu.shell_surface(), {.x = 10, .y = 10});
    menu.attach_nothing();
    EVENTUALLY(other.owner().protocol_error().has_value());
    settle();
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(menus, of_no_size_are_a_protocol_error_of_their_client)
{
    auto &other = map("other");
    popup menu{other, {.x = 20, .y = 30, .size = {0, 0}}};
    EVENTUALLY(other.owner().protocol_error().has_value());
    settle();
    EXPECT_EQ(page->owner().error(), 0);
}

TEST_F(menus, may_be_enormous)
{
    popup menu{
        *page, {.x = 20, .y = 30, .size = {2147483647, 2147483647}, .adjustment = 63}, popup::draws::never};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

struct grabbing_menus : menus {
    void SetUp() override
    {
        menus::SetUp();
        pointer = &plug_pointer();
        plug_keyboard();
        ears = std::make_unique<test::seat>(page->owner());
        settle();
        point_at(*pointer, 110, 120);
        pointer->press(BTN_LEFT);
        settle();
    }

    void TearDown() override
    {
        ears.reset();
        menus::TearDown();
    }

    test::made_up_pointer *pointer = nullptr;
    std::unique_ptr<test::seat> ears;
};

TEST_F(grabbing_menus, get_the_pointer_and_close_on_a_press_elsewhere)
{
    popup menu{*page, {.x = 20, .y = 30}, popup::draws::always, ears.get(), ears->press_serial()};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    settle();
    pointer->release(BTN_LEFT);
    point_at(*pointer, 130, 140);
    EVENTUALLY(ears->heard("pointer enter popup 10,10"));
    auto &other = map("other", {200, 200});
    place(other, 900, 300);
    settle();
    point_at(*pointer, 910, 310);
    pointer->press(BTN_LEFT);
    EVENTUALLY(menu.dismissed());
}

TEST_F(grabbing_menus, do_not_keep_the_keyboard_from_a_window_that_opens)
{
    popup menu{*page, {.x = 20, .y = 30}, popup::draws::always, ears.get(), ears->press_serial()};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    auto &other = map("other");
    EXPECT_EQ(keyboard_focus(), tl_surface(record(other)));
    pointer->release(BTN_LEFT);
}

TEST_F(grabbing_menus, end_once_when_another_window_takes_the_keyboard)
{
    popup menu{*page, {.x = 20, .y = 30}, popup::draws::always, ears.get(), ears->press_serial()};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    auto &other = map("other");
    EVENTUALLY(menu.dismissed());
    EXPECT_FALSE(wlr_seat_pointer_has_grab(server.seat));
    EXPECT_FALSE(wlr_seat_keyboard_has_grab(server.seat));
    focus_toplevel_ex(&record(*page), true);
    focus_toplevel_ex(&record(other), true);
    settle();
    EXPECT_EQ(menu.times_dismissed(), 1);
    pointer->release(BTN_LEFT);
}

TEST_F(grabbing_menus, end_when_an_empty_workspace_is_shown)
{
    popup menu{*page, {.x = 20, .y = 30}, popup::draws::always, ears.get(), ears->press_serial()};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    command("workspace 5");
    EVENTUALLY(menu.dismissed());
    EXPECT_FALSE(wlr_seat_keyboard_has_grab(server.seat));
    pointer->release(BTN_LEFT);
}

TEST_F(grabbing_menus, stay_when_their_own_window_takes_the_keyboard)
{
    popup menu{*page, {.x = 20, .y = 30}, popup::draws::always, ears.get(), ears->press_serial()};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    wlr_seat_keyboard_clear_focus(server.seat);
    focus_toplevel_ex(&record(*page), true);
    settle();
    EXPECT_EQ(keyboard_focus(), tl_surface(record(*page)));
    EXPECT_FALSE(menu.dismissed());
    EXPECT_TRUE(wlr_seat_pointer_has_grab(server.seat));
    pointer->release(BTN_LEFT);
}

TEST_F(grabbing_menus, with_a_made_up_serial_end_like_others)
{
    popup menu{*page, {.x = 20, .y = 30}, popup::draws::always, ears.get(), 4711};
    settle();
    pointer->release(BTN_LEFT);
    auto &other = map("other", {200, 200});
    place(other, 900, 300);
    settle();
    point_at(*pointer, 910, 310);
    pointer->press(BTN_LEFT);
    EVENTUALLY(menu.dismissed());
    EXPECT_FALSE(wlr_seat_pointer_has_grab(server.seat));
    EXPECT_FALSE(wlr_seat_keyboard_has_grab(server.seat));
}

TEST_F(grabbing_menus, that_grab_twice_end_their_client_and_nothing_else)
{
    auto &other = map("other", {200, 200});
    place(other, 900, 300);
    popup menu{*page, {.x = 20, .y = 30}, popup::draws::always, ears.get(), ears->press_serial()};
    menu.grab(*ears, ears->press_serial());
    EVENTUALLY(page->owner().error() != 0);
    ASSERT_TRUE(page->owner().protocol_error().has_value());
    EXPECT_EQ(page->owner().protocol_error()->interface, "xdg_popup");
    settle();
    pointer->release(BTN_LEFT);
    point_at(*pointer, 910, 310);
    pointer->press(BTN_LEFT);
    settle();
    EXPECT_TRUE(has_keyboard(other));
}

// Title bars

struct title_bars : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
    }

    window &unmapped()
    {
        window &w = connect().create_window("page");
        w.title("page"); // this makes the toplevel
        return w;
    }
};

TEST_F(title_bars, are_the_clients_own_without_a_decoration_object)
{
    EXPECT_FALSE(record(map("plain")).ssd);
}

TEST_F(title_bars, are_the_compositors_when_the_client_says_nothing)
{
    window &w = unmapped();
    test::decoration deco{w};
    map(w);
    EXPECT_TRUE(record(w).ssd);
    EXPECT_EQ(deco.mode(), SERVER_SIDE);
    EXPECT_NE(record(w).decoration, nullptr);
    EXPECT_NE(record(w).deco_wrap, nullptr);
}

TEST_F(title_bars, follow_the_clients_wish)
{
    window &w = unmapped();
    test::decoration deco{w};
    deco.ask(CLIENT_SIDE);
    map(w);
    EXPECT_FALSE(record(w).ssd);
    EXPECT_EQ(deco.mode(), CLIENT_SIDE);
    deco.ask(SERVER_SIDE);
    EVENTUALLY_EQ(deco.mode(), SERVER_SIDE);
    EXPECT_TRUE(record(w).ssd);
}

TEST_F(title_bars, are_answered_for_only_with_the_first_commit)
{
    window &w = unmapped();
    test::decoration deco{w};
    deco.ask(CLIENT_SIDE);
    settle();
    EXPECT_EQ(deco.answers(), 0);
    w.auto_ack = false;
    w.open();
    EVENTUALLY_EQ(deco.answers(), 1);
    EXPECT_EQ(deco.mode(), CLIENT_SIDE);
}

TEST_F(title_bars, go_at_once_when_the_client_wants_its_own_and_its_geometry_stays)
{
    window &w = unmapped();
    test::decoration deco{w};
    map(w);
    const wlr_box before = toplevel_box(record(w));
    deco.ask(CLIENT_SIDE);
    EVENTUALLY_EQ(deco.mode(), CLIENT_SIDE);
    EXPECT_FALSE(record(w).ssd);
    EXPECT_EQ(toplevel_box(record(w)), before);
}

TEST_F(title_bars, come_back_when_the_client_has_no_wish_any_more)
{
    window &w = unmapped();
    test::decoration deco{w};
    deco.ask(CLIENT_SIDE);
    map(w);
    deco.ask_nothing();
    EVENTUALLY_EQ(deco.mode(), SERVER_SIDE);
    EXPECT_TRUE(record(w).ssd);
}

TEST_F(title_bars, stay_as_they_are_when_the_decoration_object_goes)
{
    window &w = unmapped();
    auto deco = std::make_unique<test::decoration>(w);
    map(w);
    deco.reset();
    settle();
    EXPECT_TRUE(record(w).ssd);
    EXPECT_EQ(record(w).decoration, nullptr);
    EXPECT_EQ(record(w).deco_wrap, nullptr);
}

TEST_F(title_bars, die_in_either_order_with_their_window)
{
    window &first = unmapped();
    auto deco = std::make_unique<test::decoration>(first);
    map(first);
    first.destroy_toplevel(); // a client's mistake, which costs it the connection
    settle();
    deco.reset();
    window &second = unmapped();
    test::decoration other{second};
    map(second);
    second.owner().vanish();
    settle();
    EXPECT_THAT(test::server_check(server), IsEmpty());
    EXPECT_TRUE(wl_list_empty(&server.toplevels));
}

TEST_F(title_bars, of_a_mapped_window_may_not_start_late)
{
    window &w = map("late");
    test::decoration deco{w};
    // xdg-decoration requires the object to exist before the first buffer.
    EVENTUALLY(w.owner().protocol_error().has_value());
    EXPECT_EQ(w.owner().protocol_error(), (test::protocol_error{"zxdg_decoration_manager_v1", 0}));
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(title_bars, asked_for_between_two_maps_are_answered_with_the_second)
{
    window &w = unmapped();
    test::decoration deco{w};
    map(w);
    w.unmap();
    settle();
    const int before = deco.answers();
    deco.ask(CLIENT_SIDE);
    settle();
    EXPECT_EQ(deco.answers(), before);
    map(w);
    EXPECT_EQ(deco.mode(), CLIENT_SIDE);
    EXPECT_FALSE(record(w).ssd);
}

} // namespace
