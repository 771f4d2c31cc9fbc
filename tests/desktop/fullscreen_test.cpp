// Fullscreen windows: where they go, what they stand above, and what the rest of the desktop hears of them.

#include "support/layers.hpp"

#include "handles.hpp"
#include "windows/fullscreen.hpp"
#include "windows/states.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/switch.hpp"
#include "workspaces/transfer.hpp"

#include <fstream>
#include <linux/input-event-codes.h>

using test::size;
using test::window;
using testing::_;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

static constexpr wlr_box screen_a{0, 0, 1280, 704}, screen_b{1280, 0, 800, 600};

struct fullscreen : test::layers {
    void SetUp() override
    {
        layers::SetUp();
        settle();
        (void)heard();
    }

    window &map_fullscreen(const std::string &app_id, size preferred = {640, 480})
    {
        window &w = map(app_id, preferred);
        w.request_fullscreen();
        settle();
        return w;
    }

    wlr_box box(const window &w) { return toplevel_box(record(w)); }
    wlr_scene_tree *parent(const window &w) { return record(w).scene_tree->node.parent; }
    void focus(const window &w)
    {
        focus_toplevel_ex(&record(w), true);
        settle();
    }
    bool is_told(const window &w) { return w.has(test::FULLSCREEN); }

    // The lines of the file for other programs; one line "none" where there is no file.
    std::vector<std::string> file()
    {
        std::ifstream in{world.runtime_directory() / "vantore-fs"};
        if (!in)
            return {"none"};
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        return lines;
    }
};

TEST_F(fullscreen, is_the_whole_output_above_the_panels_and_back)
{
    show(test::top_bar(40));
    window &w = map("w");
    const wlr_box before = box(w);
    (void)heard();
    w.request_fullscreen();
    EVENTUALLY_EQ(box(w), screen_a);
    EXPECT_EQ(parent(w), server.fullscreen_tree);
    EXPECT_TRUE(record(w).fullscreen);
    EXPECT_TRUE(is_told(w));
    EXPECT_EQ(record(w).saved_geo, before);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS, VNT_EVT_FULLSCREEN_ON));
    w.request_unfullscreen();
    EVENTUALLY_EQ(box(w), before);
    EXPECT_EQ(parent(w), workspace(1).tree);
    EXPECT_FALSE(is_told(w));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS, VNT_EVT_FULLSCREEN_OFF));
}

