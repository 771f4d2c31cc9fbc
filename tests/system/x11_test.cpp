// Real X11 programs in the real compositor.

#include "support/files.hpp"
#include "support/real_session.hpp"
#include "support/remote_user.hpp"
#include "support/x11_client.hpp"

#include <csignal>
#include <fstream>
#include <linux/input-event-codes.h>

using test::eventually;
using testing::HasSubstr;
using testing::Optional;

namespace
{

struct x11_programs : test::real_session {
    x11_programs()
    {
        world.environment["DISPLAY"] = x_display();
        world.environment["LC_ALL"] = "C.UTF-8";
    }
    [[nodiscard]] std::string windows() const { return output_of({"windows"}); }
    [[nodiscard]] bool shows(const std::string &app_id) const
    {
        return windows().contains("\"app_id\":\"" + app_id + "\"");
    }
    [[nodiscard]] std::string contents(const std::string &name) const { return test::contents(path(name)); }
    // Types into the file "typed". The first key brings a new keymap, and the X server needs time to compile
    // it.
    [[nodiscard]] bool types(const std::string &text) const
    {
        return eventually([&] {
            test::process wtype = run({"wtype", "-k", "Shift_L", "-s", "2000", text, "-k", "Return"});
            return wtype.wait() == 0 && eventually([&] { return contents("typed").contains('\n'); }) &&
                   contents("typed").contains(text + "\n");
        });
    }
    [[nodiscard]] std::string path(const std::string &name) const { return world.directory() / name; }
};

TEST_F(x11_programs, are_windows_like_others)
{
    test::process xterm = run({"xterm", "-T", "a terminal", "-e", "sleep", "100"});
    EXPECT_TRUE(eventually([&] { return shows("XTerm"); })) << xterm.output() << compositor.output();
    test::process xeyes = run({"xeyes"});
    EXPECT_TRUE(eventually([&] { return shows("XEyes"); })) << xeyes.output();
    EXPECT_THAT(windows(), HasSubstr("\"title\":\"a terminal\""));
    EXPECT_TRUE(eventually([&] { return windows().contains("\"focused\":true"); }));
    (void)output_of({"command", "focus", "app:XTerm"});
    (void)output_of({"command", "close", "app:XEyes"});
    EXPECT_TRUE(eventually([&] { return !shows("XEyes"); }));
    (void)output_of({"command", "close", "app:XTerm"});
    EXPECT_TRUE(eventually([&] { return !shows("XTerm"); }));
}

TEST_F(x11_programs, hear_the_keyboard)
{
    test::process xterm =
        run({"xterm", "-e", "sh", "-c", "touch " + path("ready") + "; cat > " + path("typed")});
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(path("ready")) && shows("XTerm"); }))
        << xterm.output();
    EXPECT_TRUE(types("hello there")) << contents("typed");
}

TEST_F(x11_programs, may_still_be_starting_when_the_session_ends)
{
    test::process xterm = run({"xterm", "-e", "sleep", "100"});
    EXPECT_TRUE(compositor.says("Starting Xwayland")) << compositor.output();
}

// Launchers work like this: no window manager manages their window, and it reads the keyboard while the
// pointer is over it.
TEST_F(x11_programs, may_read_the_keyboard_in_a_window_of_their_own_placing)
{
    test::process launcher =
        run({"xterm", "-xrm", "XTerm*overrideRedirect: true", "-geometry", "60x5+500+330", "-e", "sh", "-c",
             "touch " + path("ready") + "; cat > " + path("typed")});
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(path("ready")); })) << launcher.output();
    EXPECT_TRUE(types("start something")) << contents("typed");
    EXPECT_EQ(windows(), "[]\n");
}

// A shell line that succeeds if a tooltip can be seen.
const char *const finds_a_tooltip =
    "for window in $(xwininfo -root -children | grep -o '^ *0x[0-9a-f]*'); do"
    " xwininfo -id $window | grep -q IsViewable && xprop -id $window _NET_WM_WINDOW_TYPE; done |"
    " grep -q TOOLTIP";

