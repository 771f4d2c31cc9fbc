// Title bars: when they show, where their parts lie, and what they look like.

#include "support/desktop.hpp"

#include "config/settings.hpp"
#include "config/theme.hpp"
#include "input/hit_test.hpp"
#include "presentation/decorations.hpp"
#include "reload.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/stacks.hpp"

using test::window;

namespace
{

int channel(float value)
{
    return int(std::lround(value * 255));
}

uint32_t pixel_of(const color &c)
{
    return 0xff000000U | uint32_t(channel(c[0]) << 16 | channel(c[1]) << 8 | channel(c[2]));
}

// Channels of a rendered colour may be rounded either way.
bool near(uint32_t a, uint32_t b)
{
    for (const int shift : {0, 8, 16, 24})
        if (std::abs(int(a >> shift & 0xff) - int(b >> shift & 0xff)) > 1)
            return false;
    return true;
}

struct decorations : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 512, 256);
        other = &decorated("other", {150, 100}, 20, 60);
        w = &decorated("w", {260, 120}, 200, 60);
        settle();
    }
    window &decorated(const std::string &app, test::size size, int x, int y)
    {
        window &made = connect().create_window(app);
        made.title("Title of " + app);
        made.preferred = size;
        map(made);
        record(made).ssd = true;
        dec_layout(record(made));
        place(made, x, y);
        return made;
    }
    vantore_toplevel &t() { return record(*w); }
    // Counts the visible parts among the bar, the title and the three buttons.
    int parts_shown()
    {
        int shown = 0;
        for (const wlr_scene_node *node : {&t().titlebar->node, &t().title->node, &t().btn_min->node,
                                           &t().btn_max->node, &t().btn_close->node})
            shown += node->enabled ? 1 : 0;
        return shown;
    }
    vantore_dec_region region_at(double lx, double ly)
    {
        vantore_dec_region region = DEC_NONE;
        (void)decoration_at(server, lx, ly, region);
        return region;
    }
    void use_theme(const char *text)
    {
        world.write_config("appearance.conf", text);
        config_reload(server);
        settle();
    }
    // Returns the lightest and the darkest blue in a part of the bar.
    std::pair<uint32_t, uint32_t> blues(int from, int to)
    {
        const test::image shown = picture("A");
        std::pair<uint32_t, uint32_t> found{0, 255};
        for (int x = 200 + from; x < 200 + to; x++)
            for (int y = 60 - 22; y < 60 - 8; y++) {
                const uint32_t blue = shown.at(x, y) & 0xff;
                found = {std::max(found.first, blue), std::min(found.second, blue)};
            }
        return found;
    }
    // The title and the buttons, from where to where.
    static constexpr std::pair<int, int> drawn_parts[]{{10, 100}, {193, 207}, {215, 229}, {237, 251}};
    window *w = nullptr, *other = nullptr;
};

TEST_F(decorations, are_placed_by_the_width_of_the_surface)
{
    EXPECT_EQ(parts_shown(), 5);
    EXPECT_EQ(t().titlebar->width, 260);
    EXPECT_EQ(t().titlebar->height, 30);
    EXPECT_EQ(t().titlebar->node.y, -30);
    EXPECT_EQ(t().title_w, 187);
    EXPECT_EQ(t().btn_min->node.x, 193);
    EXPECT_EQ(t().btn_max->node.x, 215);
    EXPECT_EQ(t().btn_close->node.x, 237);
    EXPECT_EQ(t().btn_close->node.y, -22);
    EXPECT_FALSE(t().grip->node.enabled);
}

TEST_F(decorations, of_a_narrow_window_keep_their_buttons_at_the_right_edge)
{
    window &narrow = decorated("narrow", {40, 100}, 100, 100);
    EXPECT_EQ(record(narrow).title_w, 1);
    EXPECT_EQ(record(narrow).btn_min->node.x, -27);
    settle();
}

