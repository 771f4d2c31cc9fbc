// Windows that fade in and workspaces that slide, at exact times.

#include "support/desktop.hpp"
#include "support/wayland_hints.hpp"

#include "config/settings.hpp"
#include "input/hit_test.hpp"
#include "presentation/decorations.hpp"
#include "presentation/effects.hpp"
#include "session/lock.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/switch.hpp"

using test::window;

namespace
{

constexpr uint32_t red = 0xffff0000, blue = 0xff0000ff;

struct animation : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 640, 384);
        config("force_effects = true\n");
        run_clock(std::chrono::seconds{5}); // past what the start has armed
    }
    void expect_no_timer() { EXPECT_FALSE(world.advance_clock_ms(10'000)) << "a timer is still armed"; }
    int red_at(int x, int y) { return int(pixel("A", x, y) >> 16 & 0xff); }
};

struct opening : animation {
    template <class Window> float opacity(const Window &w)
    {
        return toplevel_main_buffer(record(w))->opacity;
    }
    template <class Window> bool fades(const Window &w) { return record(w).anim_open_t0 != 0; }
};

TEST_F(opening, fades_a_window_in_and_then_nothing_ticks)
{
    window &w = map("w");
    EXPECT_FLOAT_EQ(opacity(w), 0.05F);
    advance_clock_ms(1);
    EXPECT_NEAR(opacity(w), 0.0124609, 1e-6);
    advance_clock_ms(39);
    EXPECT_FLOAT_EQ(opacity(w), 0.4375F);
    advance_clock_ms(40);
    EXPECT_FLOAT_EQ(opacity(w), 0.75F);
    advance_clock_ms(79);
    EXPECT_LT(opacity(w), 1);
    advance_clock_ms(1);
    advance_clock_ms(16);
    EXPECT_EQ(opacity(w), 1);
    EXPECT_FALSE(fades(w));
    expect_no_timer();
}

TEST_F(opening, ticks_every_16_milliseconds)
{
    map("w");
    EXPECT_EQ(test::isolation::next_timer_ms(), 1);
    advance_clock_ms(1);
    EXPECT_EQ(test::isolation::next_timer_ms(), 16);
    advance_clock_ms(16);
    EXPECT_EQ(test::isolation::next_timer_ms(), 16);
}

TEST_F(opening, is_seen)
{
    window &w = map("w", {200, 100});
    w.fill(red);
    settle();
    place(w, 100, 100);
    advance_clock_ms(80);
    const int part = 191; // three quarters, over a backdrop that has little red
    EVENTUALLY(red_at(200, 150) > part - 2 && red_at(200, 150) < part + 8);
    run_clock(std::chrono::milliseconds{200});
    EVENTUALLY(red_at(200, 150) == 255);
}

TEST_F(opening, goes_on_when_the_client_draws_meanwhile)
{
    window &w = map("w");
    advance_clock_ms(80);
    w.fill(red);
    settle();
    EXPECT_FLOAT_EQ(opacity(w), 0.75F) << "or the window would flash";
    run_clock(std::chrono::milliseconds{100});
    w.fill(blue);
    settle();
    EXPECT_EQ(opacity(w), 1);
}

TEST_F(opening, ends_at_the_opacity_that_the_client_gave_its_surface)
{
    window &w = connect().create_window("w");
    w.create_surface();
    test::opacity_hint hint{w};
    hint.set(0.5);
    map(w);
    advance_clock_ms(80);
    EXPECT_NEAR(opacity(w), 0.375, 1e-6);
    run_clock(std::chrono::milliseconds{100});
    EXPECT_NEAR(opacity(w), 0.5, 1e-6);
}

TEST_F(opening, has_a_time_of_its_own_for_each_window)
{
    window &first = map("first");
    advance_clock_ms(80);
    window &second = map("second");
    advance_clock_ms(40);
    EXPECT_FLOAT_EQ(opacity(second), 0.4375F);
    EXPECT_FLOAT_EQ(opacity(first), 0.9375F);
    run_clock(std::chrono::milliseconds{56});
    EXPECT_EQ(opacity(first), 1);
    EXPECT_TRUE(fades(second));
}

TEST_F(opening, happens_at_once_without_animations)
{
    for (const char *without : {"force_effects = true\nanimations = false\n", "animations = true\n"}) {
        config(without);
        window &w = map("w");
        EXPECT_EQ(opacity(w), 1) << without;
        EXPECT_FALSE(fades(w)) << without;
    }
    expect_no_timer();
}

TEST_F(opening, happens_at_once_when_there_is_no_timer)
{
    server.anim_timer.reset();
    window &w = map("w");
    EXPECT_FALSE(fades(w));
    EXPECT_EQ(opacity(w), 1);
}

TEST_F(opening, of_a_fullscreen_window_happens_at_once)
{
    window &w = connect().create_window("film");
    w.request_fullscreen();
    map(w);
    EXPECT_TRUE(record(w).fullscreen);
    EXPECT_EQ(opacity(w), 1);
    expect_no_timer();
}

TEST_F(opening, on_a_workspace_that_is_not_shown_happens_at_once)
{
    write_config("rules.conf", "away -> ws=3\n");
    window &w = map("away");
    EXPECT_EQ(record(w).workspace, &workspace(3));
    EXPECT_EQ(opacity(w), 1);
    expect_no_timer();
}

TEST_F(opening, ends_when_the_window_becomes_fullscreen)
{
    window &w = map("w");
    advance_clock_ms(40);
    toplevel_set_fullscreen(record(w), true);
    EXPECT_EQ(opacity(w), 1);
    advance_clock_ms(40);
    EXPECT_EQ(opacity(w), 1);
    expect_no_timer();
}

TEST_F(opening, ends_when_the_window_is_minimized)
{
    window &w = map("w");
    advance_clock_ms(40);
    toplevel_minimize(record(w));
    EXPECT_EQ(opacity(w), 1);
    focus_toplevel_ex(&record(w), true);
    advance_clock_ms(40);
    EXPECT_EQ(opacity(w), 1);
}

TEST_F(opening, survives_a_window_that_is_unmapped_and_mapped_again)
{
    window &w = map("w");
    advance_clock_ms(40);
    const vantore_toplevel &t = record(w);
    w.unmap();
    EVENTUALLY(find_record(w) == nullptr);
    EXPECT_EQ(t.anim_open_t0, 0);
    advance_clock_ms(40);
    map(w);
    EXPECT_FLOAT_EQ(opacity(w), 0.05F);
    run_clock(std::chrono::milliseconds{200});
    EXPECT_EQ(opacity(w), 1);
}

TEST_F(opening, survives_clients_that_go_meanwhile)
{
    window &closed = map("closed"), &torn = map("torn"), &left = map("left");
    advance_clock_ms(40);
    closed.destroy();
    torn.owner().vanish();
    advance_clock_ms(16);
    EVENTUALLY(wl_list_length(&server.toplevels) == 1);
    run_clock(std::chrono::milliseconds{200});
    EXPECT_EQ(opacity(left), 1);
}

TEST_F(opening, fades_x11_windows_in_too)
{
    test::x11_window &x = map_x11();
    EXPECT_LE(opacity(x), 0.05F);
    advance_clock_ms(80);
    EXPECT_FLOAT_EQ(opacity(x), 0.75F);
    x.fill(0x0000ff);
    settle();
    EXPECT_FLOAT_EQ(opacity(x), 0.75F);
    x.unmap();
    EVENTUALLY(find_record(x) == nullptr);
    map_x11(x);
    EXPECT_LE(opacity(x), 0.05F);
    run_clock(std::chrono::milliseconds{200});
    EXPECT_EQ(opacity(x), 1);
}

// A red window on workspace 1 and a blue one on workspace 2, both at 100, 100.
struct slide : animation {
    void SetUp() override
    {
        animation::SetUp();
        old_one = &show_on(1, red);
        new_one = &show_on(2, blue);
        command("workspace 1");
        run_clock(std::chrono::seconds{1});
        settle();
    }
    window &show_on(int num, uint32_t argb)
    {
        command("workspace " + std::to_string(num));
        window &w = map("w", {300, 120});
        w.draw({300, 120}, argb);
        settle();
        place(w, 100, 100);
        return w;
    }
    void go_to(int num) { output_set_current(output("A"), &workspace(num)); }
    int x_of(int num) const { return workspace(num).tree->node.x; }
    bool shows(int num) const { return workspace(num).tree->node.enabled; }
    bool slides() const { return server.sliding.from != nullptr; }
    void expect_rest(int shown) const
    {
        EXPECT_FALSE(slides());
        for (int num = 1; num <= 9; num++) {
            EXPECT_EQ(x_of(num), 0) << num;
            EXPECT_EQ(shows(num), num == shown) << num;
        }
    }

    window *old_one = nullptr, *new_one = nullptr;
};

TEST_F(slide, moves_both_workspaces_and_then_nothing_ticks)
{
    go_to(2);
    EXPECT_EQ(x_of(1), 0);
    EXPECT_EQ(x_of(2), 640);
    EXPECT_TRUE(shows(1) && shows(2));
    EXPECT_EQ(workspace(1).output, nullptr);
    advance_clock_ms(75);
    EXPECT_EQ(x_of(1), -560);
    EXPECT_EQ(x_of(2), 80);
    advance_clock_ms(75);
    expect_rest(2);
    expect_no_timer();
    EXPECT_EQ(box(*new_one).x, 100);
}

TEST_F(slide, goes_the_other_way_to_a_lower_number)
{
    command("workspace 2");
    go_to(1);
    EXPECT_EQ(x_of(1), -640);
    advance_clock_ms(75);
    EXPECT_EQ(x_of(1), -80);
    EXPECT_EQ(x_of(2), 560);
}

TEST_F(slide, is_seen)
{
    go_to(2);
    advance_clock_ms(30); // 327 pixels to go
    EVENTUALLY(pixel("A", 100 + 327 + 5, 150) == blue);
    EXPECT_EQ(pixel("A", 5, 150), red); // the red one lies 313 pixels further left
    EXPECT_NE(pixel("A", 100, 150), red);
    run_clock(std::chrono::milliseconds{150});
    EVENTUALLY(pixel("A", 105, 150) == blue);
}

TEST_F(slide, gives_way_to_the_next_one)
{
    go_to(2);
    advance_clock_ms(75);
    go_to(3);
    EXPECT_EQ(x_of(1), 0);
    EXPECT_FALSE(shows(1));
    EXPECT_EQ(x_of(2), 0);
    EXPECT_EQ(x_of(3), 640);
    advance_clock_ms(75);
    EXPECT_EQ(x_of(3), 80);
    go_to(2); // back again
    EXPECT_EQ(x_of(3), 0);
    EXPECT_EQ(x_of(2), -640);
    run_clock(std::chrono::milliseconds{170});
    expect_rest(2);
}

TEST_F(slide, does_not_happen_without_animations)
{
    for (const char *without : {"force_effects = true\nanimations = false\n", "animations = true\n"}) {
        config(without);
        go_to(2);
        expect_rest(2);
        go_to(1);
        expect_rest(1);
    }
    expect_no_timer();
}

TEST_F(slide, does_not_happen_when_there_is_no_timer)
{
    server.anim_timer.reset();
    go_to(2);
    expect_rest(2);
}

TEST_F(slide, is_left_out_by_the_direct_way)
{
    command("workspace 2");
    expect_rest(2);
}

TEST_F(slide, ends_when_the_workspace_changes_by_the_direct_way)
{
    go_to(2);
    advance_clock_ms(30);
    command("workspace 1");
    expect_rest(1);
}

TEST_F(slide, needs_a_single_output)
{
    plug("B", 640, 384);
    go_to(3);
    EXPECT_FALSE(slides());
    EXPECT_EQ(x_of(3), 0);
    unplug("B");
    go_to(1);
    EXPECT_TRUE(slides());
}

TEST_F(slide, ends_when_another_output_appears)
{
    go_to(3);
    advance_clock_ms(30);
    plug("B", 640, 384);
    EXPECT_FALSE(slides());
    EXPECT_EQ(x_of(1), 0);
    EXPECT_EQ(x_of(3), 0);
}

TEST_F(slide, ends_when_its_output_is_unplugged)
{
    go_to(2);
    advance_clock_ms(30);
    unplug("A");
    expect_rest(0);
    run_clock(std::chrono::milliseconds{100});
    plug("A", 640, 384);
    expect_rest(1); // the first workspace that was shown there
}

TEST_F(slide, ends_when_a_lock_begins_and_does_not_begin_during_one)
{
    go_to(2);
    advance_clock_ms(30);
    session_lock_begin(server);
    expect_rest(2);
    go_to(1);
    expect_rest(1);
}

TEST_F(slide, survives_windows_that_go_meanwhile)
{
    go_to(2);
    advance_clock_ms(30);
    old_one->destroy();
    new_one->owner().vanish();
    EVENTUALLY(!has_any(server.toplevels));
    run_clock(std::chrono::milliseconds{170});
    expect_rest(2);
}

TEST_F(slide, keeps_a_fullscreen_window_put_away_that_was_minimized_meanwhile)
{
    toplevel_set_fullscreen(record(*new_one), true);
    settle();
    go_to(2);
    toplevel_minimize(record(*new_one));
    run_clock(std::chrono::milliseconds{170});
    EXPECT_FALSE(record(*new_one).scene_tree->node.enabled);
}

// After 10 milliseconds, the red window has moved 119 pixels to the left, and the blue one has 521 to go.
TEST_F(slide, lets_the_pointer_find_what_arrives_where_it_is_painted)
{
    auto &pointer = plug_pointer();
    go_to(2);
    advance_clock_ms(10);
    ASSERT_EQ(x_of(1), -120);
    ASSERT_EQ(x_of(2), 520);
    point_at(pointer, 630, 150);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*new_one)));
    EXPECT_DOUBLE_EQ(server.seat->pointer_state.sx, 10);
    point_at(pointer, 150, 150); // where the blue one will be, and where the red one is seen
    EXPECT_EQ(server.seat->pointer_state.focused_surface, nullptr);
    run_clock(std::chrono::milliseconds{150});
    EVENTUALLY(server.seat->pointer_state.focused_surface == tl_surface(record(*new_one)));
}

TEST_F(slide, lets_the_pointer_find_title_bars_where_they_are_painted)
{
    vantore_toplevel &t = record(*new_one);
    t.ssd = true;
    dec_layout(t);
    go_to(2);
    advance_clock_ms(75);
    vantore_dec_region region = DEC_NONE;
    EXPECT_EQ(decoration_at(server, 100 + 80 + 280, 85, region), &t);
    EXPECT_EQ(region, DEC_CLOSE);
    EXPECT_EQ(decoration_at(server, 100 + 10, 85, region), nullptr);
    EXPECT_EQ(resize_edges_at(t, 100 + 80 + 2, 150), WLR_EDGE_LEFT);
    EXPECT_EQ(resize_edges_at(t, 100 + 2, 150), WLR_EDGE_NONE);
}

} // namespace
