// vantore-msg receives answers that are whole, late, damaged or missing, from a compositor that the test
// plays.

#include "ipc/protocol.hpp"
#include "support/made_up_compositor.hpp"
#include "support/memory_file.hpp"
#include "support/picture.hpp"
#include "support/places.hpp"
#include "support/process.hpp"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <format>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::Values;

namespace fs = std::filesystem;

namespace
{

const char *const success = R"({"success":true})";

struct vantore_msg : testing::Test {
    vantore_msg() { world.environment["VANTORESOCK"] = socket; }

    [[nodiscard]] test::process start(std::vector<std::string> words) const
    {
        words.insert(words.begin(), test::vantore_msg_binary);
        return {words, world.environment};
    }

    // Runs a line of shell, in which $msg is the program and . is a directory of the test.
    [[nodiscard]] test::process shell(const std::string &line) const
    {
        test::variables with_program = world.environment;
        with_program["msg"] = test::vantore_msg_binary;
        return {{"sh", "-c", "cd '" + directory.string() + "' && " + line}, with_program};
    }

    void answer(std::string_view payload, int fd = -1)
    {
        const test::ipc_request request = compositor.hear();
        compositor.say(test::ipc_frame_of(request.type, payload), fd);
    }

    static std::vector<std::string> names_in(const fs::path &folder)
    {
        std::vector<std::string> names;
        for (const auto &entry : fs::directory_iterator{folder})
            names.push_back(entry.path().filename());
        return names;
    }

    test::private_world world;
    fs::path directory = world.directory() / "home";
    fs::path socket = world.directory() / "run/ipc.sock";
    test::made_up_compositor compositor{socket};
};

TEST_F(vantore_msg, sends_a_command_and_is_silent_about_success)
{
    test::process msg = start({"command", "workspace", "3"});
    EXPECT_EQ(compositor.hear(), (test::ipc_request{VNT_MSG_COMMAND, "workspace 3"}));
    compositor.say(test::ipc_frame_of(VNT_MSG_COMMAND, success));
    EXPECT_THAT(msg.wait(), Optional(0));
    EXPECT_EQ(msg.output(), "");
}

TEST_F(vantore_msg, reports_a_refused_command)
{
    test::process msg = start({"command", "fly"});
    answer(R"({"success":false,"error":"no wings"})");
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_EQ(msg.output(), "vantore-msg: the compositor refused the command\n");
}

TEST_F(vantore_msg, passes_a_listing_on_byte_for_byte_into_a_pipe)
{
    const std::string reply = "[{\"title\":\"\xff\xc2\x9b \"}]";
    test::process msg = start({"windows"});
    EXPECT_EQ(compositor.hear(), (test::ipc_request{VNT_MSG_GET_WINDOWS, ""}));
    compositor.say(test::ipc_frame_of(VNT_MSG_GET_WINDOWS, reply));
    EXPECT_THAT(msg.wait(), Optional(0));
    EXPECT_EQ(msg.output(), reply + "\n");
}

TEST_F(vantore_msg, takes_a_reply_that_comes_byte_by_byte)
{
    test::process msg = start({"outputs"});
    (void)compositor.hear();
    for (const char byte : test::ipc_frame_of(VNT_MSG_GET_OUTPUTS, "[]"))
        compositor.say({&byte, 1});
    EXPECT_THAT(msg.wait(), Optional(0));
    EXPECT_EQ(msg.output(), "[]\n");
}

TEST_F(vantore_msg, takes_a_reply_of_megabytes)
{
    const std::string reply = "\"" + std::string(size_t{3} << 20, 'x') + "\"";
    const std::string bytes = test::ipc_frame_of(VNT_MSG_GET_WINDOWS, reply);
    test::process msg = shell("\"$msg\" windows > listing");
    (void)compositor.hear();
    compositor.say(bytes);
    EXPECT_THAT(msg.wait(), Optional(0));
    EXPECT_EQ(fs::file_size(directory / "listing"), reply.size() + 1);
}

// The master end of a terminal that a child writes to.
class terminal
{
public:
    explicit terminal(unsigned short columns) : fd(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK))
    {
        grantpt(fd);
        unlockpt(fd);
        const winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        ioctl(fd, TIOCSWINSZ, &size);
        slave = open(name().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC); // keeps what the child wrote
    }
    ~terminal()
    {
        close(slave);
        close(fd);
    }
    terminal(const terminal &) = delete;
    terminal &operator=(const terminal &) = delete;

