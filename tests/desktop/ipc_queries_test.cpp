// The state of the session as JSON: exact texts.

#include "support/desktop.hpp"

#include "startup.hpp"
#include "text.hpp"

using testing::HasSubstr;
using testing::Not;

namespace
{

struct queries : test::desktop {
    std::string query(vnt_ipc_msg type) { return ask(dial(), type, "ignored"); }
    std::string workspaces() { return query(VNT_MSG_GET_WORKSPACES); }
    std::string windows() { return query(VNT_MSG_GET_WINDOWS); }
    std::string outputs() { return query(VNT_MSG_GET_OUTPUTS); }

    static void commit(test::made_up_output &made, auto change)
    {
        wlr_output_state state{};
        wlr_output_state_init(&state);
        change(&state);
        EXPECT_TRUE(wlr_output_commit_state(&made.base, &state));
        wlr_output_state_finish(&state);
    }
};

TEST_F(queries, are_empty_lists_at_first)
{
    EXPECT_EQ(workspaces(), "[]");
    EXPECT_EQ(windows(), "[]");
    EXPECT_EQ(outputs(), "[]");
}

TEST_F(queries, list_the_workspaces_that_are_shown_used_or_named)
{
    plug("A", 800, 600);
    plug("B", 800, 600);
    wlr_cursor_warp(server.cursor, nullptr, 400, 300);
    map("w");
    map("w");
    command("workspace 3");
    copy_text(workspace(5).name, "mail \"work\"");
    workspace(5).layout = VANTORE_LAYOUT_TILING;
    workspace(5).tile_mode = TM_COLUMNS;
    EXPECT_EQ(workspaces(),
              R"([{"num":1,"name":"1","focused":false,"visible":false,"tiling":false,"tile_mode":"master",)"
              R"("output":"","pref_output":"A","layout":"floating","window_count":2},)"
              R"({"num":2,"name":"2","focused":false,"visible":true,"tiling":false,"tile_mode":"master",)"
              R"("output":"B","pref_output":"B","layout":"floating","window_count":0},)"
              R"({"num":3,"name":"3","focused":true,"visible":true,"tiling":false,"tile_mode":"master",)"
              R"("output":"A","pref_output":"A","layout":"floating","window_count":0},)"
              R"({"num":5,"name":"mail \"work\"","focused":false,"visible":false,"tiling":true,)"
              R"("tile_mode":"columns","output":"","pref_output":"","layout":"tiling","window_count":0}])");
}

TEST_F(queries, spell_every_tile_mode)
{
    plug("A", 800, 600);
    for (const auto &[mode, name] : {std::pair{TM_MASTER, "master"},
                                     {TM_GRID, "grid"},
                                     {TM_COLUMNS, "columns"},
                                     {TM_MONOCLE, "monocle"}}) {
        workspace(1).tile_mode = mode;
        EXPECT_THAT(workspaces(), HasSubstr(std::format(R"("tile_mode":"{}")", name)));
    }
}

TEST_F(queries, list_windows_from_the_last_raised_one)
{
    plug("A", 800, 600);
    test::window &first = map("first", {100, 80});
    first.title("one");
    test::window &second = map("second", {200, 100});
    settle();
    EXPECT_EQ(windows(),
              std::format(R"([{{"id":{},"skip":false,"app_id":"second","title":"","output":"A","ws":1,)"
                          R"("focused":true,"floating":false,"fullscreen":false,"ssd":false,"urgent":false,)"
                          R"("minimized":false,"rect":{{"x":300,"y":250,"width":200,"height":100}}}},)"
                          R"({{"id":{},"skip":false,"app_id":"first","title":"one","output":"A","ws":1,)"
                          R"("focused":false,"floating":false,"fullscreen":false,"ssd":false,"urgent":false,)"
                          R"("minimized":false,"rect":{{"x":350,"y":260,"width":100,"height":80}}}}])",
                          record(second).id, record(first).id));
}

TEST_F(queries, tell_every_state_of_a_window)
{
    plug("A", 800, 600);
    vantore_toplevel &t = record(map("w", {100, 80}));
    EXPECT_THAT(windows(), HasSubstr(R"("focused":true)"));
    for (auto [flag, key] : {std::pair{&vantore_toplevel::skip_taskbar, "skip"},
                             {&vantore_toplevel::floating, "floating"},
                             {&vantore_toplevel::fullscreen, "fullscreen"},
                             {&vantore_toplevel::ssd, "ssd"},
                             {&vantore_toplevel::urgent, "urgent"},
                             {&vantore_toplevel::minimized, "minimized"}}) {
        const std::string pair = std::format(R"("{}":true)", key);
        EXPECT_THAT(windows(), Not(HasSubstr(pair)));
        t.*flag = true;
        EXPECT_THAT(windows(), HasSubstr(pair));
        t.*flag = false;
    }
}

