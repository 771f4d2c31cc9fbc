// The life of xdg-shell windows: sizes, places, focus, requests, hung windows, and clients that vanish.

#include "support/desktop.hpp"

#include "startup.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/transfer.hpp"

#include <csignal>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

using desktop = test::desktop;
using test::size;

namespace
{

struct desk : desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1920, 1080);
        settle();
        (void)heard();
    }

    // Windows in the order of raising, newest first.
    std::vector<std::string> raised()
    {
        std::vector<std::string> names;
        for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
            names.emplace_back(tl_app_id(t));
        return names;
    }
};

TEST_F(desk, a_client_may_choose_its_first_size)
{
    test::window &w = connect().create_window("editor");
    w.auto_draw = false;
    w.open();
    EVENTUALLY_EQ(w.configure_count(), 1);
    EXPECT_EQ(w.last().width, 0);
    EXPECT_EQ(w.last().height, 0);
    EXPECT_FALSE(w.has(test::ACTIVATED));
}

TEST_F(desk, a_new_window_is_centred_focused_and_announced)
{
    test::window &w = map("editor", {640, 480});
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{640, 300, 640, 480}));
    EVENTUALLY(w.has(test::ACTIVATED));
    EXPECT_TRUE(has_keyboard(w));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
    EXPECT_EQ(record(w).workspace, &workspace(1));
    EXPECT_EQ(record(w).scene_tree->node.parent, workspace(1).tree);
}

TEST_F(desk, a_window_geometry_smaller_than_the_surface_is_what_is_centred)
{
    test::window &w = connect().create_window("shadowed");
    w.preferred = {700, 540};
    w.geometry(30, 30, 640, 480);
    map(w);
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{640, 300, 640, 480}));
}

TEST_F(desk, a_window_too_large_for_the_output_sticks_to_its_top_left)
{
    EXPECT_EQ(toplevel_box(record(map("huge", {4000, 3000}))), (wlr_box{0, 0, 4000, 3000}));
}

TEST_F(desk, a_new_window_opens_on_the_output_under_the_cursor)
{
    plug("B", 1280, 720);
    wlr_cursor_warp(server.cursor, nullptr, 2000, 100);
    test::window &w = map("editor", {640, 480});
    EXPECT_EQ(record(w).workspace, output("B").current_ws);
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{1920 + 320, 120, 640, 480}));
    EVENTUALLY(w.outputs() == std::vector<std::string>{"B"});
}

TEST_F(desk, ids_count_up_from_one_and_are_not_reused)
{
    test::window &first = map("a");
    EXPECT_EQ(record(first).id, 1U);
    first.destroy();
    settle();
    EXPECT_EQ(record(map("b")).id, 2U);
}

TEST_F(desk, a_window_of_fixed_size_floats)
{
    const test::window &dialog = map_of_fixed_size("dialog");
    EXPECT_TRUE(record(dialog).floating);
    EXPECT_EQ(toplevel_box(record(dialog)), (wlr_box{810, 440, 300, 200}));
}

TEST_F(desk, a_window_fixed_in_one_direction_only_does_not_float)
{
    test::window &w = connect().create_window("bar");
    w.preferred = {300, 200};
    w.min_size({300, 100});
    w.max_size({300, 200});
    EXPECT_FALSE(record(map(w)).floating);
}

TEST_F(desk, a_window_without_limits_does_not_float)
{
    EXPECT_FALSE(record(map("plain")).floating);
}

TEST_F(desk, a_child_window_floats)
{
    EXPECT_TRUE(record(map_dialog(map("editor"))).floating);
}

TEST_F(desk, the_clipboard_overlay_lives_above_fullscreen_windows_and_floats)
{
    const vantore_toplevel &t = record(map("vantore-clips-overlay"));
    EXPECT_TRUE(t.overlay_lift);
    EXPECT_TRUE(t.floating);
    EXPECT_EQ(t.scene_tree->node.parent, server.layers[3]);
}

