// Clients that misbehave on the IPC socket. Nothing stalls, nothing is left behind, and nobody else suffers.

#include "support/desktop.hpp"

#include "ipc/client.hpp"

#include <random>
#include <unistd.h>

namespace
{

constexpr size_t rounds = 10'000;
constexpr size_t connections_at_once = 6;

struct ipc_hostile : test::desktop {
    void SetUp() override
    {
        test::desktop::SetUp();
        plug("A", 320, 256);
        map("w", {64, 64});
    }

    int below(size_t limit) { return std::uniform_int_distribution<int>{0, int(limit) - 1}(random); }
    template <class List> auto any_of(const List &list) { return list[size_t(below(std::size(list)))]; }

    void pump_once()
    {
        bool pumped = false;
        (void)until([&] { return std::exchange(pumped, true); });
    }

    int accepted() { return wl_list_length(&server.ipc.ipc_clients); }

    // Returns a request that makes sense, almost makes sense, or makes none.
    std::string text()
    {
        static constexpr const char *words[]{"workspace",
                                             "dpms",
                                             "virtual-output",
                                             "debug-destroy-output",
                                             "exit",
                                             "output",
                                             "window",
                                             "region",
                                             "all",
                                             "@focused",
                                             "320x240",
                                             "off",
                                             "on",
                                             "1",
                                             "2",
                                             "-1",
                                             "0",
                                             "64",
                                             "A",
                                             "\t",
                                             "\n",
                                             "inhibit",
                                             "\xff\xfe",
                                             "%s%n",
                                             "uninhibit",
                                             "out",
                                             "reg",
                                             "99999999999"};
        std::string result;
        for (int n = below(7); n > 0; n--)
            (result += any_of(words)) += ' ';
        if (below(10) == 0)
            result += '\0';
        return result;
    }

    std::string noise(int longest)
    {
        std::string bytes(size_t(below(size_t(longest))), '\0');
        for (char &byte : bytes)
            byte = char(below(256));
        return bytes;
    }

    std::string frame()
    {
        const auto type = below(20) == 0 ? uint32_t(random()) : uint32_t(below(11));
        return test::ipc_bytes(type, text());
    }

    std::string piece()
    {
        std::string bytes = frame();
        switch (below(10)) {
        case 0: // a part of a frame
            return bytes.substr(0, size_t(below(bytes.size() + 1)));
        case 1: // a wrong length
            bytes[6 + size_t(below(4))] = char(below(256));
            return bytes;
        case 2:
            return below(4) == 0 ? noise(300) : bytes + noise(20);
        case 3: // noise in a frame
            return test::ipc_bytes(uint32_t(below(11)), noise(5000));
        default:
            return bytes;
        }
    }

    void replace_lost(std::list<test::ipc_client> &clients)
    {
        clients.remove_if([](const test::ipc_client &c) { return c.hung_up(); });
        while (clients.size() < connections_at_once)
            clients.emplace_back(server.ipc.ipc_path.data());
    }

