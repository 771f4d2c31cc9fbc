// Rounded corners, shadows, dimming and blur of windows, as they are painted.

#include "support/desktop.hpp"
#include "support/scene_nodes.hpp"
#include "support/wayland_popup.hpp"

#include "config/settings.hpp"
#include "config/theme.hpp"
#include "input/interactive.hpp"
#include "presentation/decorations.hpp"
#include "presentation/effects.hpp"
#include "reload.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/layout.hpp"
#include "workspaces/stacks.hpp"

using test::window;

namespace
{

constexpr uint32_t white = 0xffffffff, red = 0xffff0000;

int channel(uint32_t argb, int shift)
{
    return int(argb >> shift & 0xff);
}
int red_of(uint32_t argb)
{
    return channel(argb, 16);
}

// Each channel may be rounded either way.
bool near(uint32_t a, uint32_t b)
{
    for (const int shift : {0, 8, 16})
        if (std::abs(channel(a, shift) - channel(b, shift)) > 2)
            return false;
    return true;
}

// A red window of 200x120 pixels with a title bar lies on a white window that fills the output.
struct effects : test::desktop {
    static constexpr int left = 200, top = 120, right = 400, bottom = 240, bar_top = 90;

    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 640, 384);
        use("");
        paper = &map("paper", {640, 384});
        paper->draw({640, 384}, white);
        place(*paper, 0, 0);
        w = &map("w", {200, 120});
        w->draw({200, 120}, red);
        settle();
        record(*w).ssd = true;
        dec_layout(record(*w));
        place(*w, left, top);
        settle();
    }

    void reload(std::string_view text)
    {
        config(text);
        config_reload(server);
    }
    // Reloads with these settings. Effects are on, and the clock stands still, so windows must not fade.
    void use(const std::string &text) { reload("force_effects = true\nanimations = false\n" + text); }
    vantore_toplevel &t() { return record(*w); }
    uint32_t at(int x, int y) { return pixel("A", x, y); }
    bool is_red(int x, int y) { return near(at(x, y), red); }
    bool is_white(int x, int y) { return at(x, y) == white; }
    // A pixel of the title bar in its own colour.
    bool is_bar(int x, int y)
    {
        const auto part = [](float value) { return uint32_t(std::lround(value * 255)); };
        return near(at(x, y), part(g_tb_focus[0]) << 16 | part(g_tb_focus[1]) << 8 | part(g_tb_focus[2]));
    }
    bool has_shadow() { return t().shadow != nullptr && t().shadow->node.enabled; }
    bool is_dimmed(const window &other)
    {
        const wlr_scene_rect *rect = record(other).dim_rect;
        return rect != nullptr && rect->node.enabled;
    }
    int surface_radius() { return toplevel_main_buffer(t())->corners.bottom_left; }
    void focus(const window &other)
    {
        focus_toplevel_ex(&record(other), true);
        settle();
    }

    window *paper = nullptr, *w = nullptr;
};

TEST_F(effects, round_the_outline_of_the_title_bar_and_the_surface)
{
    EVENTUALLY(is_red(300, 180));
    EXPECT_FALSE(is_red(left, bottom - 1));
    EXPECT_FALSE(is_red(right - 1, bottom - 1));
    EXPECT_TRUE(is_red(left, top)) << "the bar lies above";
    EXPECT_TRUE(is_red(right - 1, top));
    EXPECT_FALSE(is_bar(left, bar_top));
    EXPECT_FALSE(is_bar(right - 1, bar_top));
    EXPECT_TRUE(is_bar(left, top - 1));
    EXPECT_TRUE(is_bar(right - 1, top - 1));
    EXPECT_TRUE(is_red(left + 10, bottom - 1));
    EXPECT_TRUE(is_red(left, bottom - 11));
}

