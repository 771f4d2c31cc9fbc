// The real binary: how it ends, its signals, and real programs in it.

#include "support/files.hpp"
#include "support/picture.hpp"
#include "support/process.hpp"
#include "support/remote_user.hpp"
#include "support/sockets.hpp"

#include <csignal>
#include <format>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <sstream>
#include <sys/resource.h>
#include <unistd.h>

using test::contents;
using test::eventually;
using testing::HasSubstr;
using testing::Optional;

namespace
{

struct session : testing::Test {
    // Returns the last line of the log without its time stamp, level and source position.
    static std::string last_message(const std::string &log)
    {
        const size_t line = log.rfind('\n', log.size() - 2) + 1;
        const size_t place = log.find("] ", log.find("] ", line) + 2) + 2;
        return log.substr(place, log.size() - place - 1);
    }

    [[nodiscard]] test::process start() const { return {test::compositor(), world.environment}; }

    // Starts a program as a client of the session.
    [[nodiscard]] test::process client(const std::vector<std::string> &command) const
    {
        test::variables with_display = world.environment;
        with_display["WAYLAND_DISPLAY"] = "wayland-0";
        return {command, with_display};
    }

    [[nodiscard]] std::filesystem::path wayland_socket() const { return world.directory() / "run/wayland-0"; }

    test::private_world world;
};

const char *const running = "vantore-comp M4c running — WAYLAND_DISPLAY=wayland-0 ";
const char *const torn_down = "vantore-comp: clean shutdown — tearing down\n";

TEST_F(session, ends_with_1_when_there_is_no_backend)
{
    world.environment["WLR_BACKENDS"] = "nonsense";
    test::process compositor = start();
    EXPECT_THAT(compositor.wait(), Optional(1));
    EXPECT_EQ(last_message(compositor.output()), "vantore-comp: backend failed");
}

// Returns the dynamic linker's message about how it resolved a call of the binary, or "none".
std::string binding_of(const std::string &all, const std::string &call)
{
    std::istringstream lines{all};
    for (std::string line; std::getline(lines, line);)
        if (line.contains("vantore-comp [0] to ") && line.ends_with(" `" + call + "'"))
            return line;
    return "none";
}

// Two libraries define these functions.
TEST_F(session, takes_the_scene_from_the_library_with_effects)
{
    world.environment["WLR_BACKENDS"] = "nonsense"; // the session ends right after the dynamic linking
    world.environment["LD_DEBUG"] = "bindings";
    world.environment["LD_DEBUG_OUTPUT"] = world.directory() / "bindings";
    test::process compositor = start();
    ASSERT_THAT(compositor.wait(), Optional(1));
    const std::string all = contents(world.directory() / std::format("bindings.{}", compositor.pid()));
    for (const char *call : {"wlr_scene_create", "wlr_scene_tree_create", "wlr_scene_rect_create",
                             "wlr_scene_buffer_create", "wlr_scene_output_create"})
        EXPECT_THAT(binding_of(all, call), HasSubstr("libscenefx"));
}

TEST_F(session, ends_with_1_and_advice_when_there_is_no_renderer)
{
    world.environment.erase("WLR_RENDERER_ALLOW_SOFTWARE");
    world.environment.erase("WLR_RENDERER_FORCE_SOFTWARE");
    world.environment["WLR_RENDER_DRM_DEVICE"] = "/dev/null"; // so that a real GPU is not used
    test::process compositor = start();
    EXPECT_THAT(compositor.wait(), Optional(1));
    EXPECT_EQ(last_message(compositor.output()),
              "vantore-comp: could not create a GPU renderer — the display device has no render node (e.g. "
              "QEMU -vga std / bochs-drm). Set VANTORE_ALLOW_SOFTWARE=1 to run on software GL (llvmpipe), or "
              "use a render-capable GPU (virtio-gpu+virgl in a VM). Exiting cleanly.");
}

TEST_F(session, ends_with_1_when_there_is_no_place_for_its_socket)
{
    world.environment.erase("XDG_RUNTIME_DIR");
    test::process compositor = start();
    EXPECT_THAT(compositor.wait(), Optional(1));
    EXPECT_EQ(last_message(compositor.output()), "vantore-comp: no socket");
}

TEST_F(session, ends_with_1_when_the_backend_does_not_start)
{
    world.environment["VANTORE_TEST_REFUSE"] = "start";
    test::process compositor = start();
    EXPECT_THAT(compositor.wait(), Optional(1));
    EXPECT_EQ(last_message(compositor.output()), "vantore-comp: backend start failed");
}

TEST_F(session, ends_with_1_and_says_what_is_missing_when_buffers_can_not_be_allocated)
{
    world.environment["VANTORE_TEST_REFUSE"] = "allocator";
    test::process compositor = start();
    EXPECT_THAT(compositor.wait(), Optional(1));
    EXPECT_EQ(last_message(compositor.output()),
              "vantore-comp: could not create the buffer allocator; the session can't start");
    EXPECT_FALSE(std::filesystem::exists(world.directory() / "run/wayland-0"));
}

TEST_F(session, goes_on_without_virtual_outputs_on_a_backend_that_takes_no_others)
{
    world.environment["VANTORE_TEST_REFUSE"] = "multi";
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    EXPECT_THAT(compositor.output(),
                HasSubstr("vantore-comp: no multi-backend — virtual outputs unavailable\n"));
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0));
}

