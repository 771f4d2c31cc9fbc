// What X11 clients ask of their windows, politely or not.

#include "support/x11_desk.hpp"

#include "handles.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "windows/xwl_requests.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/switch.hpp"

using test::x11_place;
using test::x11_window;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

namespace
{

constexpr x11_place whole_output{0, 0, 1280, 704};

struct x11_requests : test::x11_desk {
    x11_window &map_fullscreen()
    {
        x11_window &w = map_x11();
        toplevel_set_fullscreen(record(w), true);
        EVENTUALLY_EQ(w.told(), whole_output);
        settle();
        return w;
    }
    void expect_marked(x11_window &w)
    {
        w.request_activate();
        EVENTUALLY(record(w).urgent);
        EXPECT_FALSE(has_keyboard(w));
        EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
    }
};

// Places and sizes

TEST_F(x11_requests, move_and_resize_a_floating_window_with_its_decorations)
{
    x11_window &w = map_x11();
    w.place(50, 60, 400, 250);
    EVENTUALLY_EQ(w.told(), (x11_place{50, 60, 400, 250}));
    EXPECT_EQ(box(w), (wlr_box{50, 60, 400, 250}));
    const vantore_toplevel &t = record(w);
    EXPECT_EQ(t.titlebar->width, 400);
    EXPECT_EQ(t.btn_close->node.x, 400 - 23);
    w.move(70, 80);
    EVENTUALLY_EQ(box(w), (wlr_box{70, 80, 400, 250}));
}

TEST_F(x11_requests, are_granted_before_the_window_is_mapped)
{
    x11_window &w = connect_x11().create();
    w.place(5, 6, 333, 222);
    EVENTUALLY_EQ(w.told(), (x11_place{5, 6, 333, 222}));
    map_x11(w);
    EXPECT_EQ(box(w).width, 333);
}

TEST_F(x11_requests, can_not_resize_or_move_a_tile)
{
    tile();
    x11_window &w = map_x11();
    EVENTUALLY_EQ(w.told(), (x11_place{0, 30, 1280, 674}));
    const int told = w.configures();
    w.place(90, 90, 300, 200);
    EVENTUALLY(w.configures() > told);
    settle();
    EXPECT_EQ(w.told(), (x11_place{0, 30, 1280, 674})) << "it is told its size again";
    EXPECT_EQ(box(w), (wlr_box{0, 30, 1280, 674}));
}

// A workspace on no output is never arranged, so its tiles have no size that clients could be told.
TEST_F(x11_requests, do_not_shrink_a_tile_that_was_never_arranged)
{
    workspace(3).layout = VANTORE_LAYOUT_TILING;
    write_config("rules.conf", "xapp -> workspace=3\n");
    x11_window &w = map_x11();
    const int told = w.configures();
    w.resize(500, 400);
    EVENTUALLY(w.configures() > told);
    EXPECT_EQ(w.told().width, 300);
    EXPECT_EQ(w.told().height, 200);
}

TEST_F(x11_requests, move_a_float_of_a_tiling_workspace)
{
    tile();
    x11_window &w = map_x11();
    record(w).floating = true;
    w.place(50, 60, 400, 250);
    EVENTUALLY_EQ(box(w), (wlr_box{50, 60, 400, 250}));
}

TEST_F(x11_requests, do_not_tear_a_window_from_the_drag_that_moves_it)
{
    x11_window &w = map_x11();
    w.request_drag(8);
    EVENTUALLY_EQ(server.drag.grabbed_toplevel, &record(w));
    pointer->move(10, 10);
    const wlr_box dragged = box(w);
    EVENTUALLY_EQ(w.told(), place_of(w));
    settle();
    EXPECT_EQ(box(w), dragged);
}

// Drags

TEST_F(x11_requests, start_a_move)
{
    x11_window &w = map_x11();
    w.request_drag(8);
    EVENTUALLY_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE);
    pointer->move(30, 40);
    EVENTUALLY_EQ(w.told(), (x11_place{520, 307, 300, 200}));
}