TEST_F(effects, leave_menus_and_subsurfaces_square)
{
    w->add_subsurface(150, 90, {50, 30}); // over a rounded corner
    w->fill(red);
    test::popup menu{*w, {.x = 20, .y = 30, .size = {60, 40}}};
    settle();
    struct count {
        int buffers = 0, rounded = 0;
    } found;
    wlr_scene_node_for_each_buffer(
        &t().scene_tree->node,
        [](wlr_scene_buffer *buffer, int, int, void *data) {
            auto &c = *static_cast<count *>(data);
            if (wlr_scene_surface_try_from_buffer(buffer) == nullptr)
                return;
            c.buffers++;
            c.rounded += fx_corner_radii_is_empty(&buffer->corners) ? 0 : 1;
        },
        &found);
    EXPECT_EQ(found.buffers, 3);
    EXPECT_EQ(found.rounded, 1);
}

TEST_F(effects, have_square_corners_with_a_radius_of_zero)
{
    use("corner_radius = 0\n");
    EVENTUALLY(is_red(left, bottom - 1) && is_bar(left, bar_top));
    ASSERT_TRUE(has_shadow());
    EXPECT_EQ(t().shadow->corner_radius, 0);
    EXPECT_TRUE(fx_corner_radii_is_empty(&t().shadow->clipped_region.corners));
}

TEST_F(effects, cast_a_shadow_22_pixels_wide_that_lies_6_pixels_lower)
{
    ASSERT_TRUE(has_shadow());
    EVENTUALLY(!is_white(left - 1, 180));
    EXPECT_FALSE(is_white(left - 21, 180));
    EXPECT_TRUE(is_white(left - 23, 180));
    EXPECT_FALSE(is_white(right + 20, 180));
    EXPECT_TRUE(is_white(right + 22, 180));
    EXPECT_FALSE(is_white(300, bar_top - 15));
    EXPECT_TRUE(is_white(300, bar_top - 17));
    EXPECT_FALSE(is_white(300, bottom + 26));
    EXPECT_TRUE(is_white(300, bottom + 28));
    EXPECT_LT(red_of(at(left - 1, 180)), red_of(at(left - 15, 180))) << "it is darker near the window";
}

TEST_F(effects, leave_no_shadow_under_the_window_itself)
{
    w->fill(0x80800000); // half of the white shows
    EVENTUALLY(near(at(300, 180), 0xffff7f7f));
    EXPECT_TRUE(near(at(left + 1, 180), 0xffff7f7f));
    EXPECT_TRUE(near(at(300, bottom - 2), 0xffff7f7f));
}

TEST_F(effects, follow_the_size_of_the_window)
{
    w->draw({100, 60}, red);
    settle();
    EXPECT_EQ(t().shadow->width, 144);
    EXPECT_EQ(t().shadow->height, 134);
    EXPECT_EQ(t().shadow->clipped_region.area.width, 100);
    EXPECT_EQ(t().shadow->clipped_region.area.height, 90);
}

TEST_F(effects, darken_windows_without_the_focus)
{
    use("dim_inactive = 0.5\n");
    EVENTUALLY(std::abs(red_of(at(50, 50)) - 128) <= 1);
    EXPECT_TRUE(is_red(300, 180));
    const uint32_t bar = at(300, top - 2);
    focus(*paper);
    wlr_scene_node_raise_to_top(&t().scene_tree->node);
    EVENTUALLY(std::abs(red_of(at(300, 180)) - 128) <= 1);
    EXPECT_LT(red_of(at(300, top - 2)), red_of(bar)) << "the title bar too";
    EXPECT_TRUE(is_white(50, 50));
    focus(*w);
    EVENTUALLY(is_red(300, 180));
    EXPECT_EQ(t().dim_rect->node.y, -30);
    EXPECT_EQ(t().dim_rect->height, 150);
    EXPECT_EQ(record(*paper).dim_rect->node.y, 0);
    EXPECT_EQ(record(*paper).dim_rect->height, 384);
    EXPECT_EQ(record(*paper).dim_rect->corners.top_left, 10);
}

