// Outputs that come, go, change and sleep, with and without windows.

#include "support/outputs.hpp"

#include "config/settings.hpp"
#include "outputs/output.hpp"
#include "outputs/power.hpp"
#include "outputs/rehome.hpp"
#include "startup.hpp"
#include "windows/states.hpp"
#include "workspaces/switch.hpp"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace
{

int wanted_width(const wlr_output_state &state)
{
    if ((state.committed & WLR_OUTPUT_STATE_MODE) == 0)
        return 0;
    return state.mode_type == WLR_OUTPUT_STATE_MODE_FIXED ? state.mode->width : state.custom_mode.width;
}

struct outputs : test::outputs_desk {
    // Maximizes a new window on the output at this point.
    test::window &map_maximized(double lx, double ly)
    {
        wlr_cursor_warp(server.cursor, nullptr, lx, ly);
        test::window &w = map("maximized", {400, 300});
        toplevel_toggle_maximize(record(w));
        settle();
        return w;
    }
};

TEST_F(outputs, come_up_in_their_preferred_mode)
{
    plug({.name = "A",
          .modes = {{.width = 1024, .height = 768}, {.width = 1920, .height = 1080, .preferred = true}}});
    EXPECT_TRUE(output("A").wlr_output->enabled);
    EXPECT_EQ(output("A").usable, (wlr_box{0, 0, 1920, 1080}));
}

TEST_F(outputs, that_refuse_the_preferred_mode_take_the_first_of_the_others_that_works)
{
    plug({.name = "A",
          .modes = {{.width = 3840, .height = 2160, .preferred = true},
                    {.width = 2560, .height = 1440},
                    {.width = 1024, .height = 768},
                    {.width = 800, .height = 600}},
          .accepts = [](const wlr_output_state &state) { return wanted_width(state) < 2000; }});
    EXPECT_EQ(output("A").usable, (wlr_box{0, 0, 1024, 768}));
}

TEST_F(outputs, that_refuse_every_mode_get_a_custom_one_of_their_present_size)
{
    const auto &made =
        plug({.name = "A",
              .width = 1000,
              .height = 700,
              .modes = {{.width = 3840, .height = 2160, .preferred = true}, {.width = 1024, .height = 768}},
              .accepts = [](const wlr_output_state &state) {
                  return (state.committed & WLR_OUTPUT_STATE_MODE) == 0 ||
                         state.mode_type == WLR_OUTPUT_STATE_MODE_CUSTOM;
              }});
    EXPECT_EQ(made.base.width, 1000);
    EXPECT_EQ(made.base.height, 700);
    EXPECT_TRUE(made.base.enabled);
}

TEST_F(outputs, without_size_or_modes_come_up_at_1280_by_720)
{
    plug({.name = "A"});
    EXPECT_EQ(output("A").usable, (wlr_box{0, 0, 1280, 720}));
}

TEST_F(outputs, that_accept_nothing_still_join_the_session)
{
    plug({.name = "A", .accepts = [](const wlr_output_state &) { return false; }});
    EXPECT_FALSE(output("A").wlr_output->enabled);
    EXPECT_NE(wlr_output_layout_get(server.output_layout, output("A").wlr_output), nullptr);
    EXPECT_THAT(outputs_file(), ElementsAre("A"));
}

TEST_F(outputs, get_no_adaptive_sync_unless_it_is_asked_for)
{
    EXPECT_FALSE(plug("A", 800, 600).adaptive_sync);
}

TEST_F(outputs, get_adaptive_sync_where_it_is_asked_for)
{
    g_vrr = true;
    EXPECT_TRUE(plug("A", 800, 600).adaptive_sync);
    EXPECT_THAT(world.log(), Not(HasSubstr("adaptive sync")));
}

TEST_F(outputs, that_refuse_adaptive_sync_go_on_without_it)
{
    g_vrr = true;
    const auto &made =
        plug({.name = "A", .width = 800, .height = 600, .accepts = [](const wlr_output_state &s) {
                  return (s.committed & WLR_OUTPUT_STATE_ADAPTIVE_SYNC_ENABLED) == 0;
              }});
    EXPECT_FALSE(made.adaptive_sync);
    EXPECT_TRUE(made.base.enabled);
    EXPECT_THAT(world.log(), HasSubstr("adaptive sync on not accepted on A\n"));
}

TEST_F(outputs, are_announced_logged_and_listed_newest_first)
{
    plug("A", 800, 600);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_OUTPUTS));
    plug("B", 800, 600);
    EXPECT_THAT(world.log(), HasSubstr("[INFO] [comp/outputs/output.cpp:"));
    EXPECT_THAT(world.log(), HasSubstr("output B online\n"));
    EXPECT_THAT(outputs_file(), ElementsAre("B", "A"));
    EXPECT_EQ(outputs_enabled_count(server), 2);
}

