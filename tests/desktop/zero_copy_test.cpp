// Single captures that hand out a window's picture in graphics memory.

#include "support/desktop.hpp"
#include "support/handed_buffer.hpp"
#include "support/snapshot.hpp"

#include <drm_fourcc.h>
#include <wayland-client.h>

using testing::Each;

namespace
{

constexpr uint32_t red = 0xffcc3311, blue = 0xff1133cc, teal = 0xff00c0c0;
constexpr const char *failure = R"({"ok":false})";

// Hears when a buffer is destroyed.
struct buffer_end {
    explicit buffer_end(wlr_buffer &buffer)
    {
        listen<&buffer_end::destroy, note>(*this, buffer.events.destroy);
    }
    static void note(buffer_end &end)
    {
        end.gone = true;
        unlisten(end.destroy);
    }
    listener destroy;
    bool gone = false;
};

struct zero_copy : test::desktop {
    void SetUp() override
    {
        test::desktop::SetUp();
        plug("A", 1280, 720);
        c = &dial();
    }

    test::window &map_painted(test::size size, uint32_t colour)
    {
        test::window &w = map("w", size);
        w.fill(colour);
        settle();
        return w;
    }
    std::string id_of(const test::window &w) { return std::to_string(record(w).id); }
    test::handed_buffer capture(std::string_view request)
    {
        return test::take_buffer(ask(*c, VNT_MSG_CAPTURE_DMABUF, request), *c);
    }
    test::handed_buffer capture(const test::window &w) { return capture(id_of(w)); }
    test::image snapshot(const test::window &w)
    {
        int width = 0, height = 0;
        const std::string reply = ask(*c, VNT_MSG_CAPTURE, id_of(w));
        sscanf(reply.c_str(), R"({"ok":true,"kind":"shm","w":%d,"h":%d)", &width, &height);
        return test::read_snapshot(c->take_descriptor(), width, height);
    }
    void expect_failure(std::string_view request)
    {
        EXPECT_EQ(ask(*c, VNT_MSG_CAPTURE_DMABUF, request), failure) << request;
        EXPECT_EQ(c->take_descriptor(), -1) << request;
    }
    wlr_buffer &held() { return *server.capturing.cap_held; }