// The window's own shadow is 20 pixels wide on all sides.
TEST_F(effects, darken_nothing_around_a_window_whose_client_draws_a_shadow)
{
    window &shadowed = connect().create_window("shadowed");
    shadowed.preferred = {140, 100};
    shadowed.geometry(20, 20, 100, 60);
    map(shadowed);
    shadowed.fill(red);
    place(shadowed, 450, 150);
    use("dim_inactive = 0.5\n");
    focus(*w);
    EVENTUALLY(std::abs(red_of(at(500, 180)) - 128) <= 1);
    EXPECT_TRUE(is_red(560, 180)) << "the shadow";
    EXPECT_EQ(at(580, 180), at(50, 50)) << "the window below";
}

TEST_F(effects, let_clicks_through_to_a_window_that_is_darkened)
{
    use("dim_inactive = 0.5\n");
    ASSERT_TRUE(is_dimmed(*paper));
    auto &pointer = plug_pointer();
    point_at(pointer, 50, 50);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*paper)));
}

TEST_F(effects, darken_a_window_below_its_menu)
{
    test::popup menu{*paper, {.x = 20, .y = 30, .size = {60, 40}}};
    settle();
    use("dim_inactive = 0.5\n");
    const wl_list *above = record(*paper).dim_rect->node.link.next;
    EXPECT_NE(above, &record(*paper).scene_tree->children);
}

TEST_F(effects, keep_their_nodes_but_hide_them_when_a_reload_turns_them_off)
{
    use("dim_inactive = 0.5\n");
    const wlr_scene_rect *dim = record(*paper).dim_rect;
    const wlr_scene_shadow *shadow = t().shadow;
    use("shadows = false\n");
    EXPECT_EQ(record(*paper).dim_rect, dim);
    EXPECT_FALSE(is_dimmed(*paper));
    EXPECT_FALSE(has_shadow());
    reload("dim_inactive = 0.5\n"); // software rendering
    EXPECT_FALSE(is_dimmed(*paper));
    EXPECT_FALSE(has_shadow());
    EXPECT_EQ(surface_radius(), 0);
    EVENTUALLY(is_red(left, bottom - 1));
    use("dim_inactive = 0.2\n");
    EXPECT_TRUE(is_dimmed(*paper));
    EXPECT_FLOAT_EQ(dim->color[3], 0.2F);
    EXPECT_TRUE(has_shadow());
    EXPECT_EQ(t().shadow, shadow);
}

TEST_F(effects, of_a_fullscreen_window_are_gone_until_it_leaves)
{
    use("dim_inactive = 0.5\n");
    focus(*paper);
    ASSERT_TRUE(is_dimmed(*w) && has_shadow());
    toplevel_set_fullscreen(t(), true);
    EXPECT_FALSE(is_dimmed(*w));
    EXPECT_FALSE(has_shadow());
    EXPECT_EQ(surface_radius(), 0);
    focus(*w);
    EVENTUALLY(is_red(0, 0) && is_red(639, 383));
    toplevel_set_fullscreen(t(), false);
    EXPECT_TRUE(has_shadow());
    EXPECT_EQ(surface_radius(), 10);
}

TEST_F(effects, of_tiles_are_their_corners_only)
{
    set_ws_layout(workspace(1), VANTORE_LAYOUT_TILING);
    EXPECT_FALSE(has_shadow());
    EXPECT_EQ(surface_radius(), 10);
    settle();
    toggle_float_focused(server);
    EXPECT_TRUE(has_shadow());
    toggle_float_focused(server);
    EXPECT_FALSE(has_shadow());
    set_ws_layout(workspace(1), VANTORE_LAYOUT_FLOATING);
    EXPECT_TRUE(has_shadow());
}

