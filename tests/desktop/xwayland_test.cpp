// X11 windows: how the X server starts and ends, how windows come and go, and what they share with others.

#include "support/server_check.hpp"
#include "support/x11_desk.hpp"

#include "input/hit_test.hpp"
#include "reload.hpp"
#include "windows/states.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/switch.hpp"
#include "workspaces/transfer.hpp"

#include <cstdlib>
#include <linux/input-event-codes.h>

using test::x11_place;
using test::x11_window;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StrEq;

namespace
{

struct xwayland : test::x11_desk {
    // The library reads the state only when it changes, so it changes after the library knows the window.
    x11_window &create_with_state(std::string_view name)
    {
        x11_window &w = connect_x11().create();
        settle();
        w.initial_state(name);
        settle();
        return w;
    }
    [[nodiscard]] std::vector<std::string> xrandr_lines() const
    {
        std::vector<std::string> lines;
        std::ranges::copy_if(world.spawned(), std::back_inserter(lines),
                             [](const std::string &line) { return line.contains("xrandr"); });
        return lines;
    }
    // Waits until the X server that a client wants has failed to start.
    void expect_failed_start()
    {
        EVENTUALLY(server.xwayland->server->server_start != 0);
        EVENTUALLY_EQ(server.xwayland->server->client, nullptr);
    }
    std::vector<uint32_t> raised()
    {
        std::vector<uint32_t> ids;
        for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
            ids.push_back(t.id);
        return ids;
    }
    std::vector<uint32_t> tiles(int workspace_num = 1)
    {
        std::vector<uint32_t> ids;
        for (auto &t : each<&vantore_toplevel::ws_link>(workspace(workspace_num).toplevels))
            ids.push_back(t.id);
        return ids;
    }
};

// The X server

TEST_F(xwayland, starts_with_the_first_client_and_not_before)
{
    EXPECT_EQ(x_server(), 0);
    EXPECT_STREQ(getenv("DISPLAY"), server.xwayland->display_name);
    EXPECT_THAT(world.log(), Not(HasSubstr("XWayland ready")));
    connect_x11();
    EXPECT_GT(x_server(), 0);
    EVENTUALLY(world.log().contains("XWayland ready on DISPLAY=" + std::string{getenv("DISPLAY")} + "\n"));
    EXPECT_THAT(world.spawned(), Contains("command -v dbus-update-activation-environment >/dev/null && "
                                          "dbus-update-activation-environment --systemd DISPLAY"));
}

TEST_F(xwayland, never_starts_xrandr_without_a_primary_output)
{
    connect_x11();
    plug("B", 640, 640);
    config_reload(server);
    EXPECT_THAT(xrandr_lines(), IsEmpty());
}

TEST_F(xwayland, is_told_its_primary_output_at_its_start_and_with_each_output_and_reload)
{
    config("x_primary = DP-2\n");
    connect_x11();
    EVENTUALLY_EQ(xrandr_lines().size(), 1U);
    const std::string display = server.xwayland->display_name;
    EXPECT_EQ(xrandr_lines()[0],
              "for i in 1 2 3 4 5 6; do DISPLAY=" + display +
                  " xrandr --output 'DP-2' --primary 2>/dev/null; DISPLAY=" + display +
                  " xrandr -q 2>/dev/null | grep -q '^DP-2 connected primary' && break; sleep 1; done");
    plug("B", 640, 640);
    EXPECT_EQ(xrandr_lines().size(), 2U);
    config_reload(server);
    EXPECT_EQ(xrandr_lines().size(), 3U);
}

TEST_F(xwayland, that_is_not_installed_costs_nothing_but_x11_windows)
{
    setenv("WLR_XWAYLAND", "/no/such/program", 1);
    const test::x11_client caller{server.xwayland->display_name};
    expect_failed_start();
    EXPECT_FALSE(caller.ready());
    EVENTUALLY(map("native").has(test::ACTIVATED));
}

TEST_F(xwayland, crash_costs_its_windows_and_no_others)
{
    test::window &native = map("native");
    map_x11();
    map_unmanaged({});
    test::x11_window &dragged = map_x11();
    dragged.request_drag(8);
    EVENTUALLY_EQ(server.drag.grabbed_toplevel, &record(dragged));
    kill_x_server();
    EXPECT_THAT(raised(), ElementsAre(record(native).id));
    EXPECT_TRUE(wl_list_empty(&server.xwl_unmanaged));
    EXPECT_EQ(server.drag.grabbed_toplevel, nullptr);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(native)));
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(xwayland, starts_again_with_the_next_client_after_a_crash)
{
    connect_x11();
    const pid_t first = x_server();
    server.xwayland->server->server_start -= 10; // as if it had run for a while
    kill_x_server();
    x11_window &w = map_x11();
    EXPECT_NE(x_server(), first);
    EXPECT_TRUE(has_keyboard(w));
}

