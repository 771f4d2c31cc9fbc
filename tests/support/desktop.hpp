// Runs the whole compositor in the test's process, with made-up outputs and with real Wayland clients in the
// same thread. Each test starts and ends a session of its own, which never touches the real desktop.
#pragma once

#include "boxes.hpp"
#include "broadcast.hpp"
#include "cut_line.hpp"
#include "ipc_client.hpp"
#include "isolation.hpp"
#include "made_up_output.hpp"
#include "outputs/lookup.hpp"
#include "outputs/output.hpp"
#include "picture.hpp"
#include "server.hpp"
#include "server_check.hpp"
#include "wayland_client.hpp"
#include "windows/toplevel.hpp"
#include "windows/unmanaged.hpp"
#include "workspaces/workspace.hpp"
#include "x11_client.hpp"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>

// Pumps the server and the clients until the condition holds. Gives up after 5 seconds, of which one round
// counts for at most 0.2.
#define EVENTUALLY(condition) \
    do { \
        EXPECT_TRUE(until([&] { return static_cast<bool>(condition); })) << #condition << '\n' << state(); \
    } while (false)
#define EVENTUALLY_EQ(actual, expected) \
    do { \
        (void)until([&] { return (actual) == (expected); }); \
        EXPECT_EQ(actual, expected) << state(); \
    } while (false)

namespace test
{

// A session that the test starts itself, after preparing its surroundings.
class unstarted_desktop : public testing::Test
{
public:
    unstarted_desktop();
    ~unstarted_desktop() override;

protected:
    void SetUp() override;
    void TearDown() override;

    void start();
    // Ends the session in order. TearDown calls it if the test did not.
    void finish();

    // Writes compositor.conf, which the start reads. A running session reads it at once.
    void config(std::string_view text);
    // Writes another file of the configuration directory in the same way.
    void write_config(const std::string &name, std::string_view text);

    // Outputs
    made_up_output &plug(output_traits traits);
    made_up_output &plug(const std::string &name, int width, int height);
    vantore_output &output(const std::string &name);
    void unplug(const std::string &name);
    // Returns the last picture that the output committed.
    image picture(const std::string &name);
    // Returns a pixel of that picture as opaque ARGB, or 0 before the first picture.
    uint32_t pixel(const std::string &name, int x, int y);

    // Plugs in input devices. They live until they are unplugged or the session ends.
    made_up_keyboard &plug_keyboard(const std::string &name = "keyboard");
    made_up_pointer &plug_pointer(const std::string &name = "pointer");
    made_up_touch &plug_touch(const std::string &name, const std::string &output_name = "");
    made_up_tablet &plug_tablet(const std::string &name);
    made_up_tablet_pad &plug_tablet_pad(const std::string &name);
    made_up_switch &plug_switch(const std::string &name);
    void unplug_device(made_up_keyboard &keyboard);
    void unplug_device(made_up_pointer &pointer);
    void unplug_device(made_up_touch &touch);
    // Moves the pointer to a place in layout coordinates, as a mouse would.
    void point_at(made_up_pointer &pointer, double lx, double ly) const;

    // Clients and windows
    client &connect();
    // Closes the connection and destroys the client. References to it and to its windows are invalid then.
    void disconnect(client &c);
    void disconnect(x11_client &c);
    // Connects through a line that may break. The client then has an error, maybe already when this returns.
    // The line is pumped until forget() cuts it.
    client &connect(cut_line &line);
    void forget(cut_line &line);
    // Maps a window of a new client. It draws at its preferred size when the compositor leaves the choice.
    window &map(const std::string &app_id, size preferred = {640, 480});
    // Maps a window that the test has prepared.
    window &map(window &w);
    window &map_dialog(window &parent, const std::string &app_id = "dialog", size preferred = {300, 200});
    window &map_of_fixed_size(const std::string &app_id, size fixed = {300, 200});
    // Returns the compositor's record of a window. Fails the test if there is none.
    vantore_toplevel &record(const window &w);
    vantore_toplevel *find_record(const window &w);
    // Moves the window's content to a place in layout coordinates.
    void place(const window &w, int lx, int ly);
    // Returns the window's content in layout coordinates, once the client has drawn it.
    wlr_box box(const window &w) { return toplevel_box(record(w)); }
    wl_client *server_side(const client &c);
    vantore_workspace &workspace(int num) const;

