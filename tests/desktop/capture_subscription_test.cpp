// A window's pictures that are pushed to a client in graphics memory.

#include "support/desktop.hpp"
#include "support/handed_buffer.hpp"
#include "support/sockets.hpp"

#include "ipc/client.hpp"
#include "ipc/transport.hpp"
#include "platform.hpp"

#include <algorithm>
#include <drm_fourcc.h>
#include <filesystem>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <wayland-client.h>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

constexpr uint32_t red = 0xffcc3311, blue = 0xff1133cc, green = 0xff11cc33;
constexpr const char *success = R"({"ok":true})";
constexpr const char *failure = R"({"ok":false})";
constexpr const char *gone = R"({"gone":true})";
constexpr int one_frame_ms = 17; // at 60 frames a second

struct capture_subscription : test::desktop {
    void SetUp() override
    {
        test::desktop::SetUp();
        plug("A", 1280, 720);
        c = &dial();
        w = &map("w", {100, 50});
        draw(red);
    }

    std::string id() { return std::to_string(record(*w).id); }
    vantore_capture_subscription &sub() const { return server.capturing.cap_sub; }
    vnt_ipc_client &newest() { return *each<&vnt_ipc_client::link>(server.ipc.ipc_clients).first(); }

    // Returns how much memory the bytes take that the newest client has not read.
    int unread()
    {
        int bytes = 0;
        ioctl(newest().fd, SIOCOUTQ, &bytes);
        return bytes;
    }

    void draw(uint32_t colour)
    {
        w->fill(colour);
        settle();
    }
    // Lets a frame's time pass before it draws.
    void draw_next(uint32_t colour)
    {
        advance_clock_ms(one_frame_ms);
        draw(colour);
    }
    void subscribe(std::string_view rate = "") { subscribe(*c, id() + " " + std::string{rate}); }
    void subscribe(test::ipc_client &client, std::string_view request)
    {
        client.take();
        client.send(VNT_MSG_CAPTURE_SUBSCRIBE, request);
        settle();
        ASSERT_GE(client.messages().size(), 1U);
        EXPECT_EQ(client.messages()[0].type, uint32_t{VNT_MSG_CAPTURE_SUBSCRIBE});
        EXPECT_EQ(client.messages()[0].payload, success) << request;
    }
    // Takes the payloads of all pushes that have arrived.
    static std::vector<std::string> texts(test::ipc_client &client)
    {
        std::vector<std::string> result;
        for (const test::ipc_message &m : client.take())
            if (m.type == VNT_MSG_CAPTURE_FRAME)
                result.push_back(m.payload);
        return result;
    }
    std::vector<test::handed_buffer> pictures() const
    {
        std::vector<test::handed_buffer> result;
        for (const std::string &text : texts(*c))
            result.push_back(test::take_buffer(text, *c));
        return result;
    }
    std::vector<unsigned> numbers() const
    {
        std::vector<unsigned> result;
        for (const test::handed_buffer &b : pictures())
            result.push_back(b.seq);
        return result;
    }
    void expect_ended() const
    {
        EXPECT_EQ(sub().client, nullptr);
        EXPECT_EQ(sub().wid, 0U);
        EXPECT_EQ(sub().watch, nullptr);
        EXPECT_THAT(sub().held, Each(nullptr));
    }

    test::ipc_client *c = nullptr;
    test::window *w = nullptr;
};

TEST_F(capture_subscription, is_answered_and_then_gets_a_first_picture_without_a_commit)
{
    subscribe();
    const std::vector<std::string> pushed = texts(*c);
    ASSERT_THAT(pushed, SizeIs(1));
    const test::handed_buffer b = test::take_buffer(pushed[0], *c);
    EXPECT_EQ(pushed[0], std::format(R"({{"ok":true,"w":100,"h":50,"format":{},"modifier":0,"planes":1,)"
                                     R"("t_ns":{},"seq":0,"offset":[0],"stride":[{}]}})",
                                     DRM_FORMAT_XRGB8888, g_platform.monotonic_ns(), b.stride));
    EXPECT_THAT(b.picture().argb, Each(red));
}

