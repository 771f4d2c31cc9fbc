// Sizes and texts of the overlays that other programs ask for.

#include "drawing.hpp"
#include "outputs/identify.hpp"
#include "outputs/replay_osd.hpp"
#include "support/boxes.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::EndsWith;
using testing::StartsWith;

namespace
{

constexpr font plain{.size = 14};

TEST(replay_osd, surrounds_its_text)
{
    EXPECT_EQ(replay_osd_size(100.7, 11), (wlr_box{0, 0, 149, 34}));
    EXPECT_EQ(replay_osd_size(0, 14.9), (wlr_box{0, 0, 49, 34}));
    EXPECT_EQ(replay_osd_size(0, 15), (wlr_box{0, 0, 49, 35}));
}

TEST(replay_osd, lies_near_the_top_of_its_output)
{
    EXPECT_EQ(replay_osd_place({1920, 100, 1280, 704}, {0, 0, 149, 34}), (wlr_box{2485, 156, 149, 34}));
}

TEST(identify, tells_model_mode_and_rate)
{
    EXPECT_EQ(identify_subtitle("XL-27", 2560, 1440, 59951), "XL-27 · 2560×1440@60Hz");
    EXPECT_EQ(identify_subtitle(nullptr, 800, 600, 59499), "800×600@59Hz");
    EXPECT_EQ(identify_subtitle("", 800, 600, 0), "800×600@0Hz");
    EXPECT_EQ(identify_subtitle("\xff", 1, 1, 0), "\xef\xbf\xbd · 1×1@0Hz");
}

TEST(text, that_fits_stays_whole)
{
    const auto cr = measuring_context(plain, 1);
    EXPECT_EQ(fitting_text(cr.get(), "", 10), "");
    EXPECT_EQ(fitting_text(cr.get(), "short", 400), "short");
    EXPECT_EQ(fitting_text(cr.get(), "a\xff", 400), "a\xef\xbf\xbd");
}

TEST(text, that_is_too_wide_ends_with_dots_within_the_width)
{
    const auto cr = measuring_context(plain, 1);
    for (const double width : {40.0, 100.0, 300.0}) {
        const std::string cut = fitting_text(cr.get(), std::string(9000, 'w'), width);
        EXPECT_THAT(cut, EndsWith("w…"));
        EXPECT_LE(text_extents(cr.get(), cut).width, width);
        EXPECT_GT(text_extents(cr.get(), "w" + cut).width, width);
    }
}

TEST(text, is_cut_between_characters)
{
    const auto cr = measuring_context(plain, 1);
    std::string umlauts;
    for (int i = 0; i < 100; i++)
        umlauts += "ä";
    const std::string cut = fitting_text(cr.get(), umlauts, 77);
    EXPECT_THAT(cut, StartsWith("ää"));
    EXPECT_THAT(cut, EndsWith("ä…"));
    EXPECT_EQ(fitting_text(cr.get(), umlauts, 0), "…");
}

TEST(text, is_measured_at_the_scale_at_which_it_is_drawn)
{
    constexpr font small{.size = 12};
    const std::string narrow(40, 'l');
    const double width = text_extents(measuring_context(small, 1).get(), narrow).width;
    EXPECT_GT(text_extents(measuring_context(small, 1.5).get(), narrow).width, width + 10);
}

} // namespace
