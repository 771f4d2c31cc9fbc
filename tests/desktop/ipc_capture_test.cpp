// Snapshots of windows, outputs, regions and everything. Taking one changes nothing else.

#include "support/desktop.hpp"
#include "support/snapshot.hpp"

using testing::Each;

namespace
{

constexpr uint32_t backdrop = 0xff0f121a;
constexpr uint32_t black = 0xff000000;
constexpr uint32_t red = 0xffcc3311, blue = 0xff1133cc;
constexpr const char *failure = R"({"ok":false})";

struct capture : test::desktop {
    void SetUp() override
    {
        test::desktop::SetUp();
        c = &dial();
    }

    // Returns the picture in the reply's memory file, or nothing when the file and the reply disagree.
    test::image snapshot(std::string_view spec, vnt_ipc_msg type = VNT_MSG_CAPTURE)
    {
        const std::string reply = ask(*c, type, spec);
        const int file = c->take_descriptor();
        int w = 0, h = 0;
        size_t stride = 0;
        if (sscanf(reply.c_str(), R"({"ok":true,"kind":"shm","w":%d,"h":%d,"stride":%zu})", &w, &h,
                   &stride) != 3 ||
            stride != size_t(w) * 4 || file < 0) {
            ADD_FAILURE() << spec << ": " << reply;
            return {};
        }
        return test::read_snapshot(file, w, h);
    }

    void expect_failure(std::string_view spec, vnt_ipc_msg type = VNT_MSG_CAPTURE)
    {
        EXPECT_EQ(ask(*c, type, spec), failure) << spec;
        EXPECT_EQ(c->take_descriptor(), -1) << spec;
    }

    test::window &map_painted(test::size size, uint32_t colour)
    {
        test::window &w = map("w", size);
        w.fill(colour);
        settle();
        return w;
    }

    void configure(const std::string &name, auto change)
    {
        wlr_output_state state{};
        wlr_output_state_init(&state);
        change(&state);
        wlr_output_send_request_state(output(name).wlr_output, &state);
        wlr_output_state_finish(&state);
        settle();
    }

    std::string id_of(const test::window &w) { return std::to_string(record(w).id); }