// The pointer rests on the first place that a file dialog lists while the user types in a terminal.
TEST_F(x11_programs, show_tooltips_that_leave_the_keyboard_where_it_is_if_the_user_protects_the_focus)
{
    std::ofstream{path("config/vantore/compositor.conf")} << "protect_focus = true\n";
    compositor.send(SIGHUP);
    ASSERT_TRUE(compositor.says("vantore-comp: config reloaded"));
    test::remote_user user{wayland_socket()};
    test::process editor = run({"env", "GDK_BACKEND=x11", "l3afpad"});
    ASSERT_TRUE(eventually([&] { // the X server needs time to compile the new keyboard's keymap
        user.chord(WLR_MODIFIER_CTRL, KEY_O);
        return eventually([&] { return windows().contains(R"("title":"Open")"); }, std::chrono::seconds{3});
    })) << windows();
    test::process foot = run(
        {"foot", "--override", "initial-window-size-pixels=300x200", "sh", "-c", "cat > " + path("typed")});
    ASSERT_TRUE(eventually([&] { return box_of("foot").width > 0; })) << foot.output();
    const wlr_box dialog = box_of("L3afpad");
    const auto shows_a_tooltip = [&] { return run({"sh", "-c", finds_a_tooltip}).wait() == 0; };
    user.move_to(dialog.x + 60, dialog.y + 50);
    ASSERT_TRUE(eventually(shows_a_tooltip));
    user.tap(KEY_A);
    user.tap(KEY_ENTER);
    EXPECT_TRUE(eventually([&] { return contents("typed") == "a\n"; })) << contents("typed");
    EXPECT_TRUE(shows_a_tooltip());
}

TEST_F(x11_programs, are_driven_by_a_script)
{
    test::process xterm = run({"xterm", "-e", "sleep", "100"});
    ASSERT_TRUE(eventually([&] { return shows("XTerm"); })) << xterm.output();
    test::process xdotool = run({"xdotool", "search", "--sync", "--onlyvisible", "--class", "XTerm",
                                 "windowsize", "400", "300", "windowmove", "20", "40"});
    EXPECT_THAT(xdotool.wait(), Optional(0)) << xdotool.output();
    EXPECT_TRUE(eventually([&] { return windows().contains(R"("rect":{"x":20,"y":40,"width":)"); }))
        << windows();
}

TEST_F(x11_programs, may_start_fullscreen)
{
    test::process xterm = run({"xterm", "-fullscreen", "-e", "sleep", "100"});
    EXPECT_TRUE(eventually([&] { return windows().contains(R"("fullscreen":true)"); })) << windows();
}

TEST_F(x11_programs, enter_and_leave_fullscreen_and_call_for_attention)
{
    test::process xterm =
        run({"xterm", "-xrm", "XTerm*bellIsUrgent: true", "-e", "sh", "-c",
             "while [ ! -e " + path("rings") + " ]; do sleep 0.1; done; printf '\\a'; sleep 100"});
    ASSERT_TRUE(eventually([&] { return windows().contains(R"("focused":true)"); })) << xterm.output();
    const auto flips_to = [&](const char *state) {
        return eventually([&] {
            test::process key = run({"xdotool", "key", "alt+Return"}); // xterm's own binding for fullscreen
            return key.wait() == 0 &&
                   eventually([&] { return windows().contains(state); }, std::chrono::seconds{8});
        });
    };
    EXPECT_TRUE(flips_to(R"("fullscreen":true)")) << windows();
    EXPECT_TRUE(flips_to(R"("fullscreen":false)")) << windows();
    test::process xeyes = run({"xeyes"}); // takes the focus
    EXPECT_TRUE(eventually([&] { return shows("XEyes"); })) << xeyes.output();
    std::ofstream{path("rings")} << "now";
    EXPECT_TRUE(eventually([&] { return windows().contains(R"("urgent":true)"); })) << windows();
}

TEST_F(x11_programs, end_with_the_x_server_and_the_next_one_starts_it_again)
{
    test::process xterm = run({"xterm", "-e", "sleep", "100"});
    ASSERT_TRUE(eventually([&] { return shows("XTerm"); })) << xterm.output();
    const pid_t x_server = test::x_server_of(world.environment["DISPLAY"]);
    ASSERT_GT(x_server, 1);
    kill(x_server, SIGKILL);
    EXPECT_TRUE(eventually([&] { return !shows("XTerm"); }));
    test::process again = run({"xterm", "-e", "sleep", "100"});
    EXPECT_TRUE(eventually([&] { return shows("XTerm"); })) << again.output() << compositor.output();
}

} // namespace
