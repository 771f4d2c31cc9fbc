// Scripts move the pointer and press its buttons in real programs.

#include "support/files.hpp"
#include "support/real_session.hpp"

#include <algorithm>
#include <regex>

using test::contents;
using test::eventually;

namespace
{

struct scripted_seat : test::real_session {
    // Returns the content of the only window; its width is 0 when there is none.
    [[nodiscard]] wlr_box window() const { return box_of(); }

    // Returns a point of the window in layout coordinates, as a command takes it.
    [[nodiscard]] std::string at(int x, int y) const
    {
        const wlr_box w = window();
        return std::to_string(w.x + x) + " " + std::to_string(w.y + y);
    }

    void seat(const std::string &words) const { (void)output_of({"command", "seat " + words}); }
};

// The terminal writes mouse events as ESC [ < BUTTON ; COLUMN ; ROW, followed by M, or by m for a release.
TEST_F(scripted_seat, points_clicks_drags_and_scrolls_in_a_terminal)
{
    const auto mouse = world.directory() / "mouse";
    test::process foot = run(
        {"foot", "sh", "-c", "stty raw -echo; printf '\\033[?1003h\\033[?1006h'; cat > " + mouse.string()});
    ASSERT_TRUE(eventually([&] { return window().width > 300 && window().height > 300; })) << foot.output();
    const auto hears = [&](const char *event) {
        return eventually([&] { return std::regex_search(contents(mouse), std::regex{event}); });
    };
    EXPECT_TRUE(eventually([&] {
        seat("move " + at(100, 100));
        seat("move " + at(200, 200)); // the first commands run before the terminal is ready
        return contents(mouse).contains("\033[<35;");
    })) << foot.output();
    seat("click " + at(150, 150));
    EXPECT_TRUE(hears("\033\\[<0;(\\d+;\\d+)M\033\\[<0;\\1m")) << contents(mouse);
    seat("click right");
    EXPECT_TRUE(hears("\033\\[<2;(\\d+;\\d+)M\033\\[<2;\\1m")) << contents(mouse);
    seat("drag " + at(100, 100) + " " + at(260, 100));
    EXPECT_TRUE(hears("\033\\[<0;\\d+;\\d+M(\033\\[<32;\\d+;\\d+M)+\033\\[<0;\\d+;\\d+m")) << contents(mouse);
    seat("scroll 0 1");
    EXPECT_TRUE(hears("\033\\[<65;")) << contents(mouse);
    seat("scroll 0 -1");
    EXPECT_TRUE(hears("\033\\[<64;")) << contents(mouse);
}

// A blinking text cursor and a highlight under the pointer change fewer pixels than a menu does.
bool shows_a_menu(const test::image &now, const test::image &before)
{
    return !now.argb.empty() && test::compare(now, before, 0).pixels > 3000;
}

// Returns the lowest row in which many pixels differ.
int lower_edge(const test::image &now, const test::image &before)
{
    const test::image differs = test::compare(now, before, 0).picture;
    for (int y = differs.height - 1; y > 0; y--) {
        const auto row = differs.argb.begin() + ptrdiff_t{y} * differs.width;
        if (std::count(row, row + differs.width, 0xffffffffU) > 50)
            return y;
    }
    return 0;
}

TEST_F(scripted_seat, opens_a_menu_of_a_toolkit_program_and_picks_its_last_entry)
{
    test::process editor = run({"l3afpad"});
    ASSERT_TRUE(eventually([&] { return window().width > 200; })) << editor.output();
    test::image closed, open;
    ASSERT_TRUE(eventually([&] { // the window has been painted
        const test::image before = std::exchange(closed, screenshot());
        return !before.argb.empty() && test::compare(before, closed, 0).pixels == 0;
    }));
    seat("click " + at(20, 50)); // the first menu, below the program's own title bar
    ASSERT_TRUE(eventually([&] { return shows_a_menu(open = screenshot(), closed); })) << editor.output();
    const std::string last_entry = at(40, lower_edge(open, closed) - window().y - 12);
    EXPECT_TRUE(eventually([&] { // a click right after the menu has opened only keeps it open
        seat("click " + last_entry);
        return window().width == 0;
    }));
    EXPECT_THAT(editor.wait(), testing::Optional(0)) << editor.output();
}

} // namespace
