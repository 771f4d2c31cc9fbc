// A pointer that rests while what lies under it changes.

#include "support/drags.hpp"
#include "support/wayland_layer.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_seat.hpp"

#include "input/synthetic.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"

using test::drags;
using desktop = test::desktop;
using test::layer_surface;
using test::seat;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

namespace
{

// The pointer rests in the middle of a window with a title bar. Its client listens.
struct resting_pointer : drags {
    void SetUp() override
    {
        drags::SetUp();
        ears = std::make_unique<seat>(w->owner());
        settle();
        rest_at(400, 350);
    }
    void TearDown() override
    {
        ears.reset();
        drags::TearDown();
    }
    void rest_at(double lx, double ly)
    {
        go(lx, ly);
        settle();
        (void)ears->take();
    }
    std::vector<std::string> events()
    {
        settle();
        return ears->take();
    }
    // Maps another window so that its content's corner lies at the place.
    window &map_at(int lx, int ly)
    {
        window &other = map("other", {300, 200});
        place(other, lx, ly);
        settle();
        return other;
    }
    [[nodiscard]] const wlr_surface *pointed() const { return server.seat->pointer_state.focused_surface; }
    const wlr_surface *surface_of(const window &of) { return tl_surface(record(of)); }

    std::unique_ptr<seat> ears;
};

TEST_F(desktop, shows_no_cursor_before_the_pointer_was_moved)
{
    plug("A", 640, 480);
    window &w = map("w", {640, 480});
    w.unmap();
    settle();
    EXPECT_FALSE(server.cursor_shown.cur_cursor_named);
    synthetic_motion(server, 10, 10);
    EXPECT_TRUE(server.cursor_shown.cur_cursor_named);
}

TEST_F(resting_pointer, enters_a_window_that_opens_under_it_and_leaves_it_when_it_closes)
{
    window &other = map_at(300, 300);
    EXPECT_EQ(pointed(), surface_of(other));
    EXPECT_THAT(events(), Contains("pointer leave w"));
    other.unmap();
    settle();
    EXPECT_EQ(pointed(), surface_of(*w));
    EXPECT_THAT(events(), Contains("pointer enter w 200,150"));
}

TEST_F(resting_pointer, clicks_what_lies_under_it_now)
{
    window &other = map_at(300, 300);
    seat other_ears{other.owner()};
    settle();
    (void)events();
    pointer->click(BTN_LEFT);
    EVENTUALLY(other_ears.heard("button up 272"));
    EXPECT_THAT(events(), Not(Contains(StartsWith("button"))));
}

TEST_F(resting_pointer, follows_a_switch_of_workspaces)
{
    command("workspace 2");
    settle();
    EXPECT_EQ(pointed(), nullptr);
    command("workspace 1");
    settle();
    EXPECT_EQ(pointed(), surface_of(*w));
}

TEST_F(resting_pointer, follows_its_own_jump_to_another_output)
{
    plug("B", 800, 600); // shows workspace 2, which has no window
    command("workspace 2");
    settle();
    EXPECT_EQ(pointed(), nullptr);
}

TEST_F(resting_pointer, follows_an_arrangement)
{
    rest_at(1000, 600);
    EXPECT_EQ(pointed(), nullptr);
    command("ws-layout 1 tiling");
    EVENTUALLY_EQ(box(*w).width, 1280);
    settle();
    EXPECT_EQ(pointed(), surface_of(*w));
    EXPECT_THAT(events(), Contains(StartsWith("pointer enter w")));
}

TEST_F(resting_pointer, hears_its_new_place_in_a_window_that_moves)
{
    const int frames = ears->frames();
    place(*w, 190, 180);
    EXPECT_THAT(events(), ElementsAre("motion 210,170"));
    EXPECT_GT(ears->frames(), frames);
}

TEST_F(resting_pointer, leaves_a_window_that_is_minimized_and_comes_back_with_it)
{
    toplevel_minimize(t());
    settle();
    EXPECT_EQ(pointed(), nullptr);
    focus_toplevel_ex(&t(), true);
    settle();
    EXPECT_EQ(pointed(), surface_of(*w));
}

TEST_F(resting_pointer, is_in_the_window_that_is_raised)
{
    const window &other = map_at(300, 300);
    focus_toplevel_ex(&t(), true);
    settle();
    EXPECT_EQ(pointed(), surface_of(*w));
    focus_toplevel_ex(&record(other), true);
    settle();
    EXPECT_EQ(pointed(), surface_of(other));
}

TEST_F(resting_pointer, follows_panels_that_come_change_and_go)
{
    layer_surface panel{w->owner(), {.size = {1280, 400}, .anchor = test::TOP}};
    EXPECT_THAT(events(), Contains("pointer enter panel 400,350"));
    panel.margins({.top = 10});
    panel.commit();
    EXPECT_THAT(events(), Contains("motion 400,340"));
    panel.size(1280, 100);
    panel.commit();
    EXPECT_THAT(events(), Contains("pointer enter w 200,150"));
    panel.size(1280, 400);
    panel.commit();
    EXPECT_THAT(events(), Contains("pointer enter panel 400,340"));
    panel.destroy();
    EXPECT_THAT(events(), Contains("pointer enter w 200,150"));
}

TEST_F(resting_pointer, follows_menus_that_come_and_go)
{
    {
        const test::popup menu{*w, {.x = 100, .y = 100, .size = {200, 200}}};
        settle();
        EXPECT_NE(pointed(), surface_of(*w));
        EXPECT_NE(pointed(), nullptr);
    }
    settle();
    EXPECT_EQ(pointed(), surface_of(*w));
}

TEST_F(resting_pointer, follows_commits_that_change_a_window_s_size)
{
    w->draw({150, 100}, 0xff00ff00);
    EXPECT_THAT(events(), ElementsAre("pointer leave w"));
    EXPECT_EQ(pointed(), nullptr);
    w->draw({400, 300}, 0xff00ff00);
    EXPECT_THAT(events(), ElementsAre("pointer enter w 200,150"));
}

TEST_F(resting_pointer, follows_commits_that_change_what_takes_input)
{
    w->input_region(0, 0, 100, 100);
    w->commit();
    EXPECT_THAT(events(), ElementsAre("pointer leave w"));
    w->input_region(100, 100, 200, 200);
    w->commit();
    EXPECT_THAT(events(), ElementsAre("pointer enter w 200,150"));
}

TEST_F(resting_pointer, highlights_the_button_of_a_window_that_comes_under_it)
{
    rest_at(1000, 600);
    place(*w, 616, 615); // its close button
    settle();
    EXPECT_EQ(t().hover_region, DEC_CLOSE);
    place(*w, 200, 200);
    settle();
    EXPECT_EQ(t().hover_region, DEC_NONE);
}

// Each look at a client notes the pointer's offset from its surface.
TEST_F(resting_pointer, is_not_looked_up_for_frames_that_change_nothing)
{
    constexpr double untouched = -4711;
    server.pointing.ptr_grab_ox = untouched;
    w->fill(0xff00ff00);
    w->input_region(0, 0, 400, 300);
    w->commit();
    w->title("another");
    settle();
    EXPECT_EQ(server.pointing.ptr_grab_ox, untouched);
    pointer->move(1, 0);
    EXPECT_EQ(server.pointing.look_again, nullptr);
}

TEST_F(resting_pointer, stays_with_the_client_that_holds_a_button)
{
    pointer->press(BTN_LEFT);
    const window &other = map_at(300, 300);
    EXPECT_EQ(pointed(), surface_of(*w));
    pointer->release(BTN_LEFT);
    settle();
    EXPECT_EQ(pointed(), surface_of(other));
}

TEST_F(resting_pointer, is_looked_up_after_a_scripted_release)
{
    synthetic_button(server, BTN_LEFT, true);
    const window &other = map_at(300, 300);
    EXPECT_EQ(pointed(), surface_of(*w));
    synthetic_button(server, BTN_LEFT, false);
    settle();
    EXPECT_EQ(pointed(), surface_of(other));
}

TEST_F(resting_pointer, stays_with_a_window_that_is_dragged)
{
    press_at(300, 185);
    settle();
    const window &other = map_at(250, 150);
    EXPECT_EQ(pointed(), nullptr);
    EXPECT_EQ(box(*w), (wlr_box{200, 200, 400, 300}));
    focus_toplevel_ex(&record(other), true);
    pointer->release(BTN_LEFT);
    toplevel_minimize(t());
    settle();
    EXPECT_EQ(pointed(), surface_of(other));
}

TEST_F(resting_pointer, gives_no_window_the_keyboard_where_focus_follows_the_mouse)
{
    const window &other = map_at(800, 300);
    g_focus_follows_mouse = true;
    place(other, 300, 250);
    focus_toplevel_ex(&t(), false);
    settle();
    EXPECT_EQ(pointed(), surface_of(other));
    EXPECT_TRUE(has_keyboard(*w));
    pointer->move(7, 0); // counts from where the window was found
    EXPECT_TRUE(has_keyboard(*w));
    pointer->move(1, 0);
    EXPECT_TRUE(has_keyboard(other));
}

TEST_F(resting_pointer, counts_on_where_the_window_under_it_is_the_same)
{
    window &other = map_at(300, 250);
    focus_toplevel_ex(&t(), false);
    settle();
    g_focus_follows_mouse = true;
    pointer->move(1, 0); // the anchor lies far away
    ASSERT_TRUE(has_keyboard(other));
    focus_toplevel_ex(&t(), false);
    pointer->move(5, 0);
    other.draw({310, 210}, 0xff00ff00);
    settle();
    EXPECT_TRUE(has_keyboard(*w));
    pointer->move(3, 0);
    EXPECT_TRUE(has_keyboard(other));
}

TEST_F(resting_pointer, highlights_no_button_while_the_session_is_locked)
{
    rest_at(1000, 600);
    server.locked = true;
    place(*w, 616, 615); // its close button
    settle();
    EXPECT_EQ(t().hover_region, DEC_NONE);
    server.locked = false;
}

} // namespace
