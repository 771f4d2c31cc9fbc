// The overview with effects: at exact times, and as it is painted.

#include "support/overview.hpp"

#include "config/settings.hpp"
#include "reload.hpp"
#include "session/lock.hpp"
#include "workspaces/switch.hpp"
#include "workspaces/transfer.hpp"

#include <array>

using test::window;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

using test::zooming_overview;

TEST_F(zooming_overview, opens_from_the_windows_and_then_nothing_ticks)
{
    map_faded({"a"});
    place(*windows["a"], 0, 30);
    open();
    EXPECT_EQ(shown("a"), (wlr_box{0, 30, 200, 100}));
    EXPECT_THAT(opacities(), ElementsAre(0));
    advance_clock_ms(75);
    EXPECT_EQ(shown("a"), (wlr_box{577, 256, 200, 100})); // 7/8 of the way to 660, 289
    EXPECT_THAT(opacities(), ElementsAre(0.75F));
    advance_clock_ms(74);
    EXPECT_NE(server.overview.anim_t0, 0);
    advance_clock_ms(1);
    advance_clock_ms(16);
    EXPECT_EQ(shown("a"), item("a").rect);
    EXPECT_THAT(opacities(), ElementsAre(1));
    expect_no_timer();
    overview_end(server);
}

TEST_F(zooming_overview, closes_to_the_windows_and_takes_no_input_meanwhile)
{
    map_faded({"a"});
    place(*windows["a"], 0, 30);
    open();
    run_clock(std::chrono::milliseconds{200});
    keyboard->tap(KEY_TAB);
    EXPECT_TRUE(ring_shows());
    overview_exit(server);
    EXPECT_FALSE(server.overview.active);
    EXPECT_TRUE(server.overview.closing);
    EXPECT_FALSE(ring_shows());
    advance_clock_ms(75);
    EXPECT_EQ(shown("a"), (wlr_box{577, 256, 200, 100})); // an eighth of the way
    EXPECT_THAT(opacities(), ElementsAre(0.25F));
    point_at(*pointer, 50, 60);
    settle();
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*windows["a"])));
    advance_clock_ms(75);
    run_clock(std::chrono::milliseconds{20});
    EXPECT_TRUE(is_closed());
    expect_no_timer();
}

TEST_F(zooming_overview, that_closes_gives_way_to_one_that_opens)
{
    map_faded({"a"});
    open();
    run_clock(std::chrono::milliseconds{200});
    overview_exit(server);
    advance_clock_ms(50);
    open();
    EXPECT_FALSE(server.overview.closing);
    EXPECT_THAT(opacities(), ElementsAre(0));
    run_clock(std::chrono::milliseconds{200});
    EXPECT_TRUE(server.overview.active);
    EXPECT_THAT(opacities(), ElementsAre(1));
    overview_end(server);
}

TEST_F(zooming_overview, closes_from_the_middle_of_its_opening)
{
    map_faded({"a"});
    open();
    advance_clock_ms(50);
    overview_exit(server);
    run_clock(std::chrono::milliseconds{200});
    EXPECT_TRUE(is_closed());
}

