// When an output paints, with exact numbers.

#include "outputs/paint_time.hpp"

#include <gtest/gtest.h>

namespace
{

constexpr int64_t ms = 1'000'000;
constexpr int64_t period = 16'666'666; // 60 Hz

render_times times_of(std::initializer_list<int64_t> samples)
{
    render_times times;
    for (const int64_t sample : samples)
        rt_record(times, sample);
    return times;
}

TEST(time_stamps, become_nanoseconds)
{
    EXPECT_EQ(ts_to_ns({.tv_sec = 3, .tv_nsec = 7}), 3'000'000'007);
    EXPECT_EQ(ts_to_ns({.tv_sec = 4'000'000'000, .tv_nsec = 999'999'999}), 4'000'000'000'999'999'999);
}

TEST(render_prediction, needs_four_samples)
{
    EXPECT_EQ(rt_predict(times_of({})), -1);
    EXPECT_EQ(rt_predict(times_of({ms, ms, ms})), -1);
    EXPECT_EQ(rt_predict(times_of({ms, ms, ms, ms})), 3 * ms);
}

TEST(render_prediction, is_the_worst_sample_and_two_milliseconds)
{
    EXPECT_EQ(rt_predict(times_of({1 * ms, 9 * ms, 2 * ms, 3 * ms, 1 * ms})), 11 * ms);
    EXPECT_EQ(rt_predict(times_of({0, 0, 0, 0})), 2 * ms);
}

TEST(render_prediction, forgets_a_sample_after_sixteen_more)
{
    render_times times = times_of({9 * ms});
    for (int i = 0; i < 15; i++)
        rt_record(times, 1 * ms);
    EXPECT_EQ(rt_predict(times), 11 * ms);
    EXPECT_EQ(times.rt_n, 16);
    rt_record(times, 1 * ms);
    EXPECT_EQ(rt_predict(times), 3 * ms);
    EXPECT_EQ(times.rt_n, 16);
    EXPECT_EQ(times.rt_idx, 1);
}

TEST(render_measuring, is_given_up_at_the_32nd_failure_in_a_row)
{
    render_times times;
    for (int i = 0; i < 31; i++)
        rt_record(times, -1);
    EXPECT_FALSE(times.rt_giveup);
    rt_record(times, -1);
    EXPECT_TRUE(times.rt_giveup);
    EXPECT_EQ(rt_predict(times), -1);
}

TEST(render_measuring, is_never_given_up_after_the_first_sample)
{
    render_times times;
    for (int i = 0; i < 31; i++)
        rt_record(times, -1);
    rt_record(times, ms);
    EXPECT_EQ(times.rt_fails, 0);
    for (int i = 0; i < 100; i++)
        rt_record(times, -1);
    EXPECT_FALSE(times.rt_giveup);
    EXPECT_EQ(times.rt_n, 1) << "a failed reading is no sample";
}

TEST(paint_budget, is_what_the_user_fixed)
{
    EXPECT_EQ(paint_budget(5, times_of({ms, ms, ms, ms})), 5 * ms);
    EXPECT_EQ(paint_budget(5, {}), 5 * ms);
}

TEST(paint_budget, is_none_where_pacing_is_off_or_nothing_is_known)
{
    EXPECT_EQ(paint_budget(0, times_of({ms, ms, ms, ms})), -1);
    EXPECT_EQ(paint_budget(-1, times_of({ms, ms, ms})), -1);
}

TEST(paint_budget, is_measured_otherwise)
{
    EXPECT_EQ(paint_budget(-1, times_of({ms, ms, 4 * ms, ms})), 6 * ms);
}

TEST(paint_delay, ends_just_before_the_next_blank)
{
    const int64_t shown = 1000 * ms;
    EXPECT_EQ(paint_delay_ms(shown, period, 5 * ms, shown), 11); // 11.67 rounded down
    EXPECT_EQ(paint_delay_ms(shown, period, 5 * ms, shown + 3 * ms), 8);
    EXPECT_EQ(paint_delay_ms(shown, period, 5 * ms, shown + 10 * ms), 1);
    EXPECT_EQ(paint_delay_ms(shown, period, 0, shown), 16);
}

TEST(paint_delay, under_a_millisecond_is_none)
{
    const int64_t shown = 1000 * ms;
    EXPECT_EQ(paint_delay_ms(shown, period, 5 * ms, shown + period - 6 * ms), 1);
    EXPECT_EQ(paint_delay_ms(shown, period, 5 * ms, shown + period - 6 * ms + 1), 0);
    EXPECT_EQ(paint_delay_ms(shown, period, 5 * ms, shown + 14 * ms), 0);
}

TEST(paint_delay, is_none_before_the_first_presentation_or_without_a_period)
{
    EXPECT_EQ(paint_delay_ms(0, period, 5 * ms, 1000 * ms), 0);
    EXPECT_EQ(paint_delay_ms(1000 * ms, 0, 5 * ms, 1000 * ms), 0);
    EXPECT_EQ(paint_delay_ms(1000 * ms, -1, 5 * ms, 1000 * ms), 0);
    EXPECT_EQ(paint_delay_ms(1000 * ms, period, -1, 1000 * ms), 0);
}

TEST(paint_delay, is_none_for_a_frame_that_does_not_fit_the_period)
{
    EXPECT_EQ(paint_delay_ms(1000 * ms, period, 20 * ms, 1000 * ms), 0);
    EXPECT_EQ(paint_delay_ms(1000 * ms, period, period - 999'999, 1000 * ms), 0);
    EXPECT_EQ(paint_delay_ms(1000 * ms, period, period - 1'000'000, 1000 * ms), 1);
}

TEST(paint_delay, of_an_output_that_rested_leads_to_the_first_blank_after_now)
{
    const int64_t shown = 1000 * ms;
    EXPECT_EQ(paint_delay_ms(shown, 10 * ms, 2 * ms, shown + 1003 * ms), 5);
    EXPECT_EQ(paint_delay_ms(shown, 10 * ms, 2 * ms, shown + 1000 * ms), 8) << "a blank that is now is past";
    const int64_t a_month = int64_t{30} * 24 * 3600 * 1000 * ms;
    EXPECT_EQ(paint_delay_ms(shown, 10 * ms, 2 * ms, shown + a_month + 1 * ms), 7);
}

TEST(paint_delay, is_none_where_the_driver_dates_a_presentation_far_ahead)
{
    const int64_t now = 1000 * ms;
    EXPECT_EQ(paint_delay_ms(now + 3600 * 1000 * ms, period, 5 * ms, now), 0);
}

} // namespace