// The library itself starts no other X server when one dies within five seconds of its start.
TEST_F(xwayland, starts_again_each_time_that_it_crashes_early)
{
    for (const bool with_windows : {true, false, true}) {
        if (with_windows)
            map_x11();
        else
            connect_x11();
        const std::string display = server.xwayland->display_name;
        kill_x_server();
        advance_clock_ms(1);
        EXPECT_EQ(x_server(), 0) << "none before a client wants it";
        EXPECT_EQ(server.xwayland->display_name, display);
        EXPECT_STREQ(getenv("DISPLAY"), display.c_str());
    }
    EXPECT_TRUE(has_keyboard(map_x11()));
}

TEST_F(xwayland, starts_with_a_later_client_after_it_could_not_start)
{
    setenv("WLR_XWAYLAND", "/no/such/program", 1);
    {
        const test::x11_client caller{server.xwayland->display_name};
        expect_failed_start();
    }
    advance_clock_ms(1);
    unsetenv("WLR_XWAYLAND");
    EXPECT_TRUE(has_keyboard(map_x11()));
}

TEST_F(xwayland, crash_without_windows_harms_nobody)
{
    connect_x11();
    kill_x_server();
    test::window &native = map("native");
    EVENTUALLY(native.has(test::ACTIVATED));
}

TEST_F(xwayland, ends_with_its_windows_at_the_end_of_the_session)
{
    map_x11();
    map_unmanaged({});
    connect_x11().create();
    finish();
}

// Windows come

TEST_F(xwayland, window_is_centred_focused_decorated_and_announced)
{
    x11_window &w = map_x11({.x = 17, .y = 23, .width = 300, .height = 200});
    const vantore_toplevel &t = record(w);
    EXPECT_EQ(box(w), (wlr_box{490, 267, 300, 200})) << "whatever place it asked for, below its title bar";
    EVENTUALLY_EQ(w.told(), (x11_place{490, 267, 300, 200}));
    EXPECT_TRUE(has_keyboard(w));
    EVENTUALLY(w.has_focus());
    EXPECT_TRUE(t.ssd);
    EXPECT_TRUE(t.titlebar->node.enabled);
    EXPECT_FALSE(t.floating);
    EXPECT_EQ(t.workspace, &workspace(1));
    EXPECT_EQ(t.scene_tree->node.parent, workspace(1).tree);
    EXPECT_EQ(t.xwl->data, &t);
    EXPECT_THAT(tl_app_id(t), StrEq("xapp"));
    EXPECT_THAT(tl_title(t), StrEq("an X11 window"));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
    EXPECT_THAT(world.log(), HasSubstr("new X11 surface: title=\""));
}

TEST_F(xwayland, window_shows_what_it_draws)
{
    map_x11({.colour = 0x3366cc});
    EVENTUALLY_EQ(pixel("A", 640, 352), 0xff3366ccU);
}

TEST_F(xwayland, window_that_wants_no_title_bar_has_none)
{
    x11_window &w = connect_x11().create();
    w.without_title_bar();
    map_x11(w);
    EXPECT_FALSE(record(w).ssd);
    EXPECT_EQ(box(w), (wlr_box{490, 252, 300, 200}));
}

TEST_F(xwayland, window_with_a_parent_floats)
{
    tile();
    test::x11_client &client = connect_x11();
    x11_window &parent = map_x11(client.create());
    x11_window &dialog = client.create();
    dialog.transient_for(parent);
    map_x11(dialog);
    EXPECT_TRUE(record(dialog).floating);
    EXPECT_FALSE(record(parent).floating);
}

TEST_F(xwayland, modal_window_floats)
{
    EXPECT_TRUE(record(map_x11(create_with_state("MODAL"))).floating);
}