TEST_F(effects, of_a_stack_round_its_tabs)
{
    set_ws_layout(workspace(1), VANTORE_LAYOUT_TILING);
    stack_join(t(), record(*paper));
    settle();
    EXPECT_FALSE(has_shadow());
    EXPECT_EQ(t().tabbar->corners.top_left, 10);
    EXPECT_EQ(t().tabbar->corners.bottom_left, 0);
    EXPECT_EQ(toplevel_main_buffer(t())->corners.top_left, 0);
    EXPECT_EQ(surface_radius(), 10);
    EXPECT_EQ(t().titlebar->corners.top_left, 0);
    stack_leave(t());
    EXPECT_EQ(t().titlebar->corners.top_left, 10);
}

TEST_F(effects, of_a_snapped_window_include_no_shadow)
{
    snap_window(t(), {0, 0, 320, 384});
    EXPECT_FALSE(has_shadow());
    EXPECT_EQ(surface_radius(), 10);
    settle();
    EXPECT_FALSE(has_shadow());
    begin_interactive(t(), VANTORE_CURSOR_MOVE, 0); // takes it out of its place
    EXPECT_TRUE(has_shadow());
    drag_end(server);
}

TEST_F(effects, of_a_snapped_window_come_back_when_it_maps_again)
{
    snap_window(t(), {0, 0, 320, 384});
    settle();
    ASSERT_FALSE(has_shadow());
    w->unmap();
    EVENTUALLY(find_record(*w) == nullptr);
    map(*w);
    EXPECT_FALSE(t().snapped);
    EXPECT_TRUE(has_shadow());
}

TEST_F(effects, of_a_minimized_window_wait_until_it_comes_back)
{
    toplevel_minimize(t());
    EXPECT_FALSE(has_shadow());
    focus_toplevel_ex(&t(), true);
    EXPECT_TRUE(has_shadow());
}

TEST_F(effects, leave_a_window_alone_whose_client_decorates_it)
{
    EXPECT_EQ(record(*paper).shadow, nullptr);
    EXPECT_TRUE(fx_corner_radii_is_empty(&toplevel_main_buffer(record(*paper))->corners));
    t().ssd = false;
    dec_layout(t());
    EXPECT_FALSE(has_shadow());
    EXPECT_EQ(surface_radius(), 0);
    EVENTUALLY(is_red(left, bottom - 1));
}

TEST_F(effects, follow_the_rules_of_the_user)
{
    write_config("rules.conf", "w -> noshadow\n");
    config_reload(server);
    EXPECT_FALSE(has_shadow());
    EXPECT_EQ(surface_radius(), 10);
    write_config("rules.conf", "w -> noround\n");
    config_reload(server);
    EXPECT_TRUE(has_shadow());
    EXPECT_EQ(surface_radius(), 0);
    EVENTUALLY(is_red(left, bottom - 1) && is_bar(left, bar_top));
    write_config("rules.conf", "");
    config_reload(server);
    EXPECT_TRUE(has_shadow());
    EXPECT_EQ(surface_radius(), 10);
}

TEST_F(effects, tint_the_shadow_of_the_focused_window_with_the_accent)
{
    use("glow = true\n");
    const auto part = [&](size_t i) { return t().shadow->color[i]; };
    EXPECT_FLOAT_EQ(part(0), g_accent[0] * 0.65F);
    EXPECT_FLOAT_EQ(part(1), g_accent[1] * 0.65F);
    EXPECT_FLOAT_EQ(part(3), 0.65F);
    EVENTUALLY(channel(at(left - 3, 180), 8) > red_of(at(left - 3, 180)) + 10); // the accent is green
    focus_toplevel_ex(&record(*paper), true);
    EXPECT_FLOAT_EQ(part(1), 0);
    EXPECT_FLOAT_EQ(part(3), g_shadow_color[3]);
    focus_toplevel_ex(&t(), true);
    EXPECT_FLOAT_EQ(part(3), 0.65F);
    g_accent_set = false;
    dec_layout(t());
    EXPECT_FLOAT_EQ(part(3), g_shadow_color[3]);
}