    std::mt19937 random{20240229}; // NOLINT: the same sequence in each run
};

void close_descriptors(test::ipc_client &c)
{
    for (int fd = c.take_descriptor(); fd >= 0; fd = c.take_descriptor())
        close(fd);
}

TEST_F(ipc_hostile, ten_thousand_random_pieces_on_several_connections_hurt_nobody)
{
    std::list<test::ipc_client> clients;
    for (size_t i = 0; i < rounds; i++) {
        replace_lost(clients);
        auto &c = *std::next(clients.begin(), below(clients.size()));
        c.reads = below(10) != 0;
        c.send_bytes(piece());
        for (auto &each_client : clients) {
            each_client.pump();
            each_client.take();
            close_descriptors(each_client);
        }
        if (i % 4 == 0)
            pump_once();
        if (below(200) == 0)
            c.vanish();
    }
    clients.clear();
    EVENTUALLY_EQ(accepted(), 0);
    test::ipc_client &sane = dial();
    EXPECT_EQ(ask(sane, VNT_MSG_COMMAND, "virtual-output off"), R"({"success":true})");
}

TEST_F(ipc_hostile, two_hundred_connections_come_and_vanish)
{
    std::list<test::ipc_client> clients;
    for (int i = 0; i < 200; i++) {
        auto &c = clients.emplace_back(server.ipc.ipc_path.data());
        c.send(VNT_MSG_SUBSCRIBE);
        c.send_bytes(piece());
        pump_once();
        for (auto &other : clients)
            other.pump();
        if (below(3) == 0)
            std::next(clients.begin(), below(clients.size()))->vanish();
    }
    for (auto &c : clients)
        c.vanish();
    EVENTUALLY_EQ(accepted(), 0);
    command("workspace 1");
}

TEST_F(ipc_hostile, clients_that_vanish_within_a_request_are_forgotten)
{
    const std::string bytes = test::ipc_bytes(VNT_MSG_COMMAND, "workspace 2");
    for (size_t n = 0; n < bytes.size(); n++) {
        test::ipc_client &c = dial();
        c.send_bytes(std::string_view{bytes}.substr(0, n));
        c.pump();
        c.vanish();
        EVENTUALLY_EQ(accepted(), 0);
    }
    EXPECT_EQ(workspace(2).output, nullptr);
}

TEST_F(ipc_hostile, client_that_never_reads_its_replies_holds_nobody_up_and_its_requests_are_not_kept)
{
    test::ipc_client &c = dial();
    const vnt_ipc_client &record = *each<&vnt_ipc_client::link>(server.ipc.ipc_clients).first();
    c.reads = false;
    for (int i = 0; i < 5000; i++)
        c.send(VNT_MSG_GET_OUTPUTS);
    EVENTUALLY(c.sent_all());
    test::ipc_client &other = dial();
    EXPECT_EQ(ask(other, VNT_MSG_COMMAND), R"({"success":true})");
    EVENTUALLY_EQ(record.len, 0U);
    EXPECT_LE(record.cap, 16384U);
    EXPECT_EQ(accepted(), 2);
}

TEST_F(ipc_hostile, client_with_half_a_header_waits_alone)
{
    test::ipc_client &c = dial();
    c.send_bytes("i3-ipc\1");
    c.pump();
    for (int i = 0; i < 10; i++)
        command("workspace 1");
    EXPECT_FALSE(c.hung_up());
}

TEST_F(ipc_hostile, subscribers_that_all_stop_reading_are_dropped_and_the_others_hear_on)
{
    test::ipc_client &reader = dial();
    (void)ask(reader, VNT_MSG_SUBSCRIBE);
    std::vector<test::ipc_client *> deaf;
    for (int i = 0; i < 5; i++) {
        deaf.push_back(&dial());
        (void)ask(*deaf.back(), VNT_MSG_SUBSCRIBE);
        deaf.back()->reads = false;
    }
    size_t sent = 0;
    reader.take();
    for (; sent < 100'000 && accepted() > 1; sent++) {
        ipc_broadcast(server, VNT_EVT_WINDOWS);
        reader.pump();
        if (sent % 100 == 0)
            pump_once();
    }
    EXPECT_EQ(accepted(), 1);
    EVENTUALLY_EQ(reader.messages().size(), sent);
}

TEST_F(ipc_hostile, largest_requests_from_several_connections_are_all_answered)
{
    std::vector<test::ipc_client *> clients;
    for (int i = 0; i < 4; i++) {
        clients.push_back(&dial());
        clients.back()->send(VNT_MSG_COMMAND, std::string(ipc_largest_request, 'x'));
        clients.back()->send(VNT_MSG_CAPTURE, std::string(ipc_largest_request, '1'));
    }
    for (test::ipc_client *c : clients)
        EVENTUALLY_EQ(c->messages().size(), 2U);
}

} // namespace
