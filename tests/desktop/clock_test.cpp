// The clock that tests move.

#include "support/desktop.hpp"

#include "timer.hpp"

using std::chrono_literals::operator""ms;
using test::desktop;
using test::isolation;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

// Arms its timer again whenever it fires, as an animation does.
struct metronome {
    explicit metronome(wl_display *display)
        : timer(timer_create(
              display,
              [](void *data) {
                  auto &self = *static_cast<metronome *>(data);
                  self.beats.push_back(isolation::clock_ms() - self.started);
                  timer_arm(self.timer, 16);
                  return 0;
              },
              this))
    {
        timer_arm(timer, 16);
    }

    timer_source timer;
    int64_t started = isolation::clock_ms();
    std::vector<int64_t> beats; // in ms since the start
};

TEST_F(desktop, clock_that_runs_fires_a_timer_as_often_as_it_is_armed_again)
{
    metronome ticking{server.display};
    run_clock(160ms);
    EXPECT_THAT(ticking.beats, ElementsAre(16, 32, 48, 64, 80, 96, 112, 128, 144, 160));
}

TEST_F(desktop, clock_that_runs_stops_between_two_beats)
{
    metronome ticking{server.display};
    run_clock(15ms);
    EXPECT_EQ(isolation::clock_ms() - ticking.started, 15);
    EXPECT_THAT(ticking.beats, IsEmpty());
    run_clock(25ms);
    EXPECT_EQ(isolation::clock_ms() - ticking.started, 40);
    EXPECT_THAT(ticking.beats, ElementsAre(16, 32));
}

TEST_F(desktop, clock_that_is_put_forward_fires_a_timer_once)
{
    metronome ticking{server.display};
    advance_clock_ms(160);
    EXPECT_THAT(ticking.beats, ElementsAre(160));
}

} // namespace