TEST_F(capture_subscription, gets_a_picture_for_each_frame_of_the_window)
{
    subscribe();
    (void)pictures();
    draw_next(blue);
    draw_next(green);
    const auto pushed = pictures();
    ASSERT_THAT(pushed, SizeIs(2));
    EXPECT_EQ(pushed[0].seq, 1U);
    EXPECT_EQ(pushed[1].seq, 2U);
    EXPECT_THAT(pushed[0].picture().argb, Each(blue));
    EXPECT_THAT(pushed[1].picture().argb, Each(green));
}

TEST_F(capture_subscription, follows_subsurfaces_too)
{
    w->add_subsurface(10, 10, {20, 20});
    w->commit();
    settle();
    subscribe();
    (void)pictures();
    advance_clock_ms(one_frame_ms);
    w->paint_subsurfaces({20, 20}, blue);
    settle();
    const auto pushed = pictures();
    ASSERT_THAT(pushed, SizeIs(1));
    EXPECT_EQ(pushed[0].picture().at(15, 15), blue);
    EXPECT_EQ(pushed[0].picture().at(5, 5), red);
}

// Subsurfaces that change only together with their window.
struct tied_parts {
    explicit tied_parts(test::window &window) : owner(window.owner())
    {
        auto *manager = static_cast<wl_subcompositor *>(owner.bind(wl_subcompositor_interface, 1));
        for (const int x : {10, 50}) {
            wl_surface *surface = owner.create_surface("part");
            wl_subsurface *part = wl_subcompositor_get_subsurface(manager, surface, window.get());
            wl_subsurface_set_position(part, x, 10);
            parts.emplace_back(surface, part);
        }
        wl_subcompositor_destroy(manager);
    }
    ~tied_parts()
    {
        for (const auto &[surface, part] : parts) {
            wl_subsurface_destroy(part);
            owner.destroy_surface(surface);
        }
    }
    void paint(uint32_t colour)
    {
        for (const auto &[surface, part] : parts)
            owner.paint(surface, {20, 20}, colour);
    }
    test::client &owner;
    std::vector<std::pair<wl_surface *, wl_subsurface *>> parts;
};

TEST_F(capture_subscription, gets_one_picture_of_what_changes_together)
{
    tied_parts parts{*w};
    parts.paint(blue);
    draw(red);
    subscribe();
    (void)pictures();
    parts.paint(green);
    draw_next(green);
    const auto pushed = pictures();
    ASSERT_THAT(pushed, SizeIs(1));
    EXPECT_THAT(pushed[0].picture().argb, Each(green));
}

TEST_F(capture_subscription, gets_nothing_for_commits_without_a_new_buffer)
{
    subscribe();
    (void)pictures();
    advance_clock_ms(one_frame_ms);
    w->commit();
    settle();
    EXPECT_THAT(pictures(), IsEmpty());
}

TEST_F(capture_subscription, skips_commits_that_come_too_early_and_makes_none_up)
{
    subscribe("60");
    (void)pictures();
    advance_clock_ms(12);
    draw(blue);
    run_clock(std::chrono::seconds{1});
    settle();
    EXPECT_THAT(numbers(), IsEmpty());
    draw(green);
    EXPECT_THAT(numbers(), ElementsAre(1));
    advance_clock_ms(13); // three quarters of a frame's time
    draw(red);
    EXPECT_THAT(numbers(), ElementsAre(2));
}

