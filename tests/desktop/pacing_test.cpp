// When outputs paint, what they measure, and which windows may tear.

#include "support/desktop.hpp"
#include "support/wayland_hints.hpp"

#include "config/settings.hpp"
#include "outputs/pacing.hpp"
#include "outputs/power.hpp"
#include "platform.hpp"
#include "windows/states.hpp"
#include "workspaces/transfer.hpp"

using test::window;
using testing::HasSubstr;

namespace
{

constexpr int64_t one_ms = 1'000'000;

int64_t g_render_time; // in ns, what a measured frame seems to have cost

// Counts the frames in which an output showed the buffer, whether or not it was painted anew.
struct frame_counter {
    explicit frame_counter(wlr_scene_buffer &shown)
    {
        listen<&frame_counter::frame_done, count_frame>(*this, shown.events.frame_done);
    }
    static void count_frame(frame_counter &self) { self.count++; }

    int count = 0;
    listener frame_done;
};

// One output of 60 Hz. The clock stands still, so each commit is presented at once.
struct pacing : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        g_render_time = 3 * one_ms;
        g_platform.render_time = [](wlr_scene_timer *) { return g_render_time; };
        made = &plug({.name = "A", .modes = {{.width = 1280, .height = 704}}, .accepts = accepts_all()});
        settle();
    }

    void TearDown() override
    {
        hints.clear();
        desktop::TearDown();
    }

    std::function<bool(const wlr_output_state &)> accepts_all()
    {
        return [this](const wlr_output_state &state) {
            tearing_asked += state.tearing_page_flip ? 1 : 0;
            const bool picture = (state.committed & WLR_OUTPUT_STATE_BUFFER) != 0;
            const bool refused =
                (refuses_tearing && state.tearing_page_flip) || (refuses_pictures && picture);
            return !refused;
        };
    }

    // Draws a new picture of the window. Returns the number of commits that follow before any time passes.
    int redraw(window &w)
    {
        const int before = made->commits;
        w.fill(colour += 0x10);
        settle();
        return made->commits - before;
    }

    int commits_within(int milliseconds)
    {
        const int before = made->commits;
        advance_clock_ms(milliseconds);
        settle();
        return made->commits - before;
    }

    void learn(window &w)
    {
        while (output("A").times.rt_n < 4)
            ASSERT_GE(redraw(w), 1);
    }

    wlr_scene_buffer &picture_of(const window &w)
    {
        wlr_scene_buffer *found = nullptr;
        const auto find = [](wlr_scene_buffer *buffer, int, int, void *data) {
            *static_cast<wlr_scene_buffer **>(data) = buffer;
        };
        wlr_scene_node_for_each_buffer(&record(w).scene_tree->node, find, static_cast<void *>(&found));
        return *found;
    }

    void expect_a_callback_without_a_picture(window &w)
    {
        refuses_pictures = true;
        const int before = w.frames();
        w.request_frame();
        w.fill(colour += 0x10);
        EVENTUALLY_EQ(w.frames(), before + 1);
        refuses_pictures = false;
    }

    window &map_game(const std::string &name, bool async)
    {
        window &w = map(name);
        hints.emplace_back(w).set_async(async);
        w.request_fullscreen();
        settle();
        return w;
    }

    test::made_up_output *made = nullptr;
    std::list<test::tearing_hint> hints;
    bool refuses_tearing = false, refuses_pictures = false;
    int tearing_asked = 0; // counts test commits and real ones
    uint32_t colour = 0xff000000;
};

TEST_F(pacing, paints_at_once_before_anything_was_presented)
{
    window &w = map("w");
    g_max_render_time = 5;
    output("A").last_present_ns = 0;
    EXPECT_GE(redraw(w), 1);
    EXPECT_NE(output("A").last_present_ns, 0);
}