TEST_F(xwayland, window_of_fixed_size_is_tiled_like_others)
{
    tile();
    x11_window &w = connect_x11().create();
    w.size_hints(300, 200, 300, 200);
    map_x11(w);
    EXPECT_FALSE(record(w).floating);
    EXPECT_EQ(box(w), (wlr_box{0, 30, 1280, 674}));
    EVENTUALLY_EQ(w.told(), (x11_place{0, 30, 1280, 674}));
}

TEST_F(xwayland, window_that_asks_to_open_maximized_is_not)
{
    x11_window &w = map_x11(create_with_state("MAXIMIZED_VERT"));
    EXPECT_TRUE(record(w).xwl->maximized_vert);
    EXPECT_FALSE(record(w).maximized);
}

TEST_F(xwayland, window_may_open_fullscreen)
{
    x11_window &w = map_x11(create_with_state("FULLSCREEN"));
    EXPECT_TRUE(record(w).fullscreen);
    EVENTUALLY_EQ(w.told(), (x11_place{0, 0, 1280, 704}));
    EXPECT_EQ(box(w), (wlr_box{0, 0, 1280, 704}));
    EXPECT_TRUE(w.has_state("FULLSCREEN"));
}

// Most clients do so at once, before anybody can have heard of the window.
TEST_F(xwayland, window_may_say_what_it_is_before_it_maps)
{
    test::x11_client &client = connect_x11();
    x11_window &game = client.create();
    game.initial_state("FULLSCREEN");
    map_x11(game);
    EXPECT_TRUE(record(game).fullscreen);
    EVENTUALLY_EQ(game.told(), (x11_place{0, 0, 1280, 704}));
    EVENTUALLY(game.has_state("FULLSCREEN"));
    x11_window &dialog = client.create();
    dialog.initial_state("MODAL");
    map_x11(dialog);
    EXPECT_TRUE(record(dialog).floating);
    EXPECT_FALSE(record(dialog).fullscreen);
    game.unmap();
    EVENTUALLY_EQ(find_record(game), nullptr);
    map_x11(game);
    EXPECT_FALSE(record(game).fullscreen) << "said once, for one map";
}

TEST_F(xwayland, windows_follow_rules_except_for_their_place)
{
    write_config("rules.conf", "game* -> float, workspace=3, skiptaskbar, place=top-right\n");
    x11_window &w = map_x11({.wm_class = "game-7"});
    EXPECT_TRUE(record(w).floating);
    EXPECT_TRUE(record(w).skip_taskbar);
    EXPECT_EQ(record(w).workspace, &workspace(3));
    EXPECT_EQ(box(w), (wlr_box{490, 267, 300, 200}));
    EXPECT_EQ(keyboard_focus(), nullptr) << "nobody sees it";
}

TEST_F(xwayland, window_is_fullscreen_at_once_where_a_rule_says_so)
{
    write_config("rules.conf", "game -> fullscreen\n");
    x11_window &w = map_x11({.wm_class = "game"});
    EXPECT_EQ(record(w).scene_tree->node.x, 0);
    EXPECT_EQ(record(w).scene_tree->node.y, 0);
    EVENTUALLY_EQ(w.told(), (x11_place{0, 0, 1280, 704}));
}

TEST_F(xwayland, window_is_followed_where_a_rule_says_so)
{
    write_config("rules.conf", "game -> workspace=3, follow\n");
    x11_window &w = map_x11({.wm_class = "game"});
    EXPECT_EQ(output("A").current_ws, &workspace(3));
    EXPECT_TRUE(has_keyboard(w));
}

TEST_F(xwayland, window_opens_on_the_output_under_the_cursor)
{
    plug("B", 640, 640);
    wlr_cursor_warp(server.cursor, nullptr, 1400, 100);
    x11_window &w = map_x11();
    EXPECT_EQ(record(w).workspace, output("B").current_ws);
    EXPECT_EQ(box(w), (wlr_box{1280 + 170, 235, 300, 200}));
}

TEST_F(xwayland, windows_take_tiles_with_others)
{
    tile();
    map("native");
    x11_window &w = map_x11();
    EXPECT_EQ(box(w).x, 704);
    EVENTUALLY_EQ(w.told(), place_of(w));
}

// Windows go

TEST_F(xwayland, unmapped_window_leaves_its_workspace_and_its_tile_at_once)
{
    tile();
    x11_window &stays = map_x11(), &goes = map_x11();
    goes.unmap();
    EVENTUALLY_EQ(find_record(goes), nullptr);
    EXPECT_EQ(box(stays), (wlr_box{0, 30, 1280, 674}));
    EXPECT_THAT(tiles(), ElementsAre(record(stays).id));
    EXPECT_TRUE(has_keyboard(stays));
}

