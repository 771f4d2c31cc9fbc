// How the lines of rules.conf become rules, and which rule counts for a window.

#include "config/files.hpp"
#include "config/load.hpp"
#include "config/rules.hpp"
#include "config/settings.hpp"
#include "server.hpp"
#include "support/isolation.hpp"
#include "text.hpp"

#include <format>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

struct rules : testing::Test {
    rules()
    {
        g_rule_count = 0;
        g_config_errors = 0;
        g_ws_cfg = {};
    }

    // The pattern, the workspace, whether it floats, the flags by their initials, and the place.
    static std::string describe(const app_rule &rule)
    {
        std::string flags;
        for (const auto &[set, initial] : {std::pair{rule.fs, 'F'},
                                           {rule.noshadow, 'S'},
                                           {rule.noround, 'R'},
                                           {rule.skiptaskbar, 'T'},
                                           {rule.follow, 'f'}})
            if (set)
                flags += initial;
        return std::format("{}|{}|{}|{}|{}", text_of(rule.app_id), rule.ws_num, rule.floating, flags,
                           int(rule.place));
    }

    [[nodiscard]] std::vector<std::string> read(std::string_view text) const
    {
        g_rule_count = 0;
        config_parse_rules(world.write_config("rules.conf", text).c_str());
        std::vector<std::string> rows;
        for (const app_rule &rule : std::span{g_rules}.first(size_t(g_rule_count)))
            rows.push_back(describe(rule));
        EXPECT_EQ(g_config_errors, 0) << "no line of this file is a bad one";
        return rows;
    }

    test::isolation world;
};

struct token_case {
    const char *tokens, *rule;
};

class tokens : public rules, public testing::WithParamInterface<token_case>
{
};

TEST_P(tokens, make_a_rule)
{
    copy_text(g_ws_cfg[1].name, "WWW");
    copy_text(g_ws_cfg[5].name, "Two words");
    copy_text(g_ws_cfg[6].name, "WWW");
    EXPECT_THAT(read(std::format("x -> {}\n", GetParam().tokens)), ElementsAre(GetParam().rule));
}

INSTANTIATE_TEST_SUITE_P(each, tokens,
                         testing::Values(token_case{"float", "x|0|1||0"}, token_case{"tile", "x|0|0||0"},
                                         token_case{"fullscreen", "x|0|-1|F|0"},
                                         token_case{"noshadow", "x|0|-1|S|0"},
                                         token_case{"noround", "x|0|-1|R|0"},
                                         token_case{"skiptaskbar", "x|0|-1|T|0"},
                                         token_case{"follow", "x|0|-1|f|0"}));

INSTANTIATE_TEST_SUITE_P(
    workspaces, tokens,
    testing::Values(token_case{"workspace=3", "x|3|-1||0"}, token_case{"ws=3", "x|3|-1||0"},
                    token_case{" ws \t= 3 ", "x|3|-1||0"}, token_case{"ws=WWW", "x|1|-1||0"},
                    token_case{"workspace = Two words", "x|5|-1||0"}, token_case{"ws=www", "x|0|-1||0"},
                    token_case{"ws=WW", "x|0|-1||0"}, token_case{"ws=", "x|0|-1||0"},
                    token_case{"ws=0", "x|0|-1||0"}, token_case{"ws=007", "x|7|-1||0"},
                    token_case{"ws=4 of them", "x|4|-1||0"}, token_case{"ws=12", "x|12|-1||0"},
                    token_case{"ws=-1", "x|-1|-1||0"},
                    token_case{"ws=99999999999999999999", "x|2147483647|-1||0"}));

INSTANTIATE_TEST_SUITE_P(
    places, tokens,
    testing::Values(token_case{"place=top-right", "x|0|-1||1"}, token_case{"place=top-left", "x|0|-1||2"},
                    token_case{"place=bottom-right", "x|0|-1||3"},
                    token_case{"place=bottom-left", "x|0|-1||4"}, token_case{"place=center", "x|0|-1||5"},
                    token_case{"place = center ", "x|0|-1||5"}, token_case{"place=middle", "x|0|-1||0"},
                    token_case{"place=Center", "x|0|-1||0"}, token_case{"place=", "x|0|-1||0"}));

INSTANTIATE_TEST_SUITE_P(
    together, tokens,
    testing::Values(token_case{"float, noshadow ,ws=2,,\tplace=top-left", "x|2|1|S|2"},
                    token_case{"fullscreen,noshadow,noround,skiptaskbar,follow", "x|0|-1|FSRTf|0"},
                    token_case{"float, tile", "x|0|0||0"}, token_case{"ws=3, workspace=4", "x|4|-1||0"},
                    token_case{"ws=3, ws=nowhere", "x|0|-1||0"},
                    token_case{"place=center, place=nowhere", "x|0|-1||5"}));

INSTANTIATE_TEST_SUITE_P(unknown, tokens,
                         testing::Values(token_case{"", "x|0|-1||0"}, token_case{"Float", "x|0|-1||0"},
                                         token_case{"float=1", "x|0|-1||0"}, token_case{"place", "x|0|-1||0"},
                                         token_case{"WS=3", "x|0|-1||0"}, token_case{"=3", "x|0|-1||0"},
                                         token_case{"workspaces=3", "x|0|-1||0"},
                                         token_case{"float tile", "x|0|-1||0"}));

