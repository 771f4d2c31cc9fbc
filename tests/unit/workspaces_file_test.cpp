// workspaces.conf, and what the workspaces take from it.

#include "config/files.hpp"
#include "config/load.hpp"
#include "config/settings.hpp"
#include "config/workspaces_file.hpp"
#include "server.hpp"
#include "support/isolation.hpp"
#include "text.hpp"
#include "workspaces/workspace.hpp"

#include <format>
#include <gtest/gtest.h>
#include <memory>

namespace
{

struct workspaces_file : testing::Test {
    workspaces_file() { g_ws_cfg = {}; }

    // Reads the text on top of what was read before.
    void read(std::string_view text) const
    {
        config_parse_workspaces(world.write_config("workspaces.conf", text).c_str());
    }

    // The name, the output, the layout or "-" for none, and the tile mode.
    static std::string line(size_t num)
    {
        const ws_cfg &cfg = g_ws_cfg[num];
        return cfg.set ? std::format("{}|{}|{}|{}", text_of(cfg.name), text_of(cfg.output),
                                     cfg.layout_set ? std::to_string(cfg.layout) : "-", int(cfg.tile_mode))
                       : "unset";
    }

    test::isolation world;
};

TEST_F(workspaces_file, names_workspaces_and_says_where_they_belong_and_how_they_look)
{
    read("1 = WWW, layout=tiling\n"
         " 2 =  Two words , output = DP-1 ,layout=FLOATING,tile_mode=grid # comment\n"
         "9=Chat\n");
    EXPECT_EQ(line(1), "WWW||1|0");
    EXPECT_EQ(line(2), "Two words|DP-1|0|1");
    EXPECT_EQ(line(9), "Chat||-|0");
    EXPECT_EQ(line(3), "unset");
}

struct line_case {
    const char *value, *read;
};

class workspace_line : public workspaces_file, public testing::WithParamInterface<line_case>
{
};

TEST_P(workspace_line, is_cut_at_commas)
{
    read(std::string{"1 = "} + GetParam().value + "\n");
    EXPECT_EQ(line(1), GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(
    all, workspace_line,
    testing::Values(line_case{"", "||-|0"}, line_case{",", "||-|0"}, line_case{"a", "a||-|0"},
                    line_case{"a,layout=Tile", "a||1|0"}, line_case{"a,layout=x", "a||0|0"},
                    line_case{"a,layout", "a||-|0"}, line_case{"a,Layout=tiling", "a||-|0"},
                    line_case{"a,tile_mode=columns", "a||-|2"}, line_case{"a,tile_mode=monocle", "a||-|3"},
                    line_case{"a,tile_mode=Grid", "a||-|0"},
                    line_case{"a,tile_mode=grid,tile_mode=x", "a||-|0"}, line_case{"a,output=", "a||-|0"},
                    line_case{"a,output=b=c", "a|b=c|-|0"}, line_case{"a,,,output=b,", "a|b|-|0"},
                    line_case{",output=b", "output=b||-|0"}, line_case{"a=b,color=red", "a=b||-|0"}));

TEST_F(workspaces_file, cuts_texts_that_do_not_fit)
{
    read("1 = " + std::string(64, 'n') + ", output=" + std::string(64, 'o') + "\n");
    EXPECT_EQ(line(1), std::string(63, 'n') + "|" + std::string(63, 'o') + "|-|0");
}

TEST_F(workspaces_file, passes_over_numbers_that_are_no_workspace)
{
    g_config_errors = 0;
    read("0 = a\n10 = b\n-1 = c\nfour = d\n= e\n99999999999999999999 = f\n4294967297 = g\n5\n3rd = h\n");
    EXPECT_EQ(g_config_errors, 0);
    for (const size_t num : {0U, 1U, 2U, 4U, 5U, 6U, 7U, 8U, 9U})
        EXPECT_EQ(line(num), "unset") << num;
    EXPECT_EQ(line(3), "h||-|0");
}

TEST_F(workspaces_file, adds_up_lines_of_one_number)
{
    read("4 = Mail, output=DP-1, layout=tiling\n4 = Post, tile_mode=grid\n");
    EXPECT_EQ(line(4), "Post|DP-1|1|1");
    read("4 =\n");
    EXPECT_EQ(line(4), "Post|DP-1|1|1") << "an empty line names nothing";
}

TEST_F(workspaces_file, is_forgotten_by_the_next_load)
{
    const auto server = std::make_unique<vantore_server>();
    world.write_config("workspaces.conf", "4 = Mail\n");
    config_load(*server);
    EXPECT_EQ(line(4), "Mail||-|0");
    world.write_config("workspaces.conf", "");
    config_load(*server);
    EXPECT_EQ(line(4), "unset");
}

TEST_F(workspaces_file, may_be_missing)
{
    config_parse_workspaces("/nonexistent/workspaces.conf");
    EXPECT_EQ(line(1), "unset");
}

struct live_workspaces : workspaces_file {
    live_workspaces()
    {
        for (int num = 1; num <= 9; num++) {
            auto *ws = new vantore_workspace{.num = num};
            copy_text(ws->name, "old");
            copy_text(ws->pref_output, "OLD-1");
            ws->layout = VANTORE_LAYOUT_TILING;
            ws->tile_mode = TM_MONOCLE;
            ws->master_ratio = 0.3;
            move_to_back(server->workspaces, ws->link);
        }
        g_default_layout = VANTORE_LAYOUT_FLOATING;
        g_default_master = 0.7;
    }
    ~live_workspaces() override { workspaces_destroy(*server); }

    [[nodiscard]] std::string live(int num) const
    {
        const vantore_workspace &ws = *workspace_by_num(*server, num);
        return std::format("{}|{}|{}|{}|{}", text_of(ws.name), text_of(ws.pref_output), int(ws.layout),
                           int(ws.tile_mode), ws.master_ratio);
    }

    std::unique_ptr<vantore_server> server = std::make_unique<vantore_server>();
};

TEST_F(live_workspaces, take_their_lines)
{
    read("1 = Web, output=DP-1, layout=tiling, tile_mode=grid\n2 = Two\n3 =\n");
    config_apply_workspaces(*server);
    EXPECT_EQ(live(1), "Web|DP-1|1|1|0.7");
    EXPECT_EQ(live(2), "Two||0|0|0.7") << "an output that is not named is none";
    EXPECT_EQ(live(3), "old||0|0|0.7") << "an empty name is no name";
}

TEST_F(live_workspaces, keep_name_and_output_without_a_line)
{
    config_apply_workspaces(*server);
    for (int num = 1; num <= 9; num++)
        EXPECT_EQ(live(num), "old|OLD-1|0|0|0.7");
}

TEST_F(live_workspaces, take_the_default_layout_where_their_line_has_none)
{
    g_default_layout = VANTORE_LAYOUT_TILING;
    read("1 = Web\n2 = Two, layout=floating\n");
    config_apply_workspaces(*server);
    EXPECT_EQ(live(1), "Web||1|0|0.7");
    EXPECT_EQ(live(2), "Two||0|0|0.7");
    EXPECT_EQ(live(3), "old|OLD-1|1|0|0.7");
}

} // namespace