TEST_F(fullscreen, asked_for_twice_remembers_the_first_box)
{
    window &w = map("w");
    const wlr_box before = box(w);
    toplevel_set_fullscreen(record(w), true);
    settle();
    (void)heard();
    toplevel_set_fullscreen(record(w), true);
    EXPECT_EQ(record(w).saved_geo, before);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(fullscreen, requests_are_answered_also_when_nothing_changes)
{
    window &w = map_fullscreen("w");
    const int before = w.configure_count();
    w.request_fullscreen();
    EVENTUALLY_EQ(w.configure_count(), before + 1);
    EXPECT_TRUE(is_told(w));
}

TEST_F(fullscreen, of_a_window_without_a_size_comes_back_at_the_default_one)
{
    window &w = map("dot", {1, 1});
    w.request_fullscreen();
    EVENTUALLY_EQ(box(w), screen_a);
    w.request_unfullscreen();
    settle();
    EXPECT_EQ(record(w).saved_geo, default_float_box(record(w)));
    EVENTUALLY_EQ(box(w), default_float_box(record(w)));
}

TEST_F(fullscreen, asked_for_before_the_window_is_mapped_holds_from_the_first_picture)
{
    window &w = connect().create_window("film");
    w.request_fullscreen();
    map(w);
    EVENTUALLY_EQ(box(w), screen_a);
    EXPECT_TRUE(record(w).fullscreen);
    EXPECT_EQ(parent(w), server.fullscreen_tree);
}

TEST_F(fullscreen, overrules_maximized_of_a_window_that_starts_with_both)
{
    window &w = connect().create_window("film");
    w.request_maximize();
    w.request_fullscreen();
    map(w);
    EVENTUALLY_EQ(box(w), screen_a);
    EXPECT_FALSE(record(w).maximized);
}

TEST_F(fullscreen, is_not_maximized_or_restored)
{
    window &w = map_fullscreen("w");
    w.request_maximize();
    settle();
    EXPECT_FALSE(record(w).maximized);
    EXPECT_EQ(box(w), screen_a);
}

TEST_F(fullscreen, of_a_maximized_window_comes_back_to_the_maximized_box)
{
    window &w = map("w");
    w.request_maximize();
    settle();
    const wlr_box maximized = box(w);
    w.request_fullscreen();
    EVENTUALLY_EQ(box(w), screen_a);
    w.request_unfullscreen();
    EVENTUALLY_EQ(box(w), maximized);
    EXPECT_TRUE(record(w).maximized);
}

TEST_F(fullscreen, closes_up_the_tiles_and_gives_the_tile_back)
{
    workspace(1).layout = VANTORE_LAYOUT_TILING;
    window &left = map("left"), &right = map("right");
    const wlr_box tile = box(right), alone{8, 8, 1264, 688};
    right.request_fullscreen();
    EVENTUALLY_EQ(box(right), screen_a);
    EVENTUALLY_EQ(box(left), alone);
    right.request_unfullscreen();
    EVENTUALLY_EQ(box(right), tile);
}

TEST_F(fullscreen, is_entered_and_left_by_its_key)
{
    auto &keyboard = plug_keyboard();
    window &w = map("w");
    keyboard.press(KEY_LEFTMETA);
    keyboard.press(KEY_F);
    keyboard.release(KEY_F);
    EVENTUALLY_EQ(box(w), screen_a);
    keyboard.press(KEY_F);
    keyboard.release(KEY_F);
    keyboard.release(KEY_LEFTMETA);
    EVENTUALLY(!record(w).fullscreen);
}

TEST_F(fullscreen, puts_a_client_back_that_moves_itself)
{
    window &w = map_fullscreen("w");
    place(w, 50, 60);
    wlr_scene_node_reparent(&record(w).scene_tree->node, workspace(1).tree);
    w.fill(0xff123456);
    EVENTUALLY_EQ(box(w), screen_a);
    EXPECT_EQ(parent(w), server.fullscreen_tree);
}

TEST_F(fullscreen, without_an_output_changes_nothing)
{
    window &w = map("w");
    test::unplug(test::made_up(output("A").wlr_output));
    w.request_fullscreen();
    settle();
    EXPECT_FALSE(record(w).fullscreen);
    EXPECT_FALSE(is_told(w));
}

// What it stands above

TEST_F(fullscreen, gives_way_to_a_window_that_is_focused_on_its_output)
{
    window &video = map("video"), &terminal = map("terminal", {300, 200});
    video.request_fullscreen();
    settle();
    focus(video);
    EXPECT_FALSE(record(video).fs_demoted);
    focus(terminal);
    EXPECT_TRUE(record(video).fs_demoted);
    EXPECT_TRUE(record(video).fullscreen);
    EXPECT_EQ(parent(video), workspace(1).tree);
    EXPECT_EQ(box(video), screen_a);
    EXPECT_TRUE(is_told(video));
    terminal.fill(0xff00ff00);
    EVENTUALLY(pixel("A", 640, 352) == 0xff00ff00);
}

TEST_F(fullscreen, behind_another_window_goes_on_drawing)
{
    window &video = map_fullscreen("video"), &cover = map("cover", {1280, 704});
    place(cover, 0, 0);
    cover.opaque_region(0, 0, 1280, 704);
    cover.commit();
    focus(cover);
    settle();
    for (int frame = 1; frame <= 3; frame++) {
        const int before = video.frames();
        video.request_frame();
        video.commit();
        settle();
        advance_clock_ms(15);
        settle();
        EXPECT_EQ(video.frames(), before) << "nobody sees it, and it is not time";
        advance_clock_ms(1);
        EVENTUALLY_EQ(video.frames(), before + 1);
    }
}

TEST_F(fullscreen, behind_another_window_stops_its_clock_with_the_last_such_window)
{
    window &video = map_fullscreen("video"), &other = map("other");
    focus(other);
    EXPECT_TRUE(record(video).fs_demoted);
    video.destroy();
    settle();
    EXPECT_TRUE(world.advance_clock_ms(16)); // it runs once more
    advance_clock_ms(1);
    EXPECT_FALSE(world.advance_clock_ms(400));
}

TEST_F(fullscreen, comes_back_above_the_panels_with_a_click)
{
    window &video = map_fullscreen("video"), &terminal = map("terminal", {300, 200});
    focus(terminal);
    auto &pointer = plug_pointer();
    point_at(pointer, 10, 10);
    pointer.click(BTN_LEFT);
    EVENTUALLY(!record(video).fs_demoted);
    EXPECT_EQ(parent(video), server.fullscreen_tree);
    EXPECT_EQ(focused_toplevel(server), &record(video));
}

TEST_F(fullscreen, is_one_window_for_each_output)
{
    window &first = map_fullscreen("first"), &second = map_fullscreen("second");
    focus(first);
    EXPECT_EQ(parent(first), server.fullscreen_tree);
    EXPECT_EQ(parent(second), workspace(1).tree);
    focus(second);
    EXPECT_EQ(parent(first), workspace(1).tree);
    EXPECT_EQ(parent(second), server.fullscreen_tree);
}

TEST_F(fullscreen, does_not_give_way_to_the_focus_on_another_output)
{
    window &video = map_fullscreen("video");
    plug("B", 800, 600);
    wlr_cursor_warp(server.cursor, nullptr, 1500, 100);
    window &other = map("other", {300, 200});
    EXPECT_EQ(record(other).workspace->output, &output("B"));
    focus(other);
    EXPECT_FALSE(record(video).fs_demoted);
    EXPECT_EQ(parent(video), server.fullscreen_tree);
}

TEST_F(fullscreen, does_not_give_way_to_the_overlay)
{
    window &game = map_fullscreen("game"), &overlay = map("vantore-clips-overlay", {300, 200});
    focus(overlay);
    EXPECT_FALSE(record(game).fs_demoted);
    EXPECT_EQ(parent(game), server.fullscreen_tree);
}

TEST_F(fullscreen, of_the_overlay_stays_in_its_layer)
{
    window &overlay = map("vantore-clips-overlay", {300, 200}), &other = map("other");
    overlay.request_fullscreen();
    EVENTUALLY_EQ(box(overlay), screen_a);
    EXPECT_EQ(parent(overlay), server.layers[3]);
    focus(other);
    EXPECT_TRUE(record(overlay).fs_demoted);
    EXPECT_EQ(parent(overlay), server.layers[3]);
    overlay.request_unfullscreen();
    settle();
    EXPECT_EQ(parent(overlay), server.layers[3]);
}

// On which output

TEST_F(fullscreen, is_on_the_output_that_the_client_names)
{
    plug("B", 800, 600);
    window &w = map("w");
    w.auto_draw = false; // a commit brings it to the output of its workspace
    w.request_fullscreen(w.owner().output_named("B"));
    EVENTUALLY(w.has(test::FULLSCREEN));
    EXPECT_EQ(record(w).scene_tree->node.x, screen_b.x);
    EXPECT_EQ(w.last().size(), (size{800, 600}));
    EXPECT_EQ(record(w).workspace, &workspace(1));
    w.fill(0xff00ff00);
    EVENTUALLY_EQ(record(w).scene_tree->node.x, screen_a.x);
}

TEST_F(fullscreen, is_not_on_a_named_output_that_is_off)
{
    plug("B", 800, 600);
    window &w = map("w");
    output_state wish;
    wlr_output_state_set_enabled(&wish, false);
    wlr_output_commit_state(output("B").wlr_output, &wish);
    w.request_fullscreen(w.owner().output_named("B"));
    EVENTUALLY_EQ(box(w), screen_a);
}

TEST_F(fullscreen, of_a_float_is_where_it_was_dragged_and_its_workspace_follows)
{
    plug("B", 800, 600);
    window &w = map("w");
    place(w, 1280 - 319, 0); // one pixel more of it lies on B
    w.request_fullscreen();
    EVENTUALLY_EQ(box(w), screen_b);
    EXPECT_EQ(record(w).workspace, output("B").current_ws);
}

TEST_F(fullscreen, of_a_tile_is_on_the_output_of_its_workspace)
{
    plug("B", 800, 600);
    workspace(1).layout = VANTORE_LAYOUT_TILING;
    window &w = map("w");
    place(w, 1500, 0);
    toplevel_set_fullscreen(record(w), true);
    EVENTUALLY_EQ(box(w), screen_a);
    EXPECT_EQ(record(w).workspace, &workspace(1));
}

TEST_F(fullscreen, moves_with_its_workspace_to_an_output_of_another_size)
{
    plug("B", 800, 600);
    window &w = map_fullscreen("w");
    move_workspace_to_output(&workspace(1), output("B"));
    EVENTUALLY_EQ(box(w), screen_b);
    EXPECT_EQ(w.last().size(), (size{800, 600}));
}

TEST_F(fullscreen, finds_another_output_when_its_own_is_unplugged)
{
    window &w = map_fullscreen("w");
    plug("B", 800, 600);
    test::unplug(test::made_up(output("A").wlr_output));
    EVENTUALLY_EQ(record(w).workspace->output, nullptr);
    EXPECT_FALSE(record(w).scene_tree->node.enabled) << "B shows another workspace";
    goto_workspace(server, 1);
    const wlr_box now_b = output_layout_box(output("B"));
    EVENTUALLY_EQ(box(w), now_b);
}

TEST_F(fullscreen, follows_the_size_of_its_output)
{
    window &w = map_fullscreen("w");
    output_state wish;
    wlr_output_state_set_custom_mode(&wish, 1024, 768, 0);
    wlr_output_send_request_state(output("A").wlr_output, &wish);
    EVENTUALLY_EQ(box(w), (wlr_box{0, 0, 1024, 768}));
}

// Workspaces

TEST_F(fullscreen, shows_only_with_its_workspace)
{
    window &w = map_fullscreen("w");
    goto_workspace(server, 2);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_OFF));
    goto_workspace(server, 1);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_ON));
}