TEST_F(rules, are_lines_with_an_arrow_and_a_pattern)
{
    EXPECT_THAT(read("# mpv -> float\n\n  \t\nmpv\nmpv - > float\n -> float\n#\nmpv=float\n"), IsEmpty());
    EXPECT_THAT(read("  a b\t->float # -> tile\r\nb->tile\nc -> float -> tile\nd->"),
                ElementsAre("a b|0|1||0", "b|0|0||0", "c|0|-1||0", "d|0|-1||0"));
}

TEST_F(rules, keep_the_order_of_the_file)
{
    EXPECT_THAT(read("b -> float\na -> tile\nb -> tile\n"), ElementsAre("b|0|1||0", "a|0|0||0", "b|0|0||0"));
}

TEST_F(rules, cut_patterns_that_are_too_long)
{
    EXPECT_THAT(read(std::string(200, 'x') + " -> float\n"), ElementsAre(std::string(127, 'x') + "|0|1||0"));
}

TEST_F(rules, read_a_line_that_is_too_long_as_several)
{
    const std::string lead = "a -> tile," + std::string(501, ' ');
    EXPECT_THAT(read(lead + "b -> float\n"), ElementsAre("a|0|0||0", "b|0|1||0"));
}

TEST_F(rules, are_64_at_most)
{
    std::string text;
    for (int i = 1; i <= 66; i++)
        text += std::format("app{} -> ws={}\n", i, i);
    const auto read_rules = read(text);
    ASSERT_EQ(read_rules.size(), 64U);
    EXPECT_EQ(read_rules.back(), "app64|64|-1||0");
    EXPECT_EQ(rule_for("app65"), nullptr);
}

TEST_F(rules, that_can_not_be_read_are_none)
{
    const auto fifo = world.config_directory() / "fifo";
    (void)read("");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    config_parse_rules(fifo.c_str());
    config_parse_rules((world.config_directory() / "missing").c_str());
    EXPECT_EQ(g_rule_count, 0);
}

TEST_F(rules, are_read_after_the_workspaces_and_anew_at_each_load)
{
    world.write_config("workspaces.conf", "1 = WWW\n");
    world.write_config("rules.conf", "brave -> workspace=WWW\nmpv -> float\n");
    const auto server = std::make_unique<vantore_server>();
    config_load(*server);
    ASSERT_EQ(g_rule_count, 2);
    EXPECT_EQ(g_rules[0].ws_num, 1);
    world.write_config("rules.conf", "mpv -> tile\n");
    config_load(*server);
    ASSERT_EQ(g_rule_count, 1);
    EXPECT_EQ(describe(g_rules[0]), "mpv|0|0||0");
}

struct match_case {
    const char *pattern, *app;
    bool matches;
};

class pattern : public testing::TestWithParam<match_case>
{
};

TEST_P(pattern, matches)
{
    EXPECT_EQ(rule_matches(GetParam().pattern, GetParam().app), GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(all, pattern,
                         testing::Values(match_case{"mpv", "mpv", true}, match_case{"mpv", "mpv2", false},
                                         match_case{"mpv", "Mpv", false}, match_case{"mpv", "mp", false},
                                         match_case{"steam_app_*", "steam_app_12", true},
                                         match_case{"steam_app_*", "steam_app_", true},
                                         match_case{"steam_app_*", "steam_app", false},
                                         match_case{"steam_app_*", "Steam_app_1", false},
                                         match_case{"*", "anything", true}, match_case{"*", "", true},
                                         match_case{"a*b", "a*b", true}, match_case{"a*b", "axb", false},
                                         match_case{"*a", "*a", true}, match_case{"*a", "ba", false},
                                         match_case{"a**", "a*b", true}, match_case{"a**", "ab", false}));

TEST_F(rules, count_only_where_they_match_first)
{
    (void)read("mpv -> float\nmp* -> ws=2\nmpv -> tile\n* -> ws=9\n");
    ASSERT_NE(rule_for("mpv"), nullptr);
    EXPECT_EQ(describe(*rule_for("mpv")), "mpv|0|1||0");
    EXPECT_EQ(describe(*rule_for("mpx")), "mp*|2|-1||0");
    EXPECT_EQ(describe(*rule_for("foot")), "*|9|-1||0");
}

TEST_F(rules, need_an_app_id)
{
    (void)read("* -> float\n");
    EXPECT_EQ(rule_for(nullptr), nullptr);
    EXPECT_EQ(rule_for(""), nullptr);
}

TEST_F(rules, find_workspaces_by_their_whole_name)
{
    copy_text(g_ws_cfg[9].name, "last");
    EXPECT_EQ(ws_num_by_name("last"), 9);
    EXPECT_EQ(ws_num_by_name("las"), 0);
    EXPECT_EQ(ws_num_by_name(""), 0) << "eight have no name";
    copy_text(g_ws_cfg[0].name, "unused");
    EXPECT_EQ(ws_num_by_name("unused"), 0);
}

} // namespace
