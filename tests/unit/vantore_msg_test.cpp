// The parts of vantore-msg that need no compositor.

#include "arguments.hpp"
#include "printable.hpp"
#include "tables.hpp"

#include <clocale>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using words = std::vector<std::string>;

namespace
{

struct accepted {
    words arguments;
    vnt_ipc_msg message;
    std::string payload;
    std::string file;
};

class good_arguments : public testing::TestWithParam<accepted>
{
};

TEST_P(good_arguments, become_a_request)
{
    const auto r = parse_arguments(GetParam().arguments);
    ASSERT_TRUE(r.has_value()) << r.error();
    EXPECT_EQ(r->message, GetParam().message);
    EXPECT_EQ(r->payload, GetParam().payload);
    EXPECT_EQ(r->file, GetParam().file);
}

INSTANTIATE_TEST_SUITE_P(
    all, good_arguments,
    testing::Values(
        accepted{{"command", "exit"}, VNT_MSG_COMMAND, "exit", ""},
        accepted{{"command", "virtual-output", "800x600"}, VNT_MSG_COMMAND, "virtual-output 800x600", ""},
        accepted{{"workspaces"}, VNT_MSG_GET_WORKSPACES, "", ""},
        accepted{{"windows"}, VNT_MSG_GET_WINDOWS, "", ""},
        accepted{{"outputs"}, VNT_MSG_GET_OUTPUTS, "", ""},
        accepted{{"subscribe"}, VNT_MSG_SUBSCRIBE, "", ""},
        accepted{{"capture", "all", "a.png"}, VNT_MSG_CAPTURE, "all 0", "a.png"},
        accepted{{"capture", "--max", "320", "all", "-"}, VNT_MSG_CAPTURE, "all 320", "-"},
        accepted{{"capture", "output", "a.png"}, VNT_MSG_CAPTURE, "output @focused 0", "a.png"},
        accepted{{"capture", "output", "DP-1", "a.png"}, VNT_MSG_CAPTURE, "output DP-1 0", "a.png"},
        accepted{{"capture", "region", "-5", "0", "20", "30", "a.png"},
                 VNT_MSG_CAPTURE,
                 "region -5 0 20 30 0",
                 "a.png"},
        accepted{{"capture", "output", std::string(95, 'n'), "a.png"},
                 VNT_MSG_CAPTURE,
                 "output " + std::string(95, 'n') + " 0",
                 "a.png"},
        accepted{
            {"capture", "window", "4294967295", "a.png"}, VNT_MSG_CAPTURE, "window 4294967295 0", "a.png"},
        accepted{{"capture", "window", "12", "a.png"}, VNT_MSG_CAPTURE, "window 12 0", "a.png"},
        accepted{{"capture", "--dmabuf", "12"}, VNT_MSG_CAPTURE_DMABUF, "12", ""},
        accepted{{"record", "12", "folder"}, VNT_MSG_CAPTURE_SUBSCRIBE, "12 60", "folder"},
        accepted{{"record", "--raw", "--fps", "480", "--frames", "9", "12", "folder"},
                 VNT_MSG_CAPTURE_SUBSCRIBE,
                 "12 480",
                 "folder"}));

TEST(recording, is_asked_for_with_its_options)
{
    const auto plain = parse_arguments({"record", "1", "folder"});
    EXPECT_EQ(plain->pictures, 0);
    EXPECT_FALSE(plain->raw);
    const auto limited = parse_arguments({"record", "--frames", "9", "--raw", "1", "folder"});
    EXPECT_EQ(limited->pictures, 9);
    EXPECT_TRUE(limited->raw);
}

TEST(recording, has_the_limit_of_its_rate_in_the_help)
{
    EXPECT_THAT(usage, HasSubstr(" " + std::to_string(ipc_most_fps) + " at most"));
}

struct rejected {
    words arguments;
    std::string reason;
};

class bad_arguments : public testing::TestWithParam<rejected>
{
};

TEST_P(bad_arguments, are_explained)
{
    const auto r = parse_arguments(GetParam().arguments);
    ASSERT_FALSE(r.has_value());
    EXPECT_EQ(r.error(), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    all, bad_arguments,
    testing::Values(
        rejected{{}, "no command; see vantore-msg --help"},
        rejected{{"dance"}, "there is no command 'dance'; see vantore-msg --help"},
        rejected{{"windows", "all"}, "windows takes no arguments"},
        rejected{{"command"}, "command takes the words of a command"},
        rejected{{"command", " ", ""}, "command takes the words of a command"},
        rejected{{"capture"}, "capture takes what to capture and a file"},
        rejected{{"capture", "all"}, "capture takes what to capture and a file"},
        rejected{{"capture", "all", "x", "a.png"}, "capture all takes a file only"},
        rejected{{"capture", "all", ""}, "the file has no name"},
        rejected{{"capture", "--max", "many", "all", "a.png"}, "--max takes a number of pixels, not 'many'"},
        rejected{{"capture", "--max", "0", "all", "a.png"}, "--max takes a number of pixels, not '0'"},
        rejected{{"capture", "moon", "a.png"}, "capture knows all, output, region and window, not 'moon'"},
        rejected{{"capture", "output", "two words", "a.png"}, "'two words' is no name of an output"},
        rejected{{"capture", "output", std::string(96, 'n'), "a.png"},
                 "'" + std::string(96, 'n') + "' is no name of an output"},
        rejected{{"capture", "output", "a", "b", "a.png"}, "capture output takes one name at most"},
        rejected{{"capture", "region", "1", "2", "3", "a.png"}, "capture region takes X Y W H and a file"},
        rejected{{"capture", "region", "1", "2", "0", "4", "a.png"}, "'0' is no size"},
        rejected{{"capture", "region", "x", "2", "3", "4", "a.png"}, "'x' is no coordinate"},
        rejected{{"capture", "window", "0", "a.png"}, "capture window takes the window's id and a file"},
        rejected{{"capture", "window", "4294967296", "a.png"},
                 "capture window takes the window's id and a file"},
        rejected{{"capture", "--dmabuf"}, "capture --dmabuf takes the window's id"},
        rejected{{"capture", "--dmabuf", "all"}, "capture --dmabuf takes the window's id"},
        rejected{{"record"}, "record takes the window's id and a folder"},
        rejected{{"record", "12"}, "record takes the window's id and a folder"},
        rejected{{"record", "12", ""}, "record takes the window's id and a folder"},
        rejected{{"record", "all", "folder"}, "record takes the window's id and a folder"},
        rejected{{"record", "--fps", "0", "12", "folder"}, "--fps takes a number from 1, not '0'"},
        rejected{{"record", "--fps"}, "--fps takes a number from 1"},
        rejected{{"record", "--fps", "481", "12", "folder"}, "--fps takes at most 480"},
        rejected{{"record", "--frames", "many", "12", "folder"},
                 "--frames takes a number from 1, not 'many'"},
        rejected{{"record", "--png", "12", "folder"},
                 "record knows --fps, --frames and --raw, not '--png'"}));

struct text_case {
    const char *given;
    const char *printed;
};

class any_text : public testing::TestWithParam<text_case>
{
};

TEST_P(any_text, is_safe_to_print)
{
    EXPECT_EQ(printable(GetParam().given), GetParam().printed);
}

INSTANTIATE_TEST_SUITE_P(
    all, any_text,
    testing::Values(text_case{"plain", "plain"}, text_case{"Grüße 世界 🎉", "Grüße 世界 🎉"},
                    text_case{"\x1b[31m", "\uFFFD[31m"}, text_case{"a\nb\x7f", "a\uFFFDb\uFFFD"},
                    text_case{"\xc2\x9b", "\uFFFD"}, // C1 control
                    text_case{"a\u2028b", "a\uFFFDb"}, // line separator
                    text_case{"\u202Egpj.exe", "\uFFFDgpj.exe"},
                    text_case{"\u2067x", "\uFFFDx"}, // right to left
                    text_case{"cut \xe4\xb8", "cut \uFFFD\uFFFD"}, text_case{"\xff\xfe", "\uFFFD\uFFFD"},
                    text_case{"\xc0\xaf", "\uFFFD\uFFFD"}, // overlong
                    text_case{"\xed\xa0\x80", "\uFFFD\uFFFD\uFFFD"}, // surrogate
                    text_case{"\xf4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"})); // beyond Unicode

struct tables : testing::Test {
    void SetUp() override { setlocale(LC_CTYPE, "C.UTF-8"); }
    void TearDown() override { setlocale(LC_CTYPE, "C"); }
};

TEST_F(tables, align_columns_by_what_is_seen)
{
    EXPECT_EQ(aligned({{"a", "b"}, {"世界", "x"}, {"ü", ""}}), "a     b\n世界  x\nü\n");
}

TEST_F(tables, are_cut_at_the_edge_of_the_terminal)
{
    const char *const table = "12345678\n123456789\n123456世界\n世界世界\n";
    EXPECT_EQ(cut_lines(table, 8), "12345678\n1234567…\n123456…\n世界世界\n");
    EXPECT_EQ(cut_lines(table, 0), table);
}

TEST_F(tables, show_windows)
{
    EXPECT_EQ(
        windows_table(R"([{"id":7,"skip":false,"app_id":"foot","title":"a\u001bb","output":"DP-1","ws":2,)"
                      R"("focused":true,"floating":true,"fullscreen":false,"ssd":true,"urgent":false,)"
                      R"("minimized":false,"rect":{"x":10,"y":-20,"width":300,"height":200}}])"),
        "ID  WS  OUTPUT  GEOMETRY        STATE             APP   TITLE\n"
        "7   2   DP-1    300x200+10+-20  focused,floating  foot  a\uFFFDb\n");
}

TEST_F(tables, show_workspaces)
{
    EXPECT_EQ(workspaces_table(R"([{"num":1,"name":"web","focused":true,"visible":true,"tiling":true,)"
                               R"("tile_mode":"grid","output":"DP-1","pref_output":"DP-1","layout":"tiling",)"
                               R"("window_count":3}])"),
              "NUM  NAME  OUTPUT  LAYOUT  WINDOWS  STATE\n"
              "1    web   DP-1    grid    3        focused,visible\n");
}

TEST_F(tables, show_outputs_and_what_they_mirror)
{
    const auto shown = outputs_table(
        R"([{"focused":false,"name":"DP-2","make":"Acme","model":"X","serial":"","active":true,"scale":1.500000,)"
        R"("transform":"90","rect":{"x":0,"y":0,"width":10,"height":20},"current_mode":{"width":1920,)"
        R"("height":1080,"refresh":59940},"mirror":{"kind":"screen","output":"DP-1"},"modes":[]}])");
    EXPECT_THAT(shown.value_or("none"),
                HasSubstr("DP-2  1920x1080@59.940  10x20+0+0  1.5    90         DP-1     on     Acme X"));
}

class broken_reply : public testing::TestWithParam<const char *>
{
};

TEST_P(broken_reply, crashes_nothing)
{
    (void)windows_table(GetParam());
    (void)outputs_table(GetParam());
    (void)workspaces_table(GetParam());
}

INSTANTIATE_TEST_SUITE_P(all, broken_reply,
                         testing::Values("", "{}", "[", "[1,null,\"x\"]", "[{\"id\":{},\"rect\":7}]",
                                         "[{\"rect\":{\"x\":1e300}}]", "\xff\xfe"));

TEST_F(tables, of_a_reply_that_is_no_list_are_none)
{
    EXPECT_EQ(windows_table("{}"), std::nullopt);
    EXPECT_EQ(windows_table("nonsense"), std::nullopt);
}

TEST_F(tables, take_titles_that_are_no_utf8)
{
    const auto shown = windows_table("[{\"id\":1,\"title\":\"\xff\"}]");
    EXPECT_THAT(shown.value_or("none"), HasSubstr("\uFFFD"));
}

} // namespace
