// What clients in a sandbox see, and connections while no descriptor is free.

#include "support/desktop.hpp"
#include "support/raw_client.hpp"
#include "support/sockets.hpp"
#include "support/wayland_seat.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

using test::connect_to;
using testing::HasSubstr;
using testing::UnorderedElementsAreArray;

namespace
{

const std::vector<std::string> open_globals{
    "wl_shm",
    "wl_compositor",
    "wl_subcompositor",
    "wl_data_device_manager",
    "zwp_primary_selection_device_manager_v1",
    "xdg_activation_v1",
    "wp_viewporter",
    "wp_fractional_scale_manager_v1",
    "wp_alpha_modifier_v1",
    "wp_single_pixel_buffer_manager_v1",
    "wp_cursor_shape_manager_v1",
    "zwp_keyboard_shortcuts_inhibit_manager_v1",
    "zxdg_exporter_v1",
    "zxdg_importer_v1",
    "zxdg_exporter_v2",
    "zxdg_importer_v2",
    "wp_tearing_control_manager_v1",
    "wp_content_type_manager_v1",
    "wp_presentation",
    "xdg_wm_base",
    "zxdg_decoration_manager_v1",
    "wl_seat",
    "zxdg_output_manager_v1",
    "zwp_relative_pointer_manager_v1",
    "zwp_pointer_constraints_v1",
};

const std::vector<std::string> closed_globals{
    "wp_security_context_manager_v1",
    "zwp_virtual_keyboard_manager_v1",
    "zwlr_virtual_pointer_manager_v1",
    "xwayland_shell_v1",
    "zwlr_layer_shell_v1",
    "zwlr_screencopy_manager_v1",
    "zwlr_export_dmabuf_manager_v1",
    "zwlr_data_control_manager_v1",
    "zwlr_gamma_control_manager_v1",
};

struct sockets : test::desktop {
    std::vector<std::string> names_of(const test::client &c)
    {
        std::vector<std::string> names;
        for (const test::global &g : c.globals())
            names.push_back(g.interface);
        return names;
    }
    std::string wayland_path() { return (world.runtime_directory() / getenv("WAYLAND_DISPLAY")).string(); }
};

// An engine that opens a socket for its sandbox, and a program that connects through it.
struct sandboxes : sockets {
    static constexpr uint16_t manager_create_listener = 1, context_set_app_id = 2, context_commit = 4;

    void SetUp() override
    {
        sockets::SetUp();
        path = (world.runtime_directory() / "sandbox").string();
        listening = test::bind_to(path);
        ASSERT_EQ(listen(listening, 4), 0);
        ASSERT_EQ(pipe2(life, O_CLOEXEC), 0);
        int ends[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends), 0);
        wl_client_create(server.display, ends[0]);
        engine = std::make_unique<test::raw_client>(ends[1]);
        EVENTUALLY((engine->read(), engine->knows("wp_security_context_manager_v1")));
    }
    void TearDown() override
    {
        program.reset();
        engine.reset();
        for (const int fd : {listening, life[0], life[1]})
            if (fd >= 0)
                close(fd);
        settle();
        desktop::TearDown();
    }
    uint32_t open_context()
    {
        const uint32_t manager = engine->bind("wp_security_context_manager_v1", 1);
        last_context = engine->new_id();
        // Both descriptors go with one request.
        std::vector<uint32_t> request;
        test::raw_client::append(request, manager, manager_create_listener, {last_context});
        EXPECT_TRUE(engine->send(request, std::array{listening, life[0]}));
        return last_context;
    }
    void open_sandbox()
    {
        ASSERT_TRUE(engine->request(open_context(), context_commit, {}));
        program = std::make_unique<test::raw_client>(connect_to(path));
        EVENTUALLY((program->read(), program->knows("xdg_wm_base")));
        settle();
        program->read();
    }

    std::string path;
    uint32_t last_context = 0;
    int listening = -1;
    int life[2]{-1, -1}; // the engine holds the other end open for as long as its sandbox lives
    std::unique_ptr<test::raw_client> engine, program;
};

TEST_F(sandboxes, see_what_a_program_needs_and_nothing_that_shows_or_controls_others)
{
    open_sandbox();
    for (const std::string &name : open_globals)
        EXPECT_TRUE(program->knows(name)) << name;
    for (const std::string &name : closed_globals)
        EXPECT_FALSE(program->knows(name)) << name;
    EXPECT_EQ(program->globals_known(), open_globals.size());
}

TEST_F(sandboxes, have_a_decision_for_every_global_that_is_offered)
{
    std::vector<std::string> all = open_globals;
    all.insert(all.end(), closed_globals.begin(), closed_globals.end());
    EXPECT_THAT(names_of(connect()), UnorderedElementsAreArray(all));
}

TEST_F(sandboxes, do_not_see_a_global_that_nobody_has_thought_of)
{
    wl_global *added = wl_global_create(server.display, &wl_callback_interface, 1, nullptr,
                                        [](wl_client *, void *, uint32_t, uint32_t) {});
    EVENTUALLY((engine->read(), engine->knows("wl_callback")));
    open_sandbox();
    EXPECT_FALSE(program->knows("wl_callback"));
    wl_global_destroy(added);
}