TEST_F(zooming_overview, without_tiles_goes_at_once)
{
    map_faded({"a"});
    goto_workspace(server, 2);
    open();
    EXPECT_THAT(items(), IsEmpty());
    overview_exit(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(zooming_overview, forgets_windows_that_go_meanwhile)
{
    map_faded({"c", "b", "a"});
    open();
    advance_clock_ms(50);
    windows["b"]->destroy(); // the layout closes up without animation
    EVENTUALLY_EQ(items(), (std::vector<std::string>{"a", "c"}));
    EXPECT_THAT(opacities(), ElementsAre(1));
    EXPECT_EQ(shown("c"), item("c").rect);
    overview_exit(server);
    advance_clock_ms(50);
    windows["a"]->destroy();
    EVENTUALLY_EQ(items(), std::vector<std::string>{"c"});
    disconnect(windows["c"]->owner());
    EVENTUALLY(items().empty());
    run_clock(std::chrono::milliseconds{200});
    EXPECT_TRUE(is_closed());
}

// It is no window any more then, although its surface is not unmapped.
TEST_F(zooming_overview, forgets_an_x11_window_that_leaves_the_manager_while_it_closes)
{
    active_windows = test::activity::may_lag;
    test::x11_window &w = map_x11({.title = "x"});
    map_faded({"a"});
    open();
    run_clock(std::chrono::milliseconds{200});
    EXPECT_THAT(server.overview.items, SizeIs(2));
    overview_exit(server);
    w.override_redirect(true);
    w.move(20, 30);
    EVENTUALLY(find_unmanaged(w) != nullptr);
    EXPECT_THAT(items(), ElementsAre("a"));
    settle();
    run_clock(std::chrono::milliseconds{200});
    EXPECT_TRUE(is_closed());
}

TEST_F(zooming_overview, ends_its_zoom_where_a_drag_begins)
{
    map_faded({"b", "a"});
    open();
    advance_clock_ms(50);
    point_at_middle(item("b").rect);
    pointer->press(BTN_LEFT);
    point_at(*pointer, 700, 650);
    EXPECT_EQ(shown("a"), item("a").rect);
    run_clock(std::chrono::milliseconds{200});
    EXPECT_EQ(shown("b").width, 84);
    EXPECT_EQ(item("b").node->opacity, 0.9F);
    pointer->release(BTN_LEFT);
    EXPECT_EQ(shown("b"), item("b").rect);
    overview_end(server);
}

TEST_F(zooming_overview, ends_at_once_with_a_lock_and_with_its_output)
{
    map_faded({"a"});
    plug("B", 800, 600);
    for (const bool closes : {false, true}) {
        open();
        advance_clock_ms(50);
        if (closes)
            overview_exit(server);
        session_lock_begin(server);
        EXPECT_TRUE(is_closed());
        server.locked = false;
    }
    open();
    overview_exit(server);
    unplug("A");
    EXPECT_TRUE(is_closed());
}

TEST_F(zooming_overview, does_not_let_workspaces_slide)
{
    map_faded({"a"});
    open();
    point_at_workspace(2);
    click();
    EXPECT_EQ(output("A").current_ws->num, 2);
    EXPECT_EQ(server.sliding.from, nullptr);
    overview_end(server);
}

// What it looks like

struct painted_overview : zooming_overview {
    // Opens it with windows of different colours and sizes, and waits for the tiles.
    void show(int count)
    {
        static constexpr std::array<uint32_t, 6> colors{0xff336699, 0xff993366, 0xff669933,
                                                        0xff996633, 0xff339966, 0xff663399};
        for (int i = 0; i < count; i++) {
            window &w = map("window " + std::to_string(i + 1), {200 + 40 * (i % 5), 300 - 30 * (i % 4)});
            w.title(i == 1 ? "A page with a long title that has no room in its cell"
                           : "Title " + std::to_string(i));
            w.fill(colors[size_t(i) % colors.size()]);
            place(w, 30 * i, 60 + 10 * i);
        }
        settle();
        run_clock(std::chrono::milliseconds{200});
        open();
        run_clock(std::chrono::milliseconds{200});
        keyboard->tap(KEY_TAB);
        settle();
    }
};

TEST_F(painted_overview, looks_like_this_with_one_window)
{
    show(1);
    EXPECT_TRUE(test::matches_golden(picture("A"), "overview_1", 8));
    overview_end(server);
}

TEST_F(painted_overview, looks_like_this_with_five_windows_on_named_workspaces)
{
    write_config("workspaces.conf", "1 = Mail\n2 = Web\n4 = A name that is too long for a thumbnail\n");
    config_reload(server);
    window &w = map("elsewhere", {640, 400});
    carry_to_workspace(record(w), workspace(4));
    show(5);
    EXPECT_TRUE(test::matches_golden(picture("A"), "overview_5", 8));
    overview_end(server);
}

TEST_F(painted_overview, looks_like_this_with_twelve_windows)
{
    show(12);
    EXPECT_TRUE(test::matches_golden(picture("A"), "overview_12", 8));
    overview_end(server);
}

TEST_F(painted_overview, blurs_what_lies_behind)
{
    config("force_effects = true\nblur = true\n");
    window &edge = map("edge", {640, 704});
    edge.fill(0xffffffff);
    place(edge, 0, 0);
    settle();
    run_clock(std::chrono::milliseconds{200});
    struct row {
        int widest_step, inside, outside; // brightness
    };
    const auto look = [&] {
        settle();
        const test::image now = picture("A");
        const auto brightness = [&](int x) { return int(now.at(x, 20) & 0xff); };
        row r{.widest_step = 0, .inside = brightness(500), .outside = brightness(800)};
        for (int x = 560; x < 720; x++)
            r.widest_step = std::max(r.widest_step, std::abs(brightness(x + 1) - brightness(x)));
        return r;
    };
    const row sharp = look();
    open();
    run_clock(std::chrono::milliseconds{200});
    const row blurred = look();
    EXPECT_GT(sharp.widest_step, 150);
    EXPECT_LT(blurred.widest_step, 20);
    EXPECT_GT(blurred.inside, blurred.outside + 40); // the edge is still there
    overview_end(server);
}

TEST_F(painted_overview, has_the_pixels_of_its_output)
{
    output_state state;
    wlr_output_state_set_scale(&state, 1.5);
    wlr_output_send_request_state(output("A").wlr_output, &state);
    show(1);
    const wlr_scene_buffer *badge = nullptr;
    for (auto &node : each<&wlr_scene_node::link>(server.overview.tree->children))
        if (node.x == item("window 1").close_rect.x && node.type == WLR_SCENE_NODE_BUFFER)
            badge = wlr_scene_buffer_from_node(&node);
    ASSERT_NE(badge, nullptr);
    EXPECT_EQ(badge->dst_width, 22);
    EXPECT_EQ(badge->WLR_PRIVATE.buffer_width, 33);
    overview_end(server);
}

TEST_F(painted_overview, is_on_the_output_under_the_pointer_only)
{
    plug("B", 800, 600);
    settle();
    const uint32_t before = pixel("B", 400, 300);
    show(1);
    EXPECT_EQ(pixel("B", 400, 300), before);
    overview_end(server);
    point_at(*pointer, 1280 + 400, 300);
    settle();
    open();
    EXPECT_EQ(server.overview.output, &output("B"));
    for (const overview_workspace &ws : server.overview.ws_items)
        EXPECT_GE(ws.box.x, 1280);
    overview_end(server);
}

} // namespace
