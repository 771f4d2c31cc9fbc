// Stacks: windows that share a tile under a bar of tabs.

#include "support/desktop.hpp"

#include "config/settings.hpp"
#include "input/hit_test.hpp"
#include "reload.hpp"
#include "windows/states.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/direction.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/layout.hpp"
#include "workspaces/stacks.hpp"
#include "workspaces/tiles.hpp"
#include "workspaces/transfer.hpp"

using test::window;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

struct stacks : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        g_gap = 0;
        workspace(1).master_ratio = 0.5;
        command("ws-layout 1 tiling");
    }
    // Maps windows and makes one stack of them, which shows the last one.
    std::vector<window *> map_stack(int count)
    {
        std::vector<window *> members;
        members.reserve(size_t(count));
        for (int i = 0; i < count; i++)
            members.push_back(&map("tab" + std::to_string(i)));
        for (int i = 1; i < count; i++)
            stack_join(record(*members[size_t(i)]), record(*members[0]));
        settle();
        (void)heard();
        return members;
    }
    bool shows(const window &w) { return record(w).scene_tree->node.enabled; }
    bool has_bar(const window &w) { return record(w).tabbar->node.enabled; }
};

TEST_F(stacks, take_one_tile_for_all_their_members)
{
    const auto members = map_stack(3);
    window &plain = map("plain");
    EVENTUALLY_EQ(box(plain), (wlr_box{640, 0, 640, 704}));
    EVENTUALLY_EQ(box(*members[2]), (wlr_box{0, 26, 640, 678}));
    EXPECT_TRUE(shows(*members[2]));
    EXPECT_TRUE(has_bar(*members[2]));
    for (const size_t hidden : {0U, 1U}) {
        EXPECT_FALSE(shows(*members[hidden]));
        EXPECT_FALSE(has_bar(*members[hidden]));
    }
}

TEST_F(stacks, have_tabs_in_place_of_a_title_bar)
{
    const auto members = map_stack(2);
    record(*members[1]).ssd = true;
    arrange_workspace(&workspace(1));
    EVENTUALLY_EQ(box(*members[1]), (wlr_box{0, 26, 1280, 678}));
}

TEST_F(stacks, show_the_member_that_is_focused)
{
    const auto members = map_stack(3);
    focus_toplevel_ex(&record(*members[0]), true);
    EXPECT_TRUE(shows(*members[0]));
    EXPECT_TRUE(has_bar(*members[0]));
    EXPECT_FALSE(shows(*members[2]));
    EXPECT_FALSE(has_bar(*members[2]));
    EVENTUALLY_EQ(box(*members[0]), (wlr_box{0, 26, 1280, 678}));
}

TEST_F(stacks, show_the_next_member_when_the_active_one_goes)
{
    const auto members = map_stack(3);
    toplevel_minimize(record(*members[2]));
    EXPECT_TRUE(shows(*members[1]));
    EXPECT_TRUE(has_bar(*members[1]));
    members[1]->destroy();
    EVENTUALLY(shows(*members[0]));
    EXPECT_TRUE(has_bar(*members[0]));
}

TEST_F(stacks, lose_a_member_that_floats_and_get_it_back)
{
    const auto members = map_stack(2);
    toggle_float_focused(server);
    EXPECT_NE(record(*members[1]).stack_id, 0);
    EXPECT_FALSE(has_bar(*members[1]));
    EXPECT_TRUE(shows(*members[0]));
    EVENTUALLY_EQ(box(*members[0]), (wlr_box{0, 26, 1280, 678}));
    toggle_float_focused(server);
    EVENTUALLY_EQ(box(*members[1]), (wlr_box{0, 26, 1280, 678}));
    EXPECT_FALSE(shows(*members[0]));
}

TEST_F(stacks, begin_and_end_by_the_key)
{
    window &w = map("w");
    settle();
    (void)heard();
    stack_toggle_focused(server);
    EXPECT_EQ(record(w).stack_id, 1);
    EXPECT_TRUE(has_bar(w));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
    stack_toggle_focused(server);
    EXPECT_EQ(record(w).stack_id, 0);
    EXPECT_FALSE(has_bar(w));
    stack_toggle_focused(server);
    EXPECT_EQ(record(w).stack_id, 2); // ids are never used again
}

TEST_F(stacks, do_not_begin_with_a_window_that_is_no_tile)
{
    window &w = map("w");
    record(w).floating = true;
    stack_toggle_focused(server);
    EXPECT_EQ(record(w).stack_id, 0);
    record(w).floating = false;
    command("ws-layout 1 floating");
    stack_toggle_focused(server);
    EXPECT_EQ(record(w).stack_id, 0);
}