TEST_F(desktop, without_outputs_a_window_waits_on_the_first_workspace_without_the_focus)
{
    test::window &w = connect().create_window("early");
    map(w);
    EXPECT_EQ(w.last().width, 0);
    EXPECT_EQ(record(w).workspace, &workspace(1));
    EXPECT_EQ(keyboard_focus(), nullptr);
    EXPECT_FALSE(w.has(test::ACTIVATED));
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{0, 0, 640, 480}));
    plug("A", 1920, 1080);
    EVENTUALLY(w.outputs() == std::vector<std::string>{"A"});
}

TEST_F(desk, a_window_on_a_workspace_that_is_not_shown_takes_no_focus)
{
    test::window &shown = map("shown");
    unplug("A");
    test::window &hidden = map("hidden");
    EXPECT_TRUE(has_keyboard(shown));
    EXPECT_FALSE(hidden.has(test::ACTIVATED));
}

TEST_F(desktop, a_fixed_size_dialog_is_centred_on_the_cursors_output_and_brought_to_that_of_its_workspace)
{
    for (int i = 1; i <= 10; i++)
        plug("out" + std::to_string(i), 640, 480);
    ASSERT_EQ(output("out10").current_ws, nullptr);
    wlr_cursor_warp(server.cursor, nullptr, 640 * 9 + 10, 10);
    const test::window &dialog = map_of_fixed_size("dialog");
    EXPECT_TRUE(record(dialog).floating);
    EXPECT_EQ(record(dialog).workspace, &workspace(1));
    EXPECT_EQ(toplevel_box(record(dialog)), (wlr_box{170, 140, 300, 200}));
}

TEST_F(desktop, a_window_on_the_cursors_output_may_belong_to_a_workspace_elsewhere)
{
    for (int i = 1; i <= 10; i++)
        plug("out" + std::to_string(i), 640, 480);
    wlr_cursor_warp(server.cursor, nullptr, 640 * 8 + 630, 10); // near the edge of out9
    output("out9").usable = {640 * 8 + 320, 0, 640, 480}; // a window centred in it overlaps out10
    test::window &w = map("w", {400, 200});
    EXPECT_EQ(record(w).workspace, &workspace(9));
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{640 * 8 + 440, 140, 400, 200}));
}

TEST_F(desk, the_keyboard_goes_to_the_newest_window_and_back_to_the_next_when_it_goes)
{
    test::window &first = map("first"), &second = map("second");
    EXPECT_TRUE(has_keyboard(second));
    EVENTUALLY(!first.has(test::ACTIVATED));
    EXPECT_THAT(raised(), ElementsAre("second", "first"));
    second.destroy();
    EVENTUALLY(first.has(test::ACTIVATED));
    EXPECT_TRUE(has_keyboard(first));
}

TEST_F(desk, a_window_that_goes_without_having_the_keyboard_leaves_the_focus_alone)
{
    test::window &first = map("first"), &second = map("second");
    first.destroy();
    settle();
    EXPECT_TRUE(has_keyboard(second));
    EXPECT_TRUE(second.has(test::ACTIVATED));
}

TEST_F(desk, focus_with_raise_puts_a_window_on_top_and_focus_without_does_not)
{
    test::window &low = map("low"), &high = map("high");
    low.fill(0xffff0000);
    high.fill(0xff0000ff);
    EVENTUALLY_EQ(pixel("A", 960, 540), 0xff0000ffU);
    focus_toplevel_ex(&record(low), false);
    EXPECT_TRUE(has_keyboard(low));
    EXPECT_THAT(raised(), ElementsAre("high", "low"));
    settle();
    EXPECT_EQ(pixel("A", 960, 540), 0xff0000ffU);
    focus_toplevel_ex(&record(low), true);
    EXPECT_THAT(raised(), ElementsAre("low", "high"));
    EVENTUALLY_EQ(pixel("A", 960, 540), 0xffff0000U);
}

