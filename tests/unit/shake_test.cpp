// When moving the pointer counts as shaking it.

#include "input/shake.hpp"

#include <gtest/gtest.h>

namespace
{

struct shaking : testing::Test {
    // Moves to a point after this many milliseconds.
    bool go(double x, double y = 0, int64_t after_ms = 20)
    {
        now += after_ms;
        return shake_feed(history, x, y, now);
    }

    // Moves back and forth for up to `most` strokes. Returns how many strokes made a shake, or 0 if none did.
    int strokes_until_shaken(double width, int most, int64_t after_ms = 20)
    {
        for (int i = 0; i < most; i++)
            if (go(i % 2 == 0 ? 0 : width, 0, after_ms))
                return i;
        return 0;
    }

    shake_history history;
    int64_t now = 1000;
};

TEST_F(shaking, there_and_back_twice_is_a_shake)
{
    EXPECT_EQ(strokes_until_shaken(100, 20), 4);
    EXPECT_EQ(history.shake_n, 0) << "the next shake starts anew";
}

TEST_F(shaking, a_path_less_than_four_times_its_extent_is_none)
{
    EXPECT_FALSE(go(0));
    EXPECT_FALSE(go(100));
    EXPECT_FALSE(go(0));
    EXPECT_FALSE(go(100));
    EXPECT_FALSE(go(0.5));
    EXPECT_TRUE(go(1.5));
}

TEST_F(shaking, a_straight_flick_is_none)
{
    for (int i = 0; i < 100; i++)
        EXPECT_FALSE(go(i * 50, i * 10, 8));
}

TEST_F(shaking, trembling_on_a_small_spot_is_none)
{
    EXPECT_EQ(strokes_until_shaken(99.9, 100), 0);
}

TEST_F(shaking, the_extent_counts_across_both_axes)
{
    EXPECT_FALSE(go(0, 0));
    EXPECT_FALSE(go(60, 80));
    EXPECT_FALSE(go(0, 0));
    EXPECT_FALSE(go(60, 80));
    EXPECT_TRUE(go(0, 0));
}

TEST_F(shaking, what_is_older_than_a_second_is_forgotten)
{
    EXPECT_EQ(strokes_until_shaken(100, 20, 251), 0) << "four strokes take longer than a second";
    history = {};
    EXPECT_EQ(strokes_until_shaken(100, 20, 250), 4) << "the sample of a whole second ago still counts";
}

TEST_F(shaking, samples_are_taken_at_most_every_eight_milliseconds)
{
    EXPECT_FALSE(go(0));
    EXPECT_FALSE(go(500, 0, 7));
    EXPECT_EQ(history.shake_n, 1);
    EXPECT_FALSE(go(100, 0, 1));
    EXPECT_EQ(history.shake_n, 2);
    EXPECT_EQ(history.shake_hist[1].x, 100);
}

TEST_F(shaking, a_full_ring_overwrites_the_oldest)
{
    history.shake_n = int(history.shake_hist.size());
    history.shake_head = 5;
    history.shake_hist.fill({.x = 0, .y = 0, .t = now});
    EXPECT_FALSE(go(3));
    EXPECT_EQ(history.shake_n, 160);
    EXPECT_EQ(history.shake_head, 6);
    EXPECT_EQ(history.shake_hist[5].x, 3);
}

} // namespace