TEST_F(outputs, stand_side_by_side_and_show_the_lowest_free_workspace)
{
    plug("A", 800, 600);
    plug("B", 1000, 700);
    EXPECT_EQ(output("B").usable, (wlr_box{800, 0, 1000, 700}));
    EXPECT_EQ(output("A").current_ws, &workspace(1));
    EXPECT_EQ(output("B").current_ws, &workspace(2));
    EXPECT_STREQ(workspace(2).pref_output.data(), "B");
}

TEST_F(outputs, that_come_back_get_their_old_workspace)
{
    for (const char *name : {"A", "B", "C"})
        plug(name, 800, 600);
    unplug("A");
    unplug("B");
    plug("B", 800, 600);
    EXPECT_EQ(output("B").current_ws, &workspace(2));
    plug("A", 800, 600);
    EXPECT_EQ(output("A").current_ws, &workspace(1));
}

TEST_F(outputs, with_long_names_are_remembered_by_their_first_63_characters)
{
    const std::string name(100, 'n');
    plug(name, 800, 600);
    EXPECT_EQ(std::string{workspace(1).pref_output.data()}, std::string(63, 'n'));
}

TEST_F(outputs, beyond_the_ninth_show_no_workspace)
{
    for (int i = 1; i <= 10; i++)
        plug("out" + std::to_string(i), 640, 480);
    EXPECT_EQ(output("out9").current_ws, &workspace(9));
    EXPECT_EQ(output("out10").current_ws, nullptr);
}

TEST_F(outputs, new_ones_take_the_lowest_free_workspace_though_an_orphan_has_windows)
{
    plug("A", 800, 600);
    plug("B", 800, 600);
    wlr_cursor_warp(server.cursor, nullptr, 1000, 100);
    test::window &w = map("w", {300, 200});
    EXPECT_EQ(record(w).workspace, &workspace(2));
    unplug("B");
    unplug("A");
    plug("C", 800, 600);
    EXPECT_EQ(output("C").current_ws, &workspace(1));
}

TEST_F(outputs, left_without_a_workspace_take_an_orphan_with_windows_first)
{
    for (int i = 1; i <= 10; i++)
        plug("out" + std::to_string(i), 640, 480);
    wlr_cursor_warp(server.cursor, nullptr, 640 * 4 + 10, 10); // out5, workspace 5
    test::window &w = map("w", {300, 200});
    EXPECT_EQ(record(w).workspace, &workspace(5));
    output("out3").current_ws->output = nullptr; // workspace 3 is an orphan too, but it has no windows
    output("out3").current_ws = nullptr;
    output("out3").wlr_output->enabled = false;
    unplug("out5");
    output("out3").wlr_output->enabled = true;
    EXPECT_EQ(output("out10").current_ws, &workspace(5));
    EXPECT_STREQ(workspace(5).pref_output.data(), "out10");
    rehome_outputs(server);
    EXPECT_EQ(output("out3").current_ws, &workspace(3));
}

TEST_F(outputs, pictures_show_the_backdrop_where_nothing_else_is)
{
    plug("A", 320, 200);
    EVENTUALLY_EQ(pixel("A", 0, 0), 0xff0f121aU);
    EXPECT_EQ(pixel("A", 319, 199), 0xff0f121aU);
}

