// Lets 10,000 clients come and go in one session, with windows, menus, panels, X11 windows and captures, and
// tells what is left of them: descriptors, listeners and scene nodes, which must be none, and memory.
// VANTORE_SOAK_CLIENTS sets another number.

#include "support/desktop.hpp"
#include "support/scene_nodes.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_popup.hpp"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <string>
#include <unistd.h>

static constexpr int rounds = 5;
static constexpr int warm_up_clients = 50; // the first ones load libraries

static long clients_wished()
{
    const char *wish = getenv("VANTORE_SOAK_CLIENTS");
    return wish != nullptr ? strtol(wish, nullptr, 10) : 10'000;
}
static const long wished = clients_wished(); // read before the test clears the environment

// Counts what clients could leave behind.
struct census {
    long descriptors = 0, listeners = 0, nodes = 0, windows = 0;
    double heap_mib = 0, private_dirty_mib = 0;
};

static long open_descriptors()
{
    return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"}, {});
}

static double private_dirty_mib()
{
    static constexpr std::string_view name = "Private_Dirty:";
    std::ifstream in{"/proc/self/smaps_rollup"};
    double kib = 0;
    for (std::string line; std::getline(in, line);)
        if (line.starts_with(name))
            kib += strtod(line.c_str() + name.size(), nullptr);
    return kib / 1024;
}

// Counts the listeners on signals that records of clients, windows and panels attach to.
static long listeners_of(vantore_server &server)
{
    long count = 0;
    const auto add = [&](const wl_signal &signal) { count += wl_list_length(&signal.listener_list); };
    wlr_seat &seat = *server.seat;
    for (const wl_signal *signal :
         {&seat.events.request_set_cursor, &seat.events.request_set_selection,
          &seat.events.request_start_drag, &seat.events.pointer_grab_begin, &seat.events.destroy,
          &seat.pointer_state.events.focus_change, &seat.keyboard_state.events.focus_change,
          &server.compositor->events.new_surface, &server.compositor->events.destroy,
          &server.xdg_shell->events.new_toplevel, &server.xdg_shell->events.destroy,
          &server.scene->tree.node.events.destroy, &server.output_layout->events.change,
          &server.output_layout->events.destroy, &server.renderer->events.destroy,
          &server.renderer->events.lost})
        add(*signal);
    for (auto &o : each<&vantore_output::link>(server.outputs))
        for (const wl_signal *signal :
             {&o.wlr_output->events.frame, &o.wlr_output->events.commit, &o.wlr_output->events.precommit,
              &o.wlr_output->events.present, &o.wlr_output->events.bind, &o.wlr_output->events.damage,
              &o.wlr_output->events.needs_frame, &o.wlr_output->events.destroy})
            add(*signal);
    return count;
}

struct soak : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 640, 480);
        asker = &dial();
        connect_x11(); // it stays, or the X server would end with its last client
    }

    census count()
    {
        settle();
        malloc_trim(0);
        return {.descriptors = open_descriptors(),
                .listeners = listeners_of(server),
                .nodes = test::scene_nodes(server.scene->tree),
                .windows = wl_list_length(&server.toplevels) + wl_list_length(&server.layer_surfaces) +
                           wl_list_length(&server.xwl_unmanaged),
                .heap_mib = double(mallinfo2().uordblks) / (1024 * 1024),
                .private_dirty_mib = private_dirty_mib()};
    }

    void window_with_menu()
    {
        test::window &w = map("window", {200, 150});
        {
            const test::popup menu{w, {}};
            settle();
            capture(record(w).id);
        }
        disconnect(w.owner());
    }
    void panel()
    {
        test::client &c = connect();
        {
            const test::layer_surface bar{c, {.on = test::layer::top, .size = {300, 30}}};
            settle();
        }
        disconnect(c);
    }
    void x11_program()
    {
        test::x11_client &c = connect_x11();
        map_x11(c.create({.width = 120, .height = 80}));
        disconnect(c);
    }
    // Leaves everything to the compositor to clean up.
    void program_that_crashes()
    {
        test::window &w = map("window", {100, 100});
        w.owner().vanish();
        settle();
        disconnect(w.owner());
    }
    // Takes the window's picture as a copy, as a buffer in graphics memory, and by following the window.
    void capture(uint32_t id)
    {
        const std::string window = std::to_string(id);
        ask(*asker, VNT_MSG_CAPTURE, "win " + window);
        ask(*asker, VNT_MSG_CAPTURE_DMABUF, window);
        ask(*asker, VNT_MSG_CAPTURE_SUBSCRIBE, window);
        settle();
        int files = 0;
        for (int file = 0; (file = asker->take_descriptor()) >= 0; files++)
            close(file);
        EXPECT_EQ(files, 3);
    }
    void one_client(int number)
    {
        if (number % 50 == 0)
            return x11_program();
        if (number % 4 == 0)
            return panel();
        if (number % 4 == 1)
            return program_that_crashes();
        window_with_menu();
    }

    test::ipc_client *asker = nullptr;
};

static void print(long clients, const census &c)
{
    printf("%8ld %12ld %10ld %12ld %8ld %9.1f %12.1f\n", clients, c.descriptors, c.listeners, c.nodes,
           c.windows, c.heap_mib, c.private_dirty_mib);
    fflush(stdout);
}

TEST_F(soak, clients_come_and_go)
{
    ASSERT_GE(wished, rounds);
    printf(" clients  descriptors  listeners  scene nodes  windows  heap MiB  private MiB\n");
    print(0, count());
    for (int i = 0; i < warm_up_clients; i++)
        one_client(i);
    const census before = count();
    print(warm_up_clients, before);
    long done = 0;
    for (int round = 1; round <= rounds; round++) {
        for (; done < wished * round / rounds; done++)
            one_client(int(done));
        print(done + warm_up_clients, count());
    }
    const census after = count();
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_EQ(after.listeners, before.listeners);
    EXPECT_EQ(after.nodes, before.nodes);
    EXPECT_EQ(after.windows, before.windows);
}
