// Fullscreen windows: how they come and go, what they stand above, and what other programs hear of them.

#include "support/fullscreen.hpp"

#include "windows/fullscreen.hpp"
#include "windows/states.hpp"

#include <linux/input-event-codes.h>

using fullscreen = test::fullscreen_desk;
using test::screen_a;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace
{

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

TEST_F(fullscreen, window_stays_below_its_dialogs)
{
    window &w = map_fullscreen("w");
    window &dialog = w.owner().create_window("dialog"), &nested = w.owner().create_window("nested");
    dialog.parent(&w);
    map(dialog);
    nested.parent(&dialog);
    map(nested);
    EXPECT_TRUE(record(w).fs_demoted); // a window on its output has the focus
    EXPECT_EQ(parent(dialog), workspace(1).tree);
    focus(w);
    EXPECT_EQ(parent(w), server.fullscreen_tree);
    EXPECT_EQ(parent(dialog), server.fullscreen_tree);
    EXPECT_EQ(parent(nested), server.fullscreen_tree);
    EXPECT_EQ(&record(w).scene_tree->node,
              owner_of<&wlr_scene_node::link>(server.fullscreen_tree->children.next));
    window &sibling = w.owner().create_window("sibling");
    sibling.parent(&w);
    map(sibling);
    focus(w);
    command("workspace 2");
    EXPECT_FALSE(toplevel_visible(record(dialog)));
    EXPECT_FALSE(tl_on_screen(record(dialog)));
    command("workspace 1");
    EXPECT_EQ(parent(dialog), server.fullscreen_tree);
    EXPECT_EQ(&record(sibling).scene_tree->node, // the others were raised before it
              owner_of<&wlr_scene_node::link>(server.fullscreen_tree->children.prev));
    toplevel_set_fullscreen(record(w), false);
    EXPECT_EQ(parent(dialog), workspace(1).tree);
    EXPECT_EQ(parent(nested), workspace(1).tree);
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

TEST_F(fullscreen, of_a_maximized_window_comes_back_to_the_usable_area_as_it_is_then)
{
    window &w = map("w");
    w.request_maximize();
    settle();
    w.request_fullscreen();
    EVENTUALLY_EQ(box(w), screen_a);
    show(test::top_bar(40));
    w.request_unfullscreen();
    EVENTUALLY_EQ(box(w), (wlr_box{0, 40, 1280, 704 - 40}));
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
    unplug("A");
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

TEST_F(fullscreen, gives_way_on_each_of_three_outputs_by_itself)
{
    plug("B", 640, 640);
    plug("C", 640, 640);
    std::array<window *, 3> films{};
    const std::array centres{640, 1600, 2240};
    for (size_t i = 0; i < films.size(); i++) {
        wlr_cursor_warp(server.cursor, nullptr, centres[i], 100);
        films[i] = &map_fullscreen("film");
        EXPECT_EQ(box(*films[i]), output_layout_box(*record(*films[i]).workspace->output));
    }
    const auto above_panels = [&] {
        std::string above;
        for (const window *film : films)
            above += parent(*film) == server.fullscreen_tree ? 'x' : '-';
        return above;
    };
    EXPECT_EQ(above_panels(), "xxx");
    wlr_cursor_warp(server.cursor, nullptr, centres[1], 100);
    window &notes = map("notes");
    EXPECT_EQ(above_panels(), "x-x");
    focus(*films[2]);
    EXPECT_EQ(above_panels(), "x-x");
    focus(*films[1]);
    EXPECT_EQ(above_panels(), "xxx");
    focus(notes);
    notes.destroy();
    EVENTUALLY(find_record(notes) == nullptr);
    focus(*films[1]);
    EXPECT_EQ(above_panels(), "xxx");
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

// What other programs hear

TEST_F(fullscreen, is_told_in_a_file)
{
    window &w = map_fullscreen("film");
    EXPECT_THAT(file(), ElementsAre("A", "film", std::to_string(record(w).id)));
    w.request_unfullscreen();
    settle();
    EXPECT_THAT(file(), ElementsAre("none"));
}

TEST_F(fullscreen, is_told_in_a_file_of_three_lines_whatever_the_window_calls_itself)
{
    window &w = map_fullscreen("two\nlines");
    const std::string id = std::to_string(record(w).id);
    EXPECT_THAT(file(), ElementsAre("A", "two lines", id));
    w.destroy();
    EVENTUALLY(find_record(w) == nullptr);
    window &nameless = map_fullscreen("");
    EXPECT_THAT(file(), ElementsAre("A", "", std::to_string(record(nameless).id)));
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

TEST_F(fullscreen, of_a_minimized_window_begins_when_that_is_shown)
{
    window &w = map("w"), &other = map("other");
    toplevel_minimize(record(w));
    (void)heard();
    w.request_fullscreen();
    EVENTUALLY(record(w).fullscreen);
    EXPECT_FALSE(record(w).scene_tree->node.enabled);
    EXPECT_THAT(heard(), Not(Contains(VNT_EVT_FULLSCREEN_ON)));
    EXPECT_TRUE(has_keyboard(other));
    focus(w);
    EVENTUALLY_EQ(box(w), screen_a);
    EXPECT_THAT(heard(), Contains(VNT_EVT_FULLSCREEN_ON));
}

TEST_F(fullscreen, hides_the_overlay_of_shortcuts)
{
    auto &keyboard = plug_keyboard();
    window &w = map("w");
    keyboard.press(KEY_LEFTMETA);
    advance_clock_ms(1500);
    EXPECT_TRUE(server.tap.shortcuts_shown);
    w.request_fullscreen();
    EVENTUALLY(!server.tap.shortcuts_shown);
    EXPECT_THAT(heard(), Contains(VNT_EVT_SHORTCUTS));
    keyboard.release(KEY_LEFTMETA);
}

} // namespace
