// Windows and workspaces that move between workspaces and outputs.

#include "support/desktop.hpp"

#include "config/settings.hpp"
#include "text.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/transfer.hpp"

using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

// B stands to the right of A. Each shows its own workspace, and the pointer is on A.
struct moves : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        plug("B", 640, 576);
        g_gap = 0;
        wlr_cursor_warp(server.cursor, nullptr, 600, 300);
        (void)heard();
    }
    vantore_workspace *shown(const std::string &name) { return output(name).current_ws; }
    bool pointer_is_on(const std::string &name)
    {
        const wlr_box area = output_layout_box(output(name));
        return wlr_box_contains_point(&area, server.cursor->x, server.cursor->y);
    }
};

TEST_F(moves, adjacent_outputs_go_round_the_list_from_the_newest)
{
    vantore_output &a = output("A"), &b = output("B");
    EXPECT_EQ(adjacent_output(server, &a, 1), &b);
    EXPECT_EQ(adjacent_output(server, &a, -1), &b);
    plug("C", 640, 512);
    vantore_output &c = output("C");
    EXPECT_EQ(adjacent_output(server, &c, 1), &b);
    EXPECT_EQ(adjacent_output(server, &b, 0), &a);
    EXPECT_EQ(adjacent_output(server, &a, 1), &c);
    EXPECT_EQ(adjacent_output(server, &c, -1), &a);
    EXPECT_EQ(adjacent_output(server, nullptr, 1), nullptr);
}

TEST_F(moves, to_the_next_output_do_nothing_with_one)
{
    unplug("B");
    window &w = map("w");
    settle();
    (void)heard();
    EXPECT_EQ(adjacent_output(server, &output("A"), 1), nullptr);
    move_ws_to_adjacent_output(server, 1);
    move_focused_to_adjacent_output(server, 1);
    EXPECT_EQ(record(w).workspace, &workspace(1));
    EXPECT_EQ(shown("A"), &workspace(1));
    EXPECT_THAT(heard(), IsEmpty());
}

// A workspace

TEST_F(moves, of_a_workspace_hide_what_the_output_showed)
{
    window &w = map("w", {400, 300});
    place(w, 100, 200);
    (void)heard();
    command("move-workspace-to-output 1 B");
    EXPECT_EQ(shown("B"), &workspace(1));
    EXPECT_EQ(text_of(workspace(1).pref_output), "B");
    EXPECT_EQ(workspace(2).output, nullptr);
    EXPECT_FALSE(workspace(2).tree->node.enabled);
    EXPECT_EQ(shown("A"), &workspace(3)); // the lowest that was free
    EXPECT_EQ(text_of(workspace(3).pref_output), "A");
    EXPECT_EQ(box(w), (wlr_box{1380, 200, 400, 300}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{1380, 200, 400, 300}));
    EXPECT_TRUE(pointer_is_on("B"));
    EXPECT_EQ(focused_toplevel(server), &record(w));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WORKSPACES));
    command("workspace 2");
    EXPECT_TRUE(workspace(2).tree->node.enabled);
}

TEST_F(moves, of_a_workspace_give_the_output_one_that_calls_it_home)
{
    copy_text(workspace(7).pref_output, "A");
    command("move-workspace-to-output 1 B");
    EXPECT_EQ(shown("A"), &workspace(7));
}

TEST_F(moves, of_a_workspace_to_where_it_is_only_focus_it)
{
    copy_text(workspace(2).pref_output, "elsewhere");
    command("move-workspace-to-output 2 B");
    EXPECT_EQ(shown("B"), &workspace(2));
    EXPECT_EQ(text_of(workspace(2).pref_output), "B");
    EXPECT_TRUE(pointer_is_on("B"));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
}

