// The whole compositor in the test's process, with made-up outputs and real Wayland clients in the same
// thread. Each test starts and ends a session; nothing of it reaches the real desktop.
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
#include <memory>

// Pumps the server and the clients until the condition holds, 5 seconds at most.
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
    // The orderly end; TearDown does it where the test did not.
    void finish();

    // Writes compositor.conf, which the start reads; a session that runs reads it at once.
    void config(std::string_view text);
    // The same for another file of the configuration, by its name.
    void write_config(const std::string &name, std::string_view text);

    // Outputs
    made_up_output &plug(output_traits traits);
    made_up_output &plug(const std::string &name, int width, int height);
    vantore_output &output(const std::string &name);
    // What the output shows: its last committed picture.
    image picture(const std::string &name);
    // A pixel of what the output shows, opaque ARGB. 0 before the first picture.
    uint32_t pixel(const std::string &name, int x, int y);

    // Input devices, of any name. They live until they are unplugged or the session ends.
    made_up_keyboard &plug_keyboard(const std::string &name = "keyboard");
    made_up_pointer &plug_pointer(const std::string &name = "pointer");
    made_up_touch &plug_touch(const std::string &name, const std::string &output_name = "");
    made_up_tablet &plug_tablet(const std::string &name);
    made_up_tablet_pad &plug_tablet_pad(const std::string &name);
    made_up_switch &plug_switch(const std::string &name);
    void unplug_device(made_up_keyboard &keyboard);
    void unplug_device(made_up_pointer &pointer);
    void unplug_device(made_up_touch &touch);
    // Moves the pointer there in layout coordinates, as a mouse would.
    void point_at(made_up_pointer &pointer, double lx, double ly) const;

    // Clients and windows
    client &connect();
    // Through a line that may break: then the client has an error, maybe already when this returns. The line
    // is pumped until it is forgotten, which cuts it.
    client &connect(cut_line &line);
    void forget(cut_line &line);
    // A new client's window, mapped with the size that it likes when it may choose.
    window &map(const std::string &app_id, size preferred = {640, 480});
    // The same for a window that the test has prepared.
    window &map(window &w);
    // The compositor's record of a window; fails the test when there is none.
    vantore_toplevel &record(const window &w);
    vantore_toplevel *find_record(const window &w);
    // Puts the window's content there, in layout coordinates.
    void place(const window &w, int lx, int ly);
    // What the window's content covers, once the client has drawn it.
    wlr_box box(const window &w) { return toplevel_box(record(w)); }
    wl_client *server_side(const client &c);
    vantore_workspace &workspace(int num);

    // A new X11 client; the first one starts the X server. Ends the tests when it does not start.
    x11_client &connect_x11();
    // A new X11 client's window, mapped and managed.
    x11_window &map_x11(const x11_traits &traits = {});
    // The same for a window that the test has prepared.
    x11_window &map_x11(x11_window &w);
    // The same for one that is not managed.
    x11_window &map_unmanaged(x11_traits traits);
    vantore_toplevel &record(const x11_window &w);
    vantore_toplevel *find_record(const x11_window &w);
    wlr_box box(const x11_window &w) { return toplevel_box(record(w)); }
    vantore_unmanaged *find_unmanaged(const x11_window &w);
    // The X server's process; 0 when none runs.
    [[nodiscard]] pid_t x_server() const;
    // Ends it as a crash does, and waits until the compositor knows.
    void kill_x_server();

    // Null when nobody has it.
    [[nodiscard]] const wlr_surface *keyboard_focus() const
    {
        return server.seat->keyboard_state.focused_surface;
    }
    template <class Window> bool has_keyboard(const Window &w)
    {
        return keyboard_focus() == tl_surface(record(w));
    }

    // A new client of the IPC socket, that the server has accepted.
    ipc_client &dial();
    // Sends a request and waits for its reply; events that come meanwhile are dropped.
    std::string ask(ipc_client &c, uint32_t type, std::string_view payload = {});
    // The same for a command on a connection of its own.
    void command(std::string_view text);

    // Waiting
    template <class Condition>
    bool until(Condition holds, std::chrono::seconds limit = std::chrono::seconds{5})
    {
        const auto give_up = std::chrono::steady_clock::now() + limit;
        while (!holds()) {
            if (std::chrono::steady_clock::now() > give_up)
                return holds();
            pump();
        }
        return true;
    }
    // The program's timers that are due by then have fired when this returns.
    void advance_clock_ms(int ms);
    // The same, from one timer to the next: one that its handler arms again fires again on its way.
    void run_clock(std::chrono::milliseconds time);
    // Until everything that was sent has been answered and every output rests: what has not come by then does
    // not come.
    void settle();
    // The events that an IPC subscriber would have heard since the last call.
    std::vector<vnt_event> heard();
    // Scene, windows and the log's end, for failure messages.
    std::string state();

    // A test in which a layer surface takes the keyboard says so; the end of the session looks for it.
    activity active_windows = activity::follows_keyboard;
    isolation world;
    std::unique_ptr<vantore_server> server_record;
    vantore_server &server;

private:
    void pump();
    bool idle();

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
    size_t descriptors_before = 0;
};

// A session that runs, without outputs.
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