TEST_F(desk, focusing_the_focused_window_raises_it_but_announces_nothing)
{
    test::window &low = map("low");
    map("high");
    focus_toplevel_ex(&record(low), false);
    (void)heard();
    focus_toplevel_ex(&record(low), true);
    EXPECT_THAT(raised(), ElementsAre("low", "high"));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(desk, focusing_nothing_does_nothing)
{
    test::window &w = map("w");
    focus_toplevel_ex(nullptr, true);
    EXPECT_TRUE(has_keyboard(w));
}

TEST_F(desk, a_window_that_opens_while_the_focus_rests_on_an_unmapped_one_gets_it)
{
    test::window &hidden = map("hidden");
    hidden.unmap();
    settle();
    test::window &next = map("next");
    EVENTUALLY(next.has(test::ACTIVATED));
    EXPECT_TRUE(has_keyboard(next));
}

TEST_F(desk, an_unmapped_window_leaves_the_list_but_stays_on_its_workspace_and_may_come_back)
{
    test::window &w = map("w", {640, 480});
    vantore_toplevel &t = record(w);
    (void)heard();
    w.unmap();
    EVENTUALLY(wl_list_empty(&server.toplevels));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
    EXPECT_EQ(t.workspace, &workspace(1));
    EXPECT_EQ(wl_list_length(&workspace(1).toplevels), 1);
    map(w);
    EXPECT_EQ(&record(w), &t);
    EXPECT_EQ(wl_list_length(&workspace(1).toplevels), 1);
    EVENTUALLY(w.has(test::ACTIVATED));
}

TEST_F(desk, a_destroyed_window_is_forgotten_everywhere)
{
    test::window &w = map("w");
    w.destroy();
    EVENTUALLY(wl_list_empty(&workspace(1).toplevels));
    EXPECT_TRUE(wl_list_empty(&server.toplevels));
    EXPECT_EQ(keyboard_focus(), nullptr);
}

TEST_F(desk, only_the_role_of_a_window_may_die_and_its_surface_live_on)
{
    test::window &w = map("w");
    w.destroy_role();
    EVENTUALLY(wl_list_empty(&workspace(1).toplevels));
    map("next");
}

TEST_F(desk, a_surface_may_become_a_window_again_and_is_shown_once)
{
    test::window &w = map("w");
    w.destroy_toplevel();
    EVENTUALLY(wl_list_empty(&workspace(1).toplevels));
    w.create_toplevel();
    w.unmap(); // the first commit of the new role must not show anything
    EVENTUALLY(find_record(w) != nullptr);
    settle();
    EXPECT_EQ(record(w).id, 2U);
    EXPECT_EQ(wl_list_length(&workspace(1).tree->children), 1);
    EXPECT_TRUE(wl_list_empty(&workspace(2).tree->children));
}

TEST_F(desk, a_window_that_was_unmapped_in_focus_is_not_active_when_it_comes_back_unseen)
{
    test::window &w = map("w");
    w.unmap();
    settle();
    map("other");
    unplug("A");
    map(w);
    EXPECT_FALSE(w.has(test::ACTIVATED));
}

TEST_F(desk, a_window_maximizes_into_the_usable_area_and_returns)
{
    test::window &w = map("w", {640, 480});
    w.request_maximize();
    EVENTUALLY(w.has(test::MAXIMIZED));
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{0, 0, 1920, 1080}));
    w.request_unmaximize();
    EVENTUALLY(!w.has(test::MAXIMIZED));
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{640, 300, 640, 480}));
}

TEST_F(desk, a_maximized_window_with_a_title_bar_leaves_room_for_it)
{
    test::window &w = map("w", {640, 480});
    record(w).ssd = true;
    w.request_maximize();
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{0, 30, 1920, 1050}));
}

TEST_F(desk, a_title_bar_never_leaves_a_maximized_window_without_a_size)
{
    test::window &w = map("w", {640, 480});
    record(w).ssd = true;
    output("A").usable = {0, 0, 200, 20};
    w.request_maximize();
    EVENTUALLY_EQ(w.last().size(), (size{200, 1}));
}

TEST_F(desk, a_window_may_be_maximized_between_its_first_configure_and_its_first_frame)
{
    test::window &w = connect().create_window("w");
    w.auto_draw = false;
    w.open();
    EVENTUALLY_EQ(w.configure_count(), 1);
    w.request_maximize();
    EVENTUALLY(w.has(test::MAXIMIZED));
    w.draw(w.last().size(), 0xff00ff00);
    EVENTUALLY(find_record(w) != nullptr);
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{0, 0, 1920, 1080}));
    w.auto_draw = true;
    w.request_unmaximize();
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{384, 216, 1152, 648}));
}

