// Requests that no client library would send.

#include "support/desktop.hpp"
#include "support/raw_client.hpp"

#include "server.hpp"

#include <linux/input-event-codes.h>
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
constexpr uint32_t xkb_v1 = 1;
constexpr int deepest = 64;

struct raw_requests : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
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
    EXPECT_THAT(c->error(), HasSubstr("wl_subcompositor is bound too often"));
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
