// Panels and wallpaper programs that others wrote, in the real compositor.

#include "support/real_session.hpp"
#include "support/remote_user.hpp"

#include <algorithm>
#include <csignal>
#include <format>
#include <fstream>

using test::eventually;

namespace
{

struct panels : test::real_session {
    panels()
    {
        world.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + (world.directory() / "bus").string();
    }

    // Returns the upper edge of the only window, or -1 when there is none.
    [[nodiscard]] int window_top() const
    {
        const wlr_box box = box_of("foot");
        return box.width > 0 ? box.y : -1;
    }

    [[nodiscard]] test::process bus() const
    {
        return run({"dbus-daemon", "--session", "--nofork", "--print-address",
                    "--address=" + world.environment.at("DBUS_SESSION_BUS_ADDRESS")});
    }

    [[nodiscard]] bool shows(uint32_t argb) const
    {
        const std::filesystem::path path = world.directory() / "picture.png";
        test::process grim = run({"grim", path});
        return grim.wait() == 0 && std::ranges::count(test::image::load(path).argb, argb) > 10'000;
    }

    [[nodiscard]] std::string write(const char *name, const std::string &text) const
    {
        const std::filesystem::path path = world.directory() / name;
        std::ofstream{path} << text;
        return path;
    }
};

TEST_F(panels, of_a_toolkit_take_their_place_from_the_tiles_and_give_it_back)
{
    (void)output_of({"command", "ws-layout", "1", "tiling"});
    test::process foot = run({"foot", "sleep", "100"});
    ASSERT_TRUE(eventually([&] { return window_top() >= 0; })) << foot.output();
    const int top = window_top();
    test::process bus = this->bus();
    ASSERT_TRUE(bus.says("unix:path="));
    const std::string config = write("bar.json", R"({"height": 50, "modules-left": ["clock"]})");
    const std::string style = write("bar.css", "window#waybar { background: #654321; }");
    test::process waybar = run({"waybar", "--config", config, "--style", style});
    EXPECT_TRUE(eventually([&] { return window_top() == top + 50; })) << waybar.output();
    EXPECT_TRUE(eventually([&] { return shows(0xff654321U); })) << waybar.output();
    waybar.send(SIGTERM);
    EXPECT_TRUE(eventually([&] { return window_top() == top; }));
    EXPECT_FALSE(shows(0xff654321U));
}

TEST_F(panels, of_wallpapers_cover_the_output_and_go)
{
    test::process swaybg = run({"swaybg", "--color", "#123456"});
    EXPECT_TRUE(eventually([&] { return shows(0xff123456U); })) << swaybg.output();
    swaybg.send(SIGTERM);
    EXPECT_TRUE(eventually([&] { return !shows(0xff123456U); }));
}

TEST_F(panels, of_wallpaper_programs_cover_our_wallpaper_and_uncover_it)
{
    const std::filesystem::path picture = world.directory() / "ours.png";
    ASSERT_TRUE(
        (test::image{.width = 8, .height = 8, .argb = std::vector<uint32_t>(64, 0xff654321U)}.save(picture)));
    std::ofstream{world.directory() / "config/vantore/appearance.conf"} << "wallpaper = " << picture.string()
                                                                        << '\n';
    compositor.send(SIGHUP);
    ASSERT_TRUE(eventually([&] { return shows(0xff654321U); })) << compositor.output();
    test::process swaybg = run({"swaybg", "--color", "#123456"});
    EXPECT_TRUE(eventually([&] { return shows(0xff123456U); })) << swaybg.output();
    EXPECT_FALSE(shows(0xff654321U));
    swaybg.send(SIGTERM);
    EXPECT_TRUE(eventually([&] { return shows(0xff654321U); }));
    EXPECT_FALSE(shows(0xff123456U));
}

const char *const two_entries = R"(<interface>
  <object class="GtkMenu" id="menu">
    <child><object class="GtkMenuItem" id="first"><property name="label">First</property></object></child>
    <child><object class="GtkMenuItem" id="second"><property name="label">Second</property></object></child>
  </object>
</interface>
)";

// A panel of a toolkit with a menu of two entries, each of which leaves a file behind.
struct panel_menus : panels {
    static constexpr uint32_t panel_colour = 0xff654321U, menu_colour = 0xff2468acU;

    [[nodiscard]] test::process panel() const
    {
        const std::string config =
            write("bar.json", std::format(R"({{
            "height": 50, "modules-left": ["custom/menu"],
            "custom/menu": {{"format": "a menu", "tooltip": false, "menu": "on-click", "menu-file": "{}",
                             "menu-actions": {{"first": "touch {}", "second": "touch {}"}}}}}})",
                                          write("menu.xml", two_entries), file("first"), file("second")));
        const std::string style = write("bar.css", R"(window#waybar { background: #654321; }
            menu { background: #2468ac; } menuitem { padding: 20px; background: #2468ac; })");
        return run({"waybar", "--config", config, "--style", style});
    }

    [[nodiscard]] std::string file(const char *name) const { return world.directory() / name; }

    // Returns the box of the open menu, or an empty one.
    [[nodiscard]] wlr_box menu() const
    {
        const test::image picture = screenshot();
        int left = picture.width, top = picture.height, right = 0, bottom = 0;
        for (int y = 0; y < picture.height; y++)
            for (int x = 0; x < picture.width; x++)
                if (picture.at(x, y) == menu_colour) {
                    left = std::min(left, x);
                    top = std::min(top, y);
                    right = std::max(right, x + 1);
                    bottom = std::max(bottom, y + 1);
                }
        return {.x = left, .y = top, .width = std::max(right - left, 0), .height = std::max(bottom - top, 0)};
    }
};

TEST_F(panel_menus, do_what_is_chosen_from_them)
{
    test::process bus = this->bus();
    ASSERT_TRUE(bus.says("unix:path="));
    test::process waybar = panel();
    ASSERT_TRUE(eventually([&] { return shows(panel_colour); })) << waybar.output();
    test::remote_user user{wayland_socket()};
    user.click(20, 25);
    wlr_box box{};
    ASSERT_TRUE(eventually([&] { return (box = menu()).height > 0; })) << waybar.output();
    EXPECT_TRUE(eventually([&] { // a click right after the menu has opened only keeps it open
        user.click(box.x + box.width / 2, box.y + box.height * 3 / 4);
        return eventually([&] { return std::filesystem::exists(file("second")); }, std::chrono::seconds{2});
    })) << waybar.output();
    EXPECT_TRUE(eventually([&] { return menu().height == 0; }));
    EXPECT_FALSE(std::filesystem::exists(file("first")));
}

TEST_F(panel_menus, close_when_something_else_is_clicked)
{
    test::process bus = this->bus();
    ASSERT_TRUE(bus.says("unix:path="));
    test::process waybar = panel();
    ASSERT_TRUE(eventually([&] { return shows(panel_colour); })) << waybar.output();
    test::remote_user user{wayland_socket()};
    user.click(20, 25);
    ASSERT_TRUE(eventually([&] { return menu().height > 0; })) << waybar.output();
    user.click(900, 500);
    EXPECT_TRUE(eventually([&] { return menu().height == 0; }));
    EXPECT_FALSE(std::filesystem::exists(file("first")) || std::filesystem::exists(file("second")));
}

} // namespace
