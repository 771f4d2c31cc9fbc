// Displays of a real session: the commands that change them, and the arrangement that a start applies.

#include "support/real_session.hpp"

#include "json.hpp"

#include <csignal>
#include <format>
#include <fstream>

using test::eventually;
using testing::Optional;

namespace
{

struct displays : test::real_session {
    displays() : real_session(two_outputs)
    {
        change({"HEADLESS-1", "position", "0", "0"});
        change({"HEADLESS-2", "position", "1280", "0"});
    }

    // Returns what the session says of a display.
    [[nodiscard]] json about(const std::string &name) const
    {
        for (const json &output : parse_reply(output_of({"outputs"})))
            if (member_text(output, "name") == name)
                return output;
        ADD_FAILURE() << "no display " << name;
        return {};
    }
    [[nodiscard]] bool is_on(const std::string &name) const { return member_is_true(about(name), "active"); }
    [[nodiscard]] wlr_box box(const std::string &name) const
    {
        const json rect = member_object(about(name), "rect");
        return {.x = int(member_number(rect, "x")),
                .y = int(member_number(rect, "y")),
                .width = int(member_number(rect, "width")),
                .height = int(member_number(rect, "height"))};
    }
    void change(std::vector<std::string> words) const
    {
        words.insert(words.begin(), {"command", "output"});
        EXPECT_EQ(output_of(words), "");
    }
    // Whether a program that takes pictures of the screen finds much of this colour on the display.
    [[nodiscard]] bool shows(const std::string &name, uint32_t argb) const
    {
        const std::string path = world.directory() / (name + ".png");
        test::process grim = run({"grim", "-o", name, path});
        return grim.wait() == 0 && std::ranges::count(test::image::load(path).argb, argb) > 10'000;
    }
    void expect_box(const std::string &name, const wlr_box &expected) const
    {
        const wlr_box actual = box(name);
        EXPECT_TRUE(wlr_box_equal(&actual, &expected))
            << std::format("{} at {},{} {}x{}", name, actual.x, actual.y, actual.width, actual.height);
    }

    static inline const std::vector<std::string> two_outputs{"env", "WLR_HEADLESS_OUTPUTS=2",
                                                             "VANTORE_HEADLESS_SIZE=1280x720"};
};

TEST_F(displays, are_turned_off_and_on)
{
    EXPECT_TRUE(is_on("HEADLESS-2"));
    change({"HEADLESS-2", "disable"});
    EXPECT_FALSE(is_on("HEADLESS-2"));
    EXPECT_TRUE(is_on("HEADLESS-1"));
    change({"HEADLESS-1", "disable"});
    EXPECT_TRUE(is_on("HEADLESS-1")) << "the last one stays on";
    change({"HEADLESS-2", "enable"});
    EXPECT_TRUE(is_on("HEADLESS-2"));
    expect_box("HEADLESS-2", {1280, 0, 1280, 720});
}

TEST_F(displays, are_turned_round)
{
    EXPECT_EQ(member_text(about("HEADLESS-2"), "transform"), "normal");
    change({"HEADLESS-2", "transform", "270"});
    EXPECT_EQ(member_text(about("HEADLESS-2"), "transform"), "270");
    expect_box("HEADLESS-2", {1280, 0, 720, 1280});
    change({"HEADLESS-2", "transform", "normal"});
    expect_box("HEADLESS-2", {1280, 0, 1280, 720});
}

TEST_F(displays, are_scaled)
{
    change({"HEADLESS-2", "scale", "1.25"});
    EXPECT_EQ(member_text(about("HEADLESS-2"), "scale"), "1.25");
    expect_box("HEADLESS-2", {1280, 0, 1024, 576});
}

TEST_F(displays, are_moved)
{
    change({"HEADLESS-2", "position", "0", "720"});
    expect_box("HEADLESS-2", {0, 720, 1280, 720});
    change({"HEADLESS-2", "position", "-1280", "0"});
    expect_box("HEADLESS-2", {0, 0, 1280, 720});
    expect_box("HEADLESS-1", {1280, 0, 1280, 720});
    change({"HEADLESS-2", "position", "1000", "0"}); // partly over the other display, so it goes above that
    expect_box("HEADLESS-2", {1000, 0, 1280, 720});
    expect_box("HEADLESS-1", {1280, 720, 1280, 720});
}

TEST_F(displays, get_modes)
{
    change({"HEADLESS-2", "mode", "1920x1080@50Hz"});
    const json mode = member_object(about("HEADLESS-2"), "current_mode");
    EXPECT_EQ(member_number(mode, "width"), 1920);
    EXPECT_EQ(member_number(mode, "height"), 1080);
    EXPECT_EQ(member_number(mode, "refresh"), 50000);
    expect_box("HEADLESS-2", {1280, 0, 1920, 1080});
}

TEST_F(displays, take_several_steps_at_once)
{
    change({"HEADLESS-2", "disable"});
    change({"HEADLESS-2", "enable", "mode", "1600x1200", "transform", "90", "scale", "2", "position", "0",
            "720"});
    EXPECT_TRUE(is_on("HEADLESS-2"));
    expect_box("HEADLESS-2", {0, 720, 600, 800});
}

TEST_F(displays, mirror_each_other_for_other_programs_too)
{
    constexpr uint32_t only_on_one = 0xff123456;
    test::process swaybg = run({"swaybg", "--output", "HEADLESS-1", "--color", "#123456"});
    EXPECT_TRUE(eventually([&] { return shows("HEADLESS-1", only_on_one); })) << swaybg.output();
    EXPECT_FALSE(shows("HEADLESS-2", only_on_one));
    change({"HEADLESS-2", "mirror", "output", "HEADLESS-1"});
    const json source = member_object(about("HEADLESS-2"), "mirror");
    EXPECT_EQ(member_text(source, "kind"), "screen");
    EXPECT_EQ(member_text(source, "output"), "HEADLESS-1");
    EXPECT_TRUE(eventually([&] { return shows("HEADLESS-2", only_on_one); }));
    change({"HEADLESS-2", "mirror", "off"});
    EXPECT_FALSE(member_is_true(about("HEADLESS-2"), "mirror"));
    EXPECT_TRUE(eventually([&] { return !shows("HEADLESS-2", only_on_one); }));
}

TEST_F(displays, are_arranged_when_the_session_starts_again)
{
    std::ofstream{world.directory() / "config/vantore/displays.conf"}
        << "[two]\n"
           "output HEADLESS-1 enable scale 2 position 720 100\n"
           "output HEADLESS-2 enable transform 90 position 0 0\n";
    expect_box("HEADLESS-1", {0, 0, 1280, 720});
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0));
    for (const char *name : {"WAYLAND_DISPLAY", "VANTORESOCK"})
        world.environment.erase(name);
    std::vector<std::string> command = two_outputs;
    command.append_range(test::compositor());
    test::process again = run(command);
    ASSERT_TRUE(again.says("running — WAYLAND_DISPLAY=")) << again.output();
    world.environment["VANTORESOCK"] =
        world.directory() / std::format("run/vantore-ipc-{}.sock", again.pid());
    expect_box("HEADLESS-1", {720, 100, 640, 360});
    expect_box("HEADLESS-2", {0, 0, 720, 1280});
    EXPECT_EQ(member_text(about("HEADLESS-2"), "transform"), "90");
    again.send(SIGTERM);
    EXPECT_THAT(again.wait(), Optional(0));
}

} // namespace