TEST_F(desk, every_maximize_request_is_answered_also_when_nothing_changes)
{
    test::window &w = map("w");
    const int before = w.configure_count();
    w.request_unmaximize();
    EVENTUALLY_EQ(w.configure_count(), before + 1);
    w.request_maximize();
    EVENTUALLY(w.has(test::MAXIMIZED));
    const int maximized = w.configure_count();
    w.request_maximize();
    EVENTUALLY_EQ(w.configure_count(), maximized + 1);
}

TEST_F(desk, a_maximized_window_that_is_mapped_again_is_maximized_still)
{
    test::window &w = map("w", {640, 480});
    w.request_maximize();
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{0, 0, 1920, 1080}));
    w.unmap();
    settle();
    map(w);
    EXPECT_TRUE(w.has(test::MAXIMIZED));
    EXPECT_TRUE(record(w).maximized);
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{0, 0, 1920, 1080}));
}

TEST_F(desk, a_maximized_window_with_a_title_bar_that_is_mapped_again_keeps_room_for_it)
{
    test::window &w = map("w", {640, 480});
    record(w).ssd = true;
    w.request_maximize();
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{0, 30, 1920, 1050}));
    w.unmap();
    settle();
    map(w);
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{0, 30, 1920, 1050}));
}

TEST_F(desk, a_window_that_is_minimized_hands_the_focus_to_the_next_one_that_shows)
{
    test::window &low = map("low"), &elsewhere = map("elsewhere"), &top = map("top");
    move_toplevel_to_workspace(record(elsewhere), 5);
    focus_toplevel_ex(&record(elsewhere), true);
    focus_toplevel_ex(&record(top), true);
    toplevel_minimize(record(top));
    EXPECT_FALSE(record(top).scene_tree->node.enabled);
    EXPECT_EQ(server.seat->keyboard_state.focused_surface, tl_surface(record(low)));
    EXPECT_EQ(focused_toplevel(server), &record(low));
    toplevel_minimize(record(low));
    EXPECT_EQ(server.seat->keyboard_state.focused_surface, nullptr) << "nobody else shows";
    EVENTUALLY(!low.has(test::ACTIVATED));
}

TEST_F(desk, the_last_window_takes_its_tile_again_when_it_is_focused_after_a_minimize)
{
    test::window &w = map("w");
    toplevel_minimize(record(w));
    workspace(1).layout = VANTORE_LAYOUT_TILING;
    settle();
    (void)heard();
    focus_toplevel_ex(&record(w), true);
    EXPECT_EQ(server.seat->keyboard_state.focused_surface, tl_surface(record(w)));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
    EVENTUALLY(w.has(test::ACTIVATED) && w.has(test::TILED));
}

TEST_F(desk, a_window_that_becomes_the_clipboard_overlay_is_lifted_when_it_is_mapped_again)
{
    test::window &w = map("w");
    w.unmap();
    w.app_id("vantore-clips-overlay");
    settle();
    map(w);
    EXPECT_EQ(record(w).scene_tree->node.parent, server.layers[3]);
}

TEST_F(desk, a_client_that_draws_before_its_first_configure_is_told_of_its_error)
{
    test::client &hasty = connect();
    test::window &w = hasty.create_window("hasty");
    w.create_surface();
    w.create_xdg_surface();
    w.create_toplevel();
    w.draw({100, 100}, 0xff00ff00);
    EVENTUALLY(hasty.error() != 0);
    EXPECT_EQ(hasty.protocol_error(), (test::protocol_error{"xdg_surface", 3}));
    EXPECT_TRUE(wl_list_empty(&server.toplevels));
}

TEST_F(desk, a_fullscreen_request_is_answered)
{
    test::window &w = map("w");
    const int before = w.configure_count();
    w.request_fullscreen();
    EVENTUALLY_EQ(w.configure_count(), before + 1);
    w.request_unfullscreen();
    EVENTUALLY_EQ(w.configure_count(), before + 2);
}