TEST_F(decorations, go_with_a_window_that_is_unmapped_and_come_back_with_it)
{
    vantore_toplevel &record = t();
    EVENTUALLY(near(pixel("A", 200 + 3, 60 - 28), pixel_of(g_tb_focus)));
    w->unmap();
    EVENTUALLY(find_record(*w) == nullptr);
    EVENTUALLY(!near(pixel("A", 200 + 3, 60 - 28), pixel_of(g_tb_focus)));
    EXPECT_FALSE(record.scene_tree->node.enabled);
    map(*w);
    EXPECT_TRUE(record.scene_tree->node.enabled);
    EXPECT_EQ(parts_shown(), 5);
}

TEST_F(decorations, of_fullscreen_windows_are_gone_with_their_highlight)
{
    dec_hover_set(t(), DEC_CLOSE);
    t().fullscreen = true;
    dec_layout(t());
    EXPECT_EQ(parts_shown(), 0);
    EXPECT_EQ(t().hover_region, DEC_NONE);
    EXPECT_FALSE(t().btn_hover->node.enabled);
    t().fullscreen = false;
    dec_layout(t());
    EXPECT_EQ(parts_shown(), 5);
    EXPECT_FALSE(t().btn_hover->node.enabled);
}

TEST_F(decorations, give_way_to_the_tabs_of_a_stack)
{
    command("ws-layout 1 tiling");
    stack_join(t(), record(*other));
    EXPECT_EQ(parts_shown(), 0);
    stack_leave(t());
    EXPECT_EQ(parts_shown(), 5);
}

TEST_F(decorations, highlight_the_button_under_the_pointer)
{
    auto &pointer = plug_pointer();
    point_at(pointer, 200 + 237 + 5, 60 - 15);
    EXPECT_EQ(t().hover_region, DEC_CLOSE);
    EXPECT_TRUE(t().btn_hover->node.enabled);
    EXPECT_EQ(t().btn_hover->node.x, 230);
    EXPECT_EQ(t().btn_hover->node.y, -27);
    EXPECT_EQ(t().btn_hover->width, 28);
    EXPECT_EQ(t().btn_hover->height, 24);
    EXPECT_FLOAT_EQ(t().btn_hover->color[0], 0.72F);
    point_at(pointer, 200 + 215 + 5, 60 - 15); // straight to the next one
    EXPECT_EQ(t().hover_region, DEC_MAXIMIZE);
    EXPECT_EQ(t().btn_hover->node.x, 208);
    EXPECT_FLOAT_EQ(t().btn_hover->color[0], 0.16F);
    point_at(pointer, 200 + 50, 60 - 15);
    EXPECT_EQ(t().hover_region, DEC_TITLEBAR);
    EXPECT_FALSE(t().btn_hover->node.enabled);
    point_at(pointer, 200 + 50, 60 + 50);
    EXPECT_EQ(t().hover_region, DEC_NONE);
}

TEST_F(decorations, give_the_client_no_pointer)
{
    auto &pointer = plug_pointer();
    point_at(pointer, 250, 100);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(t()));
    point_at(pointer, 250, 45);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, nullptr);
}

TEST_F(decorations, are_hit_where_no_window_lies_in_front)
{
    EXPECT_EQ(region_at(30, 45), DEC_TITLEBAR);
    place(*w, 20, 50); // the newer window lies over the other's bar
    EXPECT_EQ(region_at(30, 45), DEC_TITLEBAR); // its own
    place(*w, 20, 20);
    EXPECT_EQ(region_at(30, 45), DEC_NONE); // its content
    focus_toplevel_ex(&record(*other), true);
    EXPECT_EQ(region_at(30, 45), DEC_TITLEBAR);
    EXPECT_EQ(region_at(30, 29.9), DEC_NONE);
    wlr_scene_node_set_enabled(&record(*other).scene_tree->node, false);
    EXPECT_EQ(region_at(30, 45), DEC_NONE);
    wlr_scene_node_set_enabled(&record(*other).scene_tree->node, true);
}

