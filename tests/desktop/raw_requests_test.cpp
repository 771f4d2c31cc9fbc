// Requests that no client library would send.

#include "support/desktop.hpp"
#include "support/raw_client.hpp"

#include "input/keyboard.hpp"
#include "server.hpp"

#include <array>
#include <fcntl.h>
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
constexpr uint16_t screencopy_capture_output = 0, frame_copy = 0, frame_copy_with_damage = 2;
constexpr uint16_t frame_event_buffer = 0, frame_event_ready = 2;
constexpr uint16_t seat_release = 3;
constexpr uint16_t shell_create_positioner = 1, shell_get_xdg_surface = 2;
constexpr uint16_t positioner_set_size = 1, positioner_set_anchor_rect = 2;
constexpr uint16_t xdg_surface_get_toplevel = 1, xdg_surface_get_popup = 2;
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

// The end of each test notices descriptors that stayed open, in this test and in those of captures.
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

TEST_F(raw_requests, that_nest_menus_more_than_64_deep_end_their_client)
{
    const uint32_t compositor = c->bind("wl_compositor", 5), shell = c->bind("xdg_wm_base", 3);
    const uint32_t window = create_surface(compositor), positioner = c->new_id();
    c->request(shell, shell_create_positioner, {positioner});
    c->request(positioner, positioner_set_size, {10, 10});
    c->request(positioner, positioner_set_anchor_rect, {0, 0, 1, 1});
    uint32_t parent = c->new_id();
    c->request(shell, shell_get_xdg_surface, {parent, window});
    c->request(parent, xdg_surface_get_toplevel, {c->new_id()});
    for (int i = 0; i <= deepest; i++) {
        settle();
        EXPECT_FALSE(is_ended()) << i;
        const uint32_t surface = create_surface(compositor), menu = c->new_id();
        c->request(shell, shell_get_xdg_surface, {menu, surface});
        c->request(menu, xdg_surface_get_popup, {c->new_id(), parent, positioner});
        parent = menu;
    }
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("menus are nested more than 64 deep"));
}

struct captures : raw_requests {
    void SetUp() override
    {
        raw_requests::SetUp();
        plug("A", 64, 64);
        connect_raw();
        const uint32_t screencopy = c->bind("zwlr_screencopy_manager_v1", 3);
        const uint32_t output = c->bind("wl_output", 1);
        shm = c->bind("wl_shm", 1);
        frame = c->new_id();
        c->request(screencopy, screencopy_capture_output, {frame, 0, output});
        EVENTUALLY(c->heard(frame, frame_event_buffer) != nullptr);
        format = c->heard(frame, frame_event_buffer)->front();
    }
    uint32_t create_buffer(uint32_t side) const
    {
        const int file = memfd_create("picture", MFD_CLOEXEC);
        EXPECT_EQ(ftruncate(file, off_t{side} * side * 4), 0);
        const uint32_t pool = c->new_id();
        c->request(shm, shm_create_pool, {pool, side * side * 4}, file);
        close(file);
        const uint32_t buffer = c->new_id();
        c->request(pool, pool_create_buffer, {buffer, 0, side, side, side * 4, format});
        return buffer;
    }

    uint32_t shm = 0, frame = 0, format = 0;
};

TEST_F(captures, into_a_buffer_of_a_wrong_size_leave_nothing_behind)
{
    c->request(frame, frame_copy, {create_buffer(16)});
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("invalid buffer dimensions"));
}

TEST_F(captures, twice_into_one_buffer_leave_nothing_behind)
{
    const uint32_t buffer = create_buffer(64);
    c->request(frame, frame_copy_with_damage, {buffer});
    c->request(frame, frame_copy_with_damage, {buffer});
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("already used"));
}

TEST_F(captures, into_a_buffer_of_the_right_size_succeed)
{
    c->request(frame, frame_copy, {create_buffer(64)});
    EVENTUALLY(c->heard(frame, frame_event_ready) != nullptr);
    EXPECT_FALSE(is_ended());
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
    void send_keymap_text(const std::string &text)
    {
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        ASSERT_EQ(write(file, text.c_str(), text.size() + 1), ssize_t(text.size() + 1));
        send_keymap_of(file, uint32_t(text.size() + 1));
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

// A file system in user space could let its reader wait for ever.
TEST_F(keymap_requests, of_a_file_that_is_not_in_memory_end_their_client)
{
    const int file = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    send_keymap_of(file, 16);
    close(file);
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("the keymap can't be read"));
}

TEST_F(keymap_requests, that_name_thousands_of_files_end_their_client)
{
    std::string names = "pc";
    for (int i = 0; i < 1000; i++)
        names += "+pc";
    send_keymap_text("xkb_keymap { xkb_symbols { Include \"" + names + "\" }; };");
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("the keymap can't be read"));
}

TEST_F(keymap_requests, of_layouts_of_the_system_are_taken)
{
    send_keymap_text("xkb_keymap { xkb_keycodes { include \"evdev+aliases(qwerty)\" }; xkb_types { include "
                     "\"complete\" }; xkb_compat { include \"complete\" }; xkb_symbols { include "
                     "\"pc+de+inet(evdev)\" }; };");
    settle();
    EXPECT_FALSE(is_ended());
    const auto *keyboard = each<&vantore_keyboard::link>(server.keyboards).first();
    ASSERT_NE(keyboard, nullptr);
    ASSERT_NE(keyboard->wlr_keyboard->keymap, nullptr);
    EXPECT_STREQ(xkb_keymap_layout_get_name(keyboard->wlr_keyboard->keymap, 0), "German");
}

// The end of the test notices descriptors that stayed open.
TEST_F(keymap_requests, to_a_keyboard_whose_seat_is_gone_leave_nothing_behind)
{
    const uint32_t manager = c->bind("zwp_virtual_keyboard_manager_v1", 1), seat = c->bind("wl_seat", 5);
    const uint32_t keyboard = c->new_id();
    c->request(manager, manager_create_virtual_keyboard, {seat, keyboard});
    c->request(seat, seat_release, {});
    const int file = memfd_create("keymap", MFD_CLOEXEC);
    ASSERT_EQ(ftruncate(file, 4096), 0);
    c->request(keyboard, virtual_keyboard_keymap, {xkb_v1, 4}, file);
    close(file);
    settle();
    EXPECT_FALSE(is_ended());
}

TEST_F(keymap_requests, larger_than_a_mebibyte_end_their_client)
{
    send_keymap(1024 * 1024 + 1, 1024 * 1024 + 1);
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("the keymap can't be read"));
}

TEST_F(keymap_requests, of_an_endless_size_end_their_client)
{
    send_keymap(4096, 0xffffffff);
    EVENTUALLY(is_ended());
    EXPECT_THAT(c->error(), HasSubstr("the keymap can't be read"));
}

} // namespace