TEST_F(desk, a_window_that_starts_maximized_gets_its_size_at_once_and_returns_to_the_default_box)
{
    test::window &w = connect().create_window("w");
    w.request_maximize();
    map(w);
    EXPECT_EQ(w.all_configures().front().size(), (size{1920, 1080}));
    EXPECT_TRUE(record(w).maximized);
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{0, 0, 1920, 1080}));
    w.request_unmaximize();
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{384, 216, 1152, 648}));
}

TEST_F(desk, a_window_that_has_never_been_large_returns_to_the_default_box)
{
    test::window &w = map("dot", {1, 1});
    w.request_maximize();
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{0, 0, 1920, 1080}));
    w.request_unmaximize();
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{384, 216, 1152, 648}));
}

TEST_F(desktop, maximizing_without_an_output_changes_nothing_and_is_answered)
{
    test::window &w = map("w", {640, 480});
    const int before = w.configure_count();
    w.request_maximize();
    EVENTUALLY_EQ(w.configure_count(), before + 1);
    EXPECT_FALSE(w.has(test::MAXIMIZED));
    EXPECT_FALSE(record(w).maximized);
    EXPECT_EQ(record(w).saved_geo, (wlr_box{0, 0, 640, 480}));
}

TEST_F(desk, a_maximize_request_follows_the_cursor_to_another_output)
{
    test::window &w = map("w", {640, 480});
    plug("B", 1280, 720);
    wlr_cursor_warp(server.cursor, nullptr, 2000, 100);
    w.request_maximize();
    EVENTUALLY_EQ(toplevel_box(record(w)), (wlr_box{1920, 0, 1280, 720}));
    EXPECT_EQ(record(w).workspace, output("A").current_ws);
}

TEST_F(desk, a_changed_app_id_is_announced_and_a_changed_title_is_not)
{
    test::window &w = map("w");
    (void)heard();
    w.title("new title");
    settle();
    EXPECT_THAT(heard(), IsEmpty());
    w.app_id("other");
    EVENTUALLY(std::string{tl_app_id(record(w))} == "other");
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS));
}

struct hung_window : desk {
    void SetUp() override
    {
        desk::SetUp();
        EXPECT_EQ(server.xdg_shell->ping_timeout, 3000U);
        server.xdg_shell->ping_timeout = 20;
    }

    test::window &open_hung(const char *title)
    {
        test::window &w = connect().create_window("hung");
        if (title != nullptr)
            w.title(title);
        map(w);
        w.owner().answer_pings = false;
        return w;
    }
};

TEST_F(hung_window, is_asked_to_close_and_marked_when_it_does_not_answer)
{
    test::window &w = open_hung("Report");
    EXPECT_STREQ(tl_title(record(w)), "Report");
    (void)heard();
    tl_close(record(w));
    EVENTUALLY(w.closes() == 1);
    EVENTUALLY(record(w).unresponsive);
    EXPECT_THAT(tl_title(record(w)), StrEq("Report (Not Responding)"));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS));
    EXPECT_THAT(world.killed_processes(), IsEmpty());
}

TEST_F(hung_window, without_a_title_is_called_window)
{
    test::window &untitled = open_hung(nullptr);
    tl_close(record(untitled));
    EVENTUALLY(record(untitled).unresponsive);
    EXPECT_THAT(tl_title(record(untitled)), StrEq("Window (Not Responding)"));
}

TEST_F(hung_window, is_killed_by_the_second_close)
{
    test::window &w = open_hung("Report");
    tl_close(record(w));
    EVENTUALLY(record(w).unresponsive);
    tl_close(record(w));
    EXPECT_THAT(world.killed_processes(), ElementsAre(test::killed{getpid(), SIGKILL}));
    EXPECT_EQ(w.closes(), 1);
}

class unkillable_pid : public hung_window, public testing::WithParamInterface<pid_t>
{
};

