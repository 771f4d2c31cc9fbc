// What a session looks like.

#include "support/desktop.hpp"
#include "support/wayland_seat.hpp"

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

TEST_F(desktop, draws_outputs_whose_sides_are_no_multiple_of_a_block)
{
    for (const auto &[width, height] :
         {test::size{1001, 701}, test::size{1002, 702}, test::size{1003, 703}}) {
        const auto name = std::to_string(width);
        auto &drawn = plug(name, width, height);
        EVENTUALLY(drawn.shown != nullptr);
        EXPECT_EQ(drawn.shown->width, width);
        EXPECT_EQ(drawn.shown->height, height);
        const test::image shown = picture(name);
        EXPECT_EQ(shown.at(width - 1, height - 1), shown.at(width / 2, height / 2));
        EXPECT_NE(shown.at(width - 1, height - 1), 0U);
    }
}

TEST_F(desktop, draws_cursors_whose_sides_are_no_multiple_of_a_block)
{
    test::output_traits traits{.name = "A", .width = 640, .height = 480};
    traits.has_cursor_plane = true;
    auto &screen = plug(traits);
    auto &pointer = plug_pointer();
    auto &page = map("page", {200, 200});
    test::seat ears{page.owner()};
    place(page, 100, 100);
    point_at(pointer, 150, 150);
    settle();
    wl_surface *arrow = page.owner().create_surface("arrow");
    for (int side = 29; side < 32; side++) {
        ears.set_cursor(arrow, 0, 0);
        page.owner().paint(arrow, {side, side}, 0xffff0000);
        EVENTUALLY(screen.cursor != nullptr && screen.cursor->width == side);
    }
    page.owner().destroy_surface(arrow);
}

} // namespace