TEST_F(effects, cast_a_lighter_shadow_in_a_light_theme)
{
    EXPECT_FLOAT_EQ(t().shadow->color[3], 0.40F);
    write_config("appearance.conf", "dark = false\n");
    config_reload(server);
    EXPECT_FLOAT_EQ(t().shadow->color[3], 0.12F);
}

// The right edge of the white window lies behind the middle of the title bar.
TEST_F(effects, blur_what_lies_behind_a_title_bar)
{
    paper->draw({300, 384}, white);
    use("blur = true\nshadows = false\n");
    const auto green = [&](int x) { return channel(at(x, bar_top + 4), 8); }; // the window itself has none
    const auto step = [&](int from, int to) { return green(from) - green(to); };
    EVENTUALLY(step(220, 380) > 40); // the bar is translucent
    EXPECT_LT(step(298, 301), 25) << "the edge is out of focus";
    EXPECT_GT(step(285, 315), 8);
    write_config("appearance.conf", "reduce_transparency = true\n");
    config_reload(server);
    EVENTUALLY(std::abs(step(220, 380)) <= 1);
    EXPECT_FLOAT_EQ(t().titlebar->color[3], 1);
}

TEST_F(effects, round_the_blur_with_its_title_bar)
{
    use("blur = true\n");
    ASSERT_NE(t().titlebar_blur, nullptr);
    EXPECT_EQ(t().titlebar_blur->corners.top_left, 10);
    EXPECT_EQ(t().titlebar_blur->corners.bottom_left, 0);
}

TEST_F(effects, of_an_x11_window_take_its_size_and_at_least_one_pixel)
{
    use("dim_inactive = 0.5\n");
    test::x11_window &x = map_x11({.width = 300, .height = 200});
    focus(*w);
    vantore_toplevel &record_of_x = record(x);
    ASSERT_TRUE(record_of_x.ssd);
    ASSERT_NE(record_of_x.shadow, nullptr);
    EXPECT_EQ(record_of_x.shadow->width, 344);
    EXPECT_EQ(record_of_x.dim_rect->width, 300);
    EXPECT_EQ(record_of_x.dim_rect->height, 230);
    record_of_x.xwl->width = record_of_x.xwl->height = 0;
    dec_layout(record_of_x);
    EXPECT_EQ(record_of_x.dim_rect->width, 1);
    EXPECT_EQ(record_of_x.shadow->width, 45);
    record_of_x.xwl->width = 300;
    record_of_x.xwl->height = 200;
    dec_layout(record_of_x);
}

TEST_F(effects, of_an_x11_window_are_made_anew_when_it_maps_again)
{
    use("dim_inactive = 0.5\n");
    test::x11_window &x = map_x11();
    ASSERT_NE(record(x).shadow, nullptr);
    x.unmap();
    EVENTUALLY(find_record(x) == nullptr);
    map_x11(x);
    EXPECT_TRUE(record(x).shadow->node.enabled);
    EXPECT_EQ(record(x).shadow->node.parent, record(x).scene_tree);
}

struct effects_off : test::desktop {
};

TEST_F(effects_off, make_no_nodes)
{
    plug("A", 640, 384);
    config("dim_inactive = 0.5\nblur = true\nglow = true\n");
    ASSERT_FALSE(fx_on());
    window &w = map("w");
    record(w).ssd = true;
    dec_layout(record(w));
    map("other");
    settle();
    EXPECT_EQ(test::scene_nodes(*record(w).scene_tree, WLR_SCENE_NODE_SHADOW), 0);
    EXPECT_EQ(test::scene_nodes(*record(w).scene_tree, WLR_SCENE_NODE_BLUR), 0);
    EXPECT_EQ(record(w).dim_rect, nullptr);
}

} // namespace