    test::ipc_client *c = nullptr;
};

test::size size_of(const test::image &picture)
{
    return {picture.width, picture.height};
}

TEST_F(capture, of_a_window_has_its_pixels_and_its_size)
{
    plug("A", 1280, 720);
    const test::window &w = map_painted({1000, 500}, 0x80400000);
    for (const std::string &spec : {id_of(w), "win " + id_of(w), "window " + id_of(w) + " 2000"}) {
        const test::image picture = snapshot(spec);
        EXPECT_EQ(size_of(picture), (test::size{1000, 500}));
        EXPECT_THAT(picture.argb, Each(0x80400000));
    }
}

TEST_F(capture, of_a_window_is_shrunk_to_the_limit)
{
    plug("A", 1280, 720);
    const test::window &w = map_painted({1000, 500}, red);
    const test::image picture = snapshot(id_of(w) + " 320");
    EXPECT_EQ(size_of(picture), (test::size{320, 160}));
    EXPECT_THAT(picture.argb, Each(red));
}

TEST_F(capture, thumbnails_are_limited_to_320)
{
    plug("A", 1280, 720);
    const test::window &w = map_painted({1000, 1}, red);
    EXPECT_EQ(size_of(snapshot(id_of(w), VNT_MSG_GET_THUMBNAIL)), (test::size{320, 1}));
    expect_failure("99", VNT_MSG_GET_THUMBNAIL);
    expect_failure("", VNT_MSG_GET_THUMBNAIL);
}

TEST_F(capture, of_a_window_works_on_a_hidden_workspace)
{
    plug("A", 1280, 720);
    const test::window &w = map_painted({100, 50}, red);
    command("workspace 2");
    settle();
    EXPECT_THAT(snapshot(id_of(w)).argb, Each(red));
}

TEST_F(capture, of_an_unknown_or_unmapped_window_fails)
{
    plug("A", 640, 480);
    expect_failure("");
    expect_failure("1");
    expect_failure("no window");
    test::window &w = map_painted({100, 50}, red);
    const std::string id = id_of(w);
    w.unmap();
    settle();
    expect_failure(id);
    EXPECT_FALSE(c->hung_up());
}

TEST_F(capture, of_an_output_has_what_it_shows)
{
    plug("A", 640, 480);
    map_painted({100, 80}, red);
    const test::image picture = snapshot("output A");
    EXPECT_EQ(size_of(picture), (test::size{640, 480}));
    EXPECT_EQ(test::compare(picture, this->picture("A"), 0).pixels, 0U);
    EXPECT_EQ(picture.at(320, 240), red);
    EXPECT_EQ(picture.at(5, 5), backdrop);
}

TEST_F(capture, of_an_output_without_a_name_is_of_the_current_one)
{
    plug("A", 640, 480);
    plug("B", 320, 256);
    wlr_cursor_warp(server.cursor, nullptr, 10, 10);
    EXPECT_EQ(size_of(snapshot("output")), (test::size{640, 480}));
    EXPECT_EQ(size_of(snapshot("out @focused 100")), (test::size{100, 75}));
    EXPECT_EQ(size_of(snapshot("out B")), (test::size{320, 256}));
    expect_failure("output C");
    expect_failure("output b");
}

TEST_F(capture, without_outputs_fails)
{
    for (const char *spec : {"output", "all", "region 0 0 10 10"})
        expect_failure(spec);
}

TEST_F(capture, is_opaque_where_a_window_is_not)
{
    plug("A", 640, 480);
    map_painted({100, 80}, 0x80004000);
    const uint32_t seen = snapshot("output A").at(320, 240);
    EXPECT_EQ(seen, this->picture("A").at(320, 240) | black);
    EXPECT_NE(seen, backdrop);
}

TEST_F(capture, of_a_region_over_two_outputs_has_both_pictures)
{
    plug("A", 640, 480);
    plug("B", 640, 320);
    wlr_cursor_warp(server.cursor, nullptr, 10, 10);
    map_painted({400, 300}, red); // 120 to 520
    wlr_cursor_warp(server.cursor, nullptr, 700, 10);
    map_painted({400, 300}, blue); // 760 to 1160
    const test::image picture = snapshot("region 500 100 300 380");
    EXPECT_EQ(size_of(picture), (test::size{300, 380}));
    EXPECT_EQ(picture.at(19, 100), red);
    EXPECT_EQ(picture.at(20, 100), backdrop);
    EXPECT_EQ(picture.at(259, 100), backdrop);
    EXPECT_EQ(picture.at(260, 100), blue);
    EXPECT_EQ(picture.at(139, 300), backdrop);
    EXPECT_EQ(picture.at(140, 219), backdrop);
    EXPECT_EQ(picture.at(140, 220), black); // B ends there
}

TEST_F(capture, of_a_region_is_black_outside_all_outputs)
{
    plug("A", 640, 480);
    const test::image picture = snapshot("reg -10 -20 30 40");
    EXPECT_EQ(picture.at(9, 20), black);
    EXPECT_EQ(picture.at(10, 19), black);
    EXPECT_EQ(picture.at(10, 20), backdrop);
    EXPECT_EQ(picture.at(29, 39), backdrop);
}

TEST_F(capture, of_a_region_fails_outside_its_bounds)
{
    plug("A", 640, 480);
    for (const char *spec :
         {"region 0 0 0 10", "region 0 0 10", "region 0 0 10 -1", "region 0 0 32769 1", "region 0 0 1 32769",
          "region 640 0 10 10", "region 0 -10 10 10", "region 2147483647 2147483647 32768 32768",
          "region -2147483648 -2147483648 32768 32768"})
        expect_failure(spec);
    EXPECT_EQ(size_of(snapshot("region 0 0 32768 1")), (test::size{32768, 1}));
    EXPECT_EQ(size_of(snapshot("region 639 479 1 32768 100")), (test::size{1, 100}));
}

TEST_F(capture, of_everything_covers_all_outputs)
{
    plug("A", 640, 480);
    plug("B", 320, 256);
    EXPECT_EQ(size_of(snapshot("all")), (test::size{960, 480}));
    EXPECT_EQ(size_of(snapshot("all 480")), (test::size{480, 240}));
}

TEST_F(capture, of_a_scaled_output_is_in_its_pixels_and_a_region_shows_its_top_left)
{
    plug("A", 640, 512);
    configure("A", [](wlr_output_state *s) { wlr_output_state_set_scale(s, 2); });
    map_painted({100, 80}, red); // 110 to 210 by 88 to 168 in layout units
    const test::image picture = snapshot("output A");
    EXPECT_EQ(size_of(picture), (test::size{640, 512}));
    EXPECT_EQ(picture.at(220, 176), red);
    EXPECT_EQ(picture.at(419, 335), red);
    const test::image region = snapshot("all");
    EXPECT_EQ(size_of(region), (test::size{320, 256}));
    EXPECT_EQ(region.at(219, 176), backdrop);
    EXPECT_EQ(region.at(220, 176), red);
}

TEST_F(capture, of_a_region_is_black_where_an_output_has_fewer_pixels_than_layout_units)
{
    plug("A", 320, 256);
    configure("A", [](wlr_output_state *s) { wlr_output_state_set_scale(s, 0.5F); });
    const test::image region = snapshot("all");
    EXPECT_EQ(size_of(region), (test::size{640, 512}));
    EXPECT_EQ(region.at(319, 255), backdrop);
    EXPECT_EQ(region.at(320, 255), black);
    EXPECT_EQ(region.at(319, 256), black);
    EXPECT_EQ(snapshot("region 400 0 100 100").at(0, 0), black);
}

TEST_F(capture, of_a_rotated_output_is_in_its_own_orientation)
{
    plug("A", 640, 512);
    configure("A", [](wlr_output_state *s) { wlr_output_state_set_transform(s, WL_OUTPUT_TRANSFORM_90); });
    EXPECT_EQ(output_layout_box(output("A")), (wlr_box{0, 0, 512, 640}));
    map_painted({300, 100}, red);
    const test::image picture = snapshot("output A");
    EXPECT_EQ(size_of(picture), (test::size{640, 512}));
    EXPECT_EQ(test::compare(picture, this->picture("A"), 0).pixels, 0U);
    EXPECT_EQ(picture.at(320, 256 + 140), red); // the window's long side is upright
    EXPECT_EQ(picture.at(320 + 140, 256), backdrop);
}

TEST_F(capture, of_an_output_that_is_off_shows_what_would_be_on_it)
{
    plug("A", 640, 480);
    map_painted({100, 80}, red);
    command("dpms off");
    EXPECT_EQ(snapshot("output A").at(320, 240), red);
    EXPECT_FALSE(output("A").wlr_output->enabled);
    command("dpms on");
    EVENTUALLY_EQ(pixel("A", 320, 240), red);
}

TEST_F(capture, of_an_output_that_has_never_lit_up_fails)
{
    plug({.name = "A", .accepts = [](const wlr_output_state &) { return false; }});
    expect_failure("output A");
    expect_failure("all");
}

TEST_F(capture, of_a_virtual_output_works)
{
    command("virtual-output 640x480");
    map_painted({100, 80}, red);
    const test::image picture = snapshot(std::string{"output "} + server.virtual_output->name);
    EXPECT_EQ(picture.at(320, 240), red);
    EXPECT_EQ(picture.at(5, 5), backdrop);
}

TEST_F(capture, of_an_output_composes_a_client_buffer_that_fills_it)
{
    plug("A", 640, 512);
    configure("A", [](wlr_output_state *s) { wlr_output_state_set_scale(s, 2); });
    test::window &w = map_painted({320, 256}, red);
    wlr_scene_node_set_enabled(&server.layers[0]->node, false);
    w.fill(red);
    settle();
    const wlr_buffer *shown = test::made_up(output("A").wlr_output).shown;
    ASSERT_EQ(shown->width, 320) << "the client's own buffer is on the screen";
    const test::image picture = snapshot("output A");
    EXPECT_EQ(size_of(picture), (test::size{640, 512}));
    EXPECT_EQ(picture.at(639, 511), red);
}

// How an output is set up while a snapshot is taken between a change and the frame that shows it.
struct change_on_the_way {
    const char *name;
    float scale;
    wl_output_transform transform;
    int x, y; // buffer coordinates of a point in the window
};

class capture_amid_a_change : public capture, public testing::WithParamInterface<change_on_the_way>
{
};

TEST_P(capture_amid_a_change, leaves_the_next_frame_its_damage)
{
    const change_on_the_way &p = GetParam();
    plug("A", 640, 512);
    configure("A", [&](wlr_output_state *s) {
        wlr_output_state_set_scale(s, p.scale);
        wlr_output_state_set_transform(s, p.transform);
    });
    test::window &w = map_painted({200, 160}, red);
    ASSERT_EQ(pixel("A", p.x, p.y), red);
    unlisten(output("A").frame); // holds back the frames for which changes ask
    for (const uint32_t colour : {blue, red, blue, red, blue}) { // more often than a swapchain has buffers
        w.fill(colour);
        settle();
        ASSERT_NE(pixel("A", p.x, p.y), colour);
        EXPECT_EQ(snapshot("output A").at(p.x, p.y), colour);
        EXPECT_EQ(snapshot("output A").at(p.x, p.y), colour);
        ASSERT_NE(pixel("A", p.x, p.y), colour);
        wlr_scene_output_commit(output("A").scene_output, nullptr);
        EXPECT_EQ(pixel("A", p.x, p.y), colour);
        EXPECT_EQ(test::compare(this->picture("A"), snapshot("output A"), 0).pixels, 0U);
    }
}

INSTANTIATE_TEST_SUITE_P(
    all, capture_amid_a_change,
    testing::Values(change_on_the_way{"plain", 1, WL_OUTPUT_TRANSFORM_NORMAL, 320, 256},
                    change_on_the_way{"scaled", 1.5F, WL_OUTPUT_TRANSFORM_NORMAL, 320, 256},
                    change_on_the_way{"rotated", 1, WL_OUTPUT_TRANSFORM_270, 320, 256},
                    change_on_the_way{"flipped", 2, WL_OUTPUT_TRANSFORM_FLIPPED, 320, 256}),
    [](const auto &about) { return about.param.name; });

TEST_F(capture, changes_nothing_on_the_output)
{
    auto &made = plug("A", 640, 480);
    map_painted({100, 80}, red);
    settle();
    const int commits = made.commits;
    const wlr_buffer *shown = made.shown;
    snapshot("output A");
    snapshot("all");
    settle();
    EXPECT_EQ(made.commits, commits);
    EXPECT_EQ(made.shown, shown);
    EXPECT_FALSE(wlr_scene_output_needs_frame(output("A").scene_output));
}

TEST_F(capture, without_a_change_leaves_no_damage_behind)
{
    plug("A", 640, 480);
    map_painted({100, 80}, red);
    settle();
    snapshot("output A");
    EXPECT_EQ(pixman_region32_not_empty(&output("A").scene_output->damage_ring.current), 0);
}

TEST_F(capture, gives_frame_callbacks_to_the_next_real_frame)
{
    plug("A", 640, 480);
    test::window &w = map_painted({100, 80}, red);
    const int before = w.frames();
    w.request_frame();
    snapshot("output A");
    w.fill(blue);
    EVENTUALLY(w.frames() > before);
    EVENTUALLY_EQ(pixel("A", 320, 240), blue);
}

} // namespace
