// The words of a command that changes an output.

#include "outputs/output_steps.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

std::string told(const output_step &step)
{
    struct teller {
        std::string operator()(const output_enable &) { return "enable"; }
        std::string operator()(const output_disable &) { return "disable"; }
        std::string operator()(const output_transform &t) { return "transform " + std::to_string(t.to); }
        std::string operator()(const output_scale &s) { return "scale " + std::to_string(s.factor); }
        std::string operator()(const output_position &p)
        {
            return "position " + std::to_string(p.x) + " " + std::to_string(p.y);
        }
        std::string operator()(const output_mode_wish &m)
        {
            return "mode " + std::to_string(m.width) + " " + std::to_string(m.height) + " " +
                   std::to_string(m.refresh_hz);
        }
        std::string operator()(const output_mirror &m) { return "mirror " + m.kind + " " + m.source; }
        std::string operator()(const output_unhandled &u) { return "unhandled " + u.word; }
    };
    return std::visit(teller{}, step);
}

std::vector<std::string> steps(std::string_view words)
{
    std::vector<std::string> all;
    for (const output_step &step : output_steps_in(words))
        all.push_back(told(step));
    return all;
}

TEST(output_steps, are_read_in_their_order)
{
    EXPECT_THAT(steps("enable mode 1920x1080@60Hz position 0 0"),
                ElementsAre("enable", "mode 1920 1080 60", "position 0 0"));
    EXPECT_THAT(steps(" \t disable\r\n"), ElementsAre("disable"));
    EXPECT_THAT(steps(""), IsEmpty());
}

TEST(output_steps, go_on_after_a_mirror)
{
    EXPECT_THAT(steps("mirror off enable"), ElementsAre("mirror off ", "enable"));
    EXPECT_THAT(steps("mirror window 12 enable"), ElementsAre("mirror window 12", "enable"));
    EXPECT_THAT(steps("mirror output HDMI-1 mirror screen A-B-C"),
                ElementsAre("mirror output HDMI-1", "mirror screen A-B-C"));
    EXPECT_THAT(steps("mirror upside-down enable"), ElementsAre("mirror upside-down ", "enable"));
    EXPECT_THAT(steps("enable mirror"), ElementsAre("enable", "mirror  "));
    EXPECT_THAT(steps("mirror window"), ElementsAre("mirror window "));
}

TEST(output_steps, know_all_transforms)
{
    EXPECT_THAT(steps("transform 90 transform 180 transform 270 transform flipped transform flipped-90 "
                      "transform flipped-180 transform flipped-270 transform normal transform sideways"),
                ElementsAre("transform 1", "transform 2", "transform 3", "transform 4", "transform 5",
                            "transform 6", "transform 7", "transform 0", "transform 0"));
}

TEST(output_steps, read_the_rate_of_a_mode_if_there_is_one)
{
    EXPECT_THAT(steps("mode 800x600 mode 800x600@75 mode 800x600@59.94Hz mode 800x600@-1Hz mode 800x600@x"),
                ElementsAre("mode 800 600 0", "mode 800 600 75", "mode 800 600 59", "mode 800 600 0",
                            "mode 800 600 0"));
}

TEST(output_steps, pass_over_modes_and_scales_that_make_no_sense)
{
    EXPECT_THAT(steps("mode 0x600 mode 800x0 mode -8x6 mode 800 mode x600 mode 99999999999x5 mode 40000x5 "
                      "scale 0 scale -1 scale nan scale inf scale 1e9 scale 0.01 scale big enable"),
                ElementsAre("enable"));
    EXPECT_THAT(steps("scale 1.5 scale +2"), ElementsAre("scale 1.500000", "scale 2.000000"));
}

TEST(output_steps, limit_positions)
{
    EXPECT_THAT(steps("position -1920 +20 position 2000000 -2000000 "
                      "position 99999999999 -99999999999 position a 0 position 1.5 0"),
                ElementsAre("position -1920 20", "position 1000000 -1000000", "position 1000000 -1000000"));
}

TEST(output_steps, end_where_an_argument_is_missing)
{
    EXPECT_THAT(steps("enable transform"), ElementsAre("enable"));
    EXPECT_THAT(steps("enable scale"), ElementsAre("enable"));
    EXPECT_THAT(steps("enable position 5"), ElementsAre("enable"));
    EXPECT_THAT(steps("enable mode"), ElementsAre("enable"));
}

TEST(output_steps, go_on_after_a_word_that_means_nothing)
{
    EXPECT_THAT(steps("shine enable 7"), ElementsAre("unhandled shine", "enable", "unhandled 7"));
}

} // namespace
