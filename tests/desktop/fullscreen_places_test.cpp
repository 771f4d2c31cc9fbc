// Fullscreen windows: which output they cover, and how they follow their workspace and their output.

#include "support/fullscreen.hpp"

#include "handles.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/switch.hpp"
#include "workspaces/transfer.hpp"

using fullscreen_places = test::fullscreen_desk;
using test::screen_a;
using test::screen_b;
using test::size;
using test::window;
using testing::_;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace
{

// On which output

TEST_F(fullscreen_places, is_on_the_output_that_the_client_names)
{
    plug("B", 800, 600);
    window &w = map("w");
    w.auto_draw = false; // a commit would bring it to the output of its workspace
    w.request_fullscreen(w.owner().output_named("B"));
    EVENTUALLY(w.has(test::FULLSCREEN));
    EXPECT_EQ(record(w).scene_tree->node.x, screen_b.x);
    EXPECT_EQ(w.last().size(), (size{800, 600}));
    EXPECT_EQ(record(w).workspace, &workspace(1));
    w.fill(0xff00ff00);
    EVENTUALLY_EQ(record(w).scene_tree->node.x, screen_a.x);
}

TEST_F(fullscreen_places, is_not_on_a_named_output_that_is_off)
{
    plug("B", 800, 600);
    window &w = map("w");
    output_state wish;
    wlr_output_state_set_enabled(&wish, false);
    wlr_output_commit_state(output("B").wlr_output, &wish);
    w.request_fullscreen(w.owner().output_named("B"));
    EVENTUALLY_EQ(box(w), screen_a);
}

TEST_F(fullscreen_places, of_a_float_is_where_it_was_dragged_and_its_workspace_follows)
{
    plug("B", 800, 600);
    window &w = map("w");
    place(w, 1280 - 319, 0); // its larger part lies on B, by one pixel
    w.request_fullscreen();
    EVENTUALLY_EQ(box(w), screen_b);
    EXPECT_EQ(record(w).workspace, output("B").current_ws);
}

TEST_F(fullscreen_places, of_a_tile_is_on_the_output_of_its_workspace)
{
    plug("B", 800, 600);
    workspace(1).layout = VANTORE_LAYOUT_TILING;
    window &w = map("w");
    place(w, 1500, 0);
    toplevel_set_fullscreen(record(w), true);
    EVENTUALLY_EQ(box(w), screen_a);
    EXPECT_EQ(record(w).workspace, &workspace(1));
}

TEST_F(fullscreen_places, moves_with_its_workspace_to_an_output_of_another_size)
{
    plug("B", 800, 600);
    window &w = map_fullscreen("w");
    move_workspace_to_output(&workspace(1), output("B"));
    EVENTUALLY_EQ(box(w), screen_b);
    EXPECT_EQ(w.last().size(), (size{800, 600}));
}

TEST_F(fullscreen_places, finds_another_output_when_its_own_is_unplugged)
{
    window &w = map_fullscreen("w");
    plug("B", 800, 600);
    unplug("A");
    EVENTUALLY_EQ(record(w).workspace->output, nullptr);
    EXPECT_FALSE(record(w).scene_tree->node.enabled) << "B shows another workspace";
    goto_workspace(server, 1);
    const wlr_box now_b = output_layout_box(output("B"));
    EVENTUALLY_EQ(box(w), now_b);
}

TEST_F(fullscreen_places, follows_the_size_of_its_output)
{
    window &w = map_fullscreen("w");
    test::request_size(test::made_up(output("A").wlr_output), 1024, 768);
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1024, 768}));
}

TEST_F(fullscreen_places, are_right_at_once_when_the_workspace_moves)
{
    plug("B", 1280, 704);
    window &w = map_fullscreen("w");
    w.auto_draw = false; // a client that draws nothing new
    vantore_toplevel &t = record(w);
    move_workspace_to_output(&workspace(1), output("B"));
    EXPECT_EQ(toplevel_box(t), (wlr_box{1280, 0, 1280, 704}));
    EXPECT_EQ(t.float_geo, (wlr_box{1280, 0, 1280, 704}));
    move_toplevel_to_workspace(t, output("A").current_ws->num);
    EXPECT_EQ(toplevel_box(t), screen_a);
    EXPECT_EQ(t.float_geo, screen_a);
}

