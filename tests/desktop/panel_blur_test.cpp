// What lies behind the desktop's panel is blurred, unless a window is fullscreen.

#include "support/layers.hpp"
#include "support/scene_nodes.hpp"

#include "config/settings.hpp"
#include "reload.hpp"
#include "windows/fullscreen.hpp"

#include <wayland-client.h>

using test::layer_surface;
using test::layer_traits;
using test::window;

namespace
{

// The right edge of a red window lies below the panel, and the panel is nearly transparent.
struct panel_blur : test::layers {
    static constexpr int edge = 400, reach = 8, bar_height = 40;

    void SetUp() override
    {
        layers::SetUp();
        plug_pointer();
        g_blur = g_force_effects = true;
        g_animations = false; // the clock stands still
        red = &map("red");
        red->draw({300, 200}, 0xffff0000);
        settle();
        place(*red, edge - 300, 0);
    }

    static layer_traits see_through_bar(const std::string &name)
    {
        layer_traits traits = test::top_bar(bar_height);
        traits.name = name;
        traits.argb = 0x20000020;
        return traits;
    }

    layer_surface &show_panel() { return show(see_through_bar("vantore-panel")); }

    int red_at(int x) { return int(pixel("A", x, bar_height / 2) >> 16 & 0xff); }
    // Blurred red reaches beyond the window's edge and is weaker inside it.
    bool is_blurred() { return red_at(edge + reach) > 40 && red_at(edge - reach) < 200; }
    bool is_sharp() { return red_at(edge + reach) < 20 && red_at(edge - reach) > 200; }

    // Counts the blurs of panels. Title bars have blurs too, but these hang elsewhere.
    int blurs()
    {
        int count = 0;
        for (const wlr_scene_tree *layer : server.layers)
            count += test::scene_nodes(*layer, WLR_SCENE_NODE_BLUR);
        return count;
    }

    window *red = nullptr;
};

TEST_F(panel_blur, shows_what_is_behind_the_panel_out_of_focus)
{
    show_panel();
    EVENTUALLY(is_blurred());
}

TEST_F(panel_blur, is_not_behind_other_bars)
{
    show(see_through_bar("vantore-dock"));
    settle();
    EXPECT_TRUE(is_sharp());
    EXPECT_EQ(blurs(), 0);
}

TEST_F(panel_blur, is_not_behind_a_panel_on_another_layer)
{
    layer_traits traits = see_through_bar("vantore-panel");
    traits.on = test::layer::overlay;
    show(traits);
    settle();
    EXPECT_TRUE(is_sharp());
    EXPECT_EQ(blurs(), 0);
}

TEST_F(panel_blur, leaves_clear_parts_of_the_panel_alone)
{
    layer_traits traits = see_through_bar("vantore-panel");
    traits.argb = 0;
    show(traits);
    ASSERT_EQ(blurs(), 1);
    settle();
    EXPECT_TRUE(is_sharp());
}

TEST_F(panel_blur, makes_way_for_a_fullscreen_window_and_comes_back)
{
    show_panel();
    window &game = map("game");
    toplevel_set_fullscreen(record(game), true);
    settle();
    EXPECT_EQ(blurs(), 0);
    toplevel_set_fullscreen(record(game), false);
    place(game, 0, 300);
    EVENTUALLY(is_blurred());
}

TEST_F(panel_blur, does_not_begin_while_a_window_is_fullscreen)
{
    window &game = map("game");
    toplevel_set_fullscreen(record(game), true);
    show_panel();
    EXPECT_EQ(blurs(), 0);
    game.destroy();
    EVENTUALLY(is_blurred());
}

TEST_F(panel_blur, follows_the_settings)
{
    show_panel();
    ASSERT_EQ(blurs(), 1);
    EVENTUALLY(is_blurred());
    for (const char *without :
         {"force_effects = true\nblur = false\n", "force_effects = false\nblur = true\n"}) {
        write_config("compositor.conf", without);
        config_reload(server);
        EXPECT_EQ(blurs(), 0) << without;
        EVENTUALLY(is_sharp());
        write_config("compositor.conf", "force_effects = true\nblur = true\n");
        config_reload(server);
        EXPECT_EQ(blurs(), 1);
        EVENTUALLY(is_blurred());
    }
    write_config("appearance.conf", "reduce_transparency = true\n");
    config_reload(server);
    EXPECT_EQ(blurs(), 0);
}

TEST_F(panel_blur, follows_the_size_of_the_panel)
{
    layer_surface &panel = show_panel();
    ASSERT_EQ(blurs(), 1);
    EVENTUALLY(is_blurred());
    panel.size(0, 10);
    panel.zone(10);
    panel.commit();
    EVENTUALLY_EQ(box(panel).height, 10);
    EVENTUALLY(is_sharp());
    panel.size(0, bar_height);
    panel.commit();
    EVENTUALLY(is_blurred());
}

TEST_F(panel_blur, goes_and_comes_with_the_panel)
{
    layer_surface &panel = show_panel();
    EVENTUALLY(is_blurred());
    panel.unmap();
    EVENTUALLY(is_sharp());
    panel.commit();
    EVENTUALLY(is_blurred());
    panel.destroy();
    EVENTUALLY_EQ(blurs(), 0);
    EVENTUALLY(is_sharp());
}

TEST_F(panel_blur, goes_and_comes_with_the_layer_that_the_panel_is_on)
{
    layer_surface &panel = show_panel();
    EVENTUALLY(is_blurred());
    panel.move_to(test::layer::overlay);
    panel.commit();
    EVENTUALLY_EQ(blurs(), 0);
    panel.move_to(test::layer::top);
    panel.commit();
    EVENTUALLY_EQ(blurs(), 1);
}

TEST_F(panel_blur, goes_with_a_client_that_vanishes)
{
    layer_surface &panel = show_panel();
    ASSERT_EQ(blurs(), 1);
    panel.owner().vanish();
    EVENTUALLY_EQ(blurs(), 0);
    surfaces.clear();
}

TEST_F(panel_blur, is_no_obstacle_to_the_pointer)
{
    layer_surface &panel = show_panel();
    ASSERT_EQ(blurs(), 1);
    wl_region *nothing = wl_compositor_create_region(panel.owner().surfaces());
    wl_surface_set_input_region(panel.get(), nothing);
    wl_region_destroy(nothing);
    panel.commit();
    settle();
    double sx = 0, sy = 0;
    const wlr_scene_node *hit = wlr_scene_node_at(&server.scene->tree.node, edge - reach, 20, &sx, &sy);
    ASSERT_NE(hit, nullptr);
    EXPECT_EQ(hit->type, WLR_SCENE_NODE_BUFFER);
    EXPECT_EQ(hit->parent->node.parent, record(*red).scene_tree);
}

} // namespace