TEST_F(session, goes_on_without_an_x_server_and_keeps_the_display_that_it_inherited)
{
    world.environment["VANTORE_TEST_REFUSE"] = "xwayland";
    const auto display = world.directory() / "display";
    std::ofstream{world.directory() / "config/vantore/autostart.conf"} << "echo \"$DISPLAY\" > " << display;
    world.environment["DISPLAY"] = ":77";
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    EXPECT_THAT(compositor.output(), HasSubstr("failed to start XWayland (X11 apps unavailable)\n"));
    EXPECT_TRUE(eventually([&] { return contents(display) == ":77\n"; })) << contents(display);
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0));
}

class ended_by : public session, public testing::WithParamInterface<int>
{
};

TEST_P(ended_by, a_signal_in_order)
{
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running)) << compositor.output();
    compositor.send(GetParam());
    EXPECT_THAT(compositor.wait(), Optional(0)) << compositor.output();
    EXPECT_THAT(compositor.output(), HasSubstr(torn_down));
    EXPECT_FALSE(std::filesystem::exists(world.directory() / "run/wayland-0"));
}

INSTANTIATE_TEST_SUITE_P(all, ended_by, testing::Values(SIGINT, SIGTERM));

TEST_F(session, ends_on_a_signal_at_any_moment_of_its_start)
{
    for (const char *moment : {"Creating headless backend", "Shaders Initialized",
                               "Starting headless backend", "output HEADLESS-1 online"}) {
        test::process compositor = start();
        ASSERT_TRUE(compositor.says(moment)) << compositor.output();
        compositor.send(SIGTERM);
        EXPECT_THAT(compositor.wait(), Optional(0)) << moment << '\n' << compositor.output();
    }
}

TEST_F(session, may_open_as_many_descriptors_as_the_machine_allows)
{
    std::vector<std::string> command{"/bin/sh", "-c", "ulimit -Sn 256 && exec \"$@\"", "sh"};
    command.append_range(test::compositor());
    test::process compositor{command, world.environment};
    ASSERT_TRUE(compositor.says("IPC listening"));
    rlimit limit{};
    ASSERT_EQ(prlimit(compositor.pid(), RLIMIT_NOFILE, nullptr, &limit), 0);
    EXPECT_GT(limit.rlim_cur, 256U);
    EXPECT_EQ(limit.rlim_cur, limit.rlim_max);
}

TEST_F(session, ignores_broken_pipes)
{
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    compositor.send(SIGPIPE);
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0));
}

// Each client connects, sends the first bytes of a request and leaves.
TEST_F(session, survives_clients_that_vanish_in_the_middle_of_a_request)
{
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    for (int i = 0; i < 50; i++) {
        const int fd = test::connect_to(wayland_socket());
        ASSERT_GE(fd, 0);
        EXPECT_EQ(write(fd, "\1\0\0\0\1\0", size_t(i % 6) + 1), i % 6 + 1);
        close(fd);
    }
    test::process info = client({"wayland-info"});
    EXPECT_THAT(info.wait(), Optional(0));
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0));
}

// Takes a screenshot of the session. Returns an empty picture on failure.
test::image screenshot(session &s, const std::filesystem::path &path)
{
    test::process grim = s.client({"grim", path});
    return grim.wait() == 0 ? test::image::load(path) : test::image{};
}

