// Which saved arrangement of displays is chosen, and how it is moved to 0, 0.

#include "outputs/display_profiles.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

namespace
{

const connected_display laptop{.name = "eDP-1", .id = "BOE~0x0A~"},
    desk{.name = "DP-1", .id = "Dell~U27~123"};

// Returns the lines of the chosen profile. Empty for none.
std::vector<std::string> chosen(std::string_view text, const std::vector<connected_display> &connected)
{
    const auto profile = display_profile_for(display_profiles_in(text), connected);
    return profile ? profile->profile.lines : std::vector<std::string>{};
}

TEST(profiles_file, has_a_profile_for_each_line_with_a_bracket)
{
    const auto profiles = display_profiles_in("output A enable\n[one] # first\n# nothing\n  output A enable "
                                              "# the only one\r\n\n[\nkeep this\noutput B disable");
    ASSERT_THAT(profiles, SizeIs(2));
    EXPECT_THAT(profiles[0].lines, ElementsAre("output A enable"));
    EXPECT_THAT(profiles[1].lines, ElementsAre("keep this", "output B disable"));
    EXPECT_THAT(display_profiles_in(""), IsEmpty());
    EXPECT_THAT(display_profiles_in("output A enable\n"), IsEmpty());
}

TEST(profiles_file, is_cut_to_lines_of_511_bytes_and_64_lines)
{
    std::string text = "[a]\n" + std::string(511, 'x') + "[b]\n";
    for (int i = 0; i < 70; i++)
        text += "output A enable\n";
    const auto profiles = display_profiles_in(text);
    ASSERT_THAT(profiles, SizeIs(2));
    EXPECT_THAT(profiles[0].lines, ElementsAre(std::string(511, 'x')));
    EXPECT_THAT(profiles[1].lines, SizeIs(64));
}

TEST(profiles_file, may_hold_any_bytes)
{
    using namespace std::string_view_literals;
    EXPECT_THAT(display_profiles_in("[a]\nout\0put\n\xff\xfe\n\0\n"sv).at(0).lines,
                ElementsAre("out", "\xff\xfe"));
}

TEST(profile, of_the_fewest_enabled_displays_is_chosen)
{
    EXPECT_THAT(chosen("[both]\noutput eDP-1 enable\noutput DP-1 enable\n"
                       "[docked]\noutput eDP-1 disable\noutput DP-1 enable\n",
                       {laptop, desk}),
                ElementsAre("output eDP-1 disable", "output DP-1 enable"));
}

TEST(profile, that_comes_first_is_chosen_of_equal_ones)
{
    EXPECT_THAT(chosen("[a]\noutput eDP-1 enable scale 1\n[b]\noutput eDP-1 enable scale 2\n", {laptop}),
                ElementsAre("output eDP-1 enable scale 1"));
}

TEST(profile, has_to_speak_of_each_connected_display)
{
    const connected_display third{.name = "HDMI-A-1", .id = "HDMI-A-1"};
    const std::string_view two = "[two]\noutput eDP-1 enable\noutput DP-1 enable\n";
    EXPECT_THAT(chosen(two, {laptop, desk, third}), IsEmpty());
    EXPECT_THAT(chosen(two, {laptop, desk}), SizeIs(2));
    EXPECT_THAT(chosen("[none]\nelsewhere\n", {laptop}), IsEmpty());
}

TEST(profile, must_not_enable_a_missing_display)
{
    EXPECT_THAT(chosen("[a]\noutput eDP-1 enable\noutput DP-9 enable\n", {laptop}), IsEmpty());
    EXPECT_THAT(chosen("[a]\noutput eDP-1 enable\noutput DP-9 disable\noutput DP-8 scale 2\n", {laptop}),
                SizeIs(3));
}

TEST(profile, has_to_enable_something)
{
    EXPECT_THAT(chosen("[a]\noutput eDP-1 scale 2\n", {laptop}), IsEmpty());
    EXPECT_THAT(chosen("[a]\noutput eDP-1 enabled\n", {laptop}), IsEmpty());
}

TEST(profile, may_name_displays_by_their_id)
{
    EXPECT_THAT(chosen("[a]\noutput Dell~U27~123 enable\n", {desk}), SizeIs(1));
}

TEST(profile, speaks_of_sixteen_displays_at_most)
{
    std::string text = "[a]\n";
    for (int i = 0; i < 16; i++)
        text += "output M" + std::to_string(i) + " disable\n";
    EXPECT_THAT(chosen(text + "output eDP-1 enable\n", {laptop}), IsEmpty());
    EXPECT_THAT(chosen("[a]\noutput eDP-1 enable\n" + text.substr(4), {laptop}), SizeIs(17));
}

TEST(positions, of_a_profile_begin_at_0_0_where_some_are_negative)
{
    display_profile profile{{"output A enable position -1920 0 scale 1", "output  B enable position 0 -10",
                             "output C position x 0 position", "# position -9000 0 is no comment here"}};
    EXPECT_THAT(anchor_to_origin(profile), Optional(Eq(layout_offset{9000, 10})));
    EXPECT_THAT(profile.lines,
                ElementsAre("output A enable position 7080 10 scale 1", "output B enable position 9000 0",
                            "output C position x 0 position", "# position 0 10 is no comment here"));
}

TEST(positions, of_a_profile_that_are_positive_stay)
{
    display_profile profile{{"output A enable  position 100 50"}};
    EXPECT_EQ(anchor_to_origin(profile), std::nullopt);
    EXPECT_THAT(profile.lines, ElementsAre("output A enable  position 100 50"));
}

} // namespace
