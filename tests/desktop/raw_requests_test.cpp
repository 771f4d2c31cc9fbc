// Requests that no client library would send.

#include "support/desktop.hpp"
#include "support/raw_client.hpp"

#include "server.hpp"

#include <array>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

using testing::HasSubstr;

namespace
{

// Opcodes of requests, from the protocols' XML.
constexpr uint16_t compositor_create_surface = 0, surface_commit = 6;
constexpr uint16_t subcompositor_get_subsurface = 1;
constexpr uint16_t manager_create_virtual_keyboard = 0, virtual_keyboard_keymap = 0;
constexpr uint16_t manager_create_listener = 1;
constexpr uint16_t shm_create_pool = 0, pool_create_buffer = 0;
constexpr uint16_t screencopy_capture_output = 0, frame_copy = 0;
constexpr uint32_t xkb_v1 = 1;
constexpr int deepest = 64;

struct raw_requests : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        connect_raw();
    }
    void connect_raw()
    {
        int ends[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends), 0);
        wl_client_create(server.display, ends[0]);
        c = std::make_unique<test::raw_client>(ends[1]);
        EVENTUALLY((c->read(), c->knows("wl_compositor")));
    }
    void TearDown() override
    {
        c.reset();
        desktop::TearDown();
    }
    bool is_ended() const
    {
        c->read();
        return c->closed();
    }
    uint32_t create_surface(uint32_t compositor) const
    {
        const uint32_t id = c->new_id();
        c->request(compositor, compositor_create_surface, {id});
        return id;
    }
    // Makes a chain of subsurfaces from the root down. Stops when the compositor ends the client.
    void nest_downwards(int depth)
    {
        const uint32_t compositor = c->bind("wl_compositor", 5), sub = c->bind("wl_subcompositor", 1);
        uint32_t parent = create_surface(compositor);
        for (int i = 0; i < depth && c->error().empty(); i++) {
            const uint32_t surface = create_surface(compositor);
            c->request(sub, subcompositor_get_subsurface, {c->new_id(), surface, parent});
            parent = surface;
            settle();
            c->read();
        }
        c->request(parent, surface_commit, {});
    }

    std::unique_ptr<test::raw_client> c;
};

TEST_F(raw_requests, may_nest_subsurfaces_64_deep)
{
    nest_downwards(deepest);
    settle();
    EXPECT_FALSE(is_ended());
    EXPECT_EQ(c->error(), "");
}

TEST_F(raw_requests, that_nest_subsurfaces_deeper_end_their_client_with_an_error)
{
    nest_downwards(deepest + 1);
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("nested more than 64 deep"));
}

TEST_F(raw_requests, that_nest_subsurfaces_from_the_bottom_up_are_counted_as_well)
{
    const uint32_t compositor = c->bind("wl_compositor", 5), sub = c->bind("wl_subcompositor", 1);
    uint32_t child = create_surface(compositor);
    for (int i = 0; i <= deepest && c->error().empty(); i++) {
        const uint32_t parent = create_surface(compositor);
        c->request(sub, subcompositor_get_subsurface, {c->new_id(), child, parent});
        child = parent;
        settle();
        c->read();
    }
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("nested more than 64 deep"));
}

TEST_F(raw_requests, can_not_get_round_the_limit_with_a_new_binding_for_each_subsurface)
{
    const uint32_t compositor = c->bind("wl_compositor", 5);
    uint32_t parent = create_surface(compositor);
    for (int i = 0; i < 2 * deepest && c->error().empty(); i++) {
        const uint32_t sub = c->bind("wl_subcompositor", 1), surface = create_surface(compositor);
        c->request(sub, subcompositor_get_subsurface, {c->new_id(), surface, parent});
        parent = surface;
        settle();
        c->read();
    }
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("nested more than 64 deep"));
}

// The descriptors stay open in the session if nobody closes them, which the end of each test would notice.
TEST_F(raw_requests, that_open_a_sandbox_without_a_listening_socket_leave_no_descriptor_behind)
{
    const int file = memfd_create("no socket", MFD_CLOEXEC);
    const int socket_fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr any_name{.sa_family = AF_UNIX, .sa_data = {}}; // the kernel picks one
    ASSERT_EQ(bind(socket_fd, &any_name, sizeof any_name.sa_family), 0);
    ASSERT_EQ(listen(socket_fd, 1), 0);
    const std::array<std::array<int, 2>, 2> bad{{{file, file}, {socket_fd, file}}};
    for (const auto &descriptors : bad) {
        connect_raw();
        const uint32_t manager = c->bind("wp_security_context_manager_v1", 1);
        std::vector<uint32_t> request;
        test::raw_client::append(request, manager, manager_create_listener, {c->new_id()});
        ASSERT_TRUE(c->send(request, descriptors));
        EVENTUALLY(is_ended());
        EXPECT_THAT(c->error(), HasSubstr("needs a listening socket and a descriptor that tells of its end"));
    }
    close(file);
    close(socket_fd);
}

TEST_F(raw_requests, that_capture_into_a_buffer_of_a_wrong_size_leave_nothing_behind)
{
    plug("A", 64, 64);
    connect_raw();
    const uint32_t shm = c->bind("wl_shm", 1), screencopy = c->bind("zwlr_screencopy_manager_v1", 3);
    const uint32_t output = c->bind("wl_output", 1), pool = c->new_id();
    const int file = memfd_create("picture", MFD_CLOEXEC);
    ASSERT_EQ(ftruncate(file, 4096), 0);
    c->request(shm, shm_create_pool, {pool, 4096}, file);
    close(file);
    const uint32_t buffer = c->new_id();
    c->request(pool, pool_create_buffer, {buffer, 0, 16, 16, 64, 0});
    const uint32_t frame = c->new_id();
    c->request(screencopy, screencopy_capture_output, {frame, 0, output});
    settle();
    c->request(frame, frame_copy, {buffer});
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("invalid buffer dimensions"));
}

struct keymap_requests : raw_requests {
    // Sends a file of `there` bytes as a keymap of `said` bytes.
    void send_keymap(uint32_t there, uint32_t said)
    {
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        ASSERT_EQ(ftruncate(file, there), 0);
        send_keymap_of(file, said);
        close(file);
    }
    void send_keymap_of(int file, uint32_t said)
    {
        const uint32_t manager = c->bind("zwp_virtual_keyboard_manager_v1", 1), seat = c->bind("wl_seat", 1);
        const uint32_t keyboard = c->new_id();
        c->request(manager, manager_create_virtual_keyboard, {seat, keyboard});
        c->request(keyboard, virtual_keyboard_keymap, {xkb_v1, said}, file);
    }
};

TEST_F(keymap_requests, of_a_file_that_is_shorter_than_said_end_their_client)
{
    send_keymap(100, 1'000'000);
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("the keymap can't be read"));
}

TEST_F(keymap_requests, of_an_empty_file_end_their_client)
{
    send_keymap(0, 4096);
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("the keymap can't be read"));
}

TEST_F(keymap_requests, of_a_pipe_end_their_client_without_waiting_for_it)
{
    int pipe_ends[2];
    ASSERT_EQ(pipe(pipe_ends), 0);
    send_keymap_of(pipe_ends[0], 4096);
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("the keymap can't be read"));
    close(pipe_ends[0]);
    close(pipe_ends[1]);
}

TEST_F(keymap_requests, of_an_endless_size_end_their_client)
{
    send_keymap(4096, 0xffffffff);
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("the keymap can't be read"));
}

} // namespace