TEST_F(moves, of_a_workspace_from_nowhere_leave_its_windows_in_place)
{
    window &w = map("w", {400, 300});
    place(w, 100, 100);
    command("workspace 5");
    command("move-workspace-to-output 1 B");
    EXPECT_EQ(shown("B"), &workspace(1));
    EXPECT_EQ(shown("A"), &workspace(5));
    EXPECT_EQ(box(w), (wlr_box{1400, 138, 400, 300})); // brought back, because it lay outside of B
}

TEST_F(moves, of_a_workspace_need_an_enabled_output_and_a_workspace)
{
    (void)heard();
    for (const char *wrong : {"move-workspace-to-output", "move-workspace-to-output 1",
                              "move-workspace-to-output 1 C", "move-workspace-to-output 12 B"})
        command(wrong);
    EXPECT_EQ(shown("A"), &workspace(1));
    EXPECT_THAT(heard(), IsEmpty());
    command("dpms off");
    command("move-workspace-to-output 1 B");
    EXPECT_EQ(workspace(1).output, &output("A"));
}

TEST_F(moves, of_a_workspace_place_tiles_and_maximized_windows_anew)
{
    window &w = map("w", {400, 300});
    w.request_maximize();
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1280, 704}));
    command("move-workspace-to-output 1 B");
    EVENTUALLY_EQ(box(w), (wlr_box{1280, 0, 640, 576}));
    w.request_unmaximize();
    EVENTUALLY(box(w).x >= 1280 && box(w).width == 400);
    command("ws-layout 1 tiling");
    command("move-workspace-to-output 1 A");
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(moves, of_the_shown_workspace_follow_the_arrow)
{
    move_ws_to_adjacent_output(server, 1);
    EXPECT_EQ(shown("B"), &workspace(1));
    EXPECT_EQ(shown("A"), &workspace(3));
    move_ws_to_adjacent_output(server, 1); // the pointer went along
    EXPECT_EQ(shown("A"), &workspace(1));
    EXPECT_EQ(shown("B"), &workspace(2));
}

// A window to the next output

TEST_F(moves, of_a_maximized_window_to_the_next_output_fill_it)
{
    window &w = map("w", {400, 300});
    toplevel_toggle_maximize(record(w));
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1280, 704}));
    const wlr_box before = record(w).saved_geo;
    move_focused_to_adjacent_output(server, 1);
    EXPECT_EQ(record(w).workspace, &workspace(2));
    EVENTUALLY_EQ(box(w), (wlr_box{1280, 0, 640, 576}));
    toplevel_toggle_maximize(record(w));
    EVENTUALLY_EQ(box(w), (wlr_box{before.x + 1280, before.y, 400, 300}));
}

TEST_F(moves, of_a_window_to_the_next_output_keep_its_place_there)
{
    window &w = map("w", {400, 300});
    place(w, 100, 200);
    record(w).float_geo = {10, 20, 30, 40};
    settle();
    (void)heard();
    move_focused_to_adjacent_output(server, 1);
    EXPECT_EQ(record(w).workspace, &workspace(2));
    EXPECT_EQ(box(w), (wlr_box{1380, 200, 400, 300}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{1290, 20, 30, 40}));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS));
    EXPECT_TRUE(w.has(test::ACTIVATED));
}

TEST_F(moves, of_a_fullscreen_window_to_the_next_output_are_not_done)
{
    window &w = map("w");
    record(w).fullscreen = true;
    move_focused_to_adjacent_output(server, 1);
    EXPECT_EQ(record(w).workspace, &workspace(1));
    record(w).fullscreen = false;
}

TEST_F(moves, of_a_tile_close_the_gap_and_join_the_others)
{
    for (const int num : {1, 2})
        command("ws-layout " + std::to_string(num) + " tiling");
    window &stays = map("stays"), &goes = map("goes");
    EVENTUALLY_EQ(box(stays).width, 704);
    move_focused_to_adjacent_output(server, 1);
    EVENTUALLY_EQ(box(stays), (wlr_box{0, 0, 1280, 704}));
    EVENTUALLY_EQ(box(goes), (wlr_box{1280, 0, 640, 576}));
}