TEST_P(unkillable_pid, is_never_killed)
{
    test::window &w = open_hung("Report");
    tl_close(record(w));
    EVENTUALLY(record(w).unresponsive);
    world.pretend_client_pid(GetParam());
    tl_close(record(w));
    EXPECT_THAT(world.killed_processes(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(all, unkillable_pid, testing::Values(0, 1, -1));

TEST_F(hung_window, comes_back_with_its_next_frame)
{
    test::window &w = open_hung("Report");
    tl_close(record(w));
    EVENTUALLY(record(w).unresponsive);
    (void)heard();
    w.fill(0xff00ff00);
    EVENTUALLY(!record(w).unresponsive);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS));
    EXPECT_STREQ(tl_title(record(w)), "Report");
}

TEST_F(hung_window, that_answers_its_ping_is_asked_again_and_not_killed)
{
    server.xdg_shell->ping_timeout = 60'000;
    test::window &w = open_hung("Report");
    w.owner().answer_pings = true;
    tl_close(record(w));
    EVENTUALLY_EQ(w.owner().pings(), 1);
    settle(); // the library sends no second ping before the first is answered
    tl_close(record(w));
    EVENTUALLY_EQ(w.owner().pings(), 2);
    EXPECT_EQ(w.closes(), 2);
    EXPECT_FALSE(record(w).unresponsive);
    EXPECT_THAT(world.killed_processes(), IsEmpty());
}

TEST_F(hung_window, leaves_the_other_windows_of_its_client_unmarked)
{
    test::window &w = open_hung("Report");
    test::window &other = map(w.owner().create_window("other"));
    tl_close(record(w));
    EVENTUALLY(record(w).unresponsive);
    EXPECT_FALSE(record(other).unresponsive);
    tl_close(record(other));
    EVENTUALLY_EQ(other.closes(), 1);
    EXPECT_THAT(world.killed_processes(), IsEmpty());
}

TEST_F(hung_window, is_only_the_one_that_was_asked_after_its_client_stopped_answering)
{
    test::window &w = open_hung("Report");
    test::window &other = map(w.owner().create_window("other"));
    w.owner().answer_pings = true;
    tl_close(record(other));
    EVENTUALLY_EQ(w.owner().pings(), 1);
    settle();
    w.owner().answer_pings = false;
    tl_close(record(w));
    EVENTUALLY(record(w).unresponsive);
    EXPECT_FALSE(record(other).unresponsive);
}

TEST_F(hung_window, may_be_one_of_several_that_were_asked_at_once)
{
    test::window &w = open_hung("Report");
    test::window &other = map(w.owner().create_window("other"));
    tl_close(record(w));
    tl_close(record(other));
    EVENTUALLY(record(w).unresponsive && record(other).unresponsive);
    EXPECT_EQ(w.owner().pings(), 1);
}

TEST_F(hung_window, comes_back_with_a_frame_of_another_window_of_its_client_and_of_no_other_client)
{
    test::window &w = open_hung("Report");
    test::window &other = map(w.owner().create_window("other"));
    test::window &stranger = map("stranger");
    tl_close(record(w));
    EVENTUALLY(record(w).unresponsive);
    stranger.fill(0xff00ff00);
    settle();
    EXPECT_TRUE(record(w).unresponsive);
    (void)heard();
    other.fill(0xff00ff00);
    EVENTUALLY(!record(w).unresponsive);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS));
}

TEST_F(hung_window, long_titles_are_cut_to_the_buffer)
{
    test::window &w = open_hung(std::string(2000, 'x').c_str());
    tl_close(record(w));
    EVENTUALLY(record(w).unresponsive);
    EXPECT_EQ(std::string{tl_title(record(w))}, std::string(511, 'x'));
}

TEST_F(desk, a_visible_window_is_told_when_to_draw_again)
{
    test::window &w = map("w");
    w.request_frame();
    EVENTUALLY_EQ(w.frames(), 1);
}