TEST_F(xwayland, window_that_maps_again_is_the_same_at_another_place)
{
    tile();
    x11_window &w = map_x11(), &other = map_x11();
    const uint32_t id = record(w).id;
    record(w).floating = true;
    w.unmap();
    EVENTUALLY_EQ(find_record(w), nullptr);
    w.map();
    EVENTUALLY(find_record(w) != nullptr);
    EXPECT_EQ(record(w).id, id);
    EXPECT_TRUE(record(w).floating);
    EXPECT_THAT(tiles(), ElementsAre(record(other).id, id));
}

TEST_F(xwayland, window_that_maps_again_is_fullscreen_or_maximized_no_more)
{
    x11_window &w = map_x11();
    w.request_state(true, "MAXIMIZED_VERT", "MAXIMIZED_HORZ");
    EVENTUALLY(record(w).maximized);
    w.request_state(true, "FULLSCREEN");
    EVENTUALLY_EQ(w.told(), (x11_place{0, 0, 1280, 704}));
    w.unmap();
    EVENTUALLY_EQ(find_record(w), nullptr);
    w.resize(300, 200);
    w.map();
    EVENTUALLY(find_record(w) != nullptr);
    EXPECT_FALSE(record(w).fullscreen);
    EXPECT_FALSE(record(w).maximized);
    EXPECT_EQ(record(w).scene_tree->node.parent, workspace(1).tree);
    EVENTUALLY_EQ(box(w), (wlr_box{490, 267, 300, 200}));
}

TEST_F(xwayland, window_that_maps_again_is_minimized_no_more)
{
    write_config("rules.conf", "hidden -> workspace=4\n");
    x11_window &w = map_x11({.wm_class = "hidden"});
    toplevel_minimize(record(w));
    w.unmap();
    EVENTUALLY_EQ(find_record(w), nullptr);
    w.map();
    EVENTUALLY(find_record(w) != nullptr);
    EXPECT_FALSE(record(w).minimized);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
}

TEST_F(xwayland, destroyed_window_is_gone)
{
    x11_window &w = map_x11();
    (void)heard();
    w.destroy();
    EVENTUALLY_EQ(find_record(w), nullptr);
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
}

TEST_F(xwayland, client_that_vanishes_takes_its_windows_along)
{
    test::x11_client &client = connect_x11();
    x11_window &first = map_x11(client.create()), &second = map_x11(client.create());
    x11_window &other = map_x11();
    client.vanish();
    EVENTUALLY(find_record(first) == nullptr && find_record(second) == nullptr);
    EXPECT_THAT(raised(), ElementsAre(record(other).id));
}

TEST_F(xwayland, window_that_unmaps_ends_its_drag)
{
    x11_window &w = map_x11();
    w.request_drag(8);
    EVENTUALLY_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE);
    w.unmap();
    EVENTUALLY_EQ(find_record(w), nullptr);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_EQ(server.drag.grabbed_toplevel, nullptr);
}

// Focus and input

TEST_F(xwayland, focus_passes_between_x11_and_other_windows)
{
    x11_window &x = map_x11();
    test::window &native = map("native");
    EVENTUALLY(!x.has_focus());
    EVENTUALLY(native.has(test::ACTIVATED));
    focus_toplevel_ex(&record(x), true);
    EVENTUALLY(x.has_focus());
    EVENTUALLY(!native.has(test::ACTIVATED));
    focus_toplevel_ex(&record(native), true);
    EVENTUALLY(!x.has_focus());
}

TEST_F(xwayland, windows_hear_keys_and_the_pointer_where_they_are)
{
    test::made_up_keyboard &keyboard = plug_keyboard();
    x11_window &w = map_x11();
    EVENTUALLY(w.has_focus());
    keyboard.tap(KEY_A);
    EVENTUALLY(w.heard("key 38"));
    point_at(*pointer, 490 + 100, 267 + 50);
    EVENTUALLY(w.heard("motion 100,50") || w.heard("enter 100,50"));
    pointer->click(BTN_LEFT);
    EVENTUALLY(w.heard("button 1 100,50"));
}