TEST_F(fullscreen_places, of_maximized_windows_are_whole_outputs_too)
{
    plug("B", 800, 600);
    show(test::top_bar(40));
    window &w = map("w");
    w.request_maximize();
    settle();
    w.request_fullscreen();
    EVENTUALLY_EQ(box(w), screen_a);
    move_workspace_to_output(&workspace(1), output("B"));
    EVENTUALLY_EQ(box(w), screen_b);
    move_toplevel_to_workspace(record(w), output("A").current_ws->num);
    EVENTUALLY_EQ(box(w), screen_a);
}

TEST_F(fullscreen_places, are_right_when_a_window_leaves_a_hidden_workspace)
{
    plug("B", 800, 600);
    window &w = map_fullscreen("w");
    move_toplevel_to_workspace(record(w), 5);
    settle();
    w.auto_draw = false;
    move_toplevel_to_workspace(record(w), output("B").current_ws->num);
    EXPECT_EQ(record(w).scene_tree->node.x, screen_b.x);
    settle();
    EXPECT_EQ(w.last().size(), (size{800, 600}));
}

TEST_F(fullscreen_places, ask_a_client_for_no_size_that_it_has)
{
    window &w = map_fullscreen("w");
    const int before = w.configure_count();
    fit_fullscreen_windows(workspace(1));
    settle();
    EXPECT_EQ(w.configure_count(), before);
}

TEST_F(fullscreen_places, follow_an_output_that_moves_up_for_another)
{
    plug("B", 800, 600);
    window &w = map_fullscreen("w");
    move_workspace_to_output(&workspace(1), output("B"));
    settle();
    w.auto_draw = false;
    unplug("A");
    EVENTUALLY_EQ(output_layout_box(output("B")).x, 0);
    EXPECT_EQ(record(w).scene_tree->node.x, 0);
}

TEST_F(fullscreen_places, follow_an_output_whose_neighbour_changes_its_size)
{
    plug("B", 800, 600);
    window &w = map_fullscreen("w");
    move_workspace_to_output(&workspace(1), output("B"));
    settle();
    w.auto_draw = false;
    test::request_size(test::made_up(output("A").wlr_output), 1024, 768);
    EXPECT_EQ(record(w).scene_tree->node.x, 1024);
}

TEST_F(fullscreen_places, of_tiles_end_at_the_old_box_until_they_are_arranged)
{
    workspace(1).layout = VANTORE_LAYOUT_TILING;
    window &left = map("left"), &right = map("right");
    const wlr_box tile = box(right);
    right.request_fullscreen();
    EVENTUALLY_EQ(box(right), screen_a);
    record(right).saved_geo = {100, 100, 300, 200};
    goto_workspace(server, 2);
    toplevel_set_fullscreen(record(right), false);
    EVENTUALLY_EQ(box(right), (wlr_box{100, 100, 300, 200}));
    goto_workspace(server, 1);
    EVENTUALLY_EQ(box(right), tile);
    EXPECT_NE(box(left), tile);
}

// Workspaces

TEST_F(fullscreen_places, shows_only_with_its_workspace)
{
    window &w = map_fullscreen("w");
    goto_workspace(server, 2);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_OFF));
    goto_workspace(server, 1);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_ON));
}

TEST_F(fullscreen_places, goes_away_with_a_window_that_is_sent_to_a_hidden_workspace)
{
    window &w = map_fullscreen("w");
    move_toplevel_to_workspace(record(w), 5);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_OFF));
    goto_workspace(server, 5);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
    EVENTUALLY_EQ(box(w), screen_a);
}

TEST_F(fullscreen_places, left_on_a_hidden_workspace_shows_when_that_is_shown)
{
    window &w = map_fullscreen("w");
    goto_workspace(server, 2);
    w.request_unfullscreen();
    settle();
    goto_workspace(server, 1);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
    EXPECT_EQ(parent(w), workspace(1).tree);
}

TEST_F(fullscreen_places, and_minimized_shows_again_with_its_workspace)
{
    window &w = map_fullscreen("w");
    toplevel_minimize(record(w));
    EXPECT_TRUE(record(w).fullscreen);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    goto_workspace(server, 2);
    goto_workspace(server, 1);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
}

TEST_F(fullscreen_places, left_by_a_window_that_is_still_minimized_hide_it_again)
{
    window &w = map_fullscreen("w");
    toplevel_minimize(record(w));
    map("other");
    goto_workspace(server, 2);
    goto_workspace(server, 1);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
    w.request_unfullscreen();
    EVENTUALLY(!record(w).fullscreen);
    EXPECT_TRUE(record(w).minimized);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
}

