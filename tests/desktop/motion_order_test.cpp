// Which case of a pointer motion comes first. Each test has several cases, and only one explains the result.

#include "support/drags.hpp"
#include "support/wayland_constraints.hpp"
#include "support/wayland_layer.hpp"

#include "text.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"

using test::confined_pointer;
using test::drags;
using test::seat;
using test::window;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace
{

// Another window of 300x200 with a title bar lies at 800,200. The pointer is in the middle of the first one,
// which has the keyboard.
struct motion_order : drags {
    void SetUp() override
    {
        drags::SetUp();
        other = &map_with_bar("other", {300, 200});
        place(*other, 800, 200);
        focus_toplevel_ex(&t(), true);
        ears = std::make_unique<seat>(w->owner());
        other_ears = std::make_unique<seat>(other->owner());
        settle();
        go(400, 350);
        forget();
    }
    void TearDown() override
    {
        ears.reset();
        other_ears.reset();
        drags::TearDown();
    }
    void forget()
    {
        settle();
        (void)ears->take();
        (void)other_ears->take();
    }
    void lift(const window &which, bool on)
    {
        record(which).overlay_lift = on;
        restore_toplevel_parent(record(which));
    }
    // Moves the pointer as a tablet would, so that no constraint holds it back.
    void jump(double lx, double ly) { pointer->move_to(lx / 1280, ly / 704); }
    [[nodiscard]] const wlr_surface *pointed() const { return server.seat->pointer_state.focused_surface; }
    const wlr_surface *surface_of(const window &of) { return tl_surface(record(of)); }

    window *other = nullptr;
    std::unique_ptr<seat> ears, other_ears;
    // The close buttons of the windows, in layout coordinates.
    static constexpr double close_x = 584, others_close_x = 1084, bar_y = 185;
};

TEST_F(motion_order, a_lock_knows_no_borders_highlights_or_hovering)
{
    g_focus_follows_mouse = true;
    const double anchor = server.pointing.ffm_anchor_x;
    server.locked = true;
    go(202, 350);
    EXPECT_EQ(pointed(), surface_of(*w));
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
    go(close_x, bar_y);
    EXPECT_EQ(t().hover_region, DEC_NONE);
    go(900, 300);
    EXPECT_EQ(server.pointing.ffm_anchor_x, anchor);
    server.locked = false;
}

TEST_F(motion_order, a_lock_takes_the_pointer_from_a_client_that_holds_a_button)
{
    pointer->press(BTN_LEFT);
    server.locked = true;
    go(900, 300);
    EXPECT_EQ(pointed(), surface_of(*other));
    pointer->release(BTN_LEFT);
    server.locked = false;
}

TEST_F(motion_order, no_client_hears_of_a_drag)
{
    // This panel lies above the dragged window.
    const test::layer_surface panel{other->owner(), {.size = {1280, 100}, .anchor = test::TOP}};
    settle();
    keyboard->press(KEY_LEFTMETA);
    static constexpr uint32_t buttons[]{BTN_LEFT, BTN_RIGHT};
    for (const uint32_t button : buttons) {
        press_at(400, 350, button);
        forget();
        go(900, 300);
        go(others_close_x, bar_y);
        go(900, 50);
        settle();
        EXPECT_THAT(ears->take(), IsEmpty());
        EXPECT_THAT(other_ears->take(), Not(Contains(StartsWith("pointer"))));
        EXPECT_EQ(record(*other).hover_region, DEC_NONE);
        drop_at(400, 350, button);
    }
    keyboard->release(KEY_LEFTMETA);
}

TEST_F(motion_order, while_a_button_is_held_neither_highlight_nor_image_nor_client_changes)
{
    pointer->press(BTN_LEFT);
    ears->set_shape(9); // text
    settle();
    go(others_close_x, bar_y);
    EXPECT_EQ(record(*other).hover_region, DEC_NONE);
    go(802, 300); // the other window's border
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "text"));
    go(1200, 650); // the desktop
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "text"));
    EXPECT_EQ(pointed(), surface_of(*w));
    pointer->release(BTN_LEFT);
}

TEST_F(motion_order, a_window_that_confines_the_pointer_has_no_borders_meanwhile)
{
    {
        const confined_pointer fence{*ears, w->get()};
        EVENTUALLY(fence.active());
        pointer->move(-198, 0);
        EXPECT_DOUBLE_EQ(server.cursor->x, 202);
        settle();
        EXPECT_TRUE(fence.active());
        EXPECT_EQ(pointed(), surface_of(*w));
        pointer->click(BTN_LEFT);
        EXPECT_THAT(ears->take(), Not(Contains("pointer leave w")));
    }
    EVENTUALLY_EQ(server.active_constraint, nullptr);
    pointer->move(1, 0);
    EXPECT_EQ(pointed(), nullptr);
}

