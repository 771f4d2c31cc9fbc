// Changing the workspace that an output shows.

#include "support/desktop.hpp"

#include "config/settings.hpp"
#include "text.hpp"
#include "workspaces/switch.hpp"

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

struct workspace_switch : test::desktop {
    void SetUp() override
    {
        test::desktop::SetUp();
        plug("A", 800, 600);
        plug("B", 800, 600);
        wlr_cursor_warp(server.cursor, nullptr, 400, 300); // on A
        (void)heard();
    }
    void expect_pointer_in(const std::string &name)
    {
        const wlr_box box = output_layout_box(output(name));
        EXPECT_DOUBLE_EQ(server.cursor->x, box.x + 400);
        EXPECT_DOUBLE_EQ(server.cursor->y, 300);
    }
};

TEST_F(workspace_switch, shows_a_workspace_on_the_current_output_which_becomes_its_home)
{
    command("workspace 5");
    EXPECT_EQ(output("A").current_ws, &workspace(5));
    EXPECT_EQ(workspace(1).output, nullptr);
    EXPECT_FALSE(workspace(1).tree->node.enabled);
    EXPECT_TRUE(workspace(5).tree->node.enabled);
    EXPECT_EQ(text_of(workspace(5).pref_output), "A");
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
}

TEST_F(workspace_switch, goes_to_the_output_that_shows_the_workspace_already)
{
    command("workspace 2");
    EXPECT_EQ(output("A").current_ws, &workspace(1));
    EXPECT_EQ(output("B").current_ws, &workspace(2));
    expect_pointer_in("B");
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
}

TEST_F(workspace_switch, takes_a_workspace_home)
{
    copy_text(workspace(7).pref_output, "B");
    command("workspace 7");
    EXPECT_EQ(output("B").current_ws, &workspace(7));
    expect_pointer_in("B");
}

TEST_F(workspace_switch, passes_over_a_home_that_is_gone_or_dark)
{
    copy_text(workspace(7).pref_output, "gone");
    command("workspace 7");
    EXPECT_EQ(output("A").current_ws, &workspace(7));
    EXPECT_EQ(text_of(workspace(7).pref_output), "A");
    copy_text(workspace(8).pref_output, "B");
    command("dpms off");
    command("workspace 8");
    EXPECT_EQ(output("A").current_ws, &workspace(8));
    EXPECT_EQ(text_of(workspace(8).pref_output), "A");
}

TEST_F(workspace_switch, to_no_workspace_does_nothing)
{
    for (const char *wrong :
         {"workspace", "workspace 0", "workspace 10", "workspace two", "workspace 4294967297"})
        command(wrong);
    EXPECT_EQ(output("A").current_ws, &workspace(1));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(workspace_switch, without_outputs_does_nothing)
{
    unplug("A");
    unplug("B");
    (void)heard();
    command("workspace 5");
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_EQ(workspace(5).output, nullptr);
}

TEST_F(workspace_switch, moves_the_focus_to_the_window_raised_last_there_and_to_nobody_on_an_empty_one)
{
    test::window &low = map("low"), &high = map("high");
    command("workspace 5");
    EVENTUALLY(!high.has(test::ACTIVATED));
    EXPECT_EQ(keyboard_focus(), nullptr);
    test::window &there = map("there");
    command("workspace 1");
    EVENTUALLY(high.has(test::ACTIVATED));
    EXPECT_FALSE(low.has(test::ACTIVATED));
    EVENTUALLY(!there.has(test::ACTIVATED));
    EXPECT_EQ(each<&vantore_toplevel::link>(server.toplevels).first(), &record(high));
}

TEST_F(workspace_switch, leaves_the_pointer_on_its_output)
{
    wlr_cursor_warp(server.cursor, nullptr, 0, 0);
    command("workspace 5");
    EXPECT_DOUBLE_EQ(server.cursor->x, 0);
    wlr_cursor_warp(server.cursor, nullptr, 799, 599);
    command("workspace 6");
    EXPECT_EQ(output("A").current_ws, &workspace(6));
    EXPECT_DOUBLE_EQ(server.cursor->x, 799);
}

TEST_F(workspace_switch, brings_back_windows_that_an_unplugged_output_left_outside)
{
    wlr_cursor_warp(server.cursor, nullptr, 1200, 300); // on B
    test::window &w = map("w", {400, 300});
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{1000, 150, 400, 300}));
    unplug("B");
    command("workspace 2");
    EXPECT_EQ(toplevel_box(record(w)), (wlr_box{200, 150, 400, 300}));
}

TEST_F(workspace_switch, by_pulling_swaps_two_outputs)
{
    output_set_current(output("A"), &workspace(2));
    EXPECT_EQ(output("A").current_ws, &workspace(2));
    EXPECT_EQ(output("B").current_ws, &workspace(1));
    EXPECT_EQ(text_of(workspace(2).pref_output), "A");
    EXPECT_EQ(text_of(workspace(1).pref_output), "B");
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
}

TEST_F(workspace_switch, by_pulling_a_hidden_workspace_hides_the_one_that_was_there)
{
    output_set_current(output("B"), &workspace(9));
    EXPECT_EQ(output("B").current_ws, &workspace(9));
    EXPECT_EQ(workspace(2).output, nullptr);
    EXPECT_FALSE(workspace(2).tree->node.enabled);
}

TEST_F(workspace_switch, by_pulling_to_an_output_without_a_workspace_leaves_the_other_without)
{
    output("A").current_ws->output = nullptr;
    output("A").current_ws = nullptr;
    output_set_current(output("A"), &workspace(2));
    EXPECT_EQ(output("A").current_ws, &workspace(2));
    EXPECT_EQ(output("B").current_ws, nullptr);
}

TEST_F(workspace_switch, by_pulling_nothing_or_what_is_there_does_nothing)
{
    output_set_current(output("A"), nullptr);
    output_set_current(output("A"), &workspace(1));
    EXPECT_EQ(output("A").current_ws, &workspace(1));
    EXPECT_THAT(heard(), IsEmpty());
}

// The configuration

using configured_workspaces = test::unstarted_desktop;

TEST_F(configured_workspaces, have_their_names_layouts_and_outputs_from_the_start)
{
    config("default_layout = tiling\nmaster_ratio = 0.7\n");
    write_config("workspaces.conf", "5 = Web, output=A, layout=floating, tile_mode=grid\n6 = Mail\n");
    start();
    plug("A", 800, 600);
    EXPECT_EQ(output("A").current_ws, &workspace(5));
    EXPECT_EQ(text_of(workspace(5).name), "Web");
    EXPECT_EQ(workspace(5).layout, VANTORE_LAYOUT_FLOATING);
    EXPECT_EQ(workspace(5).tile_mode, TM_GRID);
    EXPECT_EQ(text_of(workspace(6).name), "Mail");
    EXPECT_EQ(workspace(6).layout, VANTORE_LAYOUT_TILING);
    EXPECT_EQ(text_of(workspace(7).name), "7");
    EXPECT_DOUBLE_EQ(workspace(7).master_ratio, 0.7);
}

TEST_F(configured_workspaces, of_one_session_are_not_those_of_the_next)
{
    config("modifier = alt\ncursor_theme = mine\n");
    write_config("workspaces.conf", "1 = Web\n");
    start();
    finish();
    config("");
    write_config("workspaces.conf", "");
    start();
    EXPECT_EQ(text_of(workspace(1).name), "1");
    EXPECT_EQ(server.wm_modifier, uint32_t{WLR_MODIFIER_LOGO});
    EXPECT_EQ(text_of(g_cursor_theme), "");
}

} // namespace