TEST_F(queries, leave_the_clipboard_picker_out_of_task_bars)
{
    plug("A", 800, 600);
    map("vantore-clips-overlay");
    EXPECT_THAT(windows(), HasSubstr(R"("skip":true,"app_id":"vantore-clips-overlay")"));
}

TEST_F(queries, place_a_window_on_a_hidden_workspace_on_no_output)
{
    plug("A", 800, 600);
    map("w");
    command("workspace 2");
    EXPECT_THAT(windows(), HasSubstr(R"("output":"","ws":1,"focused":false)"));
}

TEST_F(queries, place_a_window_without_a_workspace_on_0)
{
    plug("A", 800, 600);
    vantore_toplevel &t = record(map("w"));
    vantore_workspace *ws = std::exchange(t.workspace, nullptr);
    EXPECT_THAT(windows(), HasSubstr(R"("output":"","ws":0)"));
    t.workspace = ws;
}

TEST_F(queries, escape_titles_and_pass_their_other_bytes_on)
{
    plug("A", 800, 600);
    test::window &w = map("w");
    w.title("a\"b\\c\nd\1e\xc3\xa9");
    settle();
    EXPECT_THAT(windows(), HasSubstr("\"title\":\"a\\\"b\\\\c\\nd\\u0001e\xc3\xa9\""));
}

TEST_F(queries, mark_windows_that_do_not_answer)
{
    plug("A", 800, 600);
    test::window &w = map("w");
    record(w).unresponsive = true;
    EXPECT_THAT(windows(), HasSubstr(R"--("title":"Window (Not Responding)")--"));
    record(w).unresponsive = false;
    w.title("Notes");
    settle();
    record(w).unresponsive = true;
    EXPECT_THAT(windows(), HasSubstr(R"--("title":"Notes (Not Responding)")--"));
}

TEST_F(queries, list_outputs_with_their_modes)
{
    auto &made = plug({.name = "A",
                       .modes = {{.width = 1024, .height = 768, .preferred = true},
                                 {.width = 800, .height = 600, .refresh_mhz = 75000}}});
    made.base.make = strdup("Maker");
    made.base.model = strdup("M \"1\"");
    made.base.serial = strdup("0x1");
    plug("B", 640, 480);
    commit(test::made_up(output("B").wlr_output), [](wlr_output_state *s) {
        wlr_output_state_set_scale(s, 1.5F);
        wlr_output_state_set_transform(s, WL_OUTPUT_TRANSFORM_FLIPPED_90);
    });
    wlr_cursor_warp(server.cursor, nullptr, 10, 10);
    EXPECT_EQ(outputs(),
              R"([{"focused":false,"name":"B","make":"","model":"","serial":"","active":true,)"
              R"("scale":1.500000,"transform":"flipped-90",)"
              R"("rect":{"x":1024,"y":0,"width":320,"height":426},)"
              R"("current_mode":{"width":640,"height":480,"refresh":0},"mirror":false,"modes":[]},)"
              R"({"focused":true,"name":"A","make":"Maker","model":"M \"1\"","serial":"0x1","active":true,)"
              R"("scale":1.000000,"transform":"normal","rect":{"x":0,"y":0,"width":1024,"height":768},)"
              R"("current_mode":{"width":1024,"height":768,"refresh":60000},"mirror":false,)"
              R"("modes":[{"width":1024,"height":768,"refresh":60000},)"
              R"({"width":800,"height":600,"refresh":75000}]}])");
}

TEST_F(queries, spell_every_transform)
{
    auto &made = plug("A", 800, 600);
    const char *const names[]{"normal",  "90",         "180",         "270",
                              "flipped", "flipped-90", "flipped-180", "flipped-270"};
    for (int i = 0; i < 8; i++) {
        commit(made, [&](wlr_output_state *s) { wlr_output_state_set_transform(s, wl_output_transform(i)); });
        EXPECT_THAT(outputs(), HasSubstr(std::format(R"("transform":"{}")", names[i])));
    }
}

TEST_F(queries, list_outputs_that_are_off)
{
    plug("A", 800, 600);
    command("dpms off");
    EXPECT_THAT(outputs(), HasSubstr(R"("active":false)"));
}

TEST_F(queries, say_that_an_output_mirrors_nothing)
{
    plug("A", 800, 600);
    EXPECT_THAT(outputs(), HasSubstr(R"("mirror":false,"modes")"));
    EXPECT_THAT(outputs(), HasSubstr(R"("rect":{"x":0,"y":0,"width":800,"height":600})"));
}

} // namespace