TEST_F(motion_order, a_border_leaves_the_highlight_of_a_button_until_the_pointer_goes_on)
{
    go(close_x, bar_y);
    EXPECT_EQ(t().hover_region, DEC_CLOSE);
    go(597, 350);
    EXPECT_EQ(t().hover_region, DEC_CLOSE);
    EXPECT_TRUE(t().btn_hover->node.enabled);
    go(400, 350);
    EXPECT_EQ(t().hover_region, DEC_NONE);
    EXPECT_FALSE(t().btn_hover->node.enabled);
}

TEST_F(motion_order, floating_windows_alone_have_borders)
{
    command("ws-layout 1 tiling");
    EVENTUALLY(box(*w).height == 674);
    const wlr_box tile = box(*w);
    const auto is_at_border = [&] {
        go(640, 600);
        go(tile.x + 2, tile.y + 100);
        return pointed() == nullptr;
    };
    EXPECT_FALSE(is_at_border());
    t().floating = true;
    EXPECT_TRUE(is_at_border());
    t().maximized = true;
    EXPECT_FALSE(is_at_border());
    t().maximized = false;
    t().fullscreen = true;
    EXPECT_FALSE(is_at_border());
    t().fullscreen = false;
}

TEST_F(motion_order, the_width_of_the_borders_is_a_setting)
{
    config("resize_border = 20\n");
    go(400, 350);
    go(219, 350);
    EXPECT_EQ(pointed(), nullptr);
    go(220, 350);
    EXPECT_EQ(pointed(), surface_of(*w));
    config("resize_border = 0\n");
    go(200, 499);
    EXPECT_EQ(pointed(), surface_of(*w));
}

TEST_F(motion_order, over_a_window_the_image_is_the_clients_to_set)
{
    go(202, 350);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "left_side"));
    go(400, 350);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "left_side"));
    go(close_x, bar_y);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
}

TEST_F(motion_order, one_title_bar_is_highlighted_at_a_time)
{
    go(close_x, bar_y);
    EXPECT_EQ(t().hover_region, DEC_CLOSE);
    go(others_close_x, bar_y);
    EXPECT_EQ(t().hover_region, DEC_NONE);
    EXPECT_EQ(record(*other).hover_region, DEC_CLOSE);
}

TEST_F(motion_order, a_window_that_goes_takes_its_highlight_along)
{
    go(close_x, bar_y);
    ears.reset();
    w->unmap();
    EVENTUALLY(find_record(*w) == nullptr);
    EXPECT_EQ(server.pointing.hovered_toplevel, nullptr);
    w->open();
    EVENTUALLY(find_record(*w) != nullptr);
    EXPECT_EQ(t().hover_region, DEC_NONE);
    ears = std::make_unique<seat>(w->owner());
}

TEST_F(motion_order, a_title_bar_frees_a_confined_pointer)
{
    const confined_pointer fence{*ears, w->get()};
    EVENTUALLY(fence.active());
    jump(300, bar_y);
    EXPECT_EQ(t().hover_region, DEC_TITLEBAR);
    EXPECT_EQ(pointed(), nullptr);
    EVENTUALLY(!fence.active());
}

TEST_F(motion_order, a_fullscreen_window_behind_a_lifted_overlay_gets_no_pointer)
{
    t().fullscreen = true;
    go(401, 350);
    EXPECT_EQ(pointed(), surface_of(*w));
    lift(*other, true);
    go(402, 350);
    EXPECT_EQ(pointed(), nullptr);
    go(900, 300);
    EXPECT_EQ(pointed(), surface_of(*other));
    lift(*w, true);
    go(400, 350);
    EXPECT_EQ(pointed(), surface_of(*w));
    t().fullscreen = false;
    lift(*w, false);
    lift(*other, false);
}

TEST_F(motion_order, an_overlay_frees_the_pointer_of_the_fullscreen_window_behind_it)
{
    const confined_pointer fence{*ears, w->get()};
    EVENTUALLY(fence.active());
    t().fullscreen = true;
    lift(*other, true);
    pointer->move(1, 0);
    EVENTUALLY(!fence.active());
    t().fullscreen = false;
    lift(*other, false);
}

TEST_F(motion_order, a_constraint_comes_and_goes_with_the_pointer_on_the_focused_window)
{
    const confined_pointer fence{*ears, w->get()};
    EVENTUALLY(fence.active());
    jump(900, 300); // in the other client's window
    EVENTUALLY(!fence.active());
    EXPECT_EQ(pointed(), surface_of(*other));
    jump(400, 350);
    EVENTUALLY(fence.active());
}

} // namespace