TEST_F(pacing, waits_from_the_fourth_sample_on)
{
    window &w = map("w");
    learn(w);
    EXPECT_EQ(redraw(w), 0);
    EXPECT_EQ(commits_within(10), 0); // 16.67 ms less 3 ms of painting and a margin of 2 ms
    EXPECT_EQ(commits_within(1), 1);
    EXPECT_EQ(pixel("A", 640, 352), colour);
}

TEST_F(pacing, shows_what_was_drawn_while_it_waited)
{
    window &w = map("w");
    learn(w);
    EXPECT_EQ(redraw(w), 0);
    advance_clock_ms(5);
    EXPECT_EQ(redraw(w), 0); // the timer is armed anew for the same blank
    EXPECT_EQ(commits_within(6), 1);
    EXPECT_EQ(pixel("A", 640, 352), colour);
}

TEST_F(pacing, with_a_fixed_budget_waits_without_measuring)
{
    window &w = map("w");
    g_max_render_time = 5;
    redraw(w); // ends a measurement that may be under way
    advance_clock_ms(20);
    settle();
    const render_times before = output("A").times;
    EXPECT_EQ(redraw(w), 0);
    EXPECT_EQ(commits_within(10), 0);
    EXPECT_EQ(commits_within(1), 1);
    EXPECT_FALSE(output("A").rt_pending);
    EXPECT_EQ(output("A").times.rt_idx, before.rt_idx);
}

TEST_F(pacing, with_a_budget_that_does_not_fit_paints_at_once)
{
    window &w = map("w");
    g_max_render_time = 20;
    for (int i = 0; i < 4; i++)
        EXPECT_EQ(redraw(w), 1);
}

TEST_F(pacing, that_is_off_paints_at_once)
{
    window &w = map("w");
    learn(w);
    g_max_render_time = 0;
    redraw(w);
    EXPECT_EQ(redraw(w), 1);
    EXPECT_FALSE(output("A").rt_pending);
}

TEST_F(pacing, of_an_output_that_rested_ends_before_the_first_blank_after_now)
{
    window &w = map("w");
    g_max_render_time = 5;
    output("A").refresh_nsec = 10 * one_ms;
    advance_clock_ms(1003);
    EXPECT_EQ(redraw(w), 0); // 7 ms are left of the period
    EXPECT_EQ(commits_within(1), 0);
    EXPECT_EQ(commits_within(1), 1);
}

