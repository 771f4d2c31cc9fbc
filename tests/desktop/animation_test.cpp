// Windows that fade in, at exact times.

#include "support/desktop.hpp"

#include "config/settings.hpp"
#include "presentation/effects.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"

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
        run_clock(std::chrono::seconds{1}); // past what the start has armed
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

} // namespace
