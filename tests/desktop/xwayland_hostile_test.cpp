// X11 clients that do everything wrong, and X servers that die.

#include "support/scene_nodes.hpp"
#include "support/server_check.hpp"
#include "support/wayland_seat.hpp"
#include "support/x11_desk.hpp"

#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/stacks.hpp"
#include "workspaces/switch.hpp"
#include "workspaces/tiles.hpp"

#include <filesystem>
#include <linux/input-event-codes.h>

using test::made_up_pointer;
using test::x11_place;
using test::x11_window;
using testing::IsEmpty;
using testing::StartsWith;

namespace
{

struct x11_hostile : test::x11_desk {
    std::vector<std::string> broken_rules() { return test::server_check(server, active_windows); }
    static long open_files()
    {
        return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"},
                             std::filesystem::directory_iterator{});
    }
    // Counts all nodes of the scene, including those of windows that no list holds.
    [[nodiscard]] int all_nodes() const { return test::scene_nodes(server.scene->tree); }
};

// The names also go into replies on the IPC socket, and clients may put any bytes into them.
TEST_F(x11_hostile, names_of_any_bytes_do_no_harm)
{
    x11_window &w = map_x11();
    for (const std::string_view bytes :
         {std::string_view{"\xff\xfe\x80\xc0", 4}, std::string_view{"\0\0\0", 3}, std::string_view{""},
          std::string_view{"\xed\xa0\x80\xf4\x90\x80\x80", 7}, std::string_view{"\"\\\x01\x1f\n", 5}}) {
        w.title(bytes);
        w.property("WM_NAME", "STRING", bytes);
        w.wm_class(bytes);
        settle();
        EXPECT_THAT(ask(dial(), VNT_MSG_GET_WINDOWS), StartsWith("[{"));
    }
    w.title(std::string(200'000, '\xe4'));
    settle();
    EVENTUALLY(find_record(w) != nullptr);
}

TEST_F(x11_hostile, properties_of_any_bytes_do_no_harm)
{
    x11_window &w = map_x11();
    const std::string junk = std::string{"\xff"} + '\0' + "\x7f\x80 of any length";
    for (const char *name :
         {"WM_HINTS", "WM_NORMAL_HINTS", "WM_TRANSIENT_FOR", "WM_PROTOCOLS", "WM_CLASS", "_MOTIF_WM_HINTS",
          "_NET_WM_STATE", "_NET_WM_WINDOW_TYPE", "_NET_WM_PID", "_NET_WM_STRUT_PARTIAL", "_NET_WM_ICON",
          "WM_WINDOW_ROLE", "_NET_STARTUP_ID", "_NET_WM_WINDOW_OPACITY"})
        for (const std::string_view bytes :
             {std::string_view{junk}, std::string_view{"x"}, std::string_view{}}) {
            w.property(name, "STRING", bytes);
            w.property(name, name, bytes);
        }
    settle();
    w.unmap();
    EVENTUALLY_EQ(find_record(w), nullptr);
    map_x11(w);
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(x11_hostile, sizes_at_the_limits_do_no_harm)
{
    x11_window &w = map_x11();
    for (const x11_place &p :
         {x11_place{-32768, -32768, 1, 1}, x11_place{32767, 32767, 65535, 1}, x11_place{0, 0, 0, 0},
          x11_place{0, 0, 1, 65535}, x11_place{0, 0, 300, 0}, x11_place{10, 10, 300, 200}})
        w.place(p.x, p.y, p.width, p.height);
    EVENTUALLY_EQ(w.told(), (x11_place{10, 10, 300, 200}));
    EVENTUALLY_EQ(box(w), (wlr_box{10, 10, 300, 200}));
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(x11_hostile, window_of_no_or_enormous_size_does_no_harm)
{
    test::x11_client &client = connect_x11();
    client.create({.width = 0, .height = 0}).map();
    client.create({.width = 65535, .height = 65535}).map();
    client.create({.width = 1, .height = 1}).map();
    settle();
    map_x11(client.create());
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(x11_hostile, atoms_in_bytes_do_no_harm)
{
    const std::string long_one(8192, 'x');
    for (const char *name : {"_NET_WM_WINDOW_TYPE", "WM_PROTOCOLS", "_NET_WM_STATE"}) {
        x11_window &before = connect_x11().create();
        before.property(name, "ATOM", long_one);
        map_x11(before);
        before.property(name, "ATOM", long_one);
        settle();
        EXPECT_NE(find_record(before), nullptr) << name;
    }
}

TEST_F(x11_hostile, events_forged_by_a_client_do_no_harm)
{
    x11_window &w = map_x11(), &unmapped = connect_x11().create();
    for (uint32_t n = 0; n < 200; n++) {
        unmapped.forge_message("WL_SURFACE_SERIAL", {n, 0});
        unmapped.forge_message("WL_SURFACE_ID", {n});
    }
    w.forge_configure_request(0, 0);
    for (const int type : {XCB_CREATE_NOTIFY, XCB_DESTROY_NOTIFY, XCB_MAP_NOTIFY, XCB_MAP_REQUEST,
                           XCB_CONFIGURE_NOTIFY, XCB_REPARENT_NOTIFY, XCB_PROPERTY_NOTIFY})
        w.forge_event(uint8_t(type));
    settle();
    EXPECT_NE(find_record(w), nullptr);
    EXPECT_EQ(box(w).width, 300);
    EXPECT_EQ(find_record(unmapped), nullptr);
    EXPECT_TRUE(has_keyboard(map_x11(unmapped)));
}

TEST_F(x11_hostile, storm_of_configures_ends_where_the_last_one_says)
{
    x11_window &w = map_x11();
    for (int i = 0; i < 2000; i++)
        w.place(i % 500, i % 300 + 30, 100 + i % 400, 100 + i % 300);
    w.place(100, 100, 300, 200);
    EVENTUALLY_EQ(w.told(), (x11_place{100, 100, 300, 200}));
    EVENTUALLY_EQ(box(w), (wlr_box{100, 100, 300, 200}));
}

TEST_F(x11_hostile, storm_of_maps_and_unmaps_leaves_what_the_last_one_says)
{
    x11_window &w = map_x11();
    for (int i = 0; i < 1000; i++) {
        w.unmap();
        w.map();
        if (i % 50 == 0)
            settle();
    }
    EVENTUALLY(find_record(w) != nullptr);
    settle(); // waits until the last request to map it is handled
    w.unmap();
    EVENTUALLY_EQ(find_record(w), nullptr);
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(x11_hostile, requests_of_all_kinds_while_a_window_comes_and_goes_do_no_harm)
{
    x11_window &w = connect_x11().create();
    for (int i = 0; i < 60; i++) {
        if (i % 3 == 0)
            w.map();
        if (i % 3 == 2)
            w.unmap();
        w.request_state(i % 2 == 0, "FULLSCREEN");
        w.request_state(i % 4 < 2, "MAXIMIZED_VERT", "MAXIMIZED_HORZ");
        w.request_activate();
        w.request_drag(uint32_t(i % 9));
        w.request_iconify();
        w.request_normal();
        w.raise();
        w.lower();
        w.place(i, i, 10 + i, 10 + i);
        w.urgency(i % 2 == 0);
        if (i % 7 == 0)
            settle();
    }
    settle();
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(x11_hostile, window_that_is_its_own_parent_does_no_harm)
{
    test::x11_client &client = connect_x11();
    x11_window &one = client.create(), &two = client.create();
    one.transient_for(one);
    two.transient_for(one);
    one.transient_for(two);
    map_x11(one);
    map_x11(two);
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(x11_hostile, thousand_maps_and_unmaps_leave_nothing_behind)
{
    x11_window &w = map_x11();
    w.unmap();
    EVENTUALLY_EQ(find_record(w), nullptr);
    const long files = open_files();
    const int nodes = all_nodes();
    for (int i = 0; i < 1000; i++) {
        w.map();
        EVENTUALLY(find_record(w) != nullptr);
        w.unmap();
        EVENTUALLY_EQ(find_record(w), nullptr);
    }
    settle();
    EXPECT_LE(open_files(), files);
    EXPECT_EQ(all_nodes(), nodes);
    EXPECT_TRUE(wl_list_empty(&workspace(1).toplevels));
    EXPECT_THAT(broken_rules(), IsEmpty());
}

TEST_F(x11_hostile, menus_that_come_and_go_leave_nothing_behind)
{
    active_windows = test::activity::may_lag;
    test::x11_client &client = connect_x11();
    map_x11(); // by now the library's own windows are there too
    const int nodes = all_nodes(), records = wl_list_length(&server.xwl_unmanaged);
    for (int i = 0; i < 100; i++) {
        x11_window &menu =
            client.create({.x = i, .y = i, .width = 50, .height = 50, .override_redirect = true});
        menu.map();
        EVENTUALLY(find_unmanaged(menu) != nullptr && find_unmanaged(menu)->scene_tree != nullptr);
        menu.destroy();
        EVENTUALLY_EQ(find_unmanaged(menu), nullptr);
    }
    EXPECT_EQ(wl_list_length(&server.xwl_unmanaged), records);
    EXPECT_EQ(all_nodes(), nodes);
}

TEST_F(x11_hostile, fullscreen_flips_end_where_the_last_one_says)
{
    x11_window &w = map_x11();
    const wlr_box before = box(w);
    for (int i = 0; i < 200; i++) {
        w.request_state(i % 2 == 0, "FULLSCREEN");
        if (i % 20 == 0)
            settle();
    }
    settle();
    EXPECT_FALSE(record(w).fullscreen);
    EVENTUALLY_EQ(box(w), before);
    EXPECT_THAT(broken_rules(), IsEmpty());
}

TEST_F(x11_hostile, storm_of_configures_of_a_tile_leaves_it_in_its_tile)
{
    tile();
    x11_window &w = map_x11();
    const wlr_box place = box(w);
    for (int i = 0; i < 2000; i++)
        w.place(i % 500, i % 300, 1 + i % 400, 1 + i % 300);
    settle();
    EXPECT_EQ(box(w), place);
    EVENTUALLY_EQ(w.told(), place_of(w));
}

TEST_F(x11_hostile, storm_of_configures_of_a_menu_ends_where_the_last_one_says)
{
    active_windows = test::activity::may_lag;
    x11_window &menu = map_unmanaged({});
    for (int i = 0; i < 2000; i++)
        menu.place(i % 500, i % 300, 1 + i % 400, 1 + i % 300);
    menu.place(7, 9, 40, 30);
    EVENTUALLY_EQ(find_unmanaged(menu)->scene_tree->node.x, 7);
    EVENTUALLY_EQ(menu.told(), (x11_place{7, 9, 40, 30}));
}

TEST_F(x11_hostile, menus_at_the_limits_do_no_harm)
{
    active_windows = test::activity::may_lag;
    test::x11_client &client = connect_x11();
    for (const x11_place &p : {x11_place{-32768, -32768, 1, 1}, x11_place{32767, 32767, 1, 1},
                               x11_place{-20000, 0, 32767, 2}, x11_place{0, -20000, 2, 32767}}) {
        x11_window &menu = client.create(
            {.x = p.x, .y = p.y, .width = p.width, .height = p.height, .override_redirect = true});
        menu.map();
        settle(); // the X server does not draw menus outside its screen
        EXPECT_FALSE(focused_is_fullscreen(server));
        point_at(*pointer, 5, 5);
        menu.destroy();
        EVENTUALLY_EQ(find_unmanaged(menu), nullptr);
    }
    EXPECT_THAT(broken_rules(), IsEmpty());
}

TEST_F(x11_hostile, client_that_takes_the_x_server_s_focus_gets_no_keys)
{
    test::made_up_keyboard &keys = plug_keyboard();
    x11_window &w = map_x11();
    test::window &native = map("native");
    test::seat ears{native.owner()};
    settle();
    w.take_input_focus();
    settle();
    EXPECT_EQ(keyboard_focus(), tl_surface(record(native)));
    keys.tap(KEY_A);
    EVENTUALLY(ears.heard("key down 30"));
    EXPECT_FALSE(w.heard("key 38"));
}

TEST_F(x11_hostile, parent_that_goes_before_its_dialog_does_no_harm)
{
    test::x11_client &client = connect_x11();
    x11_window &parent = map_x11(client.create()), &dialog = map_x11(client.create());
    dialog.transient_for(parent); // too late to matter
    settle();
    EXPECT_FALSE(record(dialog).floating);
    parent.destroy();
    EVENTUALLY_EQ(find_record(parent), nullptr);
    dialog.unmap();
    EVENTUALLY_EQ(find_record(dialog), nullptr);
    map_x11(dialog);
    EXPECT_THAT(broken_rules(), IsEmpty());
}

// Windows that change sides, in each of the states that a window can have

struct window_state {
    const char *name;
    void (*enter)(vantore_toplevel &t, made_up_pointer &pointer);
    bool (*reached)(const vantore_toplevel &t);
};

void PrintTo(const window_state &s, std::ostream *out)
{
    *out << s.name;
}

struct x11_state : x11_hostile, testing::WithParamInterface<window_state> {
    void TearDown() override
    {
        server.locked = false;
        x11_hostile::TearDown();
    }
    // Maps two windows of one client and brings the second one into the state.
    void map_in_state()
    {
        test::x11_client &client = connect_x11();
        map_x11(client.create());
        in_state = &map_x11(client.create());
        GetParam().enter(record(*in_state), *pointer);
        settle();
        ASSERT_TRUE(GetParam().reached(record(*in_state)));
    }

    x11_window *in_state = nullptr;
};

void make_tile(vantore_toplevel &t)
{
    t.workspace->layout = VANTORE_LAYOUT_TILING;
    arrange_workspace(t.workspace);
}

void point_at_close_button(const vantore_toplevel &t, made_up_pointer &pointer)
{
    int lx = 0, ly = 0;
    wlr_scene_node_coords(&t.btn_close->node, &lx, &ly);
    pointer.move(lx + 2 - t.server->cursor->x, ly + 2 - t.server->cursor->y);
}

const window_state states[]{
    {"plain", [](vantore_toplevel &, made_up_pointer &) {},
     [](const vantore_toplevel &t) { return toplevel_visible(t) && !t.fullscreen && !t.maximized; }},
    {"fullscreen", [](vantore_toplevel &t, made_up_pointer &) { toplevel_set_fullscreen(t, true); },
     [](const vantore_toplevel &t) { return t.fullscreen && !t.fs_demoted; }},
    {"maximized", [](vantore_toplevel &t, made_up_pointer &) { toplevel_toggle_maximize(t); },
     [](const vantore_toplevel &t) { return t.maximized; }},
    {"minimized", [](vantore_toplevel &t, made_up_pointer &) { toplevel_minimize(t); },
     [](const vantore_toplevel &t) { return t.minimized; }},
    {"demoted",
     [](vantore_toplevel &t, made_up_pointer &) {
         toplevel_set_fullscreen(t, true);
         focus_toplevel_ex(owner_of<&vantore_toplevel::link>(t.link.next), true); // the window below it
     },
     [](const vantore_toplevel &t) { return t.fullscreen && t.fs_demoted; }},
    {"tiled", [](vantore_toplevel &t, made_up_pointer &) { make_tile(t); }, tile_participates},
    {"stacked",
     [](vantore_toplevel &t, made_up_pointer &) {
         make_tile(t);
         stack_toggle_focused(*t.server);
     },
     [](const vantore_toplevel &t) { return t.stack_id != 0; }},
    {"hidden", [](vantore_toplevel &t, made_up_pointer &) { goto_workspace(*t.server, 2); },
     [](const vantore_toplevel &t) { return t.workspace->output == nullptr; }},
    {"unresponsive",
     [](vantore_toplevel &t, made_up_pointer &) {
         wl_signal_emit_mutable(&t.xwl->events.ping_timeout, nullptr);
     },
     [](const vantore_toplevel &t) { return t.unresponsive; }},
    {"dragged",
     [](vantore_toplevel &t, made_up_pointer &) {
         wl_signal_emit_mutable(&t.xwl->events.request_move, nullptr);
     },
     [](const vantore_toplevel &t) { return t.server->drag.grabbed_toplevel == &t; }},
    {"hovered", [](vantore_toplevel &t, made_up_pointer &p) { point_at_close_button(t, p); },
     [](const vantore_toplevel &t) {
         return t.server->pointing.hovered_toplevel == &t && t.hover_region == DEC_CLOSE;
     }},
    {"locked", [](vantore_toplevel &t, made_up_pointer &) { t.server->locked = true; },
     [](const vantore_toplevel &t) { return t.server->locked; }},
};
INSTANTIATE_TEST_SUITE_P(of_a_window, x11_state, testing::ValuesIn(states),
                         [](const auto &chosen) { return std::string{chosen.param.name}; });

TEST_P(x11_state, window_changes_sides_and_back)
{
    active_windows = test::activity::may_lag;
    ASSERT_NO_FATAL_FAILURE(map_in_state());
    x11_window &w = *in_state;
    w.override_redirect(true);
    w.move(20, 30);
    EVENTUALLY(find_unmanaged(w) != nullptr && find_unmanaged(w)->scene_tree != nullptr);
    EXPECT_EQ(find_record(w), nullptr);
    EXPECT_EQ(server.drag.grabbed_toplevel, nullptr);
    EXPECT_THAT(broken_rules(), IsEmpty());
    w.override_redirect(false);
    w.move(40, 50);
    EVENTUALLY(find_record(w) != nullptr);
    EXPECT_EQ(find_unmanaged(w), nullptr);
    settle();
    EXPECT_EQ(record(w).fullscreen, record(w).xwl->fullscreen) << "as its client has it";
    EXPECT_FALSE(record(w).maximized);
    EXPECT_FALSE(record(w).unresponsive);
    EXPECT_EQ(record(w).stack_id, 0);
    EXPECT_THAT(broken_rules(), IsEmpty());
}

TEST_P(x11_state, x_server_that_dies_takes_the_windows_and_nothing_else)
{
    test::window &native = map("native");
    ASSERT_NO_FATAL_FAILURE(map_in_state());
    kill_x_server();
    advance_clock_ms(1);
    settle();
    EXPECT_EQ(wl_list_length(&server.toplevels), 1);
    EXPECT_EQ(server.drag.grabbed_toplevel, nullptr);
    EXPECT_EQ(server.pointing.hovered_toplevel, nullptr);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_THAT(broken_rules(), IsEmpty());
    server.locked = false;
    goto_workspace(server, 1);
    focus_toplevel_ex(&record(native), true);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(native)));
    EXPECT_TRUE(has_keyboard(map_x11()));
}

// Other moments at which an X server may die

TEST_F(x11_hostile, x_server_that_dies_while_it_starts_costs_its_first_client)
{
    const test::x11_client first{server.xwayland->display_name};
    EVENTUALLY(x_server() != 0);
    kill_x_server();
    advance_clock_ms(1);
    EXPECT_TRUE(has_keyboard(map_x11()));
}

TEST_F(x11_hostile, x_server_that_dies_with_a_button_held_in_its_window_frees_the_pointer)
{
    test::window &native = map("native");
    place(native, 0, 100);
    x11_window &w = map_x11();
    const wlr_box at = box(w);
    point_at(*pointer, at.x + 50, at.y + 50);
    pointer->press(BTN_LEFT);
    EVENTUALLY(w.heard("button 1 50,50"));
    kill_x_server();
    pointer->release(BTN_LEFT);
    point_at(*pointer, 10, 110);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(native)));
    EXPECT_EQ(server.seat->pointer_state.button_count, 0U);
}

TEST_F(x11_hostile, x_server_that_dies_during_a_resize_ends_it)
{
    x11_window &w = map_x11();
    w.request_drag(4);
    EVENTUALLY_EQ(server.drag.cursor_mode, VANTORE_CURSOR_RESIZE);
    kill_x_server();
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_EQ(server.drag.grabbed_toplevel, nullptr);
    point_at(*pointer, 10, 110);
    pointer->release(BTN_LEFT);
    EXPECT_THAT(broken_rules(), IsEmpty());
}

TEST_F(x11_hostile, x_server_that_dies_with_the_keyboard_in_a_menu_leaves_it_to_nobody)
{
    active_windows = test::activity::may_lag;
    test::window &native = map("native");
    map_unmanaged({});
    kill_x_server();
    settle();
    EXPECT_EQ(keyboard_focus(), nullptr);
    focus_toplevel_ex(&record(native), true);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(native)));
}

} // namespace
