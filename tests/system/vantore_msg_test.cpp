// vantore-msg and the real compositor, as people and scripts use them.

#include "support/places.hpp"
#include "support/real_session.hpp"

#include <csignal>
#include <list>
#include <sys/stat.h>

using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

namespace
{

struct message_tool : test::real_session {
};

TEST_F(message_tool, prints_json_into_a_pipe)
{
    EXPECT_EQ(output_of({"windows"}), "[]\n");
    EXPECT_THAT(output_of({"workspaces"}), StartsWith("[{\"num\":1,\"name\":\"1\",\"focused\":true,"));
    EXPECT_THAT(output_of({"outputs"}), HasSubstr("\"name\":\"HEADLESS-1\""));
}

TEST_F(message_tool, prints_events_until_it_is_interrupted)
{
    test::process watcher = message({"subscribe"});
    EXPECT_TRUE(test::eventually([&] {
        (void)output_of({"command", "virtual-output", "640x640"});
        (void)output_of({"command", "virtual-output", "off"});
        return watcher.output().contains("outputs\n");
    }));
    watcher.send(SIGINT);
    EXPECT_THAT(watcher.wait(), Optional(0));
}

TEST_F(message_tool, ends_with_1_when_the_compositor_goes)
{
    test::process watcher = message({"subscribe"});
    EXPECT_TRUE(test::eventually([&] {
        (void)output_of({"command", "virtual-output", "640x640"});
        return watcher.output().contains("outputs\n");
    }));
    (void)output_of({"command", "exit"});
    EXPECT_THAT(watcher.wait(), Optional(1));
    EXPECT_THAT(watcher.output(), HasSubstr("vantore-msg: the compositor has closed the connection\n"));
}

TEST_F(message_tool, writes_a_picture_of_all_outputs)
{
    const std::filesystem::path file = world.directory() / "all.png";
    EXPECT_EQ(output_of({"capture", "all", file}), "");
    const test::image picture = test::image::load(file);
    EXPECT_EQ(picture.width, 1280);
    EXPECT_EQ(picture.height, 720);
    EXPECT_EQ(picture.at(5, 5), 0xff0f121aU) << "the backdrop";
}

TEST_F(message_tool, scales_a_picture_down)
{
    const std::filesystem::path file = world.directory() / "small.png";
    (void)output_of({"capture", "--max", "320", "output", file});
    EXPECT_EQ(test::image::load(file).width, 320);
    EXPECT_EQ(test::image::load(file).height, 180);
}

TEST_F(message_tool, leaves_no_file_when_there_is_nothing_to_capture)
{
    const std::filesystem::path file = world.directory() / "none.png";
    test::process tool = message({"capture", "window", "4711", file});
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_EQ(tool.output(), "vantore-msg: the compositor could not capture that\n");
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(message_tool, says_where_it_can_not_write)
{
    test::process tool = message({"capture", "all", world.directory() / "no/such/place.png"});
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_THAT(tool.output(), HasSubstr("No such file or directory"));
}

TEST_F(message_tool, explains_wrong_arguments)
{
    test::process tool = message({"dance"});
    EXPECT_THAT(tool.wait(), Optional(2));
    EXPECT_EQ(tool.output(), "vantore-msg: there is no command 'dance'; see vantore-msg --help\n");
}

TEST_F(message_tool, helps)
{
    EXPECT_THAT(output_of({"--help"}), StartsWith("usage: vantore-msg COMMAND\n"));
}

TEST(message_tool_alone, needs_to_know_the_socket)
{
    test::private_world world;
    world.environment.erase("VANTORESOCK");
    test::process tool{{test::vantore_msg_binary, "windows"}, world.environment};
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_EQ(tool.output(), "vantore-msg: VANTORESOCK is not set: is this a terminal of the session?\n");
}

TEST(message_tool_alone, says_that_nobody_answers)
{
    test::private_world world;
    world.environment["VANTORESOCK"] = world.directory() / "nobody.sock";
    test::process tool{{test::vantore_msg_binary, "windows"}, world.environment};
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_THAT(tool.output(), HasSubstr("can't reach the compositor at "));
}

// Windows of a real terminal. The tests compare what the queries say before and after a command.
struct window_commands : message_tool {
    window_commands()
    {
        world.environment["WAYLAND_DISPLAY"] = "wayland-0";
        for (const char *app : {"first", "second"}) {
            terminals.emplace_back(std::vector<std::string>{"foot", "--app-id", app, "sleep", "600"},
                                   world.environment);
            EXPECT_TRUE(test::eventually([&] { return windows().contains(app); }))
                << terminals.back().output();
        }
    }
    ~window_commands() override
    {
        for (test::process &terminal : terminals) {
            terminal.send(SIGTERM);
            (void)terminal.wait();
        }
    }
    [[nodiscard]] std::string windows() const { return output_of({"windows"}); }
    [[nodiscard]] std::string workspaces() const { return output_of({"workspaces"}); }
    // Returns the JSON object of a window, without its last brace.
    [[nodiscard]] std::string of_window(const std::string &app) const
    {
        const std::string all = windows();
        const size_t at = all.find("\"app_id\":\"" + app + "\"");
        const size_t from = all.rfind('{', at);
        return at == std::string::npos ? "" : all.substr(from, all.find('}', at) - from);
    }
    [[nodiscard]] std::string id_of(const std::string &app) const
    {
        const std::string object = of_window(app);
        const size_t at = object.find("\"id\":") + 5;
        return "id:" + object.substr(at, object.find_first_not_of("0123456789", at) - at);
    }
    void command(std::vector<std::string> words) const
    {
        words.insert(words.begin(), "command");
        (void)output_of(words);
    }
    template <class Condition> void expect_soon(Condition holds)
    {
        EXPECT_TRUE(test::eventually(holds)) << windows() << workspaces();
    }

    std::list<test::process> terminals;
};

TEST_F(window_commands, change_layout_and_tile_mode)
{
    EXPECT_THAT(workspaces(), HasSubstr("\"layout\":\"floating\""));
    command({"ws-layout", "1", "tiling"});
    EXPECT_THAT(workspaces(), HasSubstr("\"layout\":\"tiling\""));
    EXPECT_THAT(workspaces(), HasSubstr("\"tile_mode\":\"master\""));
    command({"ws-tile-mode", "1", "columns"});
    EXPECT_THAT(workspaces(), HasSubstr("\"tile_mode\":\"columns\""));
}

TEST_F(window_commands, focus_float_move_minimize_and_close_windows)
{
    EXPECT_THAT(of_window("second"), HasSubstr("\"focused\":true"));
    command({"focus", id_of("first")});
    EXPECT_THAT(of_window("first"), HasSubstr("\"focused\":true"));
    command({"ws-layout", "1", "tiling"});
    EXPECT_THAT(of_window("first"), HasSubstr("\"floating\":false"));
    command({"float", "app:first"});
    EXPECT_THAT(of_window("first"), HasSubstr("\"floating\":true"));
    EXPECT_THAT(of_window("second"), HasSubstr("\"ws\":1,"));
    command({"move", "app:second", "4"});
    EXPECT_THAT(of_window("second"), HasSubstr("\"ws\":4,"));
    EXPECT_THAT(of_window("first"), HasSubstr("\"minimized\":false"));
    command({"minimize", id_of("first")});
    EXPECT_THAT(of_window("first"), HasSubstr("\"minimized\":true"));
    command({"close", "app:first"});
    expect_soon([&] { return of_window("first").empty(); });
}

TEST_F(window_commands, move_workspaces_to_outputs)
{
    command({"virtual-output", "640x480"});
    expect_soon([&] { return output_of({"outputs"}).contains("640"); });
    const std::string outputs = output_of({"outputs"});
    EXPECT_THAT(outputs, HasSubstr("HEADLESS-2"));
    command({"workspace", "3"});
    command({"move-workspace-to-output", "3", "HEADLESS-2"});
    EXPECT_THAT(workspaces(), testing::ContainsRegex("\"num\":3,[^}]*HEADLESS-2"));
    command({"virtual-output", "off"});
    expect_soon([&] { return !output_of({"outputs"}).contains("HEADLESS-2"); });
}

} // namespace
