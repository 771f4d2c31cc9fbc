// Outputs of a session that the user leaves for another virtual terminal and comes back to.

#include "support/outputs.hpp"

#include "outputs/power.hpp"
#include "startup.hpp"
#include "windows/fullscreen.hpp"
#include "windows/placement.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"

using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace
{

// A session of a machine with virtual terminals.
struct login_session : test::outputs_desk {
    void SetUp() override
    {
        outputs_desk::SetUp();
        wl_signal_init(&session.events.active);
        wl_signal_init(&session.events.destroy);
        server.session = &session;
        for (const startup_step &step : startup_steps())
            if (step.name == "login session")
                step.begin(server);
    }
    void switch_to(bool ours)
    {
        session.active = ours;
        wl_signal_emit_mutable(&session.events.active, nullptr);
    }
    wlr_session session{};
};

TEST_F(login_session, returns_with_its_outputs_lit)
{
    plug({.name = "A", .modes = {{.width = 1024, .height = 768, .preferred = true}}});
    plug("B", 800, 600);
    set_dpms(server, false);
    switch_to(true);
    EXPECT_FALSE(g_dpms_off);
    EXPECT_TRUE(output("A").wlr_output->enabled);
    EXPECT_EQ(output("A").wlr_output->width, 1024);
    EXPECT_TRUE(output("B").wlr_output->enabled);
    EVENTUALLY_EQ(pixel("A", 5, 5), 0xff0f121aU);
}

TEST_F(login_session, lights_an_output_that_appeared_in_the_dark_in_its_best_mode)
{
    plug("A", 800, 600);
    set_dpms(server, false);
    auto &made =
        plug({.name = "B",
              .modes = {{.width = 1024, .height = 768, .preferred = true}, {.width = 640, .height = 480}},
              .accepts = [](const wlr_output_state &state) {
                  return state.mode == nullptr || state.mode->width == 640;
              }});
    switch_to(true);
    EXPECT_TRUE(made.base.enabled);
    EXPECT_EQ(made.base.width, 640);
    EVENTUALLY_EQ(pixel("B", 5, 5), 0xff0f121aU);
}

TEST_F(login_session, lights_an_output_without_a_mode_in_its_preferred_one)
{
    auto &made = plug({.name = "A", .modes = {{.width = 1024, .height = 768, .preferred = true}}});
    request_size(made, 640, 480);
    ASSERT_EQ(made.base.current_mode, nullptr);
    switch_to(true);
    EXPECT_EQ(made.base.width, 1024);
}

TEST_F(login_session, returns_with_its_mirrors)
{
    for (const char *gone_first : {"A", "B"}) {
        const std::string other = gone_first == std::string{"A"} ? "B" : "A";
        plug("A", 800, 600);
        plug("B", 400, 300);
        switch_to(true);
        command("output B mirror output A");
        switch_to(false);
        unplug(gone_first);
        unplug(other);
        settle();
        auto &c = dial();
        EXPECT_THAT(ask(c, VNT_MSG_GET_OUTPUTS), HasSubstr(R"("mirror":{"kind":"screen","output":"A"})"));
        plug(other == "A" ? test::output_traits{.name = "A", .width = 800, .height = 600}
                          : test::output_traits{.name = "B", .width = 400, .height = 300});
        plug(other == "A" ? test::output_traits{.name = "B", .width = 400, .height = 300}
                          : test::output_traits{.name = "A", .width = 800, .height = 600});
        switch_to(true);
        settle();
        EXPECT_TRUE(output("B").mirror.mir_on);
        EXPECT_EQ(output("B").current_ws, nullptr);
        EVENTUALLY_EQ(output("B").mirror.seen, output("A").wlr_output->commit_seq);
        command("output B mirror off");
        unplug("A");
        unplug("B");
        settle();
    }
}

TEST_F(login_session, returns_with_mirrors_of_displays_on_other_connectors)
{
    const auto display = [](const char *name, const char *serial) {
        return test::output_traits{.name = name, .width = 800, .height = 600, .serial = serial};
    };
    plug(display("A", "1"));
    plug(display("B", "2"));
    plug(display("C", "3"));
    switch_to(true);
    command("output B mirror output A");
    switch_to(false);
    for (const char *name : {"A", "B", "C"})
        unplug(name);
    plug(display("A", "2")); // the cables are exchanged
    plug(display("B", "1"));
    plug(display("C", "3"));
    switch_to(true);
    settle();
    EXPECT_TRUE(output("A").mirror.mir_on);
    EXPECT_EQ(output("A").mirror.source.mir_src_out, "B");
    EXPECT_FALSE(output("B").mirror.mir_on);
    EXPECT_NE(output("B").current_ws, nullptr);
}

TEST_F(login_session, returns_without_the_mirrors_of_what_has_gone_meanwhile)
{
    plug("A", 800, 600);
    plug("B", 400, 300);
    switch_to(true);
    command("output B mirror output A");
    switch_to(false);
    unplug("A");
    unplug("B");
    plug("C", 800, 600);
    plug("B", 400, 300);
    switch_to(true);
    settle();
    EXPECT_FALSE(output("B").mirror.mir_on);
    EXPECT_NE(output("B").current_ws, nullptr);
}

TEST_F(login_session, ends_the_compositor_when_the_seat_daemon_hangs_up)
{
    plug("A", 800, 600);
    auto *hang_up = wl_event_loop_add_timer(
        wl_display_get_event_loop(server.display),
        [](void *data) {
            wl_signal_emit_mutable(&static_cast<wlr_session *>(data)->events.destroy, nullptr);
            return 0;
        },
        &session);
    wl_event_source_timer_update(hang_up, 1);
    server_run(server);
    wl_event_source_remove(hang_up);
    EXPECT_EQ(server.session, nullptr);
    EXPECT_TRUE(wl_list_empty(&session.events.active.listener_list));
    EXPECT_TRUE(wl_list_empty(&session.events.destroy.listener_list));
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: the login session has gone, ending\n"));
}

TEST_F(login_session, does_nothing_on_leaving)
{
    auto &made = plug("A", 800, 600);
    settle();
    const int commits = made.commits;
    switch_to(false);
    EXPECT_EQ(made.commits, commits);
}

// Two displays, and the other session of the machine.
struct left_session : login_session {
    void SetUp() override
    {
        login_session::SetUp();
        session.active = true;
        plug("A", 1000, 700);
        plug("B", 800, 600);
        ASSERT_EQ(output("B").usable, (wlr_box{1000, 0, 800, 600}));
    }
    void leave()
    {
        session.active = false;
        unplug("A");
        unplug("B");
        wl_signal_emit_mutable(&session.events.active, nullptr);
        settle();
    }
    void come_back_with(const std::vector<test::output_traits> &displays)
    {
        session.active = true;
        for (const test::output_traits &display : displays)
            plug(display);
        wl_signal_emit_mutable(&session.events.active, nullptr);
        settle();
    }
    test::window &map_on(double lx, double ly)
    {
        wlr_cursor_warp(server.cursor, nullptr, lx, ly);
        return map("w", {200, 100});
    }
    // Plugs in C and D, which show the workspaces 3 and 4, and takes only them away.
    void lose_two_more(const std::string &serial_of_c, const std::string &serial_of_d)
    {
        c.serial = serial_of_c;
        d.serial = serial_of_d;
        plug(c);
        plug(d);
        session.active = false;
        unplug("C");
        unplug("D");
    }
    const test::output_traits a{.name = "A", .width = 1000, .height = 700};
    const test::output_traits b{.name = "B", .width = 800, .height = 600};
    test::output_traits c{.name = "C", .width = 640, .height = 480};
    test::output_traits d{.name = "D", .width = 640, .height = 480};
};

struct returning_session : left_session, testing::WithParamInterface<bool> {
    void come_back() { come_back_with(GetParam() ? std::vector{a, b} : std::vector{b, a}); }
};
INSTANTIATE_TEST_SUITE_P(outputs_in_either_order, returning_session, testing::Bool());

TEST_P(returning_session, finds_every_window_where_it_was)
{
    test::window &floating = map_on(1400, 300);
    place(floating, 1500, 50);
    test::window &filling = map_on(1400, 300);
    toplevel_toggle_maximize(record(filling));
    test::window &fullscreen = map_on(500, 300);
    toplevel_set_fullscreen(record(fullscreen), true);
    test::window &minimized_game = map_on(500, 300);
    toplevel_set_fullscreen(record(minimized_game), true);
    command("workspace 3");
    test::window &hidden = map_on(500, 300);
    command("workspace 1");
    toplevel_minimize(record(minimized_game));
    settle();
    const wlr_box hidden_box = box(hidden);

    leave();
    come_back();

    EXPECT_EQ(output("A").current_ws, &workspace(1));
    EXPECT_EQ(output("B").current_ws, &workspace(2));
    EXPECT_EQ(output("B").usable, (wlr_box{1000, 0, 800, 600}));
    EXPECT_EQ(box(floating), (wlr_box{1500, 50, 200, 100}));
    EXPECT_EQ(box(filling), (wlr_box{1000, 0, 800, 600}));
    EXPECT_EQ(box(fullscreen), (wlr_box{0, 0, 1000, 700}));
    EXPECT_TRUE(record(fullscreen).scene_tree->node.enabled);
    EXPECT_FALSE(record(minimized_game).scene_tree->node.enabled);
    EXPECT_FALSE(toplevel_visible(record(hidden)));
    EXPECT_EQ(box(hidden), hidden_box);
}

TEST_P(returning_session, finds_the_pointer_and_the_keyboard_where_they_were)
{
    test::window &w = map_on(1400, 300);
    map_on(500, 300);
    focus_toplevel_ex(&record(w), true);
    wlr_cursor_warp(server.cursor, nullptr, 1700, 20);
    leave();
    come_back();
    EXPECT_EQ(server.cursor->x, 1700);
    EXPECT_EQ(server.cursor->y, 20);
    EXPECT_TRUE(has_keyboard(w));
}

TEST_P(returning_session, goes_on_placing_displays_side_by_side)
{
    leave();
    come_back();
    unplug("A");
    EXPECT_EQ(output_layout_box(output("B")), (wlr_box{0, 0, 800, 600}));
}

TEST_P(returning_session, tells_programs_of_the_outputs_as_they_were)
{
    toplevel_set_fullscreen(record(map_on(1400, 300)), true);
    settle();
    auto &program = dial();
    const auto tell = [&] { return ask(program, 1) + ask(program, 2) + ask(program, 3); };
    const std::string before = tell();
    heard();
    leave();
    EXPECT_EQ(tell(), before);
    EXPECT_THAT(heard(), Not(Contains(AnyOf(VNT_EVT_OUTPUTS, VNT_EVT_FULLSCREEN_OFF))));
    EXPECT_THAT(outputs_file(), ElementsAre("B", "A"));
    come_back();
    EXPECT_EQ(tell(), before);
    EXPECT_THAT(outputs_file(), ElementsAre("B", "A"));
}

TEST_F(left_session, has_displays_where_the_user_placed_them)
{
    command("output A position 2000 100");
    command("output B position 0 0");
    leave();
    come_back_with({{.name = "A", .width = 1000, .height = 700}, {.name = "B", .width = 800, .height = 600}});
    EXPECT_EQ(output_layout_box(output("A")), (wlr_box{2000, 100, 1000, 700}));
    EXPECT_EQ(output_layout_box(output("B")), (wlr_box{0, 0, 800, 600}));
}

TEST_F(left_session, has_displays_in_the_mode_and_scale_that_they_had)
{
    command("output A scale 2 transform 90 mode 1200x800");
    leave();
    come_back_with({{.name = "B", .width = 800, .height = 600}, {.name = "A", .width = 1000, .height = 700}});
    EXPECT_EQ(output("A").wlr_output->scale, 2);
    EXPECT_EQ(output("A").wlr_output->transform, WL_OUTPUT_TRANSFORM_90);
    EXPECT_EQ(output("A").wlr_output->width, 1200);
}

TEST_F(left_session, has_a_workspace_on_a_display_that_was_turned_on_in_the_dark)
{
    command("output B disable");
    set_dpms(server, false);
    command("output B enable");
    leave();
    come_back_with({{.name = "B", .width = 800, .height = 600}, {.name = "A", .width = 1000, .height = 700}});
    EXPECT_TRUE(output("B").wlr_output->enabled);
    EXPECT_NE(output("B").current_ws, nullptr);
}

TEST_F(left_session, leaves_a_display_off_that_the_user_has_turned_off)
{
    command("output B disable");
    leave();
    come_back_with({{.name = "B", .width = 800, .height = 600}, {.name = "A", .width = 1000, .height = 700}});
    EXPECT_TRUE(output("A").wlr_output->enabled);
    EXPECT_FALSE(output("B").wlr_output->enabled);
    EXPECT_EQ(output("B").current_ws, nullptr);
}

TEST_F(left_session, gets_the_saved_arrangement_of_its_displays)
{
    world.write_config("displays.conf", "[a]\noutput A enable scale 2\noutput B enable\n");
    leave();
    come_back_with({{.name = "A", .width = 1000, .height = 700}, {.name = "B", .width = 800, .height = 600}});
    EXPECT_EQ(output("A").wlr_output->scale, 2);
}

TEST_F(left_session, counts_a_display_that_does_not_return_as_unplugged)
{
    test::window &w = map_on(500, 300);
    place(w, 100, 100);
    test::window &other = map_on(1400, 300);
    leave();
    come_back_with({b});
    EXPECT_EQ(output("B").current_ws, record(other).workspace);
    EXPECT_EQ(output("B").usable, (wlr_box{0, 0, 800, 600}));
    EXPECT_EQ(record(w).workspace->output, nullptr);
    EXPECT_THAT(outputs_file(), ElementsAre("B"));
    EXPECT_TRUE(boxes_overlap(box(other), output("B").usable));
}

TEST_F(left_session, recognises_displays_that_changed_connectors)
{
    lose_two_more("42", "43");
    std::swap(c.name, d.name);
    come_back_with({d, c});
    EXPECT_EQ(output("D").current_ws, &workspace(3));
    EXPECT_EQ(output("C").current_ws, &workspace(4));
    EXPECT_EQ(output("D").usable, (wlr_box{1800, 0, 640, 480}));
}

TEST_F(left_session, tells_identical_displays_apart_by_their_connectors)
{
    lose_two_more("0", "0");
    come_back_with({d, c});
    EXPECT_EQ(output("C").current_ws, &workspace(3));
    EXPECT_EQ(output("D").current_ws, &workspace(4));
}

TEST_F(left_session, gives_a_display_that_was_exchanged_its_predecessor_s_workspace)
{
    c.serial = "42";
    plug(c);
    test::window &w = map_on(1900, 100);
    toplevel_toggle_maximize(record(w));
    settle();
    session.active = false;
    unplug("C");
    come_back_with({{.name = "C", .width = 800, .height = 600, .serial = "77"}});
    EXPECT_EQ(output("C").current_ws, record(w).workspace);
    EVENTUALLY_EQ(box(w), (wlr_box{1800, 0, 800, 600}));
}

TEST_F(left_session, places_windows_on_the_absent_display_under_the_pointer)
{
    wlr_cursor_warp(server.cursor, nullptr, 1400, 300);
    leave();
    test::window &w = map("w", {200, 100});
    EXPECT_EQ(record(w).workspace, &workspace(2));
    come_back_with({a, b});
    EXPECT_EQ(box(w), (wlr_box{1300, 250, 200, 100}));
    EXPECT_TRUE(has_keyboard(w));
}

TEST_F(left_session, leaves_the_display_of_a_remote_user_where_it_is)
{
    command("virtual-output 640x480");
    settle();
    vantore_output &stays = *output_of(server, server.virtual_output);
    ASSERT_EQ(stays.usable, (wlr_box{1800, 0, 640, 480}));
    test::window &w = map_on(500, 300);
    wlr_cursor_warp(server.cursor, nullptr, 1900, 100);
    test::window &seen = map("seen", {200, 100});
    place(seen, 2000, 100);
    focus_toplevel_ex(&record(w), true);
    leave();
    EXPECT_EQ(output_layout_box(stays).x, 1800);
    EXPECT_TRUE(has_keyboard(seen)); // the other one can't be seen
    come_back_with({a, b});
    EXPECT_EQ(output_layout_box(stays).x, 1800);
    EXPECT_EQ(box(seen), (wlr_box{2000, 100, 200, 100}));
    EXPECT_TRUE(has_keyboard(w));
}

TEST_F(left_session, gives_a_display_that_appears_meanwhile_a_workspace_of_its_own)
{
    leave();
    plug("V", 640, 480); // a virtual one, for somebody who looks on from afar
    EXPECT_EQ(output("V").current_ws, &workspace(3));
    come_back_with({a, b});
    EXPECT_EQ(output("A").current_ws, &workspace(1));
    EXPECT_EQ(output("A").usable, (wlr_box{0, 0, 1000, 700}));
    EXPECT_EQ(output("B").current_ws, &workspace(2));
    EXPECT_EQ(output("V").usable, (wlr_box{1800, 0, 640, 480}));
}

TEST_F(left_session, lets_a_remote_user_take_the_workspaces)
{
    test::window &w = map_on(500, 300);
    leave();
    plug("V", 640, 480);
    command("workspace 1");
    EXPECT_TRUE(toplevel_visible(record(w)));
    come_back_with({a, b});
    EXPECT_EQ(output("V").current_ws, &workspace(1));
    EXPECT_EQ(output("A").current_ws, &workspace(3));
    EXPECT_EQ(output("B").current_ws, &workspace(2));
}

} // namespace