TEST_F(fullscreen, goes_away_with_a_window_that_is_sent_to_a_hidden_workspace)
{
    window &w = map_fullscreen("w");
    move_toplevel_to_workspace(record(w), 5);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_OFF));
    goto_workspace(server, 5);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
    EVENTUALLY_EQ(box(w), screen_a);
}

TEST_F(fullscreen, left_on_a_hidden_workspace_shows_when_that_is_shown)
{
    window &w = map_fullscreen("w");
    goto_workspace(server, 2);
    w.request_unfullscreen();
    settle();
    goto_workspace(server, 1);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
    EXPECT_EQ(parent(w), workspace(1).tree);
}

TEST_F(fullscreen, and_minimized_shows_again_with_its_workspace)
{
    window &w = map_fullscreen("w");
    toplevel_minimize(record(w));
    EXPECT_TRUE(record(w).fullscreen);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    goto_workspace(server, 2);
    goto_workspace(server, 1);
    EXPECT_TRUE(record(w).scene_tree->node.enabled);
}

// Rules

TEST_F(fullscreen, by_a_rule_is_on_the_workspace_of_the_rule)
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

TEST_F(fullscreen, by_a_rule_is_on_the_output_that_shows_the_workspace_of_the_rule)
{
    plug("B", 800, 600);
    write_config("rules.conf", "game -> workspace=2, fullscreen\n");
    window &w = map("game");
    EXPECT_EQ(record(w).workspace, &workspace(2));
    EVENTUALLY_EQ(box(w), screen_b);
}