TEST_F(x11_requests, start_a_resize_at_the_edges_that_they_name)
{
    x11_window &w = map_x11();
    point_at(*pointer, 600, 350);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(w)));
    w.request_drag(4); // bottom right
    EVENTUALLY_EQ(server.drag.cursor_mode, VANTORE_CURSOR_RESIZE);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, nullptr);
    EXPECT_EQ(server.drag.resize_edges, uint32_t{WLR_EDGE_BOTTOM | WLR_EDGE_RIGHT});
    pointer->move(30, 40);
    EVENTUALLY_EQ(w.told(), (x11_place{490, 267, 330, 240}));
}

TEST_F(x11_requests, start_no_drag_of_a_window_that_is_fullscreen_minimized_or_not_mapped)
{
    x11_window &full = map_fullscreen();
    full.request_drag(8);
    full.request_drag(4);
    x11_window &hidden = map_x11();
    toplevel_minimize(record(hidden));
    hidden.request_drag(8);
    x11_window &unmapped = connect_x11().create();
    unmapped.request_drag(8);
    settle();
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
}

TEST_F(x11_requests, start_no_drag_of_a_window_that_nobody_sees)
{
    x11_window &w = map_x11();
    goto_workspace(server, 2);
    w.request_drag(8);
    w.request_drag(4);
    settle();
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_EQ(record(w).scene_tree->node.parent, workspace(1).tree);
}

// States

TEST_F(x11_requests, to_be_hidden_by_its_state_alone_end_when_the_window_is_focused)
{
    x11_window &w = map_x11();
    EVENTUALLY_EQ(w.wm_state(), 1U);
    w.request_iconify();
    EVENTUALLY_EQ(w.wm_state(), 3U);
    EXPECT_TRUE(record(w).minimized);
    w.request_state(false, "HIDDEN");
    EVENTUALLY(!record(w).minimized);
    EVENTUALLY_EQ(w.wm_state(), 1U);
    EXPECT_FALSE(w.has_state("HIDDEN"));
}

TEST_F(x11_requests, leave_a_minimized_window_hidden_when_its_workspace_shows_again)
{
    x11_window &w = map_x11();
    map("native");
    toplevel_minimize(record(w));
    goto_workspace(server, 2);
    goto_workspace(server, 1);
    settle();
    EXPECT_TRUE(record(w).xwl->minimized);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
}

TEST_F(x11_requests, maximize_and_unmaximize)
{
    x11_window &w = map_x11();
    w.request_state(true, "MAXIMIZED_VERT", "MAXIMIZED_HORZ");
    EVENTUALLY(record(w).maximized);
    EVENTUALLY_EQ(w.told(), (x11_place{0, 30, 1280, 674}));
    w.request_state(false, "MAXIMIZED_VERT", "MAXIMIZED_HORZ");
    EVENTUALLY(!record(w).maximized);
    EVENTUALLY_EQ(w.told(), (x11_place{490, 267, 300, 200}));
}