TEST_F(capture_subscription, takes_the_rate_that_was_asked_for_or_60)
{
    struct rate {
        std::string text;
        int64_t gap_ns;
    };
    for (const auto &[text, gap_ns] : std::initializer_list<rate>{{"", 12'500'000},
                                                                  {"0", 12'500'000},
                                                                  {"481", 12'500'000},
                                                                  {"-5", 12'500'000},
                                                                  {"fast", 12'500'000},
                                                                  {"99999999999999999999", 12'500'000},
                                                                  {"60", 12'500'000},
                                                                  {"120", 6'250'000},
                                                                  {"480", 1'562'500},
                                                                  {"1", 750'000'000},
                                                                  {"30 more words", 25'000'000}}) {
        subscribe(text);
        EXPECT_EQ(sub().min_gap_ns, gap_ns) << text;
    }
    subscribe(std::string(70, ' ') + "30"); // only 63 bytes are read
    EXPECT_EQ(sub().min_gap_ns, 12'500'000);
}

TEST_F(capture_subscription, to_an_unknown_window_is_refused_and_the_former_one_stays)
{
    subscribe();
    (void)pictures();
    test::ipc_client &other = dial();
    for (const char *request : {"", "99", "x", "4294967296 60"})
        EXPECT_EQ(ask(other, VNT_MSG_CAPTURE_SUBSCRIBE, request), failure) << request;
    draw_next(blue);
    EXPECT_THAT(numbers(), ElementsAre(1));
}

TEST_F(capture_subscription, passes_to_the_latest_client_without_a_notice)
{
    subscribe();
    draw_next(blue);
    (void)pictures();
    test::ipc_client &other = dial();
    subscribe(other, id());
    EXPECT_THAT(texts(other), SizeIs(1));
    draw_next(green);
    EXPECT_THAT(texts(other), ElementsAre(testing::HasSubstr(R"("seq":1,)")));
    EXPECT_THAT(c->messages(), IsEmpty());
    EXPECT_FALSE(c->hung_up());
}

TEST_F(capture_subscription, keeps_the_two_newest_pictures_as_they_are)
{
    constexpr std::array<uint32_t, 3> colours{blue, green, red};
    subscribe();
    std::vector<test::handed_buffer> got = pictures();
    std::vector<uint32_t> drawn{red};
    for (size_t i = 0; i < 12; i++) {
        drawn.push_back(colours[i % colours.size()]);
        draw_next(drawn.back());
        std::ranges::move(pictures(), std::back_inserter(got));
        ASSERT_EQ(got.size(), drawn.size());
        for (size_t n = got.size() - 2; n < got.size(); n++)
            EXPECT_THAT(got[n].picture().argb, Each(drawn[n])) << n << " of " << got.size();
    }
}

TEST_F(capture_subscription, leaves_alone_what_a_single_capture_handed_out)
{
    const test::handed_buffer once = test::take_buffer(ask(*c, VNT_MSG_CAPTURE_DMABUF, id()), *c);
    subscribe();
    for (int i = 0; i < 6; i++)
        draw_next(i % 2 == 0 ? blue : green);
    EXPECT_THAT(numbers(), SizeIs(7));
    EXPECT_THAT(once.picture().argb, Each(red));
}

TEST_F(capture_subscription, goes_on_beside_single_captures_of_another_window)
{
    test::window &other = map("other", {60, 40});
    subscribe();
    for (int i = 0; i < 4; i++) {
        (void)pictures();
        const auto once =
            test::take_buffer(ask(*c, VNT_MSG_CAPTURE_DMABUF, std::to_string(record(other).id)), *c);
        EXPECT_EQ(once.w, 60);
        draw_next(blue);
        const auto pushed = pictures();
        ASSERT_THAT(pushed, SizeIs(1));
        EXPECT_EQ(pushed[0].w, 100);
    }
}

TEST_F(capture_subscription, follows_a_window_that_changes_its_size)
{
    subscribe();
    (void)pictures();
    advance_clock_ms(one_frame_ms);
    w->draw({130, 70}, blue);
    settle();
    const auto pushed = pictures();
    ASSERT_THAT(pushed, SizeIs(1));
    EXPECT_EQ(pushed[0].w, 130);
    EXPECT_EQ(pushed[0].h, 70);
    EXPECT_THAT(pushed[0].picture().argb, Each(blue));
}