TEST_F(decorations, are_not_hit_on_a_workspace_that_is_not_shown)
{
    EXPECT_EQ(region_at(200 + 237 + 5, 60 - 15), DEC_CLOSE);
    command("workspace 5");
    EXPECT_EQ(region_at(200 + 237 + 5, 60 - 15), DEC_NONE);
}

TEST_F(decorations, are_hit_where_they_show_whatever_was_raised_last)
{
    window &dialog = map_dialog(*w, "dialog", {100, 60});
    place(dialog, 250, 20); // over the title bar
    focus_toplevel_ex(&record(*w), true);
    ASSERT_EQ(focused_toplevel(server), &t());
    EXPECT_EQ(region_at(300, 45), DEC_NONE);
    EXPECT_EQ(region_at(210, 45), DEC_TITLEBAR);
    record(dialog).ssd = true;
    dec_layout(record(dialog));
    place(dialog, 250, 120); // its bar over the content
    vantore_dec_region region = DEC_NONE;
    EXPECT_EQ(decoration_at(server, 300, 110, region), &record(dialog));
    EXPECT_EQ(region, DEC_TITLEBAR);
}

TEST_F(decorations, show_that_a_window_does_not_answer)
{
    t().unresponsive = true;
    dec_forget_title(t());
    dec_layout(t());
    EXPECT_EQ(t().title_w, 187);
    w->title("Another title");
    EVENTUALLY(std::string_view{tl_title(t())}.starts_with("Another"));
}

TEST_F(decorations, show_the_glyph_that_brings_a_maximized_window_back)
{
    const wlr_buffer *before = t().btn_max->buffer;
    toplevel_toggle_maximize(t());
    EXPECT_NE(t().btn_max->buffer, before);
    settle();
}

struct theme_case {
    int kind;
    color unfocus, focus, foreground;
    float shadow;
};

constexpr theme_case themes[]{
    {0, {0.92F, 0.93F, 0.94F, 1}, {0.86F, 0.87F, 0.88F, 1}, {0.17F, 0.18F, 0.20F, 1}, 0.12F},
    {1, {0.21F, 0.22F, 0.25F, 1}, {0.26F, 0.27F, 0.29F, 1}, {0.87F, 0.88F, 0.89F, 1}, 0.40F},
    {2, {0.12F, 0.13F, 0.15F, 1}, {0.16F, 0.18F, 0.20F, 1}, {0.89F, 0.90F, 0.92F, 1}, 0.55F},
};

TEST_F(decorations, have_three_looks)
{
    for (const theme_case &c : themes) {
        g_theme_kind = c.kind;
        g_accent_set = false;
        recompute_titlebar_colors();
        EXPECT_EQ(g_tb_focus, c.focus) << c.kind;
        EXPECT_EQ(g_tb_unfocus, c.unfocus) << c.kind;
        EXPECT_EQ(g_tb_fg, c.foreground) << c.kind;
        EXPECT_EQ(g_shadow_color, (color{0, 0, 0, c.shadow})) << c.kind;
        g_accent_set = true;
        g_accent = {0.2F, 0.6F, 1.0F, 1};
        recompute_titlebar_colors();
        EXPECT_FLOAT_EQ(g_tb_focus[0], 0.55F * c.unfocus[0] + 0.45F * 0.2F) << c.kind;
        EXPECT_FLOAT_EQ(g_tb_focus[2], 0.55F * c.unfocus[2] + 0.45F * 1.0F) << c.kind;
        EXPECT_EQ(g_tb_unfocus, c.unfocus) << c.kind;
    }
}