TEST_F(xwayland, click_raises_a_window_in_the_order_of_the_x_server_too)
{
    test::x11_client &client = connect_x11();
    x11_window &low = map_x11(client.create()), &high = map_x11(client.create());
    tl_move(record(low), 300, 267);
    const auto above = [&](const x11_window &one, const x11_window &other) {
        const std::vector<uint32_t> order = client.stacking();
        return std::ranges::find(order, one.id()) > std::ranges::find(order, other.id());
    };
    EVENTUALLY(above(high, low));
    point_at(*pointer, 320, 300);
    pointer->click(BTN_LEFT);
    EXPECT_TRUE(has_keyboard(low));
    EXPECT_THAT(raised(), ElementsAre(record(low).id, record(high).id));
    EVENTUALLY(above(low, high));
}

TEST_F(xwayland, raised_window_takes_its_dialogs_along_in_the_order_of_the_x_server_too)
{
    test::x11_client &client = connect_x11();
    x11_window &w = map_x11(client.create()), &dialog = client.create({.width = 100});
    dialog.transient_for(w);
    map_x11(dialog);
    x11_window &other = map_x11(client.create());
    focus_toplevel_ex(&record(w), true);
    EXPECT_THAT(raised(), ElementsAre(record(w).id, record(other).id, record(dialog).id));
    const auto height = [&](const x11_window &window) {
        const std::vector<uint32_t> order = client.stacking();
        return std::ranges::find(order, window.id()) - order.begin();
    };
    EVENTUALLY(height(other) < height(w) && height(w) < height(dialog));
    surface_hit hit;
    const wlr_box middle = box(dialog);
    EXPECT_EQ(desktop_toplevel_at(server, middle.x + 50, middle.y + 50, hit), &record(dialog));
}

TEST_F(xwayland, raised_window_stays_below_menus_in_the_order_of_the_x_server)
{
    test::x11_client &client = connect_x11();
    x11_window &w = map_x11(client.create());
    x11_window &menu = map_unmanaged({.x = 500, .y = 300, .width = 50, .height = 50});
    focus_toplevel_ex(&record(w), true);
    settle();
    const std::vector<uint32_t> order = client.stacking();
    EXPECT_LT(std::ranges::find(order, w.id()), std::ranges::find(order, menu.id()));
}

TEST_F(xwayland, window_that_nobody_sees_is_told_that_it_is_hidden)
{
    x11_window &w = map_x11();
    EXPECT_FALSE(w.has_state("HIDDEN"));
    goto_workspace(server, 2);
    EVENTUALLY(w.has_state("HIDDEN"));
    goto_workspace(server, 1);
    EVENTUALLY(!w.has_state("HIDDEN"));
}

TEST_F(xwayland, minimized_window_is_told_and_comes_back_when_it_is_focused)
{
    x11_window &w = map_x11();
    toplevel_minimize(record(w));
    EVENTUALLY(w.has_state("HIDDEN"));
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    focus_toplevel_ex(&record(w), true);
    EVENTUALLY(!w.has_state("HIDDEN"));
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
}

TEST_F(xwayland, maximized_window_fills_the_usable_box_and_returns)
{
    x11_window &w = map_x11();
    toplevel_toggle_maximize(record(w));
    EVENTUALLY_EQ(w.told(), (x11_place{0, 30, 1280, 674}));
    EVENTUALLY(w.has_state("MAXIMIZED_VERT") && w.has_state("MAXIMIZED_HORZ"));
    toplevel_toggle_maximize(record(w));
    EVENTUALLY_EQ(w.told(), (x11_place{490, 267, 300, 200}));
    EVENTUALLY(!w.has_state("MAXIMIZED_VERT"));
}

TEST_F(xwayland, window_learns_where_it_is_carried)
{
    plug("B", 640, 640);
    x11_window &w = map_x11();
    move_focused_to_adjacent_output(server, 1);
    EXPECT_EQ(record(w).workspace, output("B").current_ws);
    EVENTUALLY_EQ(w.told(), place_of(w));
    EXPECT_GE(w.told().x, 1280);
}

TEST_F(xwayland, float_that_is_brought_back_from_outside_learns_it)
{
    x11_window &w = map_x11();
    w.move(5000, 5000);
    EVENTUALLY_EQ(box(w).x, 5000);
    arrange_workspace(&workspace(1));
    EVENTUALLY_EQ(w.told(), (x11_place{490, 252, 300, 200}));
}

// Closing

