// What a rule does to a window that maps.

#include "support/desktop.hpp"

#include "config/rules.hpp"
#include "windows/app_rules.hpp"

#include <format>

using testing::Contains;

namespace
{

struct app_rules : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1920, 1080);
        (void)heard();
    }

    void use(std::string_view lines) { write_config("rules.conf", lines); }

    vantore_toplevel &map_record(const std::string &app_id, test::size size = {640, 480})
    {
        return record(map(app_id, size));
    }
};

TEST_F(app_rules, float_and_tile_windows_of_a_tiling_workspace)
{
    workspace(1).layout = VANTORE_LAYOUT_TILING;
    use("player -> float\ndialog -> tile\n");
    test::window &player = map("player");
    EXPECT_TRUE(record(player).floating);
    EXPECT_EQ(toplevel_box(record(player)), (wlr_box{640, 300, 640, 480}));
    EXPECT_FALSE(record(map_of_fixed_size("dialog")).floating) << "the rule stands above the fixed size";
    EXPECT_FALSE(map_record("other").floating);
}

TEST_F(app_rules, leave_floating_alone_where_they_do_not_speak_of_it)
{
    use("dialog -> noshadow\n");
    EXPECT_TRUE(record(map_of_fixed_size("dialog")).floating);
}

TEST_F(app_rules, of_the_same_pattern_count_only_once)
{
    use("player -> float\nplayer -> tile, noround\n");
    const vantore_toplevel &t = map_record("player");
    EXPECT_TRUE(t.floating);
    EXPECT_FALSE(t.no_round);
}

TEST_F(app_rules, copy_their_flags_into_the_window)
{
    use("all -> noshadow, noround, skiptaskbar, follow\nshadow -> noshadow\nround -> noround\n"
        "bar -> skiptaskbar\nfollow -> follow\n");
    const auto flags = [](const vantore_toplevel &t) {
        return std::array{t.no_shadow, t.no_round, t.skip_taskbar, t.rule_follow};
    };
    EXPECT_EQ(flags(map_record("all")), (std::array{true, true, true, true}));
    EXPECT_EQ(flags(map_record("shadow")), (std::array{true, false, false, false}));
    EXPECT_EQ(flags(map_record("round")), (std::array{false, true, false, false}));
    EXPECT_EQ(flags(map_record("bar")), (std::array{false, false, true, false}));
    EXPECT_EQ(flags(map_record("follow")), (std::array{false, false, false, true}));
    EXPECT_EQ(flags(map_record("none")), (std::array{false, false, false, false}));
}

TEST_F(app_rules, do_not_touch_a_window_without_an_app_id)
{
    use("* -> float, ws=3\n");
    const vantore_toplevel &t = map_record("");
    EXPECT_FALSE(t.floating);
    EXPECT_EQ(t.workspace, &workspace(1));
    EXPECT_TRUE(map_record("any").floating);
}

TEST_F(app_rules, open_a_window_on_another_workspace_without_going_there)
{
    use("mail -> workspace=3\n");
    test::window &editor = map("editor");
    test::window &mail = map("mail");
    EXPECT_EQ(record(mail).workspace, &workspace(3));
    EXPECT_EQ(record(mail).scene_tree->node.parent, workspace(3).tree);
    EXPECT_EQ(output("A").current_ws, &workspace(1));
    EXPECT_TRUE(editor.has(test::ACTIVATED));
    EXPECT_FALSE(mail.has(test::ACTIVATED));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WINDOWS));
}

TEST_F(app_rules, tile_a_window_on_the_workspace_that_it_opens_on)
{
    plug("B", 800, 600);
    vantore_workspace &there = *output("B").current_ws;
    there.layout = VANTORE_LAYOUT_TILING;
    use("mail -> ws=" + std::to_string(there.num) + "\n");
    test::window &mail = map("mail");
    const wlr_box screen = output_layout_box(output("B"));
    EXPECT_EQ(toplevel_box(record(mail)), (wlr_box{screen.x + 8, 8, 784, 584}));
}

TEST_F(app_rules, may_take_the_view_along)
{
    use("mail -> ws=3, follow\n");
    test::window &mail = map("mail");
    EXPECT_EQ(output("A").current_ws, &workspace(3));
    EVENTUALLY(mail.has(test::ACTIVATED));
    EXPECT_THAT(heard(), Contains(VNT_EVT_WORKSPACES));
}

