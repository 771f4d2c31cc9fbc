// Which case of a button press comes first. Each test has several cases, and only one explains the result.

#include "support/drags.hpp"
#include "support/wayland_constraints.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_popup.hpp"

#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/stacks.hpp"

using test::drags;
using test::layer_surface;
using test::seat;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::Not;
using testing::StartsWith;

namespace
{

// Another window of 300x200 with a title bar, at 800,300, has the keyboard. `ears` listens to the first one.
struct button_order : drags {
    void SetUp() override
    {
        drags::SetUp();
        other = &map_with_bar("other", {300, 200});
        place(*other, 800, 300);
        ears = std::make_unique<seat>(w->owner());
        forget();
    }
    void TearDown() override
    {
        ears.reset();
        drags::TearDown();
    }
    void forget()
    {
        settle();
        (void)ears->take();
        (void)heard();
    }
    std::vector<std::string> events()
    {
        settle();
        return ears->take();
    }
    vantore_toplevel *top() { return focused_toplevel(server); }

    window *other = nullptr;
    std::unique_ptr<seat> ears;
};

TEST_F(button_order, the_log_tells_of_constraints_and_of_surfaces_of_no_kind)
{
    g_debug_input = true;
    focus_toplevel_ex(&t(), true);
    go(400, 350);
    {
        const test::confined_pointer fence{*ears, w->get()};
        EVENTUALLY(fence.active());
        pointer->click(BTN_LEFT);
        EXPECT_THAT(world.log(), EndsWith("→ xdg:'w' sxy=200,150 [confined]\n"));
    }
    settle();
    {
        const test::locked_pointer lock{*ears, w->get()};
        EVENTUALLY(lock.active());
        pointer->click(BTN_LEFT);
        EXPECT_THAT(world.log(), EndsWith("→ xdg:'w' sxy=200,150 [LOCKED]\n"));
    }
    settle();
    pointer->click(BTN_LEFT);
    EXPECT_THAT(world.log(), EndsWith("→ xdg:'w' sxy=200,150\n"));
    test::popup menu{*w, {.x = 100, .y = 100}};
    EVENTUALLY(menu.configure_count() > 0);
    settle();
    go(310, 320);
    pointer->click(BTN_LEFT);
    EXPECT_THAT(world.log(), EndsWith("→ (other) sxy=10,20\n"));
}

TEST_F(button_order, any_button_ends_a_tap_of_the_modifier_also_while_locked)
{
    keyboard->press(KEY_LEFTMETA);
    server.locked = true;
    pointer->press(BTN_LEFT);
    server.locked = false;
    keyboard->release(KEY_LEFTMETA);
    keyboard->press(KEY_LEFTMETA);
    server.locked = true;
    pointer->release(BTN_LEFT);
    server.locked = false;
    keyboard->release(KEY_LEFTMETA);
    EXPECT_THAT(heard(), Not(Contains(VNT_EVT_LAUNCHER)));
    keyboard->tap(KEY_LEFTMETA);
    EXPECT_THAT(heard(), Contains(VNT_EVT_LAUNCHER));
}

TEST_F(button_order, a_lock_knows_no_drags_bars_or_borders)
{
    keyboard->press(KEY_LEFTMETA);
    server.locked = true;
    for (const auto &[x, y] : {std::pair{400, 350}, {300, 185}, {584, 185}, {202, 350}}) {
        go(x, y);
        pointer->click(BTN_LEFT);
        EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH) << x << ',' << y;
        EXPECT_EQ(top(), &record(*other)) << x << ',' << y;
    }
    settle();
    EXPECT_EQ(w->closes(), 0);
    server.locked = false;
    keyboard->release(KEY_LEFTMETA);
}

TEST_F(button_order, a_panel_over_tabs_takes_the_press)
{
    command("ws-layout 1 tiling");
    stack_join(t(), record(*other));
    settle();
    const wlr_box stack = box(*w);
    const auto press_on_last_tab = [&] {
        go(stack.x + stack.width - 20, stack.y - 10);
        pointer->click(BTN_LEFT);
    };
    {
        layer_surface panel{other->owner(), {.size = {1280, 100}, .anchor = test::TOP}};
        settle();
        press_on_last_tab();
        EXPECT_EQ(top(), &t());
    }
    settle();
    press_on_last_tab();
    EXPECT_EQ(top(), &record(*other));
}

TEST_F(button_order, a_release_over_a_panel_ends_a_drag)
{
    layer_surface panel{w->owner(), {.size = {1280, 100}, .anchor = test::TOP}};
    settle();
    press_at(300, 185);
    go(300, 50);
    pointer->release(BTN_LEFT);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_EQ(t().scene_tree->node.parent, workspace(1).tree);
}

TEST_F(button_order, with_logo_every_button_except_the_right_one_moves_and_raises_the_window)
{
    keyboard->press(KEY_LEFTMETA);
    forget();
    static constexpr uint32_t buttons[]{BTN_LEFT, BTN_MIDDLE, BTN_SIDE};
    for (const uint32_t button : buttons) {
        focus_toplevel_ex(&record(*other), true);
        press_at(400, 350, button);
        EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE);
        EXPECT_EQ(top(), &t());
        drop_at(400, 350, button);
    }
    EXPECT_THAT(events(), Not(Contains(StartsWith("button"))));
    keyboard->release(KEY_LEFTMETA);
}