TEST_F(outputs, pictures_show_windows_at_their_places)
{
    plug("A", 640, 480);
    map("w", {100, 80}).fill(0xff3366cc);
    EVENTUALLY_EQ(pixel("A", 320, 240), 0xff3366ccU);
    EXPECT_EQ(pixel("A", 270, 200), 0xff3366ccU);
    EXPECT_EQ(pixel("A", 369, 279), 0xff3366ccU);
    EXPECT_EQ(pixel("A", 269, 200), 0xff0f121aU);
    EXPECT_EQ(pixel("A", 370, 279), 0xff0f121aU);
    EXPECT_EQ(pixel("A", 320, 199), 0xff0f121aU);
    EXPECT_EQ(pixel("A", 320, 280), 0xff0f121aU);
}

TEST_F(outputs, the_last_one_may_go_and_leaves_its_windows_on_their_workspace)
{
    plug("A", 800, 600);
    test::window &w = map("w");
    unplug("A");
    settle();
    EXPECT_TRUE(wl_list_empty(&server.outputs));
    EXPECT_EQ(record(w).workspace, &workspace(1));
    EXPECT_EQ(workspace(1).output, nullptr);
    EXPECT_FALSE(workspace(1).tree->node.enabled);
    EVENTUALLY(w.outputs().empty());
}

TEST_F(outputs, are_off_the_outputs_file_by_the_time_their_going_is_announced)
{
    plug("A", 800, 600);
    plug("B", 800, 600);
    static std::vector<std::string> seen;
    static outputs *self;
    seen.clear();
    self = this;
    const broadcast_receiver look = [](vantore_server &, vnt_event event) {
        if (event == VNT_EVT_OUTPUTS && seen.empty())
            seen = self->outputs_file();
    };
    command("output B mirror output A"); // its end is announced too
    broadcast_listen(look);
    unplug("A");
    broadcast_unlisten(look);
    EXPECT_THAT(seen, ElementsAre("B"));
}

TEST_F(outputs, without_a_runtime_directory_no_outputs_file_is_written)
{
    plug("A", 800, 600);
    std::filesystem::remove(world.runtime_directory() / "vantore-outputs");
    unsetenv("XDG_RUNTIME_DIR");
    outputs_file_follow(server, VNT_EVT_OUTPUTS);
    EXPECT_FALSE(std::filesystem::exists(world.runtime_directory() / "vantore-outputs"));
    plug("B", 800, 600);
    EXPECT_THAT(heard(), Contains(VNT_EVT_OUTPUTS));
}

TEST_F(outputs, a_runtime_directory_that_can_not_be_written_is_passed_over)
{
    setenv("XDG_RUNTIME_DIR", (world.directory() / "nowhere").c_str(), 1);
    plug("A", 800, 600);
    EXPECT_THAT(heard(), Contains(VNT_EVT_OUTPUTS));
}

TEST_F(outputs, disabled_ones_stay_on_the_outputs_file)
{
    plug("A", 800, 600);
    set_dpms(server, false);
    outputs_file_follow(server, VNT_EVT_OUTPUTS);
    EXPECT_THAT(outputs_file(), ElementsAre("A"));
}

TEST_F(outputs, windows_left_outside_are_brought_onto_the_output_that_takes_their_workspace)
{
    plug("A", 800, 600);
    plug("B", 1000, 700);
    wlr_cursor_warp(server.cursor, nullptr, 1300, 350);
    test::window &w = map("w", {400, 300});
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{800 + 300, 200, 400, 300}));
    unplug("B");
    unplug("A");
    plug("C", 640, 480); // workspace 1
    plug("D", 640, 480); // workspace 2, at 640,0: the window still overlaps it
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{1100, 200, 400, 300}));
    unplug("D");
    unplug("C");
    plug("C", 640, 480);
    plug("E", 100, 100); // workspace 2, at 640,0: the window lies outside
    EXPECT_EQ(workspace(2).output, &output("E"));
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{640, 0, 400, 300}));
    EXPECT_EQ(record(w).float_geo, (wlr_box{640, 0, 400, 300}));
}

