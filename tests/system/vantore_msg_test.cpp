// vantore-msg against the real compositor, as people and scripts use it.

#include "support/real_session.hpp"

#include <csignal>
#include <sys/stat.h>

using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

struct message_tool : test::real_session {
};

TEST_F(message_tool, prints_json_into_a_pipe)
{
    EXPECT_EQ(output_of({"windows"}), "[]\n");
    EXPECT_THAT(output_of({"workspaces"}), StartsWith("[{\"num\":1,\"name\":\"1\",\"focused\":true,"));
    EXPECT_THAT(output_of({"outputs"}), HasSubstr("\"name\":\"HEADLESS-1\""));
}

TEST_F(message_tool, tells_events_until_it_is_interrupted)
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
    test::process tool{{VANTORE_MSG_BINARY, "windows"}, world.environment};
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_EQ(tool.output(), "vantore-msg: VANTORESOCK is not set: is this a terminal of the session?\n");
}

TEST(message_tool_alone, says_that_nobody_answers)
{
    test::private_world world;
    world.environment["VANTORESOCK"] = world.directory() / "nobody.sock";
    test::process tool{{VANTORE_MSG_BINARY, "windows"}, world.environment};
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_THAT(tool.output(), HasSubstr("can't reach the compositor at "));
}