TEST_F(button_order, with_logo_a_title_bar_is_a_title_bar)
{
    keyboard->press(KEY_LEFTMETA);
    press_at(584, 185);
    EVENTUALLY_EQ(w->closes(), 1);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    drop_at(584, 185);
    press_at(300, 185, BTN_RIGHT);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE) << "over its content the right button resizes";
    drop_at(300, 185, BTN_RIGHT);
    keyboard->release(KEY_LEFTMETA);
}

TEST_F(button_order, a_press_on_a_tab_starts_no_drag_of_the_bar_that_it_replaces)
{
    command("ws-layout 1 tiling");
    stack_join(t(), record(*other));
    settle();
    const wlr_box stack = box(*w);
    press_at(stack.x + 20, stack.y - 10);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    drop_at(stack.x + 20, stack.y - 10);
}

TEST_F(button_order, any_button_on_a_title_bars_button_presses_it_and_the_client_hears_nothing)
{
    press_at(584, 185, BTN_RIGHT);
    drop_at(584, 185, BTN_RIGHT);
    press_at(584, 185, BTN_MIDDLE);
    drop_at(584, 185, BTN_MIDDLE);
    EVENTUALLY_EQ(w->closes(), 2);
    EXPECT_THAT(events(), Not(Contains(StartsWith("button"))));
    EXPECT_EQ(top(), &t());
}

TEST_F(button_order, a_border_starts_its_resize_and_raises_the_window)
{
    press_at(202, 350);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_RESIZE);
    EXPECT_EQ(server.drag.resize_edges, uint32_t{WLR_EDGE_LEFT});
    EXPECT_EQ(top(), &t());
    drop_at(202, 350);
    EXPECT_THAT(events(), Not(Contains(StartsWith("button"))));
}

TEST_F(button_order, the_edges_of_maximized_and_fullscreen_windows_are_the_clients)
{
    toplevel_toggle_maximize(t());
    EVENTUALLY_EQ(box(*w), (wlr_box{0, 30, 1280, 674}));
    forget();
    press_at(1278, 350);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_THAT(events(), Contains("button down 272"));
    drop_at(1278, 350);
    toplevel_set_fullscreen(t(), true);
    EVENTUALLY_EQ(box(*w), (wlr_box{0, 0, 1280, 704}));
    press_at(640, 703);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_THAT(events(), Contains("button down 272"));
    drop_at(640, 703);
}

TEST_F(button_order, another_button_on_a_border_only_focuses)
{
    press_at(202, 350, BTN_RIGHT);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    EXPECT_EQ(top(), &t());
    drop_at(202, 350, BTN_RIGHT);
}

TEST_F(button_order, a_client_has_the_keyboard_before_it_hears_of_the_press)
{
    go(400, 350);
    forget();
    pointer->press(BTN_LEFT);
    const std::vector<std::string> all = events();
    const auto keys = std::ranges::find(all, "keys enter w");
    const auto button = std::ranges::find(all, "button down 272");
    EXPECT_LT(keys, button);
    EXPECT_NE(button, all.end());
    pointer->release(BTN_LEFT);
}

// A press may move the focus on, for example when it closes a menu that gives the focus back.
TEST_F(button_order, a_press_leaves_its_window_on_top_though_it_moved_the_focus_on)
{
    static vantore_toplevel *comes_up = nullptr;
    comes_up = &record(*other);
    static constexpr wlr_pointer_grab_interface focuses_another{
        .button =
            [](wlr_seat_pointer_grab *, uint32_t, uint32_t, wl_pointer_button_state) {
                focus_toplevel_ex(comes_up, true);
                return uint32_t{0};
            },
        .frame = [](wlr_seat_pointer_grab *) {},
    };
    go(400, 350);
    wlr_seat_pointer_grab grab{.interface = &focuses_another, .seat = nullptr, .data = nullptr};
    wlr_seat_pointer_start_grab(server.seat, &grab);
    pointer->press(BTN_LEFT);
    wlr_seat_pointer_end_grab(server.seat);
    EXPECT_EQ(top(), &t());
    EXPECT_EQ(keyboard_focus(), tl_surface(t()));
    pointer->release(BTN_LEFT);
}

TEST_F(button_order, a_client_that_asks_for_a_drag_loses_the_pointer_until_the_release)
{
    go(400, 350);
    pointer->press(BTN_LEFT);
    forget();
    w->request_move(ears->get(), ears->press_serial());
    EVENTUALLY_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE);
    EXPECT_THAT(events(), ElementsAre("pointer leave w"));
    drop_at(450, 350);
    EXPECT_THAT(events(), ElementsAre("pointer enter w 200,150"));
    EXPECT_EQ(server.seat->pointer_state.button_count, 0U);
}

} // namespace