TEST_F(outputs, windows_follow_their_output_when_a_neighbour_goes_and_it_moves)
{
    plug("A", 800, 600);
    plug("B", 1000, 700);
    wlr_cursor_warp(server.cursor, nullptr, 1300, 350);
    test::window &w = map("w", {400, 300});
    unplug("A");
    EXPECT_EQ(output("B").usable, (wlr_box{0, 0, 1000, 700}));
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{300, 200, 400, 300}));
}

TEST_F(outputs, maximized_windows_stay_with_their_output_when_it_moves)
{
    for (const char *name : {"A", "B", "C"})
        plug(name, 800, 600);
    test::window &on_b = map_maximized(1200, 300), &on_c = map_maximized(2000, 300);
    EVENTUALLY_EQ(box(on_c), (wlr_box{1600, 0, 800, 600}));
    unplug("A");
    EXPECT_EQ(output("B").usable, (wlr_box{0, 0, 800, 600}));
    EVENTUALLY_EQ(box(on_b), (wlr_box{0, 0, 800, 600}));
    EVENTUALLY_EQ(box(on_c), (wlr_box{800, 0, 800, 600}));
}

TEST_F(outputs, maximized_windows_follow_a_new_mode)
{
    auto &made = plug("A", 800, 600);
    test::window &w = map_maximized(400, 300);
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 800, 600}));
    request_size(made, 1200, 900);
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1200, 900}));
}

TEST_F(outputs, maximized_windows_of_one_that_went_fill_that_of_their_workspace)
{
    plug("A", 800, 600);
    plug("B", 1000, 700);
    test::window &w = map_maximized(1300, 300);
    EXPECT_EQ(record(w).workspace, &workspace(2));
    unplug("B");
    goto_workspace(server, 2);
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 800, 600}));
    EXPECT_TRUE(record(w).maximized);
    toplevel_toggle_maximize(record(w));
    EVENTUALLY_EQ(box(w), (wlr_box{200, 150, 400, 300}));
}

TEST_F(outputs, maximized_windows_on_one_that_is_not_of_their_workspace_come_home_when_it_goes)
{
    plug("A", 800, 600);
    plug("B", 1000, 700);
    wlr_cursor_warp(server.cursor, nullptr, 400, 300);
    test::window &w = map("w", {400, 300});
    wlr_cursor_warp(server.cursor, nullptr, 1300, 300);
    toplevel_toggle_maximize(record(w));
    EVENTUALLY_EQ(box(w), (wlr_box{800, 0, 1000, 700}));
    unplug("B");
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 800, 600}));
}

TEST_F(outputs, move_when_the_backend_resizes_their_neighbour)
{
    auto &made = plug("A", 800, 600);
    plug("B", 1000, 700);
    request_size(made, 1200, 600);
    EXPECT_EQ(output("A").usable, (wlr_box{0, 0, 1200, 600}));
    EXPECT_EQ(output("B").usable, (wlr_box{1200, 0, 1000, 700}));
}

TEST_F(outputs, that_accept_nothing_survive_power_changes_and_a_return_of_the_session)
{
    auto &made = plug({.name = "A", .accepts = [](const wlr_output_state &) { return false; }});
    set_dpms(server, false);
    set_dpms(server, true);
    settle();
    EXPECT_FALSE(made.base.enabled);
    EXPECT_EQ(made.commits, 0);
}

TEST_F(outputs, that_refuse_to_be_lit_at_first_get_a_mode_when_all_are_turned_on_again)
{
    bool accepts = false;
    auto &made = plug({.name = "A",
                       .modes = {{.width = 1024, .height = 768, .preferred = true}},
                       .accepts = [&](const wlr_output_state &) { return accepts; }});
    EXPECT_FALSE(made.base.enabled);
    EXPECT_THAT(world.log(), HasSubstr("output A can't be lit"));
    accepts = true;
    set_dpms(server, false);
    set_dpms(server, true);
    EXPECT_TRUE(made.base.enabled);
    EXPECT_EQ(made.base.width, 1024);
    EVENTUALLY_EQ(pixel("A", 5, 5), 0xff0f121aU);
}

