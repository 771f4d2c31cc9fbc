// Compares the quick lookup of what lies at a point with the scene's own lookup, over random scenes.

#include "support/desktop.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_popup.hpp"

#include "cairo_buffer.hpp"
#include "config/settings.hpp"
#include "input/hit_test.hpp"
#include "presentation/decorations.hpp"
#include "windows/reach.hpp"
#include "windows/showing.hpp"
#include "workspaces/stacks.hpp"

#include <random>

using test::layer;
using test::window;

namespace
{

// Windows with geometry offsets, title bars, tabs, popups, subsurfaces and holes in their input. Some are
// hidden, dragged or lifted. Panels lie among them, and so do the hints that a drag shows.
struct quick_lookup : test::desktop, testing::WithParamInterface<unsigned> {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        random.seed(GetParam());
        for (int i = 0; i < 12; i++)
            add_window(i);
        for (const layer on : {layer::background, layer::bottom, layer::top, layer::overlay})
            panels.emplace_back(windows.front()->owner(),
                                test::layer_traits{.on = on,
                                                   .size = {20 + below(400), 20 + below(200)},
                                                   .anchor = uint32_t(below(16))});
        show_hint(server.drag_hint);
        show_hint(server.snap_preview);
        settle();
    }
    void TearDown() override
    {
        for (window *w : windows) { // the checks at the end of the session expect them so
            record(*w).overlay_lift = false;
            refresh_showing(record(*w));
        }
        menus.clear();
        panels.clear();
        desktop::TearDown();
    }

    int below(int limit) { return std::uniform_int_distribution<int>{0, limit - 1}(random); }
    bool sometimes() { return below(3) == 0; }

    void add_window(int i)
    {
        window &w = map("w" + std::to_string(i), {10 + below(400), 10 + below(300)});
        windows.push_back(&w);
        if (sometimes())
            w.geometry(below(20), below(20), 10 + below(60), 10 + below(60));
        if (sometimes())
            w.add_subsurface(below(200) - 100, below(200) - 100, {10 + below(90), 10 + below(90)});
        if (sometimes())
            w.input_region(below(60), below(60), below(80), below(80));
        w.commit();
        settle();
        place(w, below(1400) - 100, below(800) - 50);
        if (sometimes())
            menus.emplace_back(w, test::placement{.x = below(80), .y = below(80)});
        decorate(record(w));
        hang(record(w));
    }
    void decorate(vantore_toplevel &t)
    {
        t.ssd = !sometimes();
        t.stack_id = sometimes() ? 9 : 0;
        dec_layout(t);
        if (t.ssd && t.stack_id == 0)
            dec_hover_set(t, vantore_dec_region(below(5)));
        if (t.stack_id == 0 || sometimes())
            return;
        cairo_t *cr = nullptr; // the tabs may be wider or narrower than the window
        scene_buffer_set_cairo(t.tabbar, cairo_buffer_create(1 + below(500), tabbar_height, &cr));
        cairo_destroy(cr);
        wlr_scene_node_set_position(&t.tabbar->node, 0, -tabbar_height);
        wlr_scene_node_set_enabled(&t.tabbar->node, true);
        forget_reach(t);
    }
    void hang(vantore_toplevel &t)
    {
        wlr_scene_node_set_enabled(&t.scene_tree->node, below(6) != 0);
        if (below(6) == 0)
            toplevel_set_workspace(t, &workspace(2)); // not shown
        wlr_scene_tree *const trees[]{server.toplevel_tree, server.layers[3], server.fullscreen_tree};
        if (const int elsewhere = below(9); elsewhere < 3)
            wlr_scene_node_reparent(&t.scene_tree->node, trees[elsewhere]);
    }
    void show_hint(wlr_scene_rect *hint)
    {
        wlr_scene_node_set_position(&hint->node, below(1200), below(600));
        wlr_scene_rect_set_size(hint, 1 + below(400), 1 + below(200));
        wlr_scene_node_set_enabled(&hint->node, sometimes());
    }

    // Compares the lookups at random points, also between pixels and outside the output.
    void compare(int points)
    {
        for (int i = 0; i < points; i++) {
            const double x = below(13800) / 10.0 - 50, y = below(8000) / 10.0 - 50;
            double nx = -1, ny = -1, expected_nx = -1, expected_ny = -1;
            const wlr_scene_node *expected =
                wlr_scene_node_at(&server.scene->tree.node, x, y, &expected_nx, &expected_ny);
            ASSERT_EQ(scene_node_at(server, x, y, &nx, &ny), expected) << x << ',' << y;
            ASSERT_EQ(nx, expected_nx);
            ASSERT_EQ(ny, expected_ny);
        }
    }

    std::mt19937 random;
    std::vector<window *> windows;
    std::list<test::popup> menus;
    std::list<test::layer_surface> panels;
};

INSTANTIATE_TEST_SUITE_P(scenes, quick_lookup, testing::Range(1U, 9U));

TEST_P(quick_lookup, finds_what_the_scene_finds)
{
    compare(4000);
}

TEST_P(quick_lookup, finds_a_dragged_icon_and_what_lies_below_it)
{
    std::vector<vantore_toplevel *> expected;
    const auto over_the_icon = [&](auto act) {
        surface_hit hit;
        for (int x = 305; x < 900; x += 70)
            for (int y = 105; y < 600; y += 70)
                act(desktop_toplevel_at(server, x, y, hit));
    };
    over_the_icon([&](vantore_toplevel *t) { expected.push_back(t); });
    // A client's icon takes no input, but this one would.
    wlr_scene_rect *icon = wlr_scene_rect_create(server.drag_icon_tree, 600, 500, g_accent.data());
    wlr_scene_node_set_position(&icon->node, 300, 100);
    compare(1000);
    EXPECT_EQ(scene_node_at(server, 400, 300, nullptr, nullptr), &icon->node);
    std::vector<vantore_toplevel *> found;
    over_the_icon([&](vantore_toplevel *t) { found.push_back(t); });
    EXPECT_EQ(found, expected);
    EXPECT_TRUE(server.drag_icon_tree->node.enabled);
    wlr_scene_node_destroy(&icon->node);
}

} // namespace