    test::ipc_client *c = nullptr;
};

TEST_F(zero_copy, describes_the_buffer)
{
    const test::window &w = map_painted({320, 200}, red);
    output("A").last_present_ns = 1'234'567'890'123;
    const std::string reply = ask(*c, VNT_MSG_CAPTURE_DMABUF, id_of(w));
    const test::handed_buffer b = test::take_buffer(reply, *c);
    EXPECT_EQ(c->take_descriptor(), -1);
    EXPECT_EQ(reply, std::format(R"({{"ok":true,"w":320,"h":200,"format":{},"modifier":{},"planes":1,)"
                                 R"("present_ns":1234567890123,"offset":[0],"stride":[{}]}})",
                                 DRM_FORMAT_XRGB8888, DRM_FORMAT_MOD_LINEAR, b.stride));
    EXPECT_GE(b.stride, 320U * 4);
}

TEST_F(zero_copy, shows_what_a_snapshot_shows_pixel_by_pixel)
{
    test::window &w = map_painted({201, 99}, red);
    w.owner().paint_noise(w.get(), {201, 99});
    settle();
    const test::image picture = capture(w).picture();
    EXPECT_EQ(test::compare(picture, snapshot(w), 0).pixels, 0U);
    EXPECT_NE(picture.at(0, 0), picture.at(1, 0));
}

TEST_F(zero_copy, shows_subsurfaces_and_no_title_bar)
{
    test::window &w = map_painted({320, 200}, red);
    w.add_subsurface(300, 190, {50, 30});
    w.fill(red);
    settle();
    const test::image picture = capture(w).picture();
    EXPECT_EQ(picture.height, 200);
    EXPECT_EQ(picture.at(0, 0), red);
    EXPECT_EQ(picture.at(319, 199), teal);
}

TEST_F(zero_copy, names_no_presentation_for_a_window_that_no_output_shows)
{
    const test::window &w = map_painted({100, 50}, red);
    EVENTUALLY(output("A").last_present_ns > 0);
    EXPECT_EQ(capture(w).ns, output("A").last_present_ns);
    command("workspace 2");
    settle();
    const test::handed_buffer b = capture(w);
    EXPECT_EQ(b.ns, 0);
    EXPECT_THAT(b.picture().argb, Each(red));
}

TEST_F(zero_copy, of_an_unknown_or_unmapped_window_fails)
{
    for (const char *request : {"", "1", "no window", "4294967296", "-1"})
        expect_failure(request);
    test::window &w = map_painted({100, 50}, red);
    const std::string id = id_of(w);
    expect_failure(std::string(63, ' ') + id); // only 63 bytes are read
    EXPECT_EQ(capture(std::string(62, ' ') + id).w, 100);
    w.unmap();
    settle();
    expect_failure(id);
    EXPECT_FALSE(c->hung_up());
}

TEST_F(zero_copy, hands_out_another_buffer_each_time_and_releases_the_one_before)
{
    test::window &w = map_painted({100, 50}, red);
    const test::handed_buffer first = capture(w);
    wlr_buffer &first_held = held();
    EXPECT_EQ(first_held.n_locks, 1U);
    w.fill(blue);
    settle();
    const test::handed_buffer second = capture(w);
    EXPECT_NE(&held(), &first_held);
    EXPECT_EQ(held().n_locks, 1U);
    EXPECT_EQ(first_held.n_locks, 0U);
    EXPECT_THAT(first.picture().argb, Each(red));
    EXPECT_THAT(second.picture().argb, Each(blue));
}

TEST_F(zero_copy, of_another_window_frees_the_swapchain_and_the_buffer_of_the_first)
{
    const test::window &a = map_painted({100, 50}, red);
    const test::window &b = map_painted({100, 50}, blue);
    const test::handed_buffer first = capture(a);
    const buffer_end first_held{held()};
    EXPECT_EQ(server.capturing.cap_wid, record(a).id);
    EXPECT_THAT(capture(b).picture().argb, Each(blue));
    EXPECT_TRUE(first_held.gone);
    EXPECT_EQ(server.capturing.cap_wid, record(b).id);
    EXPECT_THAT(first.picture().argb, Each(red)) << "the client's descriptor keeps the memory";
}

TEST_F(zero_copy, follows_a_window_that_changes_its_size)
{
    test::window &w = map_painted({100, 50}, red);
    (void)capture(w);
    const buffer_end small{held()};
    w.draw({120, 70}, blue);
    settle();
    const test::handed_buffer b = capture(w);
    EXPECT_TRUE(small.gone);
    EXPECT_EQ(b.w, 120);
    EXPECT_EQ(b.h, 70);
    EXPECT_THAT(b.picture().argb, Each(blue));
}

TEST_F(zero_copy, ends_with_its_window)
{
    test::window &other = map_painted({100, 50}, red);
    test::window &w = map_painted({100, 50}, red);
    (void)capture(w);
    const buffer_end last{held()};
    other.destroy();
    settle();
    EXPECT_FALSE(last.gone);
    w.destroy();
    settle();
    EXPECT_TRUE(last.gone);
    EXPECT_EQ(server.capturing.cap_sc, nullptr);
    EXPECT_EQ(server.capturing.cap_held, nullptr);
}

TEST_F(zero_copy, ends_with_a_client_that_crashes)
{
    test::window &w = map_painted({100, 50}, red);
    (void)capture(w);
    const buffer_end last{held()};
    w.owner().vanish();
    EVENTUALLY(last.gone);
}

TEST_F(zero_copy, of_an_x11_window_ends_with_it)
{
    test::x11_window &w = map_x11({.colour = 0xcc3311});
    const test::handed_buffer b = capture(std::to_string(record(w).id));
    EXPECT_THAT(b.picture().argb, Each(red));
    const buffer_end last{held()};
    w.destroy();
    EVENTUALLY(last.gone);
    EXPECT_EQ(server.capturing.cap_sc, nullptr);
}

TEST_F(zero_copy, of_an_x11_window_ends_when_it_becomes_a_menu)
{
    test::x11_window &w = map_x11();
    (void)capture(std::to_string(record(w).id));
    const buffer_end last{held()};
    w.override_redirect(true);
    w.unmap();
    w.map();
    EVENTUALLY(last.gone);
}

TEST_F(zero_copy, ends_with_the_session)
{
    (void)capture(map_painted({100, 50}, red));
    const buffer_end last{held()};
    finish();
    EXPECT_TRUE(last.gone);
}

} // namespace