TEST_F(stacks, let_the_focused_member_go)
{
    const auto members = map_stack(2);
    stack_ungroup_focused(server);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
    EXPECT_EQ(record(*members[1]).stack_id, 0);
    EXPECT_FALSE(has_bar(*members[1]));
    EVENTUALLY_EQ(box(*members[1]), (wlr_box{640, 0, 640, 704}));
    EVENTUALLY_EQ(box(*members[0]), (wlr_box{0, 26, 640, 678})); // a stack of one
    EXPECT_TRUE(has_bar(*members[0]));
    stack_ungroup_focused(server); // this window is in no stack any more
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(stacks, cycle_through_their_members)
{
    const auto members = map_stack(3);
    for (const size_t next : {0U, 1U, 2U, 0U}) {
        stack_cycle_focused(server);
        EXPECT_EQ(focused_toplevel(server), &record(*members[next]));
        EXPECT_TRUE(shows(*members[next]));
    }
}

TEST_F(stacks, of_one_do_not_cycle)
{
    map_stack(1);
    stack_toggle_focused(server);
    (void)heard();
    stack_cycle_focused(server);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(stacks, ignore_a_window_that_joins_itself)
{
    window &w = map("w");
    stack_join(record(w), record(w));
    EXPECT_EQ(record(w).stack_id, 0);
}

TEST_F(stacks, take_in_a_window_that_floated)
{
    window &w = map("w"), &other = map("other");
    record(other).floating = true;
    stack_join(record(other), record(w));
    EXPECT_FALSE(record(other).floating);
    EXPECT_TRUE(shows(other));
    EXPECT_FALSE(shows(w));
    EXPECT_EQ(focused_toplevel(server), &record(other));
}

TEST_F(stacks, end_with_the_tiling_of_their_workspace)
{
    const auto members = map_stack(2);
    command("ws-layout 1 floating");
    for (const window *w : members) {
        EXPECT_EQ(record(*w).stack_id, 0);
        EXPECT_FALSE(has_bar(*w));
        EXPECT_TRUE(shows(*w));
    }
}

TEST_F(stacks, end_when_a_reload_takes_their_workspace_out_of_tiling)
{
    const auto members = map_stack(2);
    config_reload(server);
    EXPECT_EQ(workspace(1).layout, VANTORE_LAYOUT_FLOATING);
    for (const window *w : members) {
        EXPECT_EQ(record(*w).stack_id, 0);
        EXPECT_TRUE(shows(*w));
    }
}

TEST_F(stacks, show_a_hidden_member_that_floats_or_goes_to_a_floating_workspace)
{
    const auto members = map_stack(3);
    command("float id:" + std::to_string(record(*members[0]).id));
    EXPECT_TRUE(shows(*members[0]));
    command("workspace 2");
    command("move id:" + std::to_string(record(*members[1]).id) + " 2");
    EXPECT_TRUE(shows(*members[1]));
}

TEST_F(stacks, have_no_tabs_on_a_workspace_that_is_not_shown)
{
    map_stack(2);
    EXPECT_NE(tab_at(server, 10, 10), nullptr);
    command("workspace 2");
    EXPECT_EQ(tab_at(server, 10, 10), nullptr);
}

TEST_F(stacks, are_walked_tab_by_tab_before_the_focus_moves_on)
{
    const auto members = map_stack(2);
    window &right = map("right");
    EVENTUALLY_EQ(box(right), (wlr_box{640, 0, 640, 704}));
    focus_toplevel_ex(&record(*members[0]), true);
    focus_direction(server, 1, 0);
    EXPECT_EQ(focused_toplevel(server), &record(*members[1]));
    focus_direction(server, 1, 0);
    EXPECT_EQ(focused_toplevel(server), &record(right));
    focus_direction(server, -1, 0); // the member that shows
    EXPECT_EQ(focused_toplevel(server), &record(*members[1]));
    focus_direction(server, -1, 0);
    EXPECT_EQ(focused_toplevel(server), &record(*members[0]));
    focus_direction(server, 0, 1); // tabs lie side by side
    EXPECT_EQ(focused_toplevel(server), &record(*members[0]));
}

TEST_F(stacks, keep_their_number_on_another_workspace)
{
    const auto members = map_stack(2);
    const int id = record(*members[1]).stack_id;
    command("ws-layout 2 tiling");
    move_toplevel_to_workspace(record(*members[1]), 2);
    EXPECT_EQ(record(*members[1]).stack_id, id);
    EXPECT_EQ(record(*members[0]).stack_id, id);
}

TEST_F(stacks, show_a_member_on_each_workspace_that_has_some)
{
    plug("B", 800, 600);
    command("ws-layout 2 tiling");
    const auto members = map_stack(3);
    move_toplevel_to_workspace(record(*members[2]), 2);
    EXPECT_TRUE(toplevel_visible(record(*members[2])));
    EVENTUALLY_EQ(box(*members[2]), (wlr_box{1280, 26, 800, 574}));
    EXPECT_TRUE(toplevel_visible(record(*members[1])));
    EVENTUALLY_EQ(box(*members[1]), (wlr_box{0, 26, 1280, 678}));
    EXPECT_FALSE(shows(*members[0]));
    EXPECT_TRUE(record(*members[1]).tabbar->node.enabled);
    EXPECT_TRUE(record(*members[2]).tabbar->node.enabled);
    move_toplevel_to_workspace(record(*members[2]), 1);
    EXPECT_EQ(stack_active_member(server, &workspace(1), record(*members[2]).stack_id), &record(*members[1]));
    EXPECT_FALSE(shows(*members[2])) << "it was raised before the other";
}

TEST_F(stacks, have_at_most_32_tabs)
{
    const auto members = map_stack(33);
    const stack_members tabs{workspace(1), record(*members[0]).stack_id};
    EXPECT_EQ(tabs.all().size(), 32U);
    EXPECT_EQ(tabs.index_of(record(*members[31])), 31);
    EXPECT_EQ(tabs.index_of(record(*members[32])), -1);
    EXPECT_EQ(tab_at(server, 1279, 10), &record(*members[31]));
}

TEST_F(stacks, find_the_tab_under_a_point)
{
    const auto members = map_stack(4);
    EVENTUALLY_EQ(box(*members[3]), (wlr_box{0, 26, 1280, 678}));
    EXPECT_EQ(tab_at(server, 0, 0), &record(*members[0]));
    EXPECT_EQ(tab_at(server, 319.9, 25.9), &record(*members[0]));
    EXPECT_EQ(tab_at(server, 320, 13), &record(*members[1]));
    EXPECT_EQ(tab_at(server, 1279.9, 13), &record(*members[3]));
    EXPECT_EQ(tab_at(server, 1280, 13), nullptr);
    EXPECT_EQ(tab_at(server, -0.1, 13), nullptr);
    EXPECT_EQ(tab_at(server, 10, 26), nullptr);
    EXPECT_EQ(tab_at(server, 10, -0.1), nullptr);
    wlr_scene_node_set_enabled(&record(*members[3]).scene_tree->node, false);
    EXPECT_EQ(tab_at(server, 0, 0), nullptr);
    wlr_scene_node_set_enabled(&record(*members[3]).scene_tree->node,
                               true); // the checks at the end look at it
}

TEST_F(stacks, have_no_tab_where_another_window_covers_them)
{
    const auto members = map_stack(2);
    constexpr test::size above_size{300, 100};
    window &above = connect().create_window("above");
    above.preferred = above_size;
    above.min_size(above_size);
    above.max_size(above_size); // floats
    map(above);
    place(above, 0, 0);
    EXPECT_EQ(tab_at(server, 10, 10), nullptr);
    EXPECT_EQ(tab_at(server, 10, 10, &record(above)), &record(*members[0]));
    EXPECT_EQ(tab_at(server, 700, 10), &record(*members[1]));
    focus_toplevel_ex(&record(*members[1]), true);
    EXPECT_EQ(tab_at(server, 10, 10), &record(*members[0]));
}

// The bar's colours, 8 bits each.
constexpr uint32_t active = 0xff336bc7, inactive = 0xff1c1e26;

TEST_F(stacks, draw_the_active_tab_brighter)
{
    map_stack(2);
    EVENTUALLY_EQ(pixel("A", 700, 2), active);
    EXPECT_EQ(pixel("A", 60, 2), inactive);
    EXPECT_NE(pixel("A", 0, 0), inactive); // a border of one pixel
    stack_cycle_focused(server);
    EVENTUALLY_EQ(pixel("A", 60, 2), active);
    EXPECT_EQ(pixel("A", 700, 2), inactive);
}

// Looks for a pixel of the tab's text, which starts 9 pixels from the tab's left edge.
bool has_text(const test::image &picture, int tab_x)
{
    for (int y = 4; y < 22; y++)
        for (int x = tab_x + 9; x < tab_x + 60; x++)
            if ((picture.at(x, y) & 0xff) > 0xd8)
                return true;
    return false;
}

TEST_F(stacks, write_titles_of_any_bytes_and_a_dash_without_any)
{
    const auto members = map_stack(3);
    std::string cut;
    while (cut.size() < 600)
        cut += "é"; // with the mark of a hung window, the text is cut inside one
    members[0]->title(cut);
    members[1]->app_id("");
    members[1]->title("");
    members[2]->title("fine");
    for (window *w : members)
        w->commit();
    settle();
    record(*members[0]).unresponsive = true;
    arrange_workspace(&workspace(1));
    EVENTUALLY(has_text(picture("A"), 0));
    EXPECT_TRUE(has_text(picture("A"), 426));
    EXPECT_TRUE(has_text(picture("A"), 853));
}

TEST_F(stacks, show_a_new_title_at_once)
{
    const auto members = map_stack(2);
    members[0]->title(" ");
    EVENTUALLY(!has_text(picture("A"), 0));
    members[0]->title("Another title");
    EVENTUALLY(has_text(picture("A"), 0));
    members[1]->title("");
    members[1]->app_id(" ");
    EVENTUALLY(!has_text(picture("A"), 640));
    members[1]->app_id("another");
    EVENTUALLY(has_text(picture("A"), 640));
    EXPECT_FALSE(has_bar(*members[0]));
}

TEST_F(stacks, draw_a_bar_one_pixel_wide)
{
    const auto members = map_stack(2);
    render_tabbar(record(*members[1]), workspace(1), 1);
    render_tabbar(record(*members[1]), workspace(1), 0);
    EXPECT_TRUE(has_bar(*members[1]));
    settle();
}

} // namespace