TEST_F(decorations, are_drawn_in_the_colours_of_the_theme)
{
    for (const int kind : {0, 1, 2}) {
        g_theme_kind = kind;
        recompute_titlebar_colors();
        recolor_all_decorations(server);
        settle();
        EVENTUALLY(near(pixel("A", 200 + 3, 60 - 28), pixel_of(g_tb_focus)));
        EXPECT_TRUE(near(pixel("A", 20 + 3, 60 - 28), pixel_of(g_tb_unfocus)));
        EXPECT_TRUE(test::matches_golden(picture("A"), "title_bars_" + std::to_string(kind), 8));
    }
}

TEST_F(decorations, follow_the_focus_with_their_colour)
{
    focus_toplevel_ex(&record(*other), true);
    EVENTUALLY(near(pixel("A", 20 + 3, 60 - 28), pixel_of(g_tb_focus)));
    EXPECT_TRUE(near(pixel("A", 200 + 3, 60 - 28), pixel_of(g_tb_unfocus)));
    EXPECT_FALSE(record(*other).dimmed);
    EXPECT_TRUE(t().dimmed);
}

TEST_F(decorations, are_see_through_over_blur_and_opaque_with_reduced_transparency)
{
    g_blur = g_force_effects = true;
    recolor_all_decorations(server);
    EXPECT_FLOAT_EQ(t().titlebar->color[3], 0.62F);
    EXPECT_FLOAT_EQ(t().titlebar->color[0], g_tb_focus[0] * 0.62F);
    ASSERT_NE(t().titlebar_blur, nullptr);
    EXPECT_TRUE(t().titlebar_blur->node.enabled);
    EXPECT_EQ(t().titlebar_blur->width, 260);
    settle();
    g_reduce_transparency = true;
    recolor_all_decorations(server);
    EXPECT_FLOAT_EQ(t().titlebar->color[3], 1);
    EXPECT_FALSE(t().titlebar_blur->node.enabled);
    g_reduce_transparency = false;
    g_force_effects = false; // software rendering
    recolor_all_decorations(server);
    EXPECT_FLOAT_EQ(t().titlebar->color[3], 1);
    settle();
}

TEST_F(decorations, take_another_accent_with_a_reload)
{
    focus_toplevel_ex(&record(*other), false); // the first window of the list does not have the keyboard
    world.write_config("appearance.conf", "dark = true\naccent = 3399ff\n");
    config_reload(server);
    const color &base = g_tb_unfocus;
    EXPECT_FLOAT_EQ(t().titlebar->color[0], 0.55F * base[0] + 0.45F * 0.2F);
    EXPECT_FLOAT_EQ(t().titlebar->color[2], 0.55F * base[2] + 0.45F * 1.0F);
    EXPECT_FLOAT_EQ(record(*other).titlebar->color[2], base[2]);
}

TEST_F(decorations, are_drawn_anew_in_the_foreground_of_another_theme)
{
    for (const auto &[from, to] : drawn_parts) {
        use_theme("dark = true\n");
        EXPECT_GT(blues(from, to).first, 0xa0U) << from;
        EXPECT_GT(blues(from, to).second, 0x40U) << from;
        use_theme("dark = false\n");
        EXPECT_LT(blues(from, to).second, 0x60U) << from;
    }
}

TEST_F(decorations, of_a_window_that_maps_after_a_reload_are_drawn_in_the_new_theme)
{
    w->unmap();
    EVENTUALLY(find_record(*w) == nullptr);
    use_theme("dark = false\n");
    w->title("Title of w"); // it ended with the earlier map
    map(*w);
    place(*w, 200, 60);
    settle();
    for (const auto &[from, to] : drawn_parts)
        EXPECT_LT(blues(from, to).second, 0x60U) << from;
}

TEST_F(decorations, of_a_window_that_maps_unseen_after_a_reload_have_the_new_colour_without_focus)
{
    w->unmap();
    EVENTUALLY(find_record(*w) == nullptr);
    use_theme("dark = false\n");
    unplug("A");
    map(*w);
    EXPECT_FLOAT_EQ(t().titlebar->color[0], g_tb_unfocus[0]);
}

} // namespace
