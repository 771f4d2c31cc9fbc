#include "support/picture.hpp"

#include "support/isolation.hpp"

#include <cstdlib>
#include <gtest/gtest.h>

using test::image;

namespace
{

image one(uint32_t argb)
{
    return {.width = 2, .height = 1, .argb = {argb, 0xff000000}};
}

TEST(pictures, survive_a_file)
{
    const test::isolation world;
    const std::filesystem::path path = world.directory() / "picture.png";
    const image before{.width = 2, .height = 2, .argb = {0xffff0000, 0xff00ff00, 0xff0000ff, 0x80ffffff}};
    ASSERT_TRUE(before.save(path));
    const image after = image::load(path);
    EXPECT_EQ(after.width, 2);
    EXPECT_EQ(after.height, 2);
    EXPECT_EQ(after.argb, before.argb);
}

TEST(pictures, that_can_not_be_read_are_empty)
{
    EXPECT_TRUE(image::load("/nonexistent.png").argb.empty());
}

TEST(pictures, are_transparent_outside_their_edges)
{
    EXPECT_EQ(one(0xffffffff).at(0, 0), 0xffffffffU);
    EXPECT_EQ(one(0xffffffff).at(2, 0), 0U);
    EXPECT_EQ(one(0xffffffff).at(0, -1), 0U);
}

TEST(pictures, are_equal_within_the_tolerance)
{
    EXPECT_EQ(test::compare(one(0xff404040), one(0xff424040), 2).pixels, 0U);
    EXPECT_EQ(test::compare(one(0xff404040), one(0xff424040), 2).largest, 2);
    EXPECT_EQ(test::compare(one(0xff404040), one(0xff424040), 1).pixels, 1U);
}

TEST(pictures, show_where_they_differ)
{
    const test::difference found = test::compare(one(0xffff0000), one(0xff0000ff), 0);
    EXPECT_EQ(found.picture.argb, (std::vector<uint32_t>{0xffffffff, 0xff202020}));
}

TEST(pictures, of_different_sizes_differ)
{
    EXPECT_GT(test::compare(one(0xff000000), image{}, 255).pixels, 0U);
    EXPECT_GT(test::compare(image{}, one(0xff000000), 255).pixels, 0U);
}

TEST(golden_pictures, that_are_missing_fail_the_comparison)
{
    const test::isolation world;
    unsetenv("VANTORE_UPDATE_GOLDEN");
    setenv("VANTORE_TEST_OUTPUT", world.directory().c_str(), 1);
    EXPECT_FALSE(test::matches_golden(one(0xffffffff), "no-such-picture", 0));
    EXPECT_TRUE(std::filesystem::exists(world.directory() / "no-such-picture.actual.png"));
    EXPECT_TRUE(std::filesystem::exists(world.directory() / "no-such-picture.diff.png"));
}

} // namespace
