// The IPC socket: frames, connections, events, commands.

#include "support/desktop.hpp"
#include "support/sockets.hpp"

#include "ipc/client.hpp"
#include "ipc/send.hpp"
#include "ipc/transport.hpp"
#include "outputs/power.hpp"
#include "startup.hpp"
#include "text.hpp"

#include <fcntl.h>
#include <fstream>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace
{

constexpr const char *success = R"({"success":true})";
constexpr const char *unknown_type = R"({"success":false,"error":"unknown message type"})";

struct ipc : test::desktop {
    // The server's record of the connection that was accepted last.
    vnt_ipc_client &newest() { return *each<&vnt_ipc_client::link>(server.ipc.ipc_clients).first(); }
    int connections() { return wl_list_length(&server.ipc.ipc_clients); }
    std::string path() { return server.ipc.ipc_path.data(); }
};

TEST_F(ipc, socket_is_published_in_the_runtime_directory)
{
    EXPECT_EQ(path(), world.runtime_directory() / std::format("vantore-ipc-{}.sock", getpid()));
    EXPECT_EQ(getenv("VANTORESOCK"), path());
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: IPC listening on " + path() + "\n"));
    EXPECT_TRUE(std::filesystem::is_socket(path()));
}

TEST_F(ipc, socket_is_gone_after_the_session)
{
    const std::string was = path();
    dial();
    finish();
    EXPECT_FALSE(std::filesystem::exists(was));
    EXPECT_EQ(server.ipc.ipc_listen.fd, -1);
}

TEST_F(ipc, listener_is_not_handed_to_programs_that_are_started)
{
    EXPECT_EQ(fcntl(server.ipc.ipc_listen.fd, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(ipc, socket_lies_in_tmp_without_a_runtime_directory)
{
    unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(text_of(ipc_socket_path(42)), "/tmp/vantore-ipc-42.sock");
    setenv("XDG_RUNTIME_DIR", "", 1);
    EXPECT_EQ(text_of(ipc_socket_path(42)), "/tmp/vantore-ipc-42.sock");
}

TEST_F(ipc, path_is_cut_at_107_characters)
{
    setenv("XDG_RUNTIME_DIR", ("/" + std::string(200, 'd')).c_str(), 1);
    EXPECT_THAT(std::string{text_of(ipc_socket_path(42))}, testing::AllOf(SizeIs(107), EndsWith("dd")));
}

struct ipc_before_the_start : test::unstarted_desktop {
    std::filesystem::path place() { return world.runtime_directory() / ipc_name; }
    std::string ipc_name = std::format("vantore-ipc-{}.sock", getpid());
};

TEST_F(ipc_before_the_start, a_stale_socket_gives_way)
{
    std::ofstream{place()} << "stale";
    start();
    EXPECT_TRUE(std::filesystem::is_socket(place()));
    command("");
}

TEST_F(ipc_before_the_start, a_path_that_is_taken_leaves_the_session_without_ipc)
{
    std::filesystem::create_directory(place());
    setenv("VANTORESOCK", "of another session", 1);
    start();
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: IPC bind('" + place().string() +
                                       "') failed: Address already in use\n"));
    EXPECT_EQ(getenv("VANTORESOCK"), nullptr);
    EXPECT_EQ(server.ipc.ipc_listen.fd, -1);
    EXPECT_TRUE(std::filesystem::is_directory(place()));
}

TEST_F(ipc, frame_that_comes_byte_by_byte_is_answered_once_with_its_last_byte)
{
    test::ipc_client &c = dial();
    const std::string bytes = test::ipc_bytes(VNT_MSG_COMMAND, "workspace 1");
    for (const char byte : bytes) {
        EXPECT_THAT(c.messages(), IsEmpty());
        const size_t before = newest().len;
        c.send_bytes({&byte, 1});
        EVENTUALLY(newest().len > before || !c.messages().empty());
    }
    EVENTUALLY_EQ(c.messages().size(), 1U);
    (void)ask(dial(), VNT_MSG_COMMAND);
    EXPECT_THAT(c.messages(), SizeIs(1));
    EXPECT_EQ(c.messages()[0].payload, success);
}

TEST_F(ipc, frames_of_one_read_are_answered_in_order)
{
    test::ipc_client &c = dial();
    c.send_bytes(test::ipc_bytes(VNT_MSG_GET_OUTPUTS, "") + test::ipc_bytes(77, "what?") +
                 test::ipc_bytes(VNT_MSG_COMMAND, "") + "i3-ipc");
    EVENTUALLY_EQ(c.messages().size(), 3U);
    EXPECT_EQ(c.messages()[0].type, VNT_MSG_GET_OUTPUTS);
    EXPECT_EQ(c.messages()[1].type, 77U);
    EXPECT_EQ(c.messages()[2].type, VNT_MSG_COMMAND);
    EXPECT_EQ(newest().len, 6U);
}

TEST_F(ipc, request_of_the_largest_size_is_answered)
{
    test::ipc_client &c = dial();
    EXPECT_EQ(ask(c, VNT_MSG_COMMAND, std::string(ipc_largest_request, ' ')), success);
    EXPECT_EQ(ask(c, VNT_MSG_COMMAND), success);
}

TEST_F(ipc, header_of_a_larger_request_ends_the_connection_without_a_reply)
{
    test::ipc_client &c = dial();
    c.send_bytes(test::ipc_bytes(VNT_MSG_COMMAND, std::string(ipc_largest_request + 1, ' ')).substr(0, 14));
    EVENTUALLY(c.hung_up());
    EXPECT_THAT(c.messages(), IsEmpty());
    EXPECT_EQ(c.left_over(), 0U);
    EXPECT_EQ(connections(), 0);
}

TEST_F(ipc, garbage_ends_the_connection_without_a_reply)
{
    test::ipc_client &c = dial();
    c.send_bytes("GET / HTTP/1.1");
    EVENTUALLY(c.hung_up());
    EXPECT_THAT(c.messages(), IsEmpty());
    EXPECT_EQ(c.left_over(), 0U);
}

TEST_F(ipc, a_connection_that_a_child_has_inherited_hangs_up_all_the_same)
{
    test::ipc_client &c = dial();
    c.send_bytes("GET / ");
    EVENTUALLY_EQ(newest().len, 6U);
    const int inherited = dup(newest().fd);
    c.send_bytes("HTTP/1.1");
    EVENTUALLY(c.hung_up());
    close(inherited);
}

TEST_F(ipc, garbage_behind_a_request_does_not_take_its_answer)
{
    test::ipc_client &c = dial();
    c.send_bytes(test::ipc_bytes(VNT_MSG_COMMAND, "") + "GET / HTTP/1.1");
    EVENTUALLY(c.hung_up());
    EXPECT_THAT(c.messages(), SizeIs(1));
}

TEST_F(ipc, half_a_header_waits_for_its_other_half)
{
    test::ipc_client &c = dial();
    c.send_bytes("GET / ");
    EVENTUALLY_EQ(newest().len, 6U);
    (void)ask(dial(), VNT_MSG_COMMAND);
    EXPECT_FALSE(c.hung_up());
}

TEST_F(ipc, unknown_types_are_named_in_their_answer)
{
    test::ipc_client &c = dial();
    for (const uint32_t type : {9U, 1000U, 0x80000001U, 0xffffffffU})
        EXPECT_EQ(ask(c, type, "payload"), unknown_type) << type;
}

TEST_F(ipc, requests_of_a_client_that_then_closes_are_run)
{
    plug("A", 800, 600);
    dial().send(VNT_MSG_COMMAND, "workspace 4");
    test::ipc_client &c = dial();
    c.send(VNT_MSG_COMMAND, "workspace 5");
    EVENTUALLY(c.sent_all());
    c.vanish();
    EVENTUALLY(workspace(5).output != nullptr);
    EVENTUALLY_EQ(connections(), 1);
}

TEST_F(ipc, connections_do_not_block)
{
    dial();
    EXPECT_NE(fcntl(newest().fd, F_GETFL) & O_NONBLOCK, 0);
}

TEST_F(ipc, subscribers_hear_events_in_order)
{
    test::ipc_client &c = dial(), &other = dial();
    EXPECT_EQ(ask(c, VNT_MSG_SUBSCRIBE), success);
    c.take();
    plug("A", 800, 600);
    map("w"); // its app id, its focus
    command("workspace 2");
    EVENTUALLY_EQ(c.events(),
                  (std::vector{VNT_EVT_OUTPUTS, VNT_EVT_WINDOWS, VNT_EVT_WINDOWS, VNT_EVT_WORKSPACES}));
    EXPECT_TRUE(std::ranges::all_of(c.messages(), [](const auto &m) { return m.payload.empty(); }));
    (void)ask(other, VNT_MSG_COMMAND);
    EXPECT_THAT(other.messages(), SizeIs(1));
}

TEST_F(ipc, outputs_file_is_current_when_the_event_comes)
{
    std::filesystem::remove(world.runtime_directory() / "vantore-outputs");
    plug("A", 800, 600);
    EXPECT_TRUE(std::filesystem::exists(world.runtime_directory() / "vantore-outputs"));
}

TEST_F(ipc, windows_that_open_where_nobody_sees_them_are_announced)
{
    test::ipc_client &c = dial();
    (void)ask(c, VNT_MSG_SUBSCRIBE);
    test::window &w = connect().create_window("w");
    w.create_surface();
    w.create_xdg_surface();
    w.create_toplevel();
    EVENTUALLY_EQ(c.events(), std::vector{VNT_EVT_WINDOWS}); // the app id
    c.take();
    map(w);
    EVENTUALLY_EQ(c.events(), std::vector{VNT_EVT_WINDOWS});
}

// Skips the null bytes that fill_socket wrote in front of the frames.
void drain_filling(test::ipc_client &c)
{
    c.skip_nulls = true;
    c.reads = true;
}

TEST_F(ipc, subscriber_that_does_not_read_is_dropped_at_the_event_that_does_not_fit)
{
    test::ipc_client &c = dial();
    (void)ask(c, VNT_MSG_SUBSCRIBE);
    c.reads = false;
    test::fill_socket(newest().fd);
    EXPECT_FALSE(newest().dead);
    ipc_broadcast(server, VNT_EVT_WINDOWS);
    EXPECT_TRUE(newest().dead);
    ipc_broadcast(server, VNT_EVT_WINDOWS);
    EVENTUALLY_EQ(connections(), 0);
}

TEST_F(ipc, reply_that_does_not_fit_arrives_whole_once_there_is_room)
{
    test::ipc_client &c = dial();
    c.reads = false;
    test::fill_socket(newest().fd);
    const std::string text(300'000, 'x');
    ipc_reply(newest(), VNT_MSG_GET_WINDOWS, text);
    EXPECT_FALSE(newest().dead);
    drain_filling(c);
    EVENTUALLY_EQ(c.messages().size(), 1U);
    EXPECT_EQ(c.messages()[0].payload, text);
    EVENTUALLY(newest().rest.empty());
    EXPECT_EQ(newest().rest_bytes, 0U);
}

TEST_F(ipc, events_follow_the_rest_of_a_reply)
{
    test::ipc_client &c = dial();
    (void)ask(c, VNT_MSG_SUBSCRIBE);
    (void)c.take();
    c.reads = false;
    test::fill_socket(newest().fd);
    ipc_reply(newest(), VNT_MSG_GET_WINDOWS, "[]");
    ipc_broadcast(server, VNT_EVT_WORKSPACES);
    ipc_reply(newest(), VNT_MSG_GET_OUTPUTS, "[]");
    EXPECT_FALSE(newest().dead);
    drain_filling(c);
    EVENTUALLY_EQ(c.messages().size(), 3U);
    EXPECT_EQ(c.messages()[0].type, VNT_MSG_GET_WINDOWS);
    EXPECT_EQ(c.messages()[1].type, VNT_EVT_WORKSPACES | ipc_event_bit);
    EXPECT_EQ(c.messages()[2].type, VNT_MSG_GET_OUTPUTS);
}

TEST_F(ipc, descriptors_wait_in_line_with_their_reply)
{
    test::ipc_client &c = dial();
    c.reads = false;
    test::fill_socket(newest().fd);
    const int file = memfd_create("waits", MFD_CLOEXEC);
    ipc_reply(newest(), VNT_MSG_CAPTURE, "{}", {&file, 1});
    close(file); // the reply holds a duplicate
    drain_filling(c);
    EVENTUALLY_EQ(c.messages().size(), 1U);
    const int came = c.take_descriptor();
    EXPECT_GE(came, 0);
    close(came);
}

// A picture may be many megabytes large, which its reply does not show.
TEST_F(ipc, client_that_lets_more_than_sixteen_pictures_wait_is_dropped)
{
    test::ipc_client &c = dial();
    c.reads = false;
    test::fill_socket(newest().fd);
    const int file = memfd_create("picture", MFD_CLOEXEC);
    for (int i = 0; i < 16; i++)
        ipc_reply(newest(), VNT_MSG_CAPTURE, "{}", {&file, 1});
    EXPECT_FALSE(newest().dead);
    ipc_reply(newest(), VNT_MSG_CAPTURE, "{}", {&file, 1});
    EXPECT_TRUE(newest().dead);
    close(file);
    EVENTUALLY_EQ(connections(), 0);
}

TEST_F(ipc, client_that_lets_eight_mebibytes_wait_is_dropped)
{
    test::ipc_client &c = dial();
    c.reads = false;
    test::fill_socket(newest().fd);
    const std::string mebibyte(1024 * 1024, 'x');
    for (int i = 0; i < 7; i++)
        ipc_reply(newest(), VNT_MSG_GET_WINDOWS, mebibyte);
    EXPECT_FALSE(newest().dead);
    ipc_reply(newest(), VNT_MSG_GET_WINDOWS, mebibyte);
    EXPECT_TRUE(newest().dead);
    EVENTUALLY_EQ(connections(), 0);
}

TEST_F(ipc, nothing_is_pushed_to_a_client_for_which_a_reply_waits)
{
    dial().reads = false;
    test::fill_socket(newest().fd);
    ipc_reply(newest(), VNT_MSG_GET_WINDOWS, "[]");
    EXPECT_EQ(ipc_push_fds(newest(), VNT_MSG_CAPTURE_FRAME, "{}", {}), 0);
}

TEST_F(ipc, connections_are_not_handed_to_programs_that_are_started)
{
    dial();
    EXPECT_EQ(fcntl(newest().fd, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(ipc, client_that_is_condemned_by_its_own_request_gets_no_further_one_run)
{
    plug("A", 800, 600);
    test::ipc_client &c = dial();
    (void)ask(c, VNT_MSG_SUBSCRIBE);
    c.reads = false;
    test::fill_socket(newest().fd);
    c.send_bytes(test::ipc_bytes(VNT_MSG_COMMAND, "workspace 2") +
                 test::ipc_bytes(VNT_MSG_COMMAND, "workspace 3"));
    EVENTUALLY_EQ(connections(), 0);
    EXPECT_NE(workspace(2).output, nullptr);
    EXPECT_EQ(workspace(3).output, nullptr);
}

TEST_F(ipc, condemned_client_is_not_served_again_before_it_goes)
{
    plug("A", 800, 600);
    test::ipc_client &c = dial();
    ipc_client_dispose(newest());
    ipc_client_dispose(newest());
    EXPECT_EQ(connections(), 1);
    c.send(VNT_MSG_COMMAND, "workspace 2");
    EVENTUALLY(c.hung_up());
    EXPECT_EQ(workspace(2).output, nullptr);
    EXPECT_EQ(connections(), 0);
}

TEST_F(ipc, condemned_clients_may_still_be_there_at_the_end_of_the_session)
{
    dial();
    ipc_client_dispose(newest());
    finish();
}

struct two_ends : testing::Test {
    two_ends()
    {
        socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends);
        peer.fd = ends[0];
    }
    ~two_ends() override
    {
        close(ends[0]);
        close(ends[1]);
    }
    int ends[2];
    vnt_ipc_client peer; // sends through ends[0]
};

ino_t inode(int fd)
{
    struct stat about{};
    fstat(fd, &about);
    return about.st_ino;
}

// What arrives with one read: the bytes, and the inodes of the files.
struct arrival {
    std::string bytes;
    std::vector<ino_t> files;
};

arrival receive(int fd)
{
    std::array<char, 4096> bytes{};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * 16)> control{};
    iovec piece{.iov_base = bytes.data(), .iov_len = bytes.size()};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const ssize_t n = recvmsg(fd, &message, 0);
    arrival result{.bytes = {bytes.data(), size_t(std::max(n, ssize_t{0}))}, .files = {}};
    for (cmsghdr *c = CMSG_FIRSTHDR(&message); c != nullptr; c = CMSG_NXTHDR(&message, c))
        for (size_t at = CMSG_LEN(0); at < c->cmsg_len; at += sizeof(int)) {
            int file = -1;
            memcpy(&file, reinterpret_cast<char *>(c) + at, sizeof file);
            result.files.push_back(inode(file));
            close(file);
        }
    return result;
}

struct files_to_send {
    files_to_send()
    {
        for (int &fd : fds)
            fd = memfd_create("test", MFD_CLOEXEC);
    }
    ~files_to_send()
    {
        for (const int fd : fds)
            close(fd);
    }
    std::array<int, 6> fds{};
};

TEST_F(two_ends, take_a_reply_with_one_descriptor)
{
    const files_to_send files;
    ipc_reply(peer, 5, "text", std::span{files.fds}.first(1));
    const arrival came = receive(ends[1]);
    EXPECT_EQ(came.bytes, test::ipc_bytes(5, "text"));
    EXPECT_THAT(came.files, ElementsAre(inode(files.fds[0])));
}

TEST_F(two_ends, take_a_reply_without_payload_or_descriptor)
{
    ipc_reply(peer, 5, "");
    const arrival came = receive(ends[1]);
    EXPECT_EQ(came.bytes, test::ipc_bytes(5, ""));
    EXPECT_THAT(came.files, IsEmpty());
}

TEST_F(two_ends, take_four_descriptors_and_no_more)
{
    const files_to_send files;
    ipc_reply(peer, 7, "{}", files.fds);
    EXPECT_THAT(receive(ends[1]).files, ElementsAre(inode(files.fds[0]), inode(files.fds[1]),
                                                    inode(files.fds[2]), inode(files.fds[3])));
}

TEST_F(two_ends, tell_whether_a_push_went_out)
{
    const files_to_send files;
    EXPECT_EQ(ipc_push_fds(peer, 9, "{}", std::span{files.fds}.first(2)), 1);
    EXPECT_THAT(receive(ends[1]).files, SizeIs(2));
    test::fill_socket(ends[0]);
    EXPECT_EQ(ipc_push_fds(peer, 9, "{}", {}), 0);
}

TEST_F(two_ends, tell_when_a_push_was_cut)
{
    EXPECT_EQ(ipc_push_fds(peer, 9, std::string(8'000'000, 'x'), {}), -1);
}

TEST_F(two_ends, refuse_what_a_peer_that_has_gone_can_not_take)
{
    shutdown(ends[0], SHUT_WR);
    EXPECT_EQ(ipc_push_fds(peer, 9, "{}", {}), 0);
}

TEST_F(ipc, exit_ends_the_session_with_its_reply_sent)
{
    test::ipc_client &c = dial();
    c.send(VNT_MSG_COMMAND, "exit");
    c.pump();
    server_run(server);
    EVENTUALLY_EQ(c.messages().size(), 1U);
    EXPECT_EQ(c.messages()[0].payload, success);
}

TEST_F(ipc, unknown_verbs_are_logged)
{
    command(" \tfrobnicate\n now");
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: unknown IPC command 'frobnicate'\n"));
    command("Exit");
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: unknown IPC command 'Exit'\n"));
}

TEST_F(ipc, empty_commands_do_nothing)
{
    command("");
    command(" \t\r\n");
    command(std::string_view{"\0exit", 5});
    EXPECT_THAT(world.log(), Not(HasSubstr("unknown IPC command")));
}

TEST_F(ipc, output_that_is_destroyed_by_command_goes_as_if_unplugged)
{
    plug("A", 800, 600);
    plug("B", 800, 600);
    command("debug-destroy-output C");
    command("debug-destroy-output");
    EXPECT_EQ(wl_list_length(&server.outputs), 2);
    command("debug-destroy-output A");
    EXPECT_EQ(wl_list_length(&server.outputs), 1);
    EXPECT_STREQ(current_output(server)->wlr_output->name, "B");
}

TEST_F(ipc, dpms_turns_outputs_off_and_on)
{
    plug("A", 800, 600);
    const wlr_output *out = output("A").wlr_output;
    command("dpms");
    EXPECT_FALSE(out->enabled);
    command("dpms on");
    EXPECT_TRUE(out->enabled);
    command("dpms off");
    EXPECT_FALSE(out->enabled);
    command("dpms inhibit");
    EXPECT_TRUE(out->enabled);
    command("dpms off");
    EXPECT_TRUE(out->enabled);
    command("dpms uninhibit");
    EXPECT_TRUE(out->enabled);
    command("dpms sleep");
    EXPECT_FALSE(out->enabled);
    command("dpms uninhibit");
    EXPECT_FALSE(out->enabled);
}

struct virtual_outputs : ipc {
    wlr_box size()
    {
        const wlr_output *o = server.virtual_output;
        return o != nullptr ? wlr_box{.x = o->refresh, .y = 0, .width = o->width, .height = o->height}
                            : wlr_box{};
    }
};

TEST_F(virtual_outputs, appear_at_the_size_asked_for_and_are_replaced)
{
    command("virtual-output 320x240");
    EXPECT_EQ(size(), (wlr_box{60000, 0, 320, 240}));
    EXPECT_EQ(wl_list_length(&server.outputs), 1);
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: virtual output 320x240@60 created\n"));
    EXPECT_EQ(current_output(server)->usable, (wlr_box{0, 0, 320, 240}));
    command("virtual-output 640x480");
    EXPECT_EQ(size(), (wlr_box{60000, 0, 640, 480}));
    EXPECT_EQ(wl_list_length(&server.outputs), 1);
}

TEST_F(virtual_outputs, of_a_size_out_of_range_do_not_appear_and_leave_the_old_one)
{
    command("virtual-output 640x480");
    for (const char *wrong :
         {"319x240", "320x239", "7681x4320", "7680x4321", "320", "x240", "-320x-240", "big"})
        command(std::string{"virtual-output "} + wrong);
    EXPECT_EQ(size(), (wlr_box{60000, 0, 640, 480}));
    EXPECT_EQ(wl_list_length(&server.outputs), 1);
}

TEST_F(virtual_outputs, go_by_every_word_for_it)
{
    for (const char *word : {"", " off", " destroy"}) {
        command("virtual-output 640x480");
        EXPECT_EQ(wl_list_length(&server.outputs), 1);
        command(std::string{"virtual-output"} + word);
        EXPECT_EQ(server.virtual_output, nullptr);
        EXPECT_EQ(wl_list_length(&server.outputs), 0);
        command(std::string{"virtual-output"} + word);
    }
}

TEST_F(virtual_outputs, are_forgotten_when_they_are_unplugged)
{
    command("virtual-output 640x480");
    wlr_output_destroy(server.virtual_output);
    EXPECT_EQ(server.virtual_output, nullptr);
    command("virtual-output off");
}

TEST_F(virtual_outputs, need_a_headless_backend)
{
    wlr_backend *headless = std::exchange(server.headless, nullptr);
    command("virtual-output 640x480");
    EXPECT_EQ(server.virtual_output, nullptr);
    server.headless = headless;
}

} // namespace