bool shows_colour(const test::image &picture, uint32_t argb)
{
    return std::ranges::count(picture.argb, argb) > 1000;
}

TEST_F(session, shows_a_terminal_and_takes_pictures_of_it)
{
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    test::process foot = client({"foot", "--override", "colors-dark.background=123456", "sleep", "100"});
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds{20};
    test::image picture;
    while (!shows_colour(picture, 0xff123456U) && std::chrono::steady_clock::now() < give_up)
        picture = screenshot(*this, world.directory() / "picture.png");
    EXPECT_TRUE(shows_colour(picture, 0xff123456U)) << compositor.output() << foot.output();
    EXPECT_EQ(picture.width, 1280);
    EXPECT_EQ(picture.height, 720);
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0)) << compositor.output();
    EXPECT_TRUE(foot.wait());
}

TEST_F(session, hands_a_selection_from_one_program_to_another)
{
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    test::process copy = client({"wl-copy", "--foreground", "some text"});
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds{20};
    std::string pasted;
    while (pasted != "some text" && std::chrono::steady_clock::now() < give_up) {
        test::process paste = client({"wl-paste", "--no-newline"});
        (void)paste.wait();
        pasted = paste.output();
    }
    EXPECT_EQ(pasted, "some text");
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0));
}

bool type(session &s, const std::vector<std::string> &what)
{
    std::vector<std::string> command{"wtype"};
    command.insert(command.end(), what.begin(), what.end());
    test::process wtype = s.client(command);
    return wtype.wait() == 0;
}

TEST_F(session, types_into_a_terminal_through_a_virtual_keyboard)
{
    world.environment["LC_ALL"] = "C.UTF-8";
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    const auto ready = world.directory() / "ready", typed = world.directory() / "typed";
    test::process foot =
        client({"foot", "sh", "-c", "touch " + ready.string() + "; cat > " + typed.string()});
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(ready); })) << foot.output();
    // The first keys arrive while the terminal is still learning that there is a keyboard.
    EXPECT_TRUE(eventually([&] {
        return type(*this, {"Grüße, 世界!", "-k", "Return"}) && contents(typed).contains("\nGrüße, 世界!\n");
    }));
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0));
}

// A blinking text cursor changes fewer pixels.
bool differs(const test::image &one, const test::image &other)
{
    return !one.argb.empty() && test::compare(one, other, 0).pixels > 3000;
}

TEST_F(session, opens_and_uses_the_menus_of_a_toolkit_program)
{
    world.environment["GDK_BACKEND"] = "wayland";
    world.environment["NO_AT_BRIDGE"] = "1";
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    const auto path = world.directory() / "picture.png";
    const test::image empty = screenshot(*this, path);
    test::process editor = client({"l3afpad"});
    test::image without_menu = empty;
    ASSERT_TRUE(eventually([&] { return differs(without_menu = screenshot(*this, path), empty); }))
        << editor.output();
    test::remote_user user{wayland_socket()};
    ASSERT_TRUE(eventually([&] {
        user.tap(KEY_ESC); // the last one may have come just too late for the picture
        user.tap(KEY_F10);
        return differs(screenshot(*this, path), without_menu);
    })) << editor.output();
    user.tap(KEY_UP); // to the last entry of the first menu: Quit
    user.tap(KEY_ENTER);
    EXPECT_THAT(editor.wait(), Optional(0)) << editor.output();
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0));
}

TEST_F(session, publishes_its_outputs)
{
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    std::ifstream file{world.directory() / "run/vantore-outputs"};
    std::string line;
    EXPECT_TRUE(std::getline(file, line));
    EXPECT_EQ(line, "HEADLESS-1");
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), Optional(0));
}

TEST_F(session, that_is_nested_ends_in_order_when_the_session_around_it_is_killed)
{
    test::process around = start();
    ASSERT_TRUE(around.says("running — WAYLAND_DISPLAY=wayland-0")) << around.output();
    world.environment["WLR_BACKENDS"] = "wayland";
    test::process nested = client(test::compositor());
    ASSERT_TRUE(nested.says("output WL-1 online")) << nested.output();
    ASSERT_TRUE(nested.says("running — WAYLAND_DISPLAY=wayland-1")) << nested.output();
    around.send(SIGKILL);
    EXPECT_THAT(nested.wait(), Optional(0)) << nested.output();
    EXPECT_THAT(nested.output(), HasSubstr("the display backend has gone, ending"));
}

} // namespace
