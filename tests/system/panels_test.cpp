// Panels and wallpaper programs that others wrote, in the real compositor.

#include "support/real_session.hpp"

#include <algorithm>
#include <csignal>
#include <cstdlib>
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
        const std::string list = output_of({"windows"});
        const size_t at = list.find(R"("y":)");
        return at != std::string::npos ? atoi(list.c_str() + at + 4) : -1;
    }

    [[nodiscard]] bool shows(uint32_t argb) const
    {
        const std::filesystem::path path = world.directory() / "picture.png";
        test::process grim = run({"grim", path});
        return grim.wait() == 0 && std::ranges::count(test::image::load(path).argb, argb) > 10'000;
    }

    [[nodiscard]] std::string write(const char *name, const char *text) const
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
    test::process bus = run({"dbus-daemon", "--session", "--nofork", "--print-address",
                             "--address=" + world.environment["DBUS_SESSION_BUS_ADDRESS"]});
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

} // namespace