TEST_F(x11_requests, to_maximize_a_fullscreen_window_are_refused)
{
    x11_window &w = map_fullscreen();
    w.request_state(true, "MAXIMIZED_VERT", "MAXIMIZED_HORZ");
    settle();
    EXPECT_FALSE(record(w).maximized);
    EXPECT_FALSE(w.has_state("MAXIMIZED_VERT"));
    EXPECT_EQ(box(w), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(x11_requests, for_width_alone_do_not_maximize)
{
    x11_window &w = map_x11();
    w.request_state(true, "MAXIMIZED_HORZ");
    settle();
    EXPECT_FALSE(record(w).maximized);
}

TEST_F(x11_requests, minimize_and_bring_back)
{
    x11_window &other = map_x11(), &w = map_x11();
    w.request_iconify();
    EVENTUALLY(record(w).minimized);
    EXPECT_TRUE(has_keyboard(other));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
    w.request_normal();
    EVENTUALLY(!record(w).minimized);
    EXPECT_TRUE(has_keyboard(w));
}

TEST_F(x11_requests, enter_and_leave_fullscreen)
{
    x11_window &w = map_x11();
    w.request_state(true, "FULLSCREEN");
    EVENTUALLY(record(w).fullscreen);
    EVENTUALLY_EQ(w.told(), whole_output);
    EVENTUALLY(w.has_state("FULLSCREEN"));
    EXPECT_EQ(record(w).scene_tree->node.parent, server.fullscreen_tree);
    w.request_state(false, "FULLSCREEN");
    EVENTUALLY(!record(w).fullscreen);
    EVENTUALLY_EQ(w.told(), (x11_place{490, 267, 300, 200}));
    EVENTUALLY(!w.has_state("FULLSCREEN"));
}

TEST_F(x11_requests, leave_a_game_fullscreen_that_has_nothing_to_gain)
{
    x11_window &w = map_fullscreen();
    record(w).saved_geo = {0, 0, 1280, 704};
    w.request_state(true, "FULLSCREEN");
    w.request_state(false, "FULLSCREEN");
    settle();
    EXPECT_TRUE(record(w).fullscreen);
    record(w).saved_geo = {0, 0, 1279, 704};
    w.request_state(true, "FULLSCREEN");
    w.request_state(false, "FULLSCREEN");
    EVENTUALLY(!record(w).fullscreen);
}

TEST_F(x11_requests, put_a_fullscreen_window_on_the_output_for_games)
{
    config("game_output = B\n");
    plug("B", 640, 640);
    x11_window &w = map_x11();
    w.request_state(true, "FULLSCREEN");
    EVENTUALLY_EQ(w.told().width, 640);
    EXPECT_EQ(record(w).workspace, output("A").current_ws);
}

TEST_F(x11_requests, for_fullscreen_pass_over_an_output_for_games_that_is_not_there_or_off)
{
    config("game_output = B\n");
    x11_window &w = map_x11();
    w.request_state(true, "FULLSCREEN");
    EVENTUALLY_EQ(w.told(), whole_output);
    w.request_state(false, "FULLSCREEN");
    EVENTUALLY(!record(w).fullscreen);
    plug("B", 640, 640);
    output_state off;
    wlr_output_state_set_enabled(&off, false);
    ASSERT_TRUE(wlr_output_commit_state(output("B").wlr_output, &off));
    w.request_state(true, "FULLSCREEN");
    EVENTUALLY_EQ(w.told(), whole_output);
}

TEST_F(x11_requests, for_fullscreen_place_the_window_on_its_own_output_at_its_next_frame)
{
    config("game_output = B\n");
    plug("B", 640, 640);
    x11_window &w = map_x11();
    w.request_state(true, "FULLSCREEN");
    EVENTUALLY_EQ(w.told().width, 640);
    w.fill(0xff0000);
    EVENTUALLY_EQ(record(w).scene_tree->node.x, 0);
    EXPECT_EQ(box(w).width, 640) << "the size stays";
}

// Attention

TEST_F(x11_requests, for_focus_are_only_noted_while_a_native_window_has_it)
{
    x11_window &w = map_x11();
    map("native");
    (void)heard();
    expect_marked(w);
}

TEST_F(x11_requests, for_focus_are_only_noted_while_another_x11_window_has_it)
{
    x11_window &w = map_x11();
    map_x11();
    expect_marked(w);
}

TEST_F(x11_requests, for_focus_are_granted_when_nobody_has_it)
{
    x11_window &w = map_x11();
    map_x11();
    clear_focus();
    w.request_activate();
    EVENTUALLY(has_keyboard(w));
    EXPECT_FALSE(record(w).urgent);
    EXPECT_EQ(focused_toplevel(server), &record(w));
}

TEST_F(x11_requests, for_focus_raise_the_window_that_has_it)
{
    x11_window &w = map_x11();
    x11_window &other = map_x11();
    focus_toplevel_ex(&record(w), false);
    EXPECT_EQ(focused_toplevel(server), &record(other));
    w.request_activate();
    EVENTUALLY_EQ(focused_toplevel(server), &record(w));
}

TEST_F(x11_requests, for_focus_are_only_noted_while_a_game_owns_the_screen)
{
    x11_window &launcher = map_x11();
    x11_window &game = map_fullscreen();
    clear_focus();
    EXPECT_TRUE(any_screen_owner(server));
    expect_marked(launcher);
    game.request_activate();
    EVENTUALLY(has_keyboard(game));
}

TEST_F(x11_requests, for_focus_are_only_noted_while_an_unmanaged_window_fills_an_output)
{
    x11_window &launcher = map_x11();
    map_unmanaged({.width = 1280, .height = 704});
    clear_focus();
    EXPECT_TRUE(any_screen_owner(server));
    expect_marked(launcher);
}

TEST_F(x11_requests, for_focus_are_only_noted_of_a_window_that_nobody_sees)
{
    x11_window &w = map_x11();
    goto_workspace(server, 2);
    clear_focus();
    expect_marked(w);
}

TEST_F(x11_requests, for_focus_mark_a_hidden_window_that_still_has_the_keyboard)
{
    x11_window &w = map_x11();
    unplug("A"); // nobody else can take the keyboard
    ASSERT_TRUE(has_keyboard(w));
    (void)heard();
    w.request_activate();
    EVENTUALLY(record(w).urgent);
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
}

TEST_F(x11_requests, for_focus_of_a_window_that_is_not_mapped_are_ignored)
{
    x11_window &w = connect_x11().create();
    clear_focus();
    w.request_activate();
    settle();
    EXPECT_EQ(keyboard_focus(), nullptr);
}

TEST_F(x11_requests, a_game_on_a_hidden_workspace_owns_no_screen)
{
    map_fullscreen();
    EXPECT_TRUE(any_screen_owner(server));
    goto_workspace(server, 2);
    EXPECT_FALSE(any_screen_owner(server));
}

TEST_F(x11_requests, urgency_marks_a_window_until_it_is_focused)
{
    x11_window &w = map_x11();
    w.urgency(true);
    settle();
    EXPECT_FALSE(record(w).urgent) << "it has the keyboard";
    map("native");
    (void)heard();
    w.urgency(true);
    EVENTUALLY(record(w).urgent);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS));
    w.urgency(false);
    settle();
    EXPECT_TRUE(record(w).urgent);
    focus_toplevel_ex(&record(w), true);
    EXPECT_FALSE(record(w).urgent);
}