struct pointer_on_outputs : outputs {
    void SetUp() override
    {
        outputs::SetUp();
        plug("A", 800, 600);
        plug("B", 1000, 700);
        plug("C", 400, 300);
    }
    void disable(const std::string &name)
    {
        wlr_output_state state{};
        wlr_output_state_init(&state);
        wlr_output_state_set_enabled(&state, false);
        wlr_output_commit_state(output(name).wlr_output, &state);
        wlr_output_state_finish(&state);
    }
    std::pair<double, double> pointer() { return {server.cursor->x, server.cursor->y}; }
    using at = std::pair<double, double>;
};

TEST_F(pointer_on_outputs, stays_where_it_is_while_its_output_lives)
{
    wlr_cursor_warp(server.cursor, nullptr, 100, 100);
    unplug("C");
    EXPECT_EQ(pointer(), (at{100, 100}));
}

TEST_F(pointer_on_outputs, goes_to_the_nearest_point_that_is_left_when_its_output_is_unplugged)
{
    wlr_cursor_warp(server.cursor, nullptr, 2100, 100); // on C
    unplug("C");
    EXPECT_NEAR(server.cursor->x, 1800, 1);
    EXPECT_DOUBLE_EQ(server.cursor->y, 100);
}

TEST_F(pointer_on_outputs, moves_to_the_middle_of_the_nearest_output_when_its_own_is_disabled)
{
    wlr_cursor_warp(server.cursor, nullptr, 2100, 100);
    disable("C");
    cursor_ensure_on_output(server);
    EXPECT_EQ(pointer(), (at{1300, 350}));
}

TEST_F(pointer_on_outputs, finds_the_window_that_lies_where_it_was_moved_to)
{
    auto &target = map("target", {300, 200});
    place(target, 1200, 300);
    wlr_cursor_warp(server.cursor, nullptr, 2100, 100);
    disable("C");
    cursor_ensure_on_output(server);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(target)));
}

TEST_F(pointer_on_outputs, passes_over_disabled_outputs)
{
    wlr_cursor_warp(server.cursor, nullptr, 2100, 100);
    disable("B");
    unplug("C");
    EXPECT_EQ(pointer(), (at{400, 300}));
}

TEST_F(pointer_on_outputs, prefers_the_middle_of_the_usable_area)
{
    output("B").usable = {800, 100, 1000, 600};
    wlr_cursor_warp(server.cursor, nullptr, 2100, 100);
    disable("C");
    cursor_ensure_on_output(server);
    EXPECT_EQ(pointer(), (at{1300, 400}));
}

TEST_F(pointer_on_outputs, goes_to_the_middle_of_an_output_without_a_usable_area)
{
    output("B").usable = {};
    wlr_cursor_warp(server.cursor, nullptr, 2100, 100);
    disable("C");
    cursor_ensure_on_output(server);
    EXPECT_EQ(pointer(), (at{1300, 350}));
}

TEST_F(pointer_on_outputs, stays_where_it_is_when_every_output_is_disabled)
{
    wlr_cursor_warp(server.cursor, nullptr, 2100, 100);
    for (const char *name : {"A", "B", "C"})
        disable(name);
    cursor_ensure_on_output(server);
    EXPECT_EQ(pointer(), (at{2100, 100}));
}

TEST_F(pointer_on_outputs, takes_the_newest_of_two_equally_near_outputs)
{
    plug("D", 400, 300);
    for (const char *name : {"A", "B"})
        unplug(name);
    // The middles will be at 2000,150 and 2500,150.
    wlr_output_layout_add(server.output_layout, output("C").wlr_output, 1800, 0);
    wlr_output_layout_add(server.output_layout, output("D").wlr_output, 2300, 0);
    output("C").usable = {1800, 0, 400, 300};
    output("D").usable = {2300, 0, 400, 300};
    server.cursor->x = 2250;
    server.cursor->y = 150;
    cursor_ensure_on_output(server);
    EXPECT_EQ(pointer(), (at{2500, 150}));
}