    [[nodiscard]] std::string name() const { return ptsname(fd); }
    // Returns what the child wrote. The child must have ended.
    [[nodiscard]] std::string text() const
    {
        std::string text;
        std::array<char, 4096> piece{};
        for (ssize_t n = 0; (n = read(fd, piece.data(), piece.size())) > 0;)
            text.append(piece.data(), size_t(n));
        std::erase(text, '\r');
        return text;
    }

private:
    int fd, slave = -1;
};

const char *const two_workspaces =
    R"([{"num":1,"name":"one\u001b[31m","focused":true,"layout":"floating","window_count":2,"output":"A"},)"
    R"({"num":2,"name":"two","focused":false,"layout":"floating","window_count":0,"output":""}])";

TEST_F(vantore_msg, shows_a_listing_as_a_harmless_table_on_a_terminal)
{
    const terminal screen{80};
    test::process msg = shell("\"$msg\" workspaces > " + screen.name());
    answer(two_workspaces);
    EXPECT_THAT(msg.wait(), Optional(0));
    EXPECT_EQ(screen.text(), "NUM  NAME      OUTPUT  LAYOUT    WINDOWS  STATE\n"
                             "1    one�[31m  A       floating  2        focused\n"
                             "2    two       -       floating  0        -\n");
}

TEST_F(vantore_msg, cuts_a_table_at_the_edge_of_the_terminal)
{
    const terminal screen{12};
    test::process msg = shell("\"$msg\" workspaces > " + screen.name());
    answer(two_workspaces);
    EXPECT_THAT(msg.wait(), Optional(0));
    EXPECT_EQ(screen.text(), "NUM  NAME  …\n"
                             "1    one�[3…\n"
                             "2    two   …\n");
}

TEST_F(vantore_msg, shows_no_table_of_a_damaged_listing)
{
    const terminal screen{80};
    test::process msg = shell("\"$msg\" workspaces > " + screen.name());
    answer(R"([{"num":1,)");
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_EQ(screen.text(), "");
    EXPECT_EQ(msg.output(), "vantore-msg: the answer is no list\n");
}

TEST_F(vantore_msg, writes_a_line_for_each_event_at_once)
{
    test::process msg = start({"subscribe"});
    EXPECT_EQ(compositor.hear(), (test::ipc_request{VNT_MSG_SUBSCRIBE, ""}));
    const std::string first = test::ipc_frame_of(VNT_EVT_WINDOWS | ipc_event_bit, "");
    compositor.say(test::ipc_frame_of(VNT_MSG_SUBSCRIBE, success) + first);
    EXPECT_TRUE(msg.says("windows\n"));
    for (uint32_t code = VNT_EVT_WORKSPACES; code <= VNT_EVT_CLIPBOARD + 1; code++)
        compositor.say(test::ipc_frame_of(code | ipc_event_bit, ""));
    EXPECT_TRUE(msg.says("unknown\n"));
    EXPECT_EQ(msg.output(),
              "windows\n"
              "workspaces\nwindows\noutputs\nlauncher\nreloaded\nvolume\nbrightness\nshortcuts\n"
              "fullscreen-on\nfullscreen-off\nclipboard\nunknown\n");
}

TEST_F(vantore_msg, ends_a_subscription_in_order_when_it_is_interrupted)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        test::process msg = start({"subscribe"});
        (void)compositor.hear();
        compositor.say(test::ipc_frame_of(VNT_MSG_SUBSCRIBE, success) +
                       test::ipc_frame_of(VNT_EVT_OUTPUTS | ipc_event_bit, ""));
        EXPECT_TRUE(msg.says("outputs\n"));
        msg.send(signal);
        EXPECT_THAT(msg.wait(), Optional(0));
        EXPECT_EQ(msg.output(), "outputs\n");
    }
}

TEST_F(vantore_msg, ends_a_subscription_with_1_when_the_compositor_goes)
{
    test::process msg = start({"subscribe"});
    answer(success);
    compositor.hang_up();
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_EQ(msg.output(), "vantore-msg: the compositor has closed the connection\n");
}