TEST_F(capture_subscription, waits_for_a_window_that_has_no_picture)
{
    subscribe();
    (void)pictures();
    advance_clock_ms(one_frame_ms);
    w->unmap();
    settle();
    EXPECT_THAT(c->messages(), IsEmpty());
    ASSERT_NE(sub().client, nullptr);
    map(*w);
    EXPECT_THAT(numbers(), ElementsAre(1));
}

TEST_F(capture_subscription, ends_with_its_window_and_one_notice)
{
    subscribe();
    draw_next(blue);
    (void)pictures();
    const vantore_capture_subscription &s = sub();
    ASSERT_NE(s.held[0], nullptr);
    w->destroy();
    settle();
    EXPECT_THAT(texts(*c), ElementsAre(gone));
    EXPECT_EQ(c->take_descriptor(), -1);
    expect_ended();
    EXPECT_EQ(server.capturing.cap_sc, nullptr);
}

TEST_F(capture_subscription, ends_with_the_role_of_a_surface_that_lives_on)
{
    subscribe();
    (void)pictures();
    w->destroy_role();
    settle();
    EXPECT_THAT(texts(*c), ElementsAre(gone));
    expect_ended();
}

TEST_F(capture_subscription, ends_with_a_client_that_crashes)
{
    subscribe();
    (void)pictures();
    w->owner().vanish();
    EVENTUALLY(!c->messages().empty());
    EXPECT_THAT(texts(*c), ElementsAre(gone));
    expect_ended();
}

TEST_F(capture_subscription, ends_while_a_picture_is_about_to_be_drawn)
{
    subscribe();
    (void)pictures();
    advance_clock_ms(one_frame_ms);
    w->fill(blue);
    w->destroy();
    settle();
    EXPECT_THAT(texts(*c), ElementsAre(gone));
    expect_ended();
}

TEST_F(capture_subscription, tells_of_the_end_once_there_is_room)
{
    subscribe();
    c->reads = false;
    (void)pictures();
    test::fill_socket(newest().fd);
    w->destroy();
    settle();
    expect_ended();
    c->skip_nulls = true;
    c->reads = true;
    EVENTUALLY(!c->messages().empty());
    EXPECT_THAT(texts(*c), ElementsAre(gone));
}

TEST_F(capture_subscription, of_an_x11_window_follows_it_to_its_end)
{
    test::x11_window &x = map_x11({.colour = 0xcc3311});
    subscribe(*c, std::to_string(record(x).id));
    EXPECT_THAT(pictures(), SizeIs(1));
    advance_clock_ms(one_frame_ms);
    x.fill(0x1133cc);
    EVENTUALLY(!c->messages().empty());
    const auto pushed = pictures();
    ASSERT_FALSE(pushed.empty());
    EXPECT_THAT(pushed.back().picture().argb, Each(blue));
    x.destroy();
    EVENTUALLY(!c->messages().empty());
    EXPECT_THAT(texts(*c), ElementsAre(gone));
    expect_ended();
}

TEST_F(capture_subscription, of_an_x11_window_ends_with_the_x_server)
{
    test::x11_window &x = map_x11();
    subscribe(*c, std::to_string(record(x).id));
    (void)pictures();
    kill_x_server();
    EVENTUALLY(!c->messages().empty());
    EXPECT_THAT(texts(*c), ElementsAre(gone));
    expect_ended();
}

TEST_F(capture_subscription, ends_with_its_client)
{
    subscribe();
    (void)pictures();
    c->vanish();
    EVENTUALLY_EQ(wl_list_length(&server.ipc.ipc_clients), 0);
    expect_ended();
    draw_next(blue);
    EXPECT_NE(server.capturing.cap_sc, nullptr) << "the swapchain stays for the next capture";
}

// Condemns the client within a commit, so before the picture is drawn.
struct condemning {
    listener commit;
    vnt_ipc_client *client;
    static void run(condemning &c) { ipc_client_dispose(*c.client); }
};