TEST_F(outputs, that_go_leave_the_keyboard_to_a_window_that_can_be_seen)
{
    plug("A", 800, 600);
    plug("B", 800, 600);
    wlr_cursor_warp(server.cursor, nullptr, 100, 100);
    test::window &stays = map("stays");
    wlr_cursor_warp(server.cursor, nullptr, 900, 100);
    test::window &goes = map("goes");
    EXPECT_TRUE(has_keyboard(goes));
    unplug("B");
    EXPECT_TRUE(has_keyboard(stays));
    EVENTUALLY(stays.has(test::ACTIVATED) && !goes.has(test::ACTIVATED));
    unplug("A");
    EXPECT_TRUE(has_keyboard(stays)) << "nobody else can take it";
}

TEST_F(outputs, that_go_leave_the_keyboard_to_nobody_where_no_window_can_be_seen)
{
    plug("A", 800, 600);
    plug("B", 800, 600);
    wlr_cursor_warp(server.cursor, nullptr, 900, 100);
    test::window &goes = map("goes");
    unplug("B"); // its workspace waits, because A shows one already
    EXPECT_EQ(keyboard_focus(), nullptr);
    EVENTUALLY(!goes.has(test::ACTIVATED));
}

TEST_F(outputs, without_any_the_pointer_stays)
{
    plug("A", 800, 600);
    wlr_cursor_warp(server.cursor, nullptr, 100, 100);
    unplug("A");
    EXPECT_DOUBLE_EQ(server.cursor->x, 100);
}

TEST_F(outputs, take_the_size_that_their_backend_asks_for)
{
    auto &made = plug("A", 800, 600);
    (void)heard();
    request_size(made, 1111, 777);
    EXPECT_EQ(output("A").usable, (wlr_box{0, 0, 1111, 777}));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_OUTPUTS));
}

TEST_F(outputs, all_go_dark_together_and_come_back_in_their_modes)
{
    plug({.name = "A", .modes = {{.width = 1024, .height = 768, .preferred = true}}});
    plug("B", 800, 600);
    settle();
    set_dpms(server, false);
    EXPECT_FALSE(output("A").wlr_output->enabled);
    EXPECT_FALSE(output("B").wlr_output->enabled);
    EXPECT_EQ(outputs_enabled_count(server), 0);
    EXPECT_EQ(output("A").current_ws, &workspace(1));
    set_dpms(server, true);
    EXPECT_TRUE(output("A").wlr_output->enabled);
    EXPECT_EQ(output("A").wlr_output->current_mode->width, 1024);
    EXPECT_TRUE(output("B").wlr_output->enabled);
    EVENTUALLY_EQ(pixel("A", 5, 5), 0xff0f121aU);
}

TEST_F(outputs, that_refuse_to_go_dark_are_named_and_do_not_keep_the_others)
{
    plug({.name = "A",
          .modes = {{.width = 1024, .height = 768}},
          .accepts = [](const wlr_output_state &state) {
              return (state.committed & WLR_OUTPUT_STATE_ENABLED) == 0 || state.enabled;
          }});
    plug("B", 800, 600);
    settle();
    set_dpms(server, false);
    EXPECT_TRUE(output("A").wlr_output->enabled);
    EXPECT_FALSE(output("B").wlr_output->enabled);
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: output A can't be powered down"));
}

TEST_F(outputs, are_not_switched_to_the_state_that_they_have)
{
    auto &made = plug("A", 800, 600);
    settle();
    const int commits = made.commits;
    set_dpms(server, true);
    EXPECT_EQ(made.commits, commits);
    set_dpms(server, false);
    set_dpms(server, false);
    EXPECT_EQ(made.power_offs, 1);
}