TEST_F(vantore_msg, ends_a_subscription_when_nobody_reads_the_lines_any_more)
{
    test::process msg = shell("\"$msg\" subscribe | head -n 1");
    (void)compositor.hear();
    compositor.say(test::ipc_frame_of(VNT_MSG_SUBSCRIBE, success) +
                   test::ipc_frame_of(VNT_EVT_WINDOWS | ipc_event_bit, ""));
    EXPECT_THAT(msg.wait(), Optional(0)); // the shell waits for both programs
    EXPECT_EQ(msg.output(), "windows\n");
}

TEST_F(vantore_msg, reports_a_refused_subscription)
{
    test::process msg = start({"subscribe"});
    answer(R"({"success":false})");
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_EQ(msg.output(), "vantore-msg: the compositor gives no events\n");
}

// Opaque red, half transparent green (premultiplied), a transparent pixel with colour left over, and a pixel
// with more colour than alpha.
constexpr std::array<uint32_t, 4> captured{0xff0000ff, 0x80008000, 0x00ffffff, 0x404040ff};
constexpr std::array<uint32_t, 4> straight{0xffff0000, 0x8000ff00, 0x00000000, 0x40ffffff};
const char *const two_by_two = R"({"ok":true,"kind":"shm","w":2,"h":2,"stride":8})";

struct capture : vantore_msg {
    capture()
    {
        file = test::memory_file<uint32_t>(captured.size(),
                                           [](uint32_t *pixels) { std::ranges::copy(captured, pixels); });
    }
    ~capture() override { close(file); }

    int file = -1;
};

TEST_F(capture, writes_a_picture_with_straight_alpha)
{
    test::process msg = shell("\"$msg\" capture --max 320 window 12 w.png");
    EXPECT_EQ(compositor.hear(), (test::ipc_request{VNT_MSG_CAPTURE, "window 12 320"}));
    compositor.say(test::ipc_frame_of(VNT_MSG_CAPTURE, two_by_two), file);
    EXPECT_THAT(msg.wait(), Optional(0));
    EXPECT_EQ(msg.output(), "");
    const test::image picture = test::image::load(directory / "w.png");
    EXPECT_EQ(picture.width, 2);
    EXPECT_EQ(picture.height, 2);
    EXPECT_THAT(picture.argb, testing::ElementsAreArray(straight));
    EXPECT_THAT(names_in(directory), ElementsAre("w.png"));
}

TEST_F(capture, writes_the_same_picture_to_stdout)
{
    test::process msg = shell("\"$msg\" capture all - > piped.png");
    answer(two_by_two, file);
    EXPECT_THAT(msg.wait(), Optional(0));
    EXPECT_THAT(test::image::load(directory / "piped.png").argb, testing::ElementsAreArray(straight));
}

TEST_F(capture, replaces_a_file_through_a_link_and_gives_it_the_usual_mode)
{
    std::ofstream{directory / "old.png"} << "old";
    fs::permissions(directory / "old.png", fs::perms::owner_all);
    fs::create_symlink("old.png", directory / "link.png");
    test::process msg = shell("umask 027; \"$msg\" capture all link.png");
    answer(two_by_two, file);
    EXPECT_THAT(msg.wait(), Optional(0));
    EXPECT_TRUE(fs::is_symlink(directory / "link.png"));
    EXPECT_THAT(test::image::load(directory / "old.png").argb, testing::ElementsAreArray(straight));
    EXPECT_EQ(fs::status(directory / "old.png").permissions(), fs::perms{0640});
}

TEST_F(capture, puts_no_file_in_the_place_of_something_else)
{
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    fs::create_directory(directory / "folder");
    for (const char *name : {"pipe", "folder"}) {
        test::process msg = shell(std::format("\"$msg\" capture all {}", name));
        answer(two_by_two, file);
        EXPECT_THAT(msg.wait(), Optional(1));
        EXPECT_EQ(msg.output(), std::format("vantore-msg: {} is no regular file\n", name));
    }
    EXPECT_TRUE(fs::is_fifo(directory / "pipe"));
    EXPECT_THAT(names_in(directory / "folder"), IsEmpty());
}

TEST_F(capture, leaves_the_old_file_and_nothing_else_when_there_is_no_room)
{
    std::ofstream{directory / "old.png"} << "old";
    test::process msg = shell("trap '' XFSZ; ulimit -f 0; \"$msg\" capture all old.png");
    answer(two_by_two, file);
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_THAT(msg.output(), HasSubstr("vantore-msg: can't write the picture"));
    EXPECT_EQ(fs::file_size(directory / "old.png"), 3U);
    EXPECT_THAT(names_in(directory), ElementsAre("old.png"));
}