TEST_F(pacing, follows_the_period_that_was_presented)
{
    wlr_output_event_present event{};
    event.output = &made->base;
    event.when = {.tv_sec = 5, .tv_nsec = 7};
    event.refresh = 8'000'000;
    wlr_output_send_present(&made->base, &event);
    EXPECT_NE(output("A").last_present_ns, 5'000'000'007) << "it was not presented";
    event.presented = true;
    wlr_output_send_present(&made->base, &event);
    EXPECT_EQ(output("A").last_present_ns, 5'000'000'007);
    EXPECT_EQ(output("A").refresh_nsec, 8'000'000);
    event.refresh = 0;
    wlr_output_send_present(&made->base, &event);
    EXPECT_EQ(output("A").refresh_nsec, 8'000'000);
}

TEST_F(pacing, knows_the_period_of_the_mode_from_the_start)
{
    plug({.name = "B", .modes = {{.width = 800, .height = 600, .refresh_mhz = 50000}}});
    EXPECT_EQ(output("B").refresh_nsec, 20 * one_ms);
    plug("C", 800, 600);
    EXPECT_EQ(output("C").refresh_nsec, 0);
}

TEST_F(pacing, goes_on_when_frames_can_not_be_measured)
{
    g_render_time = -1;
    window &w = map("w");
    output("A").times = {};
    for (int i = 0; i < 40; i++)
        EXPECT_GE(redraw(w), 1);
    EXPECT_TRUE(output("A").times.rt_giveup);
    EXPECT_FALSE(output("A").rt_pending);
    const std::string line =
        "output A — GPU render timing unavailable, disabling render-time measurement (deadline "
        "scheduler stays in render-now mode)\n";
    const std::string log = world.log();
    EXPECT_THAT(log, HasSubstr(line));
    EXPECT_EQ(log.find(line), log.rfind(line)) << "once";
    g_render_time = 3 * one_ms;
    config(""); // a reload of the settings does not bring measuring back
    for (int i = 0; i < 6; i++)
        EXPECT_EQ(redraw(w), 1);
}

TEST_F(pacing, paints_at_once_where_the_gpu_has_no_timers)
{
    g_platform.has_render_timers = [](wlr_renderer *) { return false; };
    made = &plug({.name = "B", .modes = {{.width = 1280, .height = 704}}, .accepts = accepts_all()});
    window &w = map("w");
    move_toplevel_to_workspace(record(w), output("B").current_ws->num);
    redraw(w);
    for (int i = 0; i < 6; i++)
        EXPECT_EQ(redraw(w), 1);
    EXPECT_EQ(output("B").times.rt_n, 0);
    EXPECT_THAT(world.log(), HasSubstr("output B — GPU render timing unavailable"));
}

TEST_F(pacing, does_not_take_a_commit_without_a_picture_for_a_measurement)
{
    window &w = map("w");
    redraw(w);
    wlr_output_send_frame(&made->base); // ends the measurement that is under way
    output("A").times = {}; // too few to wait for anything
    frame_counter repaints{picture_of(w)};
    const int commits = made->commits;
    for (int i = 1; i <= 5; i++) {
        wlr_output_send_frame(&made->base);
        EXPECT_EQ(repaints.count, i);
    }
    EXPECT_EQ(made->commits, commits);
    EXPECT_EQ(output("A").times.rt_n, 0);
    EXPECT_EQ(output("A").times.rt_idx, 0);
    EXPECT_FALSE(output("A").rt_pending);
}

TEST_F(pacing, answers_frame_callbacks_also_when_the_commit_fails)
{
    window &w = map("w");
    for (const int max_render_time : {0, -1}) { // a plain commit and a measured one
        g_max_render_time = max_render_time;
        redraw(w);
        output("A").times = {};
        expect_a_callback_without_a_picture(w);
    }
}

TEST_F(pacing, without_a_timer_paints_at_once)
{
    window &w = map("w");
    learn(w);
    EXPECT_EQ(redraw(w), 0);
    output("A").frame_timer.reset();
    EXPECT_GE(redraw(w), 1);
}

TEST_F(pacing, measures_nothing_when_the_commit_fails)
{
    window &w = map("w");
    output("A").times = {};
    settle();
    refuses_pictures = true;
    w.fill(0xffff0000);
    settle();
    EXPECT_FALSE(output("A").rt_pending);
}

TEST_F(pacing, ends_with_the_output)
{
    window &w = map("w");
    learn(w);
    EXPECT_EQ(redraw(w), 0); // the output waits, and a measurement may be under way
    test::unplug(*made);
    advance_clock_ms(50);
    settle();
    plug("B", 1280, 704);
    settle();
    EXPECT_EQ(pixel("B", 640, 352), colour);
}

TEST_F(pacing, does_not_paint_on_an_output_that_was_turned_off_meanwhile)
{
    window &w = map("w");
    learn(w);
    EXPECT_EQ(redraw(w), 0);
    set_dpms(server, false);
    settle();
    EXPECT_EQ(commits_within(20), 0);
    set_dpms(server, true);
    settle();
    advance_clock_ms(20);
    settle();
    EXPECT_EQ(pixel("A", 640, 352), colour);
}

TEST_F(pacing, of_measured_frames_ends_without_leaks)
{
    window &w = map("w");
    output("A").times = {};
    w.fill(0xffff0000);
    EVENTUALLY(output("A").rt_pending); // the end of the session and the sanitizers check that nothing leaks
}

struct tearing : pacing {
};

TEST_F(tearing, is_for_a_fullscreen_window_that_asks_for_it)
{
    window &w = map_game("game", true);
    redraw(w);
    EXPECT_TRUE(output_wants_tearing(output("A")));
    tearing_asked = 0;
    EXPECT_EQ(redraw(w), 1);
    EXPECT_EQ(tearing_asked, 2); // a test commit and the real one
    EXPECT_EQ(pixel("A", 640, 352), colour);
}

TEST_F(tearing, answers_frame_callbacks_also_when_the_commit_fails)
{
    window &w = map_game("game", true);
    redraw(w);
    ASSERT_TRUE(output_wants_tearing(output("A")));
    expect_a_callback_without_a_picture(w);
}

TEST_F(tearing, is_not_for_windows_that_do_not_ask)
{
    window &w = map_game("film", false);
    redraw(w);
    EXPECT_FALSE(output_wants_tearing(output("A")));
    EXPECT_EQ(tearing_asked, 0);
}

TEST_F(tearing, is_not_for_windows_that_are_not_fullscreen)
{
    window &w = map_game("game", true);
    w.request_unfullscreen();
    redraw(w);
    EXPECT_FALSE(output_wants_tearing(output("A")));
}

TEST_F(tearing, does_not_wait_for_the_deadline)
{
    window &w = map_game("game", true);
    g_max_render_time = 5;
    for (int i = 0; i < 4; i++)
        EXPECT_EQ(redraw(w), 1);
}

TEST_F(tearing, that_the_driver_refuses_shows_every_frame_in_step)
{
    window &w = map_game("game", true);
    redraw(w);
    refuses_tearing = true;
    for (int i = 0; i < 5; i++) {
        EXPECT_EQ(redraw(w), 1);
        EXPECT_EQ(pixel("A", 640, 352), colour);
    }
}

TEST_F(tearing, that_rests_commits_nothing)
{
    window &w = map_game("game", true);
    redraw(w);
    const int before = made->commits;
    wlr_output_send_frame(&made->base);
    settle();
    EXPECT_EQ(made->commits, before);
}

TEST_F(tearing, can_be_forbidden)
{
    window &w = map_game("game", true);
    redraw(w);
    g_allow_tearing = false;
    g_game_tearing = true;
    EXPECT_FALSE(output_wants_tearing(output("A")));
}

TEST_F(tearing, is_for_games_that_only_say_what_they_are_where_the_user_wants_it)
{
    window &w = map_game("game", false);
    const test::game_hint game{w};
    redraw(w);
    EXPECT_FALSE(output_wants_tearing(output("A")));
    g_game_tearing = true;
    EXPECT_TRUE(output_wants_tearing(output("A")));
    g_allow_tearing = false;
    EXPECT_FALSE(output_wants_tearing(output("A")));
}

TEST_F(tearing, is_asked_of_the_first_fullscreen_window_only)
{
    window &game = map_game("game", true);
    redraw(game);
    window &film = map_game("film", false);
    redraw(film);
    EXPECT_FALSE(output_wants_tearing(output("A")));
    move_to_front(server.toplevels, record(game).link);
    EXPECT_TRUE(output_wants_tearing(output("A")));
}

TEST_F(tearing, is_wanted_by_a_minimized_fullscreen_window_too)
{
    window &game = map_game("game", true);
    redraw(game);
    toplevel_minimize(record(game));
    EXPECT_TRUE(output_wants_tearing(output("A")));
}

TEST_F(tearing, is_a_matter_of_each_output)
{
    plug("B", 800, 600);
    window &game = map_game("game", true);
    redraw(game);
    EXPECT_TRUE(output_wants_tearing(output("A")));
    EXPECT_FALSE(output_wants_tearing(output("B")));
}

TEST_F(tearing, needs_the_protocols)
{
    window &game = map_game("game", true);
    redraw(game);
    auto *manager = std::exchange(server.tearing_mgr, nullptr);
    EXPECT_FALSE(output_wants_tearing(output("A")));
    server.tearing_mgr = manager;
}

} // namespace