TEST_F(outputs, that_appear_while_the_others_are_dark_stay_dark_until_all_are_turned_on)
{
    plug("A", 800, 600);
    set_dpms(server, false);
    plug("B", 640, 480);
    settle();
    EXPECT_FALSE(output("B").wlr_output->enabled);
    set_dpms(server, true);
    EXPECT_TRUE(output("B").wlr_output->enabled);
    EXPECT_EQ(output("B").usable, (wlr_box{800, 0, 640, 480}));
    EVENTUALLY_EQ(pixel("B", 5, 5), 0xff0f121aU);
}

TEST_F(outputs, that_appear_in_the_dark_are_not_lit_before_all_are_turned_on)
{
    g_vrr = true;
    plug("A", 800, 600);
    set_dpms(server, false);
    auto &made =
        plug({.name = "B",
              .modes = {{.width = 1024, .height = 768}, {.width = 640, .height = 480, .preferred = true}}});
    settle();
    EXPECT_EQ(made.commits, 0);
    EXPECT_EQ(output_layout_box(output("B")), (wlr_box{800, 0, 640, 480}));
    EXPECT_EQ(output("B").usable, (wlr_box{800, 0, 640, 480}));
    EXPECT_EQ(output("B").current_ws, &workspace(2));
    set_dpms(server, true);
    ASSERT_NE(made.base.current_mode, nullptr);
    EXPECT_EQ(made.base.current_mode->width, 640);
    EXPECT_TRUE(made.adaptive_sync);
    EVENTUALLY_EQ(pixel("B", 5, 5), 0xff0f121aU);
    set_dpms(server, false);
    made.adaptive_sync = false;
    set_dpms(server, true);
    EXPECT_FALSE(made.adaptive_sync) << "it comes back as others do";
}

TEST_F(outputs, without_a_size_that_appear_in_the_dark_get_one_with_the_light)
{
    plug("A", 800, 600);
    set_dpms(server, false);
    plug({.name = "B"});
    settle();
    set_dpms(server, true);
    EXPECT_EQ(output("B").usable, (wlr_box{800, 0, 1280, 720}));
    EVENTUALLY_EQ(pixel("B", 5, 5), 0xff0f121aU);
}

TEST_F(outputs, that_were_lit_in_the_dark_go_dark_when_it_is_asked_for_again)
{
    plug("A", 800, 600);
    set_dpms(server, false);
    wlr_output_state state;
    wlr_output_state_init(&state);
    wlr_output_state_set_enabled(&state, true);
    wlr_output_commit_state(output("A").wlr_output, &state);
    wlr_output_state_finish(&state);
    ASSERT_TRUE(output("A").wlr_output->enabled);
    set_dpms(server, false);
    EXPECT_FALSE(output("A").wlr_output->enabled);
}

TEST_F(outputs, stay_on_while_somebody_inhibits_their_sleep)
{
    plug("A", 800, 600);
    set_dpms_inhibit(server, true);
    set_dpms(server, false);
    EXPECT_TRUE(output("A").wlr_output->enabled);
    EXPECT_FALSE(g_dpms_off);
    set_dpms_inhibit(server, false);
    EXPECT_TRUE(output("A").wlr_output->enabled);
    set_dpms(server, false);
    EXPECT_FALSE(output("A").wlr_output->enabled);
}

TEST_F(outputs, dark_ones_come_back_when_their_sleep_is_inhibited)
{
    plug("A", 800, 600);
    set_dpms(server, false);
    set_dpms_inhibit(server, true);
    EXPECT_TRUE(output("A").wlr_output->enabled);
}

TEST_F(outputs, windows_survive_a_sleep)
{
    plug("A", 640, 480);
    test::window &w = map("w", {100, 80});
    w.fill(0xff3366cc);
    set_dpms(server, false);
    settle();
    set_dpms(server, true);
    EVENTUALLY_EQ(pixel("A", 320, 240), 0xff3366ccU);
}