    // Connects a new X11 client. The first one starts the X server. Ends the test program if the X server
    // does not start.
    x11_client &connect_x11();
    // Maps a managed window of a new X11 client.
    x11_window &map_x11(const x11_traits &traits = {});
    // Maps a managed window that the test has prepared.
    x11_window &map_x11(x11_window &w);
    // Maps an unmanaged window of a new X11 client.
    x11_window &map_unmanaged(x11_traits traits);
    vantore_toplevel &record(const x11_window &w);
    vantore_toplevel *find_record(const x11_window &w) const;
    wlr_box box(const x11_window &w) { return toplevel_box(record(w)); }
    vantore_unmanaged *find_unmanaged(const x11_window &w) const;
    // Returns the X server's process, or 0 when none runs.
    [[nodiscard]] pid_t x_server() const;
    // Kills the X server as a crash would, and waits until the compositor has noticed.
    void kill_x_server();

    // Returns null when no surface has the keyboard.
    [[nodiscard]] const wlr_surface *keyboard_focus() const
    {
        return server.seat->keyboard_state.focused_surface;
    }
    template <class Window> bool has_keyboard(const Window &w)
    {
        return keyboard_focus() == tl_surface(record(w));
    }

    // Connects a new client to the IPC socket and waits until the server has accepted it.
    ipc_client &dial();
    // Sends a request and waits for its reply. Drops the events that arrive before the reply.
    std::string ask(ipc_client &c, uint32_t type, std::string_view payload = {});
    // Sends a command on a connection of its own and expects it to succeed.
    void command(std::string_view text);

    // Waiting
    template <class Condition>
    bool until(Condition holds, std::chrono::seconds limit = std::chrono::seconds{5})
    {
        std::chrono::microseconds waited{};
        for (last_wait = {}; !holds(); last_wait.rounds++) {
            if (waited > limit)
                return false;
            waited += pump_timed();
        }
        return true;
    }
    // Puts the clock forward. When this returns, the program's timers that became due have fired.
    void advance_clock_ms(int ms);
    // Puts the clock forward from one timer to the next. A timer that its handler arms again fires again on
    // the way.
    void run_clock(std::chrono::milliseconds time);
    // Waits until everything that was sent has been answered and every output rests. An event that has not
    // arrived by then will not arrive.
    void settle();
    // Returns the events since the last call, as an IPC subscriber would have received them.
    std::vector<vnt_event> heard();
    // Describes the scene, the windows and the end of the log, for failure messages.
    std::string state();

    // A test in which a layer surface takes the keyboard sets this to may_lag. The check at the end of the
    // session reads it.
    activity active_windows = activity::follows_keyboard;
    isolation world;
    std::unique_ptr<vantore_server> server_record;
    vantore_server &server;

private:
    void pump();
    // Pumps once and returns how much of a wait's limit that uses up, at most 0.2 seconds. A busy machine can
    // spend seconds in one round, when the software renderer compiles shaders.
    std::chrono::microseconds pump_timed();
    bool idle() const;

    struct connection {
        std::unique_ptr<client> side;
        wl_client *server_side;
    };

    client &add_connection(int client_end, int server_end);

    std::list<connection> connections;
    std::vector<cut_line *> cut_lines;
    std::list<ipc_client> ipc_clients;
    std::list<x11_client> x11_clients;
    made_up_backend *backend = nullptr;
    bool running = false;
    // Shown in failure messages. A long round with little work means that the machine stood still; with much
    // work, that the compositor did.
    struct {
        size_t rounds = 0;
        std::chrono::microseconds longest_round{};
        std::chrono::microseconds longest_work{}; // processor time of the process in one round
    } last_wait;
    std::map<int, std::string> descriptors_before;
};

// A running session without outputs.
class desktop : public unstarted_desktop
{
protected:
    void SetUp() override
    {
        unstarted_desktop::SetUp();
        start();
    }
};

} // namespace test
