// vantore-msg records windows of the real compositor, and buffers that a test makes up.

#include "ipc/protocol.hpp"
#include "support/made_up_compositor.hpp"
#include "support/memory_file.hpp"
#include "support/places.hpp"
#include "support/real_session.hpp"

#include <array>
#include <csignal>
#include <format>
#include <fstream>

using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace
{

std::vector<std::string> names_in(const fs::path &folder)
{
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator{folder})
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

// A terminal that goes on drawing.
struct recording : test::real_session {
    recording()
    {
        EXPECT_TRUE(test::eventually([&] { return output_of({"windows"}).contains("busy"); }))
            << terminal.output();
        const std::string list = output_of({"windows"});
        const size_t at = list.find("\"id\":") + 5;
        id = list.substr(at, list.find(',', at) - at);
    }
    ~recording() override
    {
        terminal.send(SIGTERM);
        (void)terminal.wait();
    }
    bool has_pictures() const { return fs::exists(folder / "000002.png"); }

    fs::path folder = world.directory() / "pictures";
    std::string id;
    test::process terminal =
        run({"foot", "--app-id", "busy", "sh", "-c", "while :; do date +%N; sleep 0.02; done"});
};

TEST_F(recording, writes_as_many_pictures_as_wanted)
{
    EXPECT_THAT(output_of({"record", "--frames", "3", id, folder}),
                ContainsRegex("^3 pictures, [0-9.]+ a second, [0-9]+ missed\n$"));
    EXPECT_THAT(names_in(folder), ElementsAre("000001.png", "000002.png", "000003.png"));
    const fs::path snapshot = world.directory() / "snapshot.png";
    (void)output_of({"capture", "window", id, snapshot});
    const test::image first = test::image::load(folder / "000001.png"),
                      last = test::image::load(folder / "000003.png"), same = test::image::load(snapshot);
    EXPECT_EQ(first.width, same.width);
    EXPECT_EQ(first.height, same.height);
    const int right = first.width - 1, bottom = first.height - 1;
    EXPECT_EQ(first.at(right, bottom), same.at(right, bottom)) << "the terminal's background";
    EXPECT_GT(test::compare(first, last, 0).pixels, 0U) << "the terminal's text, which moves";
}

TEST_F(recording, ends_when_the_window_closes)
{
    test::process tool = message({"record", id, folder});
    EXPECT_TRUE(test::eventually([&] { return has_pictures(); })) << tool.output();
    (void)output_of({"command", "close", "id:" + id});
    EXPECT_THAT(tool.wait(), Optional(0));
    EXPECT_THAT(tool.output(), HasSubstr(" pictures, "));
}

TEST_F(recording, ends_in_order_when_it_is_interrupted)
{
    test::process tool = message({"record", id, folder});
    EXPECT_TRUE(test::eventually([&] { return has_pictures(); })) << tool.output();
    tool.send(SIGINT);
    EXPECT_THAT(tool.wait(), Optional(0));
    EXPECT_THAT(tool.output(), HasSubstr(" pictures, "));
    for (const std::string &name : names_in(folder))
        EXPECT_GT(test::image::load(folder / name).width, 0) << name;
}

TEST_F(recording, of_an_unknown_window_leaves_no_folder)
{
    test::process tool = message({"record", "4711", folder});
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_EQ(tool.output(), "vantore-msg: the compositor can't record that window\n");
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(recording, describes_the_buffer_of_a_single_picture)
{
    EXPECT_THAT(output_of({"capture", "--dmabuf", id}),
                ContainsRegex("^\\{\"ok\":true,\"w\":[0-9]+,.*\"planes\":1,.*\\]\\}\n$"));
}

TEST_F(recording, describes_no_picture_of_an_unknown_window)
{
    test::process tool = message({"capture", "--dmabuf", "4711"});
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_EQ(tool.output(), "vantore-msg: the compositor could not capture that\n");
}

// A compositor that the test plays, with buffers of two by two pixels whose rows lie 16 bytes apart.
struct made_up_recording : testing::Test {
    made_up_recording()
    {
        world.environment["VANTORESOCK"] = socket;
        buffer = test::memory_file<uint32_t>(10, [](uint32_t *pixels) {
            std::fill_n(pixels, 10, 0x00ffffffU);
            pixels[2] = 0x00cc3311; // the first two words are not part of the picture
            pixels[3] = 0x1133cc22;
            pixels[6] = 0;
            pixels[7] = 0xffffffff;
        });
    }
    ~made_up_recording() override { close(buffer); }

    test::process start(std::vector<std::string> words)
    {
        words.insert(words.begin(), {test::vantore_msg_binary, "record"});
        words.insert(words.end(), {"7", folder});
        return {words, world.environment};
    }
    void accept(std::string_view request = "7 60")
    {
        EXPECT_EQ(compositor.hear(), (test::ipc_request{VNT_MSG_CAPTURE_SUBSCRIBE, std::string{request}}));
        compositor.say(test::ipc_frame_of(VNT_MSG_CAPTURE_SUBSCRIBE, R"({"ok":true})"));
    }
    void push(std::string_view description) const
    {
        compositor.say(test::ipc_frame_of(VNT_MSG_CAPTURE_FRAME, description), buffer);
    }
    void push(int number, int ms) const
    {
        push(std::format(R"({{"ok":true,"w":2,"h":2,"format":875713112,"modifier":0,"planes":1,)"
                         R"("t_ns":{},"seq":{},"offset":[8],"stride":[16]}})",
                         int64_t{ms} * 1'000'000, number));
    }
    void say_gone() const { compositor.say(test::ipc_frame_of(VNT_MSG_CAPTURE_FRAME, R"({"gone":true})")); }
    [[nodiscard]] bool wrote(const char *name) const
    {
        return test::eventually([&] { return fs::exists(folder / name); });
    }

    test::private_world world;
    fs::path socket = world.directory() / "run/ipc.sock", folder = world.directory() / "pictures";
    test::made_up_compositor compositor{socket};
    int buffer = -1;
};

TEST_F(made_up_recording, counts_what_it_missed_and_how_fast_the_pictures_came)
{
    test::process tool = start({"--fps", "24"});
    accept("7 24");
    push(4, 1000);
    EXPECT_TRUE(wrote("000001.png"));
    push(7, 1100);
    EXPECT_TRUE(wrote("000002.png"));
    say_gone();
    EXPECT_THAT(tool.wait(), Optional(0));
    EXPECT_EQ(tool.output(), "2 pictures, 10.0 a second, 2 missed\n");
}

TEST_F(made_up_recording, writes_the_pixels)
{
    test::process tool = start({});
    accept();
    push(0, 0);
    say_gone();
    EXPECT_THAT(tool.wait(), Optional(0));
    EXPECT_EQ(tool.output(), "1 picture, 0.0 a second, 0 missed\n");
    EXPECT_THAT(test::image::load(folder / "000001.png").argb,
                ElementsAre(0xffcc3311, 0xff33cc22, 0xff000000, 0xffffffff));
}

TEST_F(made_up_recording, writes_bytes_without_a_header)
{
    test::process tool = start({"--raw", "--frames", "1"});
    accept();
    push(0, 0);
    EXPECT_THAT(tool.wait(), Optional(0));
    std::ifstream file{folder / "000001-2x2.rgba", std::ios::binary};
    const std::string bytes{std::istreambuf_iterator<char>{file}, {}};
    EXPECT_EQ(bytes, (std::string{"\xcc\x33\x11\xff\x33\xcc\x22\xff\0\0\0\xff\xff\xff\xff\xff", 16}));
}

TEST_F(made_up_recording, passes_over_pictures_that_are_out_of_date)
{
    test::process tool = start({});
    accept();
    push(0, 0);
    EXPECT_TRUE(wrote("000001.png"));
    tool.send(SIGSTOP);
    for (int number = 1; number < 5; number++)
        push(number, 10 * number);
    say_gone();
    tool.send(SIGCONT);
    EXPECT_THAT(tool.wait(), Optional(0));
    EXPECT_EQ(tool.output(), "2 pictures, 25.0 a second, 3 missed\n");
}

TEST_F(made_up_recording, ends_in_order_without_a_picture)
{
    test::process tool = start({});
    accept();
    EXPECT_TRUE(test::eventually([&] { return fs::exists(folder); }));
    tool.send(SIGTERM);
    EXPECT_THAT(tool.wait(), Optional(0));
    EXPECT_EQ(tool.output(), "0 pictures, 0.0 a second, 0 missed\n");
    EXPECT_THAT(names_in(folder), IsEmpty());
}

TEST_F(made_up_recording, ends_when_it_is_interrupted_although_more_pictures_wait)
{
    static constexpr size_t side = 2048; // so large that writing the picture takes a while
    static constexpr std::string_view large =
        R"({"ok":true,"w":2048,"h":2048,"format":875713112,"modifier":0,"planes":1,"t_ns":0,"seq":0,)"
        R"("offset":[0],"stride":[8192]})";
    close(buffer);
    buffer = test::memory_file<uint32_t>(side * side, [](uint32_t *) {});
    test::process tool = start({});
    accept();
    push(large);
    EXPECT_TRUE(test::eventually([&] { return fs::exists(folder) && !names_in(folder).empty(); }));
    tool.send(SIGSTOP);
    push(large);
    tool.send(SIGINT);
    tool.send(SIGCONT);
    EXPECT_THAT(tool.wait(), Optional(0));
    EXPECT_EQ(tool.output(), "1 picture, 0.0 a second, 0 missed\n");
}

TEST_F(made_up_recording, ends_with_1_when_the_compositor_goes)
{
    test::process tool = start({});
    accept();
    push(0, 0);
    EXPECT_TRUE(wrote("000001.png"));
    compositor.hang_up();
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_EQ(tool.output(), "vantore-msg: the compositor has closed the connection\n");
}

TEST_F(made_up_recording, says_where_it_can_not_write)
{
    std::ofstream{folder} << "a file";
    test::process tool = start({});
    accept();
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_THAT(tool.output(), StartsWith("vantore-msg: can't make the folder " + folder.string() + ": "));
}

struct unreadable {
    const char *name;
    std::string description;
    std::string error;
};

class unreadable_buffers : public made_up_recording, public testing::WithParamInterface<unreadable>
{
};

TEST_P(unreadable_buffers, are_explained)
{
    test::process tool = start({});
    accept();
    push(GetParam().description);
    EXPECT_THAT(tool.wait(), Optional(1));
    EXPECT_EQ(tool.output(), "vantore-msg: " + GetParam().error + "\n");
    EXPECT_THAT(names_in(folder), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    all, unreadable_buffers,
    testing::Values(
        unreadable{"tiled",
                   R"({"ok":true,"w":2,"h":2,"format":875713112,"modifier":72057594037927937,"planes":1,)"
                   R"("offset":[0],"stride":[16]})",
                   "the buffer's pixels are not in rows, and only the GPU can read them"},
        unreadable{"two_planes",
                   R"({"ok":true,"w":2,"h":2,"format":875713112,"modifier":0,"planes":2,)"
                   R"("offset":[0,0],"stride":[16,16]})",
                   "the buffer's pixels are not in rows, and only the GPU can read them"},
        unreadable{"unknown_format",
                   R"({"ok":true,"w":2,"h":2,"format":909203022,"modifier":0,"planes":1,)"
                   R"("offset":[0],"stride":[16]})",
                   "the buffer's pixels are in a format that this program does not know"},
        unreadable{"too_small",
                   R"({"ok":true,"w":2,"h":3,"format":875713112,"modifier":0,"planes":1,)"
                   R"("offset":[0],"stride":[16]})",
                   "the answer does not describe a picture"},
        unreadable{"without_offset",
                   R"({"ok":true,"w":2,"h":2,"format":875713112,"modifier":0,"planes":1,"stride":[16]})",
                   "the answer does not describe a picture"},
        unreadable{"damaged", R"({"ok":)", "the compositor could not capture that"}),
    [](const auto &about) { return about.param.name; });

} // namespace