// A window to a workspace

TEST_F(moves, of_a_window_to_a_workspace_leave_the_focus_where_one_looks)
{
    window &stays = map("stays"), &goes = map("goes", {400, 300});
    place(goes, 100, 200);
    settle();
    (void)heard();
    move_focused_to_workspace(server, 2);
    EXPECT_EQ(record(goes).workspace, &workspace(2));
    EXPECT_EQ(box(goes), (wlr_box{1380, 200, 400, 300}));
    EVENTUALLY(stays.has(test::ACTIVATED));
    EXPECT_FALSE(goes.has(test::ACTIVATED));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WORKSPACES));
    EXPECT_EQ(shown("A"), &workspace(1));
}

TEST_F(moves, of_the_only_window_leave_nobody_with_the_keyboard)
{
    window &w = map("w");
    move_focused_to_workspace(server, 2);
    EXPECT_EQ(keyboard_focus(), nullptr);
    EVENTUALLY(!w.has(test::ACTIVATED));
}

TEST_F(moves, of_a_window_to_its_own_or_no_workspace_do_nothing)
{
    window &w = map("w");
    settle();
    (void)heard();
    for (const long num : {1L, 0L, 10L, -1L})
        move_toplevel_to_workspace(record(w), num);
    EXPECT_EQ(record(w).workspace, &workspace(1));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(moves, of_a_window_to_a_workspace_that_is_nowhere_leave_its_place)
{
    window &w = map("w", {400, 300});
    place(w, 100, 200);
    move_focused_to_workspace(server, 7);
    EXPECT_EQ(box(w), (wlr_box{100, 200, 400, 300}));
    EXPECT_FALSE(toplevel_visible(record(w)));
    command("workspace 7");
    EXPECT_TRUE(toplevel_visible(record(w)));
    EXPECT_EQ(box(w), (wlr_box{100, 200, 400, 300}));
}

TEST_F(moves, of_a_window_to_a_hidden_workspace_go_where_that_is_at_home)
{
    copy_text(workspace(7).pref_output, "B");
    copy_text(workspace(8).pref_output, "gone");
    window &w = map("w", {400, 300});
    place(w, 100, 200);
    record(w).float_geo = {1, 2, 3, 4};
    move_toplevel_to_workspace(record(w), 7);
    EXPECT_EQ(box(w), (wlr_box{1380, 200, 400, 300}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{1281, 2, 3, 4}));
    move_toplevel_to_workspace(record(w), 8); // it comes from a workspace that no output shows
    EXPECT_EQ(box(w).x, 1380);
}

TEST_F(moves, of_a_maximized_window_fill_the_other_output)
{
    window &w = map("w", {400, 300});
    w.request_maximize();
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1280, 704}));
    record(w).float_geo = {1, 2, 3, 4};
    move_focused_to_workspace(server, 2);
    EVENTUALLY_EQ(box(w), (wlr_box{1280, 0, 640, 576}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{1281, 2, 3, 4}));
}

TEST_F(moves, of_a_tile_to_another_output_bring_its_float_box_along)
{
    for (const int num : {1, 2})
        command("ws-layout " + std::to_string(num) + " tiling");
    window &w = map("w");
    record(w).float_geo = {50, 60, 300, 200};
    move_focused_to_workspace(server, 2);
    EVENTUALLY_EQ(box(w), (wlr_box{1280, 0, 640, 576}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{1330, 60, 300, 200}));
}

TEST_F(moves, between_hidden_workspaces_leave_the_focus_alone)
{
    window &hidden = map("hidden");
    command("workspace 5");
    window &seen = map("seen");
    EVENTUALLY(seen.has(test::ACTIVATED));
    command("move id:" + std::to_string(record(hidden).id) + " 6");
    EXPECT_EQ(record(hidden).workspace, &workspace(6));
    settle();
    EXPECT_TRUE(seen.has(test::ACTIVATED));
}

} // namespace
