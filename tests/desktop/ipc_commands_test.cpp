// Commands about windows and workspaces over the IPC socket.

#include "support/desktop.hpp"

#include "config/settings.hpp"
#include "workspaces/focus.hpp"

using test::window;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

struct ipc_commands : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        (void)heard();
    }
    std::string id_of(const window &w) { return "id:" + std::to_string(record(w).id); }
};

TEST_F(ipc_commands, close_a_window_by_its_id)
{
    window &w = map("w"), &other = map("other");
    command("close " + id_of(w));
    EVENTUALLY_EQ(w.closes(), 1);
    EXPECT_EQ(other.closes(), 0);
}

TEST_F(ipc_commands, close_every_window_of_an_app)
{
    std::vector<window *> windows;
    for (const char *app : {"foo", "bar", "foo", "foobar", "foo"})
        windows.push_back(&map(app));
    command("close app:foo");
    EVENTUALLY_EQ(windows[0]->closes() + windows[2]->closes() + windows[4]->closes(), 3);
    settle();
    EXPECT_EQ(windows[1]->closes() + windows[3]->closes(), 0);
}

TEST_F(ipc_commands, move_every_window_of_an_app)
{
    std::vector<window *> windows;
    for (const char *app : {"foo", "foo", "bar", "foo", "foo"})
        windows.push_back(&map(app));
    command("move app:foo 4");
    for (const size_t i : {0U, 1U, 3U, 4U})
        EXPECT_EQ(record(*windows[i]).workspace, &workspace(4)) << i;
    EXPECT_EQ(record(*windows[2]).workspace, &workspace(1));
    EVENTUALLY(windows[2]->has(test::ACTIVATED));
}

TEST_F(ipc_commands, toggle_floating)
{
    g_gap = 0;
    command("ws-layout 1 tiling");
    window &w = map("w");
    settle();
    (void)heard();
    command("float " + id_of(w));
    EXPECT_TRUE(record(w).floating);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS));
    command("float app:w");
    EXPECT_FALSE(record(w).floating);
}

TEST_F(ipc_commands, leave_windows_alone_that_they_do_not_name)
{
    window &w = map("w");
    settle();
    (void)heard();
    for (const char *wrong :
         {"float", "float id:99999", "float id:", "float id:4294967297", "float app:", "float app:W",
          "float 1", "float all", "close", "move", "move id:1", "move id:1 0", "move id:1 x", "focus",
          "focus app:w", "focus 1", "focus id:99999"})
        command(wrong);
    settle();
    EXPECT_FALSE(record(w).floating);
    EXPECT_EQ(record(w).workspace, &workspace(1));
    EXPECT_EQ(w.closes(), 0);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ipc_commands, focus_a_window_and_raise_it)
{
    window &w = map("w"), &other = map("other");
    EVENTUALLY(other.has(test::ACTIVATED));
    command("focus " + id_of(w));
    EVENTUALLY(w.has(test::ACTIVATED));
    EXPECT_EQ(focused_toplevel(server), &record(w));
}

TEST_F(ipc_commands, pull_a_hidden_window_into_view)
{
    plug("B", 640, 576);
    wlr_cursor_warp(server.cursor, nullptr, 100, 100);
    window &w = map("w");
    command("workspace 5");
    wlr_cursor_warp(server.cursor, nullptr, 1300, 100);
    command("focus " + id_of(w));
    EXPECT_EQ(output("B").current_ws, &workspace(1)); // the output where the pointer is now
    EVENTUALLY(w.has(test::ACTIVATED));
}

TEST_F(ipc_commands, hide_no_window_without_outputs)
{
    window &w = map("w");
    unplug("A");
    command("focus " + id_of(w));
    EXPECT_EQ(workspace(1).output, nullptr);
}

TEST_F(ipc_commands, change_a_layout_where_it_is_another)
{
    command("ws-layout 3 tiling");
    EXPECT_EQ(workspace(3).layout, VANTORE_LAYOUT_TILING);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
    command("ws-layout 3 tiling");
    EXPECT_THAT(heard(), IsEmpty());
    command("ws-layout 3 anything");
    EXPECT_EQ(workspace(3).layout, VANTORE_LAYOUT_FLOATING);
    (void)heard();
    for (const char *wrong : {"ws-layout", "ws-layout 3", "ws-layout 0 tiling", "ws-layout ten tiling"})
        command(wrong);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ipc_commands, change_a_tile_mode_and_tile_first)
{
    const std::pair<const char *, vantore_tile_mode> modes[]{{"grid", TM_GRID},       {"columns", TM_COLUMNS},
                                                             {"monocle", TM_MONOCLE}, {"master", TM_MASTER},
                                                             {"grid", TM_GRID},       {"GRID", TM_MASTER}};
    for (const auto &[name, mode] : modes) {
        command(std::string{"ws-tile-mode 3 "} + name);
        EXPECT_EQ(workspace(3).tile_mode, mode) << name;
        EXPECT_EQ(workspace(3).layout, VANTORE_LAYOUT_TILING);
    }
    (void)heard();
    command("ws-tile-mode 3 grid");
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES));
    for (const char *wrong : {"ws-tile-mode", "ws-tile-mode 3", "ws-tile-mode 11 grid"})
        command(wrong);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ipc_commands, ask_the_launcher_and_the_shortcuts_to_show)
{
    command("launcher");
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_LAUNCHER));
    command("shortcuts");
    EXPECT_TRUE(server.tap.shortcuts_shown);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_SHORTCUTS));
    command("shortcuts");
    EXPECT_FALSE(server.tap.shortcuts_shown);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_SHORTCUTS));
}

} // namespace
