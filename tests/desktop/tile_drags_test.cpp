// Dragging tiles: where they land in the order, and in which stack.

#include "support/drags.hpp"

#include "session/lock.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/stacks.hpp"

using test::drags;
using test::window;
using testing::Contains;

namespace
{

struct tile_drags : drags {
    void SetUp() override
    {
        drags::SetUp();
        g_tiler = true; // edges of the screen don't snap
        w->destroy();
        settle();
        workspace(1).master_ratio = 0.5;
        command("ws-layout 1 tiling");
        command("ws-tile-mode 1 columns");
        for (const char *app : {"a", "b", "c", "d"})
            tiles.push_back(&map_with_bar(app, {300, 300}));
        arrange_workspace(&workspace(1));
        settle();
        (void)heard();
    }
    // The names of the tiles in their order.
    std::string order()
    {
        std::string result;
        for (auto &each_tile : each<&vantore_toplevel::ws_link>(workspace(1).toplevels))
            result += tl_app_id(each_tile);
        return result;
    }
    // Drags the bar of one tile to a point in the column of another. Columns are 320 wide.
    void carry(int from, int to, double fx, double y)
    {
        drag(320 * from + 100, 10, 320 * to + 320 * fx, y);
        settle();
    }
    std::vector<window *> tiles;
};

TEST_F(tile_drags, to_the_middle_of_another_swap)
{
    carry(0, 3, 0.5, 350);
    EXPECT_EQ(order(), "dbca");
    EXPECT_THAT(heard(), Contains(VNT_EVT_WORKSPACES));
    EVENTUALLY_EQ(box(*tiles[0]), (wlr_box{960, 30, 320, 674}));
}

TEST_F(tile_drags, to_the_middle_of_a_neighbour_swap_in_both_orders)
{
    carry(1, 2, 0.5, 350);
    EXPECT_EQ(order(), "acbd");
    carry(2, 1, 0.5, 350);
    EXPECT_EQ(order(), "abcd");
}

TEST_F(tile_drags, to_the_upper_half_go_before_and_to_the_lower_after)
{
    carry(0, 2, 0.1, 100);
    EXPECT_EQ(order(), "bacd");
    carry(0, 3, 0.1, 600);
    EXPECT_EQ(order(), "acdb");
}

TEST_F(tile_drags, to_the_top_of_another_stack)
{
    carry(0, 2, 0.5, 20);
    EXPECT_NE(record(*tiles[0]).stack_id, 0);
    EXPECT_EQ(record(*tiles[0]).stack_id, record(*tiles[2]).stack_id);
    EXPECT_TRUE(record(*tiles[0]).scene_tree->node.enabled);
    EXPECT_FALSE(record(*tiles[2]).scene_tree->node.enabled);
    EXPECT_FALSE(record(*tiles[0]).titlebar->node.enabled);
}

TEST_F(tile_drags, to_the_top_32_pixels_of_a_tile_without_a_bar_stack_too)
{
    vantore_toplevel &bare = record(*tiles[2]);
    bare.ssd = false;
    arrange_workspace(&workspace(1));
    EVENTUALLY_EQ(box(*tiles[2]), (wlr_box{640, 0, 320, 704}));
    carry(0, 2, 0.1, 32);
    EXPECT_EQ(bare.stack_id, 0);
    EXPECT_EQ(order(), "bacd");
    carry(0, 2, 0.1, 31.9); // drags b
    EXPECT_NE(bare.stack_id, 0);
    EXPECT_EQ(record(*tiles[1]).stack_id, bare.stack_id);
}

TEST_F(tile_drags, to_the_last_pixels_of_the_middle_swap_and_beyond_them_do_not)
{
    carry(0, 2, 0.3, 350); // half the height, at the edge of the middle
    EXPECT_EQ(order(), "bacd");
    carry(0, 2, 0.301, 350);
    EXPECT_EQ(order(), "cabd");
}

TEST_F(tile_drags, to_the_tab_of_a_stack_join_it)
{
    stack_join(record(*tiles[3]), record(*tiles[2]));
    settle();
    carry(0, 1, 0.5, 600);
    EXPECT_EQ(order(), "bacd");
    const wlr_box stack = box(*tiles[3]);
    drag(100, 10, stack.x + 10, stack.y - 20);
    EXPECT_EQ(record(*tiles[1]).stack_id, record(*tiles[3]).stack_id);
    EXPECT_EQ(focused_toplevel(server), &record(*tiles[1]));
}

TEST_F(tile_drags, to_another_output_fall_back_into_their_slot)
{
    plug("B", 640, 512);
    drag(100, 10, 1280 + 300, 300);
    EXPECT_EQ(order(), "abcd");
    EXPECT_EQ(record(*tiles[0]).workspace, &workspace(1));
    EVENTUALLY_EQ(box(*tiles[0]), (wlr_box{0, 30, 320, 674}));
}

TEST_F(tile_drags, show_on_the_tile_below_where_it_will_land)
{
    press_at(100, 10);
    go(320 * 2 + 160, 350);
    EXPECT_TRUE(shows(server.drag_hint));
    EXPECT_EQ(server.drag_hint->node.x, 640);
    EXPECT_EQ(server.drag_hint->height, 704);
    go(320 * 2 + 160, 20);
    EXPECT_EQ(server.drag_hint->height, 32);
    go(320 * 2 + 20, 600);
    EXPECT_EQ(server.drag_hint->node.y, 352);
    go(160, 350); // over its own place
    EXPECT_FALSE(shows(server.drag_hint));
    pointer->release(BTN_LEFT);
    EXPECT_FALSE(shows(server.drag_hint));
}

TEST_F(tile_drags, that_resize_drop_nothing)
{
    keyboard->press(KEY_LEFTMETA);
    press_at(100, 350, BTN_RIGHT);
    drop_at(320 * 3 + 160, 350, BTN_RIGHT);
    keyboard->release(KEY_LEFTMETA);
    EXPECT_EQ(order(), "abcd");
    EVENTUALLY_EQ(box(*tiles[0]), (wlr_box{0, 30, 320, 674}));
}

TEST_F(tile_drags, that_resize_give_the_slot_back_when_a_lock_begins)
{
    keyboard->press(KEY_LEFTMETA);
    press_at(100, 350, BTN_RIGHT);
    keyboard->release(KEY_LEFTMETA);
    go(320 * 3 + 160, 350);
    EXPECT_NE(record(*tiles[0]).want_w, 320);
    session_lock_begin(server);
    EVENTUALLY_EQ(box(*tiles[0]), (wlr_box{0, 30, 320, 674}));
    server.locked = false;
}

TEST_F(tile_drags, to_the_tabs_of_another_workspace_join_it)
{
    plug("B", 640, 512);
    command("ws-layout 2 tiling");
    wlr_cursor_warp(server.cursor, nullptr, 1400, 300);
    window &tab = map("tab");
    stack_toggle_focused(server);
    EVENTUALLY_EQ(box(tab), (wlr_box{1280, 26, 640, 486}));
    press_at(100, 10);
    go(1280 + 100, 10);
    EXPECT_TRUE(shows(server.drag_hint));
    EXPECT_EQ(server.drag_hint->node.x, 1280);
    EXPECT_EQ(server.drag_hint->height, 32);
    drop_at(1280 + 100, 10);
    EXPECT_EQ(record(*tiles[0]).workspace, &workspace(2));
    EXPECT_EQ(record(*tiles[0]).stack_id, record(tab).stack_id);
    EVENTUALLY_EQ(box(*tiles[0]), (wlr_box{1280, 26, 640, 486}));
    EXPECT_TRUE(toplevel_visible(record(*tiles[0])));
    EXPECT_EQ(order(), "bcd");
    EVENTUALLY_EQ(box(*tiles[1]).width, 1280 / 3);
    EXPECT_EQ(focused_toplevel(server), &record(*tiles[0]));
}

TEST_F(tile_drags, that_end_where_they_began_fall_back_into_their_slot)
{
    carry(1, 1, 0.5, 300);
    EXPECT_EQ(order(), "abcd");
    EVENTUALLY_EQ(box(*tiles[1]), (wlr_box{320, 30, 320, 674}));
}

TEST_F(tile_drags, from_a_stack_leave_it_and_onto_the_own_tab_do_nothing)
{
    carry(0, 1, 0.5, 20); // a joins b
    const int id = record(*tiles[0]).stack_id;
    keyboard->press(KEY_LEFTMETA);
    EVENTUALLY_EQ(box(*tiles[0]).y, 26);
    const wlr_box stack = box(*tiles[0]);
    press_at(stack.x + 50, 300);
    drop_at(stack.x + stack.width - 10, 300);
    EXPECT_EQ(record(*tiles[0]).stack_id, id);
    press_at(stack.x + 50, 300);
    drop_at(1200, 600); // after the last tile
    keyboard->release(KEY_LEFTMETA);
    EXPECT_EQ(record(*tiles[0]).stack_id, 0);
    EXPECT_EQ(order(), "bcda");
}

TEST_F(tile_drags, press_on_a_tab_shows_its_window)
{
    stack_join(record(*tiles[1]), record(*tiles[0]));
    settle();
    const wlr_box stack = box(*tiles[1]);
    press_at(stack.x + 20, 10);
    pointer->release(BTN_LEFT);
    EXPECT_EQ(focused_toplevel(server), &record(*tiles[0]));
    press_at(stack.x + 20, 10, BTN_RIGHT); // other buttons mean nothing there
    pointer->release(BTN_RIGHT);
    EXPECT_EQ(focused_toplevel(server), &record(*tiles[0]));
}

} // namespace