TEST_F(outputs, without_a_login_session_its_return_means_nothing)
{
    auto &made = plug("A", 800, 600);
    settle();
    const int commits = made.commits;
    handle_session_active(server);
    EXPECT_EQ(made.commits, commits);
}

TEST_F(outputs, take_gamma_tables)
{
    auto &made = plug({.name = "A", .width = 800, .height = 600, .gamma_size = 256});
    test::gamma_control &gamma = connect().gamma("A");
    EVENTUALLY_EQ(gamma.size(), 256U);
    gamma.set_identity();
    EVENTUALLY(made.gamma_set);
    EXPECT_FALSE(gamma.failed());
    gamma.destroy();
    EVENTUALLY(!made.gamma_set);
}

TEST_F(outputs, that_refuse_a_gamma_table_tell_its_client)
{
    auto &made = plug({.name = "A",
                       .width = 800,
                       .height = 600,
                       .gamma_size = 256,
                       .accepts = [](const wlr_output_state &s) {
                           return (s.committed & WLR_OUTPUT_STATE_COLOR_TRANSFORM) == 0;
                       }});
    test::gamma_control &gamma = connect().gamma("A");
    EVENTUALLY_EQ(gamma.size(), 256U);
    gamma.set_identity();
    EVENTUALLY(gamma.failed());
    EXPECT_FALSE(made.gamma_set);
}

TEST_F(outputs, come_back_to_fifty_windows)
{
    plug("A", 1920, 1080);
    std::vector<test::window *> windows;
    test::client &c = connect();
    for (int i = 0; i < 50; i++) {
        test::window &w = c.create_window("w" + std::to_string(i));
        w.preferred = {200, 100};
        windows.push_back(&map(w));
    }
    unplug("A");
    settle();
    plug("A", 1920, 1080);
    for (const test::window *w : windows) {
        EVENTUALLY(w->outputs() == std::vector<std::string>{"A"});
        EXPECT_EQ(record(*w).workspace->output, &output("A"));
    }
}

TEST_F(outputs, may_die_while_their_windows_close)
{
    plug("A", 800, 600);
    plug("B", 800, 600);
    test::client &c = connect();
    for (int i = 0; i < 20; i++)
        map(c.create_window("w" + std::to_string(i)));
    c.vanish(); // the server has not noticed yet
    unplug("A");
    unplug("B");
    EVENTUALLY(wl_list_empty(&server.toplevels));
}

TEST_F(outputs, may_die_in_the_middle_of_a_frame_that_a_client_waits_for)
{
    plug("A", 800, 600);
    test::window &w = map("w");
    w.request_frame();
    wlr_output_schedule_frame(output("A").wlr_output);
    unplug("A");
    settle();
    plug("A", 800, 600);
    EVENTUALLY_EQ(w.frames(), 1);
}

class any_order : public outputs, public testing::WithParamInterface<std::vector<std::string>>
{
};

TEST_P(any_order, of_unplugging_and_plugging_keeps_every_window)
{
    for (const char *name : {"A", "B", "C"})
        plug(name, 800, 600);
    std::vector<test::window *> windows;
    for (const int x : {10, 810, 1610}) {
        wlr_cursor_warp(server.cursor, nullptr, x, 10);
        windows.push_back(&map("w", {300, 200}));
    }
    for (const std::string &name : GetParam()) {
        unplug(name);
        settle();
    }
    for (const std::string &name : GetParam())
        plug(name, 800, 600);
    for (int num = 1; num <= 3; num++)
        EXPECT_EQ(record(*windows[size_t(num - 1)]).workspace, &workspace(num));
    for (const test::window *w : windows)
        EVENTUALLY(!w->outputs().empty());
}

INSTANTIATE_TEST_SUITE_P(
    all, any_order,
    testing::Values(std::vector<std::string>{"A", "B", "C"}, std::vector<std::string>{"A", "C", "B"},
                    std::vector<std::string>{"B", "A", "C"}, std::vector<std::string>{"B", "C", "A"},
                    std::vector<std::string>{"C", "A", "B"}, std::vector<std::string>{"C", "B", "A"}));

} // namespace