TEST_F(x11_requests, of_a_window_that_is_not_mapped_mark_and_announce_nothing)
{
    x11_window &w = map_x11();
    vantore_toplevel &t = record(w);
    w.unmap();
    EVENTUALLY_EQ(find_record(w), nullptr);
    (void)heard();
    w.urgency(true);
    w.wm_class("other");
    settle();
    wl_signal_emit_mutable(&t.xwl->events.ping_timeout, nullptr);
    EXPECT_FALSE(t.urgent);
    EXPECT_FALSE(t.unresponsive);
    EXPECT_THAT(heard(), IsEmpty());
}

// Names

TEST_F(x11_requests, titles_are_drawn_anew_and_classes_are_announced)
{
    x11_window &w = map_x11();
    const vantore_toplevel &t = record(w);
    EVENTUALLY_EQ(pixel("A", 640, 352), 0xff3366ccU);
    const test::image before = picture("A");
    w.title("another");
    EVENTUALLY_EQ(std::string{tl_title(t)}, "another");
    EVENTUALLY(picture("A").argb != before.argb);
    (void)heard();
    w.wm_class("renamed");
    EVENTUALLY_EQ(std::string{tl_app_id(t)}, "renamed");
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
}

TEST_F(x11_requests, titles_may_come_before_the_window_is_mapped)
{
    x11_window &w = connect_x11().create();
    w.title("early");
    w.wm_class("early");
    settle();
    EXPECT_THAT(tl_title(record(map_x11(w))), StrEq("early"));
}

} // namespace