TEST_F(xwayland, window_is_asked_to_close)
{
    x11_window &w = map_x11();
    tl_close(record(w));
    EVENTUALLY_EQ(w.closes(), 1);
    EXPECT_THAT(world.killed_processes(), IsEmpty());
}

TEST_F(xwayland, hung_window_is_marked_comes_back_with_a_frame_and_is_killed_by_a_second_close)
{
    x11_window &w = map_x11();
    vantore_toplevel &t = record(w);
    t.xwl->pid = 4711;
    w.answers_pings = false;
    const auto hang = [&] {
        tl_close(t);
        wl_event_source_timer_update(t.xwl->ping_timer, 1); // the library waits for ten seconds
        EVENTUALLY(t.unresponsive);
    };
    hang();
    EXPECT_THAT(tl_title(t), StrEq("an X11 window (Not Responding)"));
    w.fill(0xff0000);
    EVENTUALLY(!t.unresponsive);
    hang();
    tl_close(t);
    EXPECT_THAT(world.killed_processes(), ElementsAre(test::killed{4711, SIGKILL}));
}

TEST_F(xwayland, window_that_supports_no_ping_is_never_pinged)
{
    x11_window &w = connect_x11().create();
    w.without_ping();
    map_x11(w);
    tl_close(record(w));
    EXPECT_FALSE(record(w).xwl->pinging);
    EVENTUALLY_EQ(w.closes(), 1);
}

TEST_F(xwayland, hung_window_comes_back_with_a_frame_of_its_program_and_of_no_other)
{
    x11_window &w = map_x11();
    x11_window &other = map_x11(connect_x11().create());
    x11_window &stranger = map_x11();
    record(w).xwl->pid = record(other).xwl->pid = 4711;
    w.answers_pings = false;
    tl_close(record(w));
    wl_event_source_timer_update(record(w).xwl->ping_timer, 1); // the library waits for ten seconds
    EVENTUALLY(record(w).unresponsive);
    EXPECT_FALSE(record(other).unresponsive);
    stranger.fill(0xff0000);
    settle();
    EXPECT_TRUE(record(w).unresponsive);
    other.fill(0xff0000);
    EVENTUALLY(!record(w).unresponsive);
}

// Dragging

TEST_F(xwayland, window_follows_the_pointer_by_its_title_bar_and_learns_it)
{
    x11_window &w = map_x11();
    point_at(*pointer, 500, 250);
    pointer->press(BTN_LEFT);
    point_at(*pointer, 400, 200);
    EXPECT_EQ(box(w), (wlr_box{390, 217, 300, 200}));
    EVENTUALLY_EQ(w.told(), (x11_place{390, 217, 300, 200}));
    pointer->release(BTN_LEFT);
    settle();
    EXPECT_EQ(box(w), (wlr_box{390, 217, 300, 200}));
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

TEST_F(xwayland, window_is_resized_at_its_border_down_to_a_least_size)
{
    x11_window &w = map_x11();
    point_at(*pointer, 490 + 2, 300);
    pointer->press(BTN_LEFT);
    point_at(*pointer, 390 + 2, 300);
    EVENTUALLY_EQ(w.told(), (x11_place{390, 267, 400, 200}));
    point_at(*pointer, 1000, 300);
    EVENTUALLY_EQ(w.told(), (x11_place{670, 267, 120, 200}));
    pointer->release(BTN_LEFT);
}

TEST_F(xwayland, window_dragged_out_of_maximized_returns_to_its_size)
{
    x11_window &w = map_x11();
    toplevel_toggle_maximize(record(w));
    point_at(*pointer, 640, 10);
    pointer->press(BTN_LEFT);
    EVENTUALLY_EQ(w.told().width, 300);
    EVENTUALLY(!w.has_state("MAXIMIZED_VERT"));
    pointer->release(BTN_LEFT);
}

// The log

TEST_F(xwayland, windows_are_named_in_the_log_of_buttons)
{
    config("debug_input = true\n");
    map_x11({.title = "one"});
    point_at(*pointer, 600, 300);
    pointer->click(BTN_LEFT);
    EXPECT_THAT(world.log(), HasSubstr("→ xwl:'one' sxy=110,33\n"));
    map_unmanaged({.x = 500, .y = 300, .width = 50, .height = 50, .title = "menu"});
    point_at(*pointer, 510, 310);
    pointer->click(BTN_LEFT);
    EXPECT_THAT(world.log(), HasSubstr("→ xwl:'menu' (O-R) sxy=10,10\n"));
}

} // namespace