TEST_F(desk, a_window_that_almost_left_the_screen_is_told_when_to_draw_again)
{
    test::window &w = map("w", {400, 300});
    place(w, 1919, 1075); // one pixel wide, five high
    for (const int frame : {1, 2, 3}) {
        w.request_frame();
        EVENTUALLY_EQ(w.frames(), frame);
    }
    plug("B", 800, 600);
    place(w, 1920 - 10, -290); // a little on both
    for (const int frame : {4, 5, 6}) {
        w.request_frame();
        EVENTUALLY_EQ(w.frames(), frame);
    }
}

TEST_F(desk, a_window_off_the_screen_is_not_told_to_draw)
{
    test::window &w = map("w", {400, 300});
    place(w, 1920, 1080);
    w.request_frame();
    settle();
    EXPECT_EQ(w.frames(), 0);
    place(w, 1919, 1079);
    EVENTUALLY_EQ(w.frames(), 1);
}

TEST_F(desk, frame_callbacks_come_also_when_the_output_refuses_every_commit)
{
    test::window &w = map("w");
    auto &refusing = test::made_up(output("A").wlr_output);
    refusing.traits.accepts = [](const wlr_output_state &) { return false; };
    w.request_frame();
    wlr_output_schedule_frame(&refusing.base);
    EVENTUALLY_EQ(w.frames(), 1);
}

enum class stage {
    surface,
    xdg_surface,
    toplevel,
    first_commit,
    configured,
    acked,
    mapped,
    unmapped,
    maximized
};

class vanishing_client : public desk, public testing::WithParamInterface<stage>
{
protected:
    void bring_to(test::window &w, stage last)
    {
        const auto reached = [&](stage s) { return last >= s; };
        w.auto_draw = w.auto_ack = false;
        w.create_surface();
        if (reached(stage::xdg_surface))
            w.create_xdg_surface();
        if (reached(stage::toplevel))
            w.create_toplevel();
        if (reached(stage::first_commit))
            w.commit();
        if (reached(stage::configured))
            EVENTUALLY(w.configure_count() == 1);
        if (reached(stage::acked))
            w.ack();
        if (reached(stage::mapped)) {
            w.draw({640, 480}, 0xff00ff00);
            EVENTUALLY(find_record(w) != nullptr);
        }
        if (last == stage::unmapped) {
            w.unmap();
            EVENTUALLY(find_record(w) == nullptr);
        }
        if (last == stage::maximized)
            w.request_maximize();
        settle();
    }
};

TEST_P(vanishing_client, leaves_nothing_behind_at_any_stage_of_a_window)
{
    test::window &other = map("other");
    test::client &doomed = connect();
    bring_to(doomed.create_window("doomed"), GetParam());
    doomed.vanish();
    EVENTUALLY_EQ(wl_list_length(&workspace(1).toplevels), 1);
    settle();
    EXPECT_TRUE(has_keyboard(other));
}

TEST_P(vanishing_client, may_take_the_only_output_with_it)
{
    test::client &doomed = connect();
    bring_to(doomed.create_window("doomed"), GetParam());
    doomed.vanish();
    unplug("A");
    EVENTUALLY_EQ(wl_list_length(&workspace(1).toplevels), 0);
    plug("A", 800, 600);
    settle();
}

INSTANTIATE_TEST_SUITE_P(all, vanishing_client,
                         testing::Values(stage::surface, stage::xdg_surface, stage::toplevel,
                                         stage::first_commit, stage::configured, stage::acked, stage::mapped,
                                         stage::unmapped, stage::maximized));

TEST_P(vanishing_client, may_be_at_any_stage_when_the_session_ends)
{
    bring_to(connect().create_window("half"), GetParam());
    finish();
}

TEST_F(desktop, no_window_takes_the_keyboard_while_the_session_is_locked)
{
    plug("A", 1280, 704);
    auto &first = map("first");
    const wlr_surface *before = keyboard_focus();
    ASSERT_EQ(before, tl_surface(record(first)));
    server.locked = true;
    map("second");
    EXPECT_EQ(keyboard_focus(), before);
    server.locked = false;
}

TEST_F(desktop, a_window_that_maps_again_with_the_keyboard_is_announced)
{
    plug("A", 1280, 704);
    auto &w = map("alone");
    w.unmap();
    settle();
    (void)heard();
    map(w);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(w)));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
}

} // namespace