// Rules

TEST_F(fullscreen_places, by_a_rule_is_on_the_workspace_of_the_rule)
{
    write_config("rules.conf", "game -> workspace=5, fullscreen\n");
    window &w = map("game");
    EXPECT_TRUE(record(w).fullscreen);
    EXPECT_EQ(record(w).workspace, &workspace(5));
    EXPECT_FALSE(record(w).scene_tree->node.enabled) << "a hidden workspace";
    goto_workspace(server, 5);
    EVENTUALLY_EQ(box(w), screen_a);
    w.request_unfullscreen();
    EVENTUALLY_EQ(box(w), (wlr_box{320, 112, 640, 480}));
}

TEST_F(fullscreen_places, by_a_rule_is_on_the_output_that_shows_the_workspace_of_the_rule)
{
    plug("B", 800, 600);
    write_config("rules.conf", "game -> workspace=2, fullscreen\n");
    window &w = map("game");
    EXPECT_EQ(record(w).workspace, &workspace(2));
    EVENTUALLY_EQ(box(w), screen_b);
}

// Unmapping

TEST_F(fullscreen_places, of_an_unmapped_window_is_over_for_the_others)
{
    window &w = map_fullscreen("w"), &other = map("other");
    focus(other);
    EXPECT_TRUE(record(w).fs_demoted);
    (void)heard();
    vantore_toplevel &t = record(w);
    w.unmap();
    EVENTUALLY(find_record(w) == nullptr);
    EXPECT_TRUE(t.fullscreen);
    EXPECT_FALSE(t.fs_demoted);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_FULLSCREEN_OFF, VNT_EVT_WINDOWS));
}

TEST_F(fullscreen_places, is_what_a_window_still_is_when_it_is_mapped_again)
{
    window &w = map_fullscreen("w");
    w.unmap();
    EVENTUALLY(find_record(w) == nullptr);
    (void)heard();
    map(w);
    EVENTUALLY_EQ(box(w), screen_a);
    EXPECT_TRUE(is_told(w));
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_ON));
    EXPECT_THAT(file(), ElementsAre("A", _, std::to_string(record(w).id)));
}

TEST_F(fullscreen_places, of_a_window_mapped_again_without_an_output_waits_for_one)
{
    window &w = map_fullscreen("w");
    w.unmap();
    EVENTUALLY(find_record(w) == nullptr);
    unplug("A");
    settle();
    (void)heard();
    map(w);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    EXPECT_THAT(heard(), Not(Contains(VNT_EVT_FULLSCREEN_ON)));
    plug("B", 800, 576);
    settle();
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 800, 576}));
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_ON));
}

TEST_F(fullscreen_places, of_a_window_mapped_again_are_of_the_output_under_the_pointer)
{
    window &w = map_fullscreen("w");
    w.unmap();
    EVENTUALLY(find_record(w) == nullptr);
    plug("B", 800, 600);
    wlr_cursor_warp(server.cursor, nullptr, 1500, 100);
    map(w);
    EXPECT_EQ(record(w).workspace->output, &output("B"));
    EVENTUALLY_EQ(box(w), screen_b);
}

TEST_F(fullscreen_places, of_a_window_mapped_again_and_hidden_by_its_rule_are_not_told)
{
    window &w = map_fullscreen("w");
    w.unmap();
    EVENTUALLY(find_record(w) == nullptr);
    write_config("rules.conf", "w -> workspace=5\n");
    (void)heard();
    w.app_id("w");
    map(w);
    EXPECT_EQ(record(w).workspace, &workspace(5));
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    EXPECT_THAT(heard(), Not(Contains(VNT_EVT_FULLSCREEN_ON)));
}

TEST_F(fullscreen_places, of_a_window_that_is_not_mapped_show_nothing)
{
    window &w = map("w");
    w.unmap();
    EVENTUALLY(find_record(w) == nullptr);
    w.auto_draw = false;
    w.open();
    w.request_fullscreen();
    w.request_unfullscreen();
    settle();
    const wlr_scene_node *node = nullptr;
    wl_list_for_each(node, &workspace(1).tree->children, link) EXPECT_FALSE(node->enabled);
}

} // namespace