// Unmapping

TEST_F(fullscreen, of_an_unmapped_window_is_over_for_the_others)
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

TEST_F(fullscreen, is_what_a_window_still_is_when_it_is_mapped_again)
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

TEST_F(fullscreen, of_a_window_mapped_again_without_an_output_waits_for_one)
{
    window &w = map_fullscreen("w");
    w.unmap();
    EVENTUALLY(find_record(w) == nullptr);
    test::unplug(test::made_up(output("A").wlr_output));
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

// What other programs hear

TEST_F(fullscreen, is_told_in_a_file)
{
    window &w = map_fullscreen("film");
    EXPECT_THAT(file(), ElementsAre("A", "film", std::to_string(record(w).id)));
    w.request_unfullscreen();
    settle();
    EXPECT_THAT(file(), ElementsAre("none"));
}

TEST_F(fullscreen, is_told_in_a_file_of_the_first_window_until_the_last_one_ends)
{
    window &first = map_fullscreen("first");
    const std::string id = std::to_string(record(first).id);
    plug("B", 800, 600);
    wlr_cursor_warp(server.cursor, nullptr, 1500, 100);
    window &second = map_fullscreen("second");
    EXPECT_EQ(record(second).workspace->output, &output("B"));
    EXPECT_THAT(file(), ElementsAre("A", "first", id));
    (void)heard();
    first.destroy();
    settle();
    EXPECT_THAT(file(), ElementsAre("A", "first", id)) << "another window, the same state";
    EXPECT_THAT(heard(), Not(Contains(VNT_EVT_FULLSCREEN_OFF)));
    second.destroy();
    settle();
    EXPECT_THAT(file(), ElementsAre("none"));
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_OFF));
}

TEST_F(fullscreen, is_told_to_subscribers_also_without_a_runtime_directory)
{
    const std::string directory = world.runtime_directory();
    unsetenv("XDG_RUNTIME_DIR");
    window &w = map_fullscreen("w");
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_ON));
    w.request_unfullscreen();
    settle();
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_OFF));
    setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
    EXPECT_THAT(file(), ElementsAre("none"));
}

TEST_F(fullscreen, of_a_minimized_window_does_not_count)
{
    window &w = map_fullscreen("w");
    (void)heard();
    toplevel_minimize(record(w));
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_OFF));
    focus(w);
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_ON));
}

TEST_F(fullscreen, hides_the_overlay_of_shortcuts)
{
    auto &keyboard = plug_keyboard();
    window &w = map("w");
    keyboard.press(KEY_LEFTMETA);
    advance_clock_ms(1500);
    EXPECT_TRUE(server.shortcuts_shown);
    w.request_fullscreen();
    EVENTUALLY(!server.shortcuts_shown);
    EXPECT_THAT(heard(), Contains(VNT_EVT_SHORTCUTS));
    keyboard.release(KEY_LEFTMETA);
}