TEST_F(sandboxes, go_on_when_the_client_that_opened_them_is_gone)
{
    open_sandbox();
    engine.reset();
    settle();
    test::raw_client another{connect_to(path)};
    EVENTUALLY((another.read(), another.knows("xdg_wm_base")));
    EXPECT_FALSE(another.knows("zwlr_screencopy_manager_v1"));
}

TEST_F(sandboxes, end_when_their_life_ends_and_keep_their_programs)
{
    open_sandbox();
    EXPECT_EQ(wl_list_length(&server.sandboxes), 1);
    close(std::exchange(life[1], -1));
    EVENTUALLY_EQ(wl_list_length(&server.sandboxes), 0);
    settle();
    program->read();
    EXPECT_FALSE(program->closed());
}

TEST_F(sandboxes, that_shut_their_socket_down_leave_the_session_at_rest)
{
    open_sandbox();
    ASSERT_EQ(shutdown(listening, SHUT_RDWR), 0);
    settle();
    wl_event_loop *loop = wl_display_get_event_loop(server.display);
    wl_event_loop_dispatch(loop, 0);
    pollfd work{.fd = wl_event_loop_get_fd(loop), .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&work, 1, 0), 0) << "the socket keeps the loop busy";
}

TEST_F(sandboxes, that_are_registered_twice_end_their_client)
{
    engine->request(open_context(), context_commit, {});
    engine->request(last_context, context_commit, {});
    EVENTUALLY((engine->read(), engine->closed()));
    EXPECT_THAT(engine->error(), HasSubstr("registered already"));
}

TEST_F(sandboxes, that_are_named_twice_end_their_client)
{
    const uint32_t context = open_context();
    for (int i = 0; i < 2; i++)
        engine->request(context, context_set_app_id, {2, 'a'});
    EVENTUALLY((engine->read(), engine->closed()));
    EXPECT_THAT(engine->error(), HasSubstr("set already"));
}

// Takes every descriptor that the process may still open.
struct greed {
    greed()
    {
        for (int fd = dup(0); fd >= 0; fd = dup(0))
            taken.push_back(fd);
    }
    ~greed() { let_go(); }
    void let_go()
    {
        for (const int fd : taken)
            close(fd);
        taken.clear();
    }
    std::vector<int> taken;
};

// Lowers the limit of descriptors, so that taking them all is quick.
struct few_descriptors {
    few_descriptors()
    {
        getrlimit(RLIMIT_NOFILE, &found);
        rlimit few = found;
        few.rlim_cur = 512;
        setrlimit(RLIMIT_NOFILE, &few);
    }
    ~few_descriptors() { setrlimit(RLIMIT_NOFILE, &found); }
    rlimit found{};
};

int times_in(const std::string &text, const std::string &line)
{
    int times = 0;
    for (size_t at = text.find(line); at != std::string::npos; at = text.find(line, at + 1))
        times++;
    return times;
}

TEST_F(sockets, wait_while_no_descriptor_is_free_and_say_so_once)
{
    const few_descriptors limit;
    test::raw_client waiting{connect_to(wayland_path())}, another{connect_to(wayland_path())};
    greed all;
    wl_event_loop *loop = wl_display_get_event_loop(server.display);
    wl_event_loop_dispatch(loop, 0);
    pollfd work{.fd = wl_event_loop_get_fd(loop), .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&work, 1, 0), 0) << "the socket keeps the loop busy";
    for (int i = 0; i < 20; i++) {
        wl_event_loop_dispatch(loop, 0);
        if (i % 5 == 4)
            advance_clock_ms(250);
    }
    EXPECT_EQ(times_in(world.log(), "no descriptor is free"), 1);
    all.let_go();
    advance_clock_ms(250);
    EVENTUALLY((waiting.read(), waiting.knows("wl_compositor")));
    EVENTUALLY((another.read(), another.knows("wl_compositor")));
}

TEST_F(sockets, keep_a_client_that_does_not_read_for_a_while_under_a_fast_mouse)
{
    plug("A", 1280, 704);
    test::made_up_pointer &mouse = plug_pointer();
    test::window &w = map("slow", {400, 300});
    test::seat ears{w.owner()};
    settle();
    const wlr_box box = toplevel_box(record(w));
    // Nothing runs the client meanwhile, so it does not read.
    for (int i = 0; i < 10'000; i++)
        point_at(mouse, box.x + 50 + i % 200, box.y + 50);
    settle();
    EXPECT_EQ(w.owner().error(), 0);
    EVENTUALLY(ears.heard("motion 249,50"));
}

TEST_F(sockets, leave_nothing_behind_when_the_session_ends)
{
    const std::string path = wayland_path();
    EXPECT_TRUE(std::filesystem::is_socket(path));
    finish();
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(std::filesystem::exists(path + ".lock"));
}

} // namespace
