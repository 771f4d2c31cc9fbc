// What each action does with windows and workspaces, by its default key.

#include "support/desktop.hpp"

#include "config/keybinds.hpp"
#include "input/actions.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"

using test::window;

namespace
{

// A and B stand side by side. A shows a tiling workspace with two windows, and the second has the focus.
struct actions : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        plug("B", 640, 512);
        wlr_cursor_warp(server.cursor, nullptr, 100, 100);
        command("ws-layout 1 tiling");
        first = &map("first");
        second = &map("second");
        settle();
    }
    // Runs the default chord of an action.
    void run(vnt_action act, int arg = 0)
    {
        const auto end = g_binds.begin() + g_bind_count;
        const auto found = std::find_if(g_binds.begin(), end,
                                        [&](const vnt_bind &b) { return b.act == act && b.arg == arg; });
        ASSERT_NE(found, end) << act << " " << arg;
        EXPECT_TRUE(handle_keybinding(server, found->mods, found->keysym));
    }
    vantore_toplevel &one() { return record(*first); }
    vantore_toplevel &two() { return record(*second); }
    window *first = nullptr, *second = nullptr;
};

constexpr int left = 0, right = 1, up = 2, down = 3;

TEST_F(actions, focus_in_four_directions)
{
    run(ACT_FOCUS, left);
    EXPECT_EQ(focused_toplevel(server), &one());
    run(ACT_FOCUS, right);
    EXPECT_EQ(focused_toplevel(server), &two());
    workspace(1).master_ratio = 0.5;
    window &third = map("third");
    settle();
    run(ACT_FOCUS, up);
    EXPECT_EQ(focused_toplevel(server), &two());
    run(ACT_FOCUS, down);
    EXPECT_EQ(focused_toplevel(server), &record(third));
}

TEST_F(actions, move_and_resize)
{
    run(ACT_MOVE, left);
    EXPECT_EQ(each<&vantore_toplevel::ws_link>(workspace(1).toplevels).first(), &two());
    run(ACT_MOVE, right);
    EXPECT_EQ(each<&vantore_toplevel::ws_link>(workspace(1).toplevels).first(), &one());
    const double ratio = workspace(1).master_ratio;
    run(ACT_RESIZE, right);
    EXPECT_GT(workspace(1).master_ratio, ratio);
    run(ACT_RESIZE, down);
    EXPECT_DOUBLE_EQ(two().tile_weight, 1.15);
}

TEST_F(actions, send_a_window_to_a_workspace)
{
    run(ACT_MOVE_TO_WS, 4);
    EXPECT_EQ(two().workspace, &workspace(4));
}

TEST_F(actions, toggle_floating_and_layout)
{
    run(ACT_FLOAT);
    EXPECT_TRUE(two().floating);
    run(ACT_LAYOUT);
    EXPECT_EQ(workspace(1).layout, VANTORE_LAYOUT_FLOATING);
}

TEST_F(actions, step_through_tile_modes)
{
    run(ACT_TILE_MODE);
    EXPECT_EQ(workspace(1).tile_mode, TM_GRID);
}

TEST_F(actions, begin_cycle_and_leave_a_stack)
{
    run(ACT_STACK_GROUP);
    EXPECT_NE(two().stack_id, 0);
    one().stack_id = two().stack_id;
    run(ACT_STACK_CYCLE);
    EXPECT_EQ(focused_toplevel(server), &one());
    run(ACT_STACK_UNGROUP);
    EXPECT_EQ(one().stack_id, 0);
}

TEST_F(actions, send_a_window_to_the_next_output)
{
    run(ACT_MOVE_WINDOW_OUTPUT, 1);
    EXPECT_EQ(two().workspace, &workspace(2));
    run(ACT_MOVE_WINDOW_OUTPUT, -1);
    EXPECT_EQ(two().workspace, &workspace(1));
}

TEST_F(actions, send_a_workspace_to_the_next_output)
{
    run(ACT_MOVE_WS_OUTPUT, 1);
    EXPECT_EQ(workspace(1).output, &output("B"));
}

TEST_F(actions, do_nothing_to_a_window_on_a_hidden_workspace)
{
    command("workspace 3");
    ASSERT_EQ(focused_toplevel(server), &two());
    for (const vnt_action act : {ACT_CLOSE, ACT_FULLSCREEN, ACT_MAXIMIZE, ACT_FLOAT, ACT_STACK_GROUP})
        run(act);
    run(ACT_MOVE, left);
    run(ACT_RESIZE, right);
    run(ACT_MOVE_WINDOW_OUTPUT, 1);
    run(ACT_MOVE_TO_WS, 4);
    settle();
    EXPECT_EQ(second->closes(), 0);
    EXPECT_FALSE(two().fullscreen || two().maximized || two().floating);
    EXPECT_EQ(two().stack_id, 0);
    EXPECT_EQ(two().workspace, &workspace(1));
    EXPECT_EQ(each<&vantore_toplevel::ws_link>(workspace(1).toplevels).first(), &one());
}

TEST_F(actions, do_nothing_to_a_minimized_window)
{
    toplevel_minimize(two());
    toplevel_minimize(one());
    run(ACT_CLOSE);
    run(ACT_FULLSCREEN);
    settle();
    EXPECT_EQ(first->closes() + second->closes(), 0);
    EXPECT_FALSE(focused_toplevel(server)->fullscreen);
}

TEST_F(actions, reach_another_output_from_an_empty_workspace)
{
    wlr_cursor_warp(server.cursor, nullptr, 1400, 100);
    window &there = map("there", {300, 200});
    focus_toplevel_ex(&two(), true);
    wlr_cursor_warp(server.cursor, nullptr, 100, 100);
    command("workspace 3");
    ASSERT_EQ(focused_toplevel(server), &two());
    run(ACT_FOCUS, right);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(there)));
}

TEST_F(actions, give_no_keyboard_to_tabs_that_can_not_be_seen)
{
    run(ACT_STACK_GROUP);
    one().stack_id = two().stack_id;
    command("workspace 3");
    ASSERT_EQ(focused_toplevel(server), &two());
    run(ACT_FOCUS, left);
    EXPECT_EQ(keyboard_focus(), nullptr);
}

} // namespace
