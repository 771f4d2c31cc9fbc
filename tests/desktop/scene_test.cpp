// What a session looks like.

#include "support/desktop.hpp"

using test::desktop;

namespace
{

TEST_F(desktop, shows_windows_over_the_backdrop_the_newest_on_top)
{
    plug("A", 320, 192);
    map("low", {160, 96}).fill(0xff3366cc);
    map("high", {64, 128}).fill(0xffcc6633);
    EVENTUALLY_EQ(pixel("A", 160, 96), 0xffcc6633U);
    EVENTUALLY_EQ(pixel("A", 90, 60), 0xff3366ccU);
    EXPECT_TRUE(test::matches_golden(picture("A"), "two-windows", 1));
}

} // namespace