class capture_reply : public capture, public testing::WithParamInterface<const char *>
{
};

TEST_P(capture_reply, that_makes_no_picture_leaves_no_file)
{
    test::process msg = shell("\"$msg\" capture all f.png");
    answer(GetParam(), file);
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_THAT(msg.output(), AnyOf("vantore-msg: the compositor could not capture that\n",
                                    "vantore-msg: the answer does not describe a picture\n"));
    EXPECT_THAT(names_in(directory), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(broken, capture_reply,
                         Values(R"({"ok":false})", R"({"success":false,"error":"unknown message type"})", "",
                                R"({"ok":true)", R"({"ok":true})",
                                R"({"ok":true,"kind":"shm","w":0,"h":2,"stride":0})",
                                R"({"ok":true,"kind":"shm","w":-2,"h":2,"stride":-8})",
                                R"({"ok":true,"kind":"shm","w":1e300,"h":2,"stride":8})",
                                R"({"ok":true,"kind":"shm","w":32769,"h":1,"stride":131076})",
                                R"({"ok":true,"kind":"shm","w":2,"h":2,"stride":4})",
                                R"({"ok":true,"kind":"shm","w":2,"h":3,"stride":8})",
                                R"({"ok":true,"kind":"shm","w":32768,"h":32768,"stride":131072})"));

TEST_F(capture, reports_a_picture_that_did_not_come)
{
    test::process msg = shell("\"$msg\" capture all f.png");
    answer(two_by_two);
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_EQ(msg.output(), "vantore-msg: the answer does not describe a picture\n");
    EXPECT_THAT(names_in(directory), IsEmpty());
}

TEST_F(capture, reports_a_descriptor_that_is_no_file)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    test::process msg = shell("\"$msg\" capture all f.png");
    answer(two_by_two, ends[0]);
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_EQ(msg.output(), "vantore-msg: the answer does not describe a picture\n");
    close(ends[0]);
    close(ends[1]);
}

struct broken_stream {
    std::string bytes;
    const char *complaint;
};

class stream : public vantore_msg, public testing::WithParamInterface<broken_stream>
{
};

TEST_P(stream, that_breaks_is_reported)
{
    test::process msg = start({"windows"});
    (void)compositor.hear();
    compositor.say(GetParam().bytes);
    compositor.hang_up();
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_EQ(msg.output(), std::format("vantore-msg: {}\n", GetParam().complaint));
}

std::string whole()
{
    return test::ipc_frame_of(VNT_MSG_GET_WINDOWS, "[]");
}

INSTANTIATE_TEST_SUITE_P(
    worked, stream,
    Values(broken_stream{"", "the compositor has closed the connection"},
           broken_stream{whole().substr(0, 13), "the compositor has closed the connection"},
           broken_stream{whole().substr(0, 14), "the compositor has closed the connection"},
           broken_stream{whole().substr(0, 15), "the compositor has closed the connection"},
           broken_stream{"i4" + whole().substr(2), "the answer is no frame of the compositor's protocol"},
           broken_stream{whole().substr(0, 6) + "\xff\xff\xff\xff" + whole().substr(10),
                         "the answer is no frame of the compositor's protocol"},
           broken_stream{test::ipc_frame_of(VNT_MSG_GET_OUTPUTS, "[]"),
                         "the answer belongs to another question"}));

TEST_F(vantore_msg, refuses_a_path_that_no_socket_can_have)
{
    world.environment["VANTORESOCK"] = std::string(108, 'x');
    test::process msg = start({"windows"});
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_EQ(msg.output(), "vantore-msg: the socket's path is too long: " + std::string(108, 'x') + "\n");
}

TEST_F(vantore_msg, ends_wrong_usage_with_2_and_leads_to_the_help)
{
    test::process msg = start({"fly\x1b[31m"});
    EXPECT_THAT(msg.wait(), Optional(2));
    EXPECT_EQ(msg.output(), "vantore-msg: there is no command 'fly�[31m'; see vantore-msg --help\n");
}

TEST_F(vantore_msg, notices_that_nothing_can_be_written)
{
    test::process msg = shell("\"$msg\" windows > /dev/full");
    answer("[]");
    EXPECT_THAT(msg.wait(), Optional(1));
    EXPECT_EQ(msg.output(), "vantore-msg: can't write the output\n");
}

} // namespace