TEST_F(capture_subscription, draws_nothing_for_a_condemned_client)
{
    subscribe();
    (void)pictures();
    condemning at_once{.client = &newest()};
    listen<&condemning::commit, condemning::run>(at_once, tl_surface(record(*w))->events.commit);
    draw_next(blue);
    expect_ended();
    EXPECT_THAT(c->messages(), IsEmpty());
}

TEST_F(capture_subscription, does_not_draw_for_a_client_that_does_not_read)
{
    subscribe();
    c->reads = false;
    (void)pictures();
    for (int i = 0; i < 30; i++)
        draw_next(i % 2 == 0 ? blue : green);
    const wlr_buffer *last = sub().held[1].get();
    const int64_t last_push_ns = sub().last_push_ns;
    EXPECT_EQ(sub().seq, 31U);
    draw_next(blue);
    EXPECT_EQ(sub().held[1].get(), last);
    EXPECT_EQ(sub().last_push_ns, last_push_ns);
    EXPECT_FALSE(newest().dead);
    c->reads = true;
    EVENTUALLY_EQ(unread(), 0);
    EXPECT_LT(numbers().size(), 25U);
    draw_next(green);
    EXPECT_THAT(numbers(), ElementsAre(32)) << "the gap tells of what was missed";
}

TEST_F(capture_subscription, misses_pictures_while_a_reply_waits)
{
    subscribe();
    (void)pictures();
    c->reads = false;
    test::fill_socket(newest().fd);
    c->send(VNT_MSG_GET_WINDOWS);
    settle();
    ASSERT_FALSE(newest().rest.empty());
    draw_next(blue);
    EXPECT_EQ(sub().seq, 2U);
    c->skip_nulls = true;
    c->reads = true;
    EVENTUALLY(!c->messages().empty());
    draw_next(green);
    EXPECT_THAT(numbers(), ElementsAre(2));
}

TEST_F(capture_subscription, goes_on_after_a_send_that_was_refused)
{
    subscribe();
    (void)pictures();
    const auto real = g_platform.send_message;
    g_platform.send_message = [](int, const msghdr *, int) {
        errno = EAGAIN;
        return ssize_t{-1};
    };
    const wlr_buffer *last = sub().held[1].get();
    draw_next(blue);
    g_platform.send_message = real;
    EXPECT_EQ(sub().held[1].get(), last);
    EXPECT_EQ(sub().held[0], nullptr);
    draw_next(green);
    EXPECT_THAT(numbers(), ElementsAre(2));
}

TEST_F(capture_subscription, ends_without_a_notice_when_a_picture_was_sent_in_part)
{
    subscribe();
    (void)pictures();
    const auto real = g_platform.send_message;
    g_platform.send_message = [](int, const msghdr *, int) { return ssize_t{5}; };
    draw_next(blue);
    g_platform.send_message = real;
    expect_ended();
    EXPECT_FALSE(newest().dead);
    EXPECT_THAT(c->messages(), IsEmpty());
    EXPECT_EQ(ask(*c, VNT_MSG_COMMAND), R"({"success":true})");
}

TEST_F(capture_subscription, leaves_no_descriptors_behind)
{
    const auto open = [] { return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"}, {}); };
    std::vector<ptrdiff_t> counts;
    for (int round = 0; round < 5; round++) {
        test::ipc_client &guest = dial();
        test::window &x = map("guest", {80, 60});
        (void)ask(guest, VNT_MSG_CAPTURE_DMABUF, std::to_string(record(x).id));
        subscribe(guest, std::to_string(record(x).id));
        for (int i = 0; i < 5; i++) {
            advance_clock_ms(one_frame_ms);
            x.draw({80 + i, 60}, blue);
            settle();
        }
        while (descriptor(guest.take_descriptor()).fd >= 0)
            continue;
        guest.vanish();
        disconnect(x.owner());
        counts.push_back(open());
    }
    EXPECT_THAT(counts, Each(counts[0]));
}

TEST_F(capture_subscription, ends_with_the_session)
{
    subscribe();
    draw_next(blue);
    finish();
    expect_ended();
}

} // namespace
