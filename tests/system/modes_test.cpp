// The window switcher and the overview with real programs.

#include "support/real_session.hpp"
#include "support/remote_user.hpp"

#include "input/overview_boxes.hpp"

#include <format>

using test::eventually;
using testing::Optional;

namespace
{

struct modes : test::real_session {
    modes() : user(wayland_socket()) { world.environment["DISPLAY"] = x_display(); }

    // Returns what the list of windows says of an application, or nothing.
    [[nodiscard]] std::string entry(const std::string &app_id) const
    {
        const std::string list = output_of({"windows"});
        const size_t at = list.find(R"("app_id":")" + app_id + '"');
        return at == std::string::npos ? "" : list.substr(at, list.find('}', at) - at);
    }
    [[nodiscard]] bool has_focus(const std::string &app_id) const
    {
        return entry(app_id).contains(R"("focused":true)");
    }
    [[nodiscard]] bool is_on_workspace(const std::string &app_id, int num) const
    {
        return entry(app_id).contains(std::format(R"("ws":{},)", num));
    }
    void move_into(const wlr_box &box) { user.move_to(box.x + box.width / 2, box.y + box.height / 2); }

    static constexpr wlr_box screen{0, 0, 1280, 720};
    test::remote_user user;
};

TEST_F(modes, alt_tab_goes_from_a_wayland_program_to_an_x11_program_and_back)
{
    test::process xterm = run({"xterm"});
    ASSERT_TRUE(eventually([&] { return has_focus("XTerm"); })) << xterm.output();
    test::process foot = run({"foot"});
    ASSERT_TRUE(eventually([&] { return has_focus("foot"); })) << foot.output();
    for (const char *other : {"XTerm", "foot"}) {
        test::process wtype = run({"wtype", "-M", "alt", "-k", "Tab", "-m", "alt"});
        EXPECT_THAT(wtype.wait(), Optional(0)) << wtype.output();
        EXPECT_TRUE(eventually([&] { return has_focus(other); })) << output_of({"windows"});
    }
}

TEST_F(modes, the_overview_moves_a_window_to_another_workspace_and_closes_it)
{
    test::process foot = run({"foot"});
    ASSERT_TRUE(eventually([&] { return has_focus("foot"); })) << foot.output();
    EXPECT_TRUE(is_on_workspace("foot", 1));
    const overview_grid grid = overview_grid_in(overview_beside_strip(screen), 1);
    const wlr_box tile = overview_tile(grid, 0, box_of("foot"), screen);
    const auto second_of = [](int count) {
        return overview_thumbnail(overview_strip_in(screen, screen, count, false), 1);
    };
    (void)output_of({"command", "overview"});
    move_into(tile);
    user.press();
    user.move_to(tile.x, tile.y);
    move_into(second_of(2));
    user.release();
    EXPECT_TRUE(eventually([&] { return is_on_workspace("foot", 2); })) << output_of({"windows"});
    // The first workspace is the current one, and the second one has the window, so there are three now.
    move_into(second_of(3));
    user.press();
    user.release();
    EXPECT_TRUE(eventually([&] {
        return output_of({"workspaces"}).contains(R"("num":2,"name":"2","focused":true)");
    })) << output_of({"workspaces"});
    move_into(overview_close_badge(tile));
    user.press();
    user.release();
    EXPECT_TRUE(eventually([&] { return entry("foot").empty(); })) << output_of({"windows"});
    (void)foot.wait();
}

} // namespace