TEST_F(app_rules, do_not_move_the_view_to_a_workspace_that_is_shown)
{
    use("mail -> follow\n");
    (void)heard();
    map("mail");
    EXPECT_THAT(heard(), testing::Not(Contains(VNT_EVT_WORKSPACES)));
}

TEST_F(app_rules, that_name_no_workspace_leave_the_window_where_it_is)
{
    use("zero -> ws=0\nten -> ws=10\nminus -> ws=-1\nnowhere -> ws=nowhere\n");
    for (const char *app_id : {"zero", "ten", "minus", "nowhere"})
        EXPECT_EQ(map_record(app_id).workspace, &workspace(1)) << app_id;
}

TEST_F(app_rules, know_workspaces_by_the_names_of_their_file)
{
    world.write_config("workspaces.conf", "4 = Mail\n");
    use("mail -> workspace=Mail\n");
    EXPECT_EQ(map_record("mail").workspace, &workspace(4));
}

struct place_case {
    const char *place;
    int x, y; // of a window of 640 by 481 in an area of 1820 by 1050 at 100, 30
};

class placed : public app_rules, public testing::WithParamInterface<place_case>
{
};

TEST_P(placed, a_floating_window_goes_to_its_corner)
{
    output("A").usable = {100, 30, 1820, 1050};
    use(std::format("note -> float, place={}\n", GetParam().place));
    EXPECT_EQ(toplevel_box(map_record("note", {640, 481})), (wlr_box{GetParam().x, GetParam().y, 640, 481}));
}

INSTANTIATE_TEST_SUITE_P(all, placed,
                         testing::Values(place_case{"top-right", 1264, 46}, place_case{"top-left", 116, 46},
                                         place_case{"bottom-right", 1264, 583},
                                         place_case{"bottom-left", 116, 583}, place_case{"center", 690, 314},
                                         place_case{"elsewhere", 690, 314}));

TEST_F(app_rules, place_floating_windows_only)
{
    use("note -> place=top-left\n");
    EXPECT_EQ(toplevel_box(map_record("note")), (wlr_box{640, 300, 640, 480}));
    workspace(2).layout = VANTORE_LAYOUT_TILING;
    command("workspace 2");
    EXPECT_EQ(toplevel_box(map_record("note")), (wlr_box{8, 8, 1904, 1064}));
}

TEST_F(app_rules, place_a_window_on_the_output_of_its_workspace)
{
    plug("B", 800, 600);
    use("note -> float, place=top-left, ws=" + std::to_string(output("B").current_ws->num) + "\n");
    const wlr_box screen = output_layout_box(output("B"));
    const wlr_box box = toplevel_box(map_record("note"));
    EXPECT_EQ(box.x, screen.x + 16);
    EXPECT_EQ(box.y, screen.y + 16);
}

TEST_F(app_rules, place_nothing_on_a_workspace_that_is_not_shown)
{
    use("note -> float, place=top-left, ws=5\n");
    EXPECT_EQ(toplevel_box(map_record("note")), (wlr_box{640, 300, 640, 480}));
}

TEST_F(app_rules, are_looked_up_again_when_a_window_maps_again)
{
    use("note -> float\n");
    test::window &w = map("note");
    w.unmap();
    EVENTUALLY(find_record(w) == nullptr);
    use("note -> tile, ws=3\n");
    w.app_id("note"); // forgotten with the window
    map(w);
    EXPECT_FALSE(record(w).floating);
    EXPECT_EQ(record(w).workspace, &workspace(3));
}

TEST_F(app_rules, may_be_changed_for_live_windows_in_their_looks_only)
{
    vantore_toplevel &plain = map_record("plain"), &bare = map_record("bare");
    use("plain -> noshadow, noround, skiptaskbar, float, ws=3, follow, place=center\n");
    bare.no_shadow = bare.no_round = true;
    for (vantore_toplevel *t : {&plain, &bare})
        config_refresh_rules(*t);
    EXPECT_TRUE(plain.no_shadow && plain.no_round);
    EXPECT_FALSE(plain.skip_taskbar || plain.floating || plain.rule_follow);
    EXPECT_EQ(plain.place, PLACE_NONE);
    EXPECT_EQ(plain.workspace, &workspace(1));
    EXPECT_FALSE(bare.no_shadow || bare.no_round);
}

} // namespace
