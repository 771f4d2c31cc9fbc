// Measures in this process what managing windows costs: the arithmetic of tiles, arranging windows, switching
// workspaces, focus by direction, an output that comes and goes, and the display of the Mouse Tiler.

#include "in_process.hpp"
#include "support/desktop.hpp"

#include "input/mouse_tiler.hpp"
#include "layout.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/direction.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/switch.hpp"
#include "workspaces/tile_boxes.hpp"
#include "workspaces/transfer.hpp"

#include <chrono>
#include <cstdio>

using std::chrono::steady_clock;

template <class Action> static double duration_us(Action action)
{
    const auto begin = steady_clock::now();
    action();
    return std::chrono::duration<double, std::micro>(steady_clock::now() - begin).count();
}

// The median of this many rounds, in microseconds for one call.
template <class Action> static double microseconds(int calls, Action action)
{
    std::vector<double> us;
    us.reserve(rounds);
    for (int round = 0; round < rounds; round++)
        us.push_back(duration_us([&] {
                         for (int i = 0; i < calls; i++)
                             action();
                     }) /
                     calls);
    return median(us);
}

TEST(bench, boxes_of_tiles)
{
    const std::vector<tile_weight> weights(max_tiles, {.width = 1.15, .height = 1.3});
    std::vector<wlr_box> boxes(max_tiles);
    for (const vantore_tile_mode mode : {TM_MASTER, TM_GRID, TM_COLUMNS, TM_MONOCLE}) {
        const tile_rules rules{.mode = mode, .area = {8, 8, 3824, 2144}, .gap = 8, .master_ratio = 0.55};
        const double us = microseconds(1000, [&] { tile_boxes(rules, weights, boxes); });
        printf("boxes of %d tiles, %s: %.2f microseconds\n", max_tiles, tile_mode_name(mode), us);
    }
}

struct windows : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1920, 1088);
        c = &connect();
    }
    void map_up_to(int count)
    {
        while (wl_list_length(&server.toplevels) < count) {
            test::window &w = c->create_window("window");
            w.preferred = {64, 64};
            w.auto_draw = false;
            w.open();
            ASSERT_TRUE(until([&] { return w.configure_count() > 0; }));
            w.draw({64, 64}, 0xff808080);
            ASSERT_TRUE(until([&] { return find_record(w) != nullptr; }));
        }
        settle();
    }
    test::client *c = nullptr;
};

TEST_F(windows, arranged)
{
    command("ws-layout 1 tiling");
    for (const int count : {8, 16, 32, 64}) {
        map_up_to(count);
        const double us = microseconds(100, [&] { arrange_workspace(&workspace(1)); });
        printf("arranging %d windows: %.1f microseconds, %.2f for each\n", count, us, us / count);
    }
}

TEST_F(windows, on_two_workspaces)
{
    for (const int count : {8, 16, 32, 50}) {
        goto_workspace(server, 1);
        map_up_to(2 * count - wl_list_length(&workspace(2).toplevels));
        goto_workspace(server, 2);
        map_up_to(2 * count);
        int num = 1;
        const double us = microseconds(10, [&] { goto_workspace(server, num = 3 - num); });
        printf("switching between workspaces of %d windows: %.1f microseconds, %.2f for each\n", count, us,
               us / count);
    }
}

TEST_F(windows, focused_by_direction)
{
    for (const int count : {25, 50, 100, 200}) {
        map_up_to(count);
        int i = 0;
        for (auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
            wlr_scene_node_set_position(&t.scene_tree->node, i % 20 * 90, i / 20 * 90);
            i++;
        }
        int dx = 1;
        const double us = microseconds(20, [&] { focus_direction(server, dx = -dx, 0); });
        printf("focus by direction among %d windows: %.1f microseconds, %.2f for each\n", count, us,
               us / count);
    }
}

// A dock that is plugged in and out again and again. The windows of its output move back and forth.
TEST_F(windows, on_an_output_that_comes_and_goes)
{
    map_up_to(50);
    command("ws-layout 2 tiling");
    plug("dock", 2560, 1440);
    int i = 0;
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (i++ % 2 == 0)
            move_toplevel_to_workspace(t, 2);
    settle();
    constexpr int plugs = 100;
    std::vector<double> plug_us, unplug_us;
    for (int n = 0; n < plugs; n++) {
        unplug_us.push_back(duration_us([&] { unplug("dock"); }));
        settle();
        plug_us.push_back(duration_us([&] { plug("dock", 2560, 1440); }));
        settle();
    }
    printf("an output with half of 50 windows: %.0f microseconds to unplug, %.0f to plug in; at most %.0f, "
           "%.0f\n",
           median(unplug_us), median(plug_us), std::ranges::max(unplug_us), std::ranges::max(plug_us));
}

TEST_F(windows, shown_by_the_mouse_tiler)
{
    map_up_to(10);
    const double us = microseconds(20, [&] { mt_show(server); });
    printf("a full draw of the Mouse Tiler with 10 windows: %.0f microseconds\n", us);
    mt_hide(server);
}
