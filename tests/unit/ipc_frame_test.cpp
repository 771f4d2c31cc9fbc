// The frames of the IPC socket, and the texts of its requests.

#include "ipc/frame.hpp"
#include "ipc/request_text.hpp"
#include "text.hpp"

#include <gmock/gmock.h>
#include <string>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

std::string bytes_of(uint32_t type, std::string_view payload)
{
    const ipc_header header = ipc_make_header(type, uint32_t(payload.size()));
    return std::string{header.data(), header.size()}.append(payload);
}

ipc_frame_state state_of(std::string_view bytes)
{
    ipc_frame frame;
    return ipc_first_frame(bytes, frame);
}

TEST(ipc_frame, has_a_header_of_magic_length_and_type)
{
    EXPECT_EQ(bytes_of(0x80000003, ""), std::string("i3-ipc\0\0\0\0\3\0\0\x80", 14));
    EXPECT_EQ(bytes_of(1, std::string(0x102, 'x')).substr(0, 14), std::string("i3-ipc\2\1\0\0\1\0\0\0", 14));
}

TEST(ipc_frame, is_incomplete_until_its_last_byte)
{
    const std::string whole = bytes_of(2, "payload");
    for (size_t n = 0; n < whole.size(); n++)
        EXPECT_EQ(state_of(std::string_view{whole}.substr(0, n)), ipc_frame_state::incomplete) << n;
    const std::string more = whole + "more";
    ipc_frame frame;
    ASSERT_EQ(ipc_first_frame(more, frame), ipc_frame_state::complete);
    EXPECT_EQ(frame.type, 2U);
    EXPECT_EQ(frame.payload, "payload");
}

TEST(ipc_frame, may_carry_a_mebibyte_and_no_more)
{
    const ipc_header largest = ipc_make_header(0, 1048576), larger = ipc_make_header(0, 1048577);
    EXPECT_EQ(state_of({largest.data(), largest.size()}), ipc_frame_state::incomplete);
    EXPECT_EQ(state_of({larger.data(), larger.size()}), ipc_frame_state::broken);
    EXPECT_EQ(state_of(bytes_of(0, std::string(1048576, 'x'))), ipc_frame_state::complete);
}

TEST(ipc_frame, is_broken_where_any_byte_of_the_magic_is_another)
{
    for (size_t i = 0; i < ipc_magic.size(); i++) {
        std::string bytes = bytes_of(0, "");
        bytes[i] ^= 1;
        EXPECT_EQ(state_of(bytes), ipc_frame_state::broken) << i;
    }
}

std::vector<std::string> words_of(std::string_view text)
{
    ipc_words words{text};
    std::vector<std::string> all;
    while (const char *word = words.next())
        all.emplace_back(word);
    return all;
}

TEST(ipc_words, are_split_at_blanks_tabs_and_line_ends)
{
    EXPECT_THAT(words_of(" workspace\t\r\n 3  "), ElementsAre("workspace", "3"));
    EXPECT_THAT(words_of("exit"), ElementsAre("exit"));
}

TEST(ipc_words, end_at_a_null_byte)
{
    EXPECT_THAT(words_of(std::string_view{"exit\0 now", 9}), ElementsAre("exit"));
}

TEST(ipc_words, are_none_in_an_empty_or_blank_text)
{
    EXPECT_THAT(words_of(""), IsEmpty());
    EXPECT_THAT(words_of(" \t\n"), IsEmpty());
}

TEST(ipc_size, is_two_numbers_around_an_x)
{
    EXPECT_EQ(ipc_parse_size("640x480"), (ipc_size{640, 480}));
    EXPECT_EQ(ipc_parse_size("-6x0048rest"), (ipc_size{-6, 48}));
    for (const char *text : {"", "640", "640x", "x480", "640X480", "offx", "640 x480"})
        EXPECT_FALSE(ipc_parse_size(text)) << text;
}

TEST(ipc_size, beyond_the_range_of_numbers_stays_as_large_as_can_be)
{
    EXPECT_EQ(ipc_parse_size("4294967296640x-99999999999"), (ipc_size{INT32_MAX, INT32_MIN}));
}

struct capture_case {
    const char *text;
    capture_kind kind;
    uint32_t window_id;
    const char *output_name;
    int x, y, width, height;
    int max_dim;
};

class capture_text : public testing::TestWithParam<capture_case>
{
};

TEST_P(capture_text, says_what_to_capture)
{
    const capture_case &wanted = GetParam();
    const capture_spec spec = ipc_parse_capture(wanted.text);
    EXPECT_EQ(spec.kind, wanted.kind);
    EXPECT_EQ(spec.window_id, wanted.window_id);
    EXPECT_EQ(text_of(spec.output_name), wanted.output_name);
    EXPECT_EQ(spec.region.x, wanted.x);
    EXPECT_EQ(spec.region.y, wanted.y);
    EXPECT_EQ(spec.region.width, wanted.width);
    EXPECT_EQ(spec.region.height, wanted.height);
    EXPECT_EQ(spec.max_dim, wanted.max_dim);
}

using enum capture_kind;
INSTANTIATE_TEST_SUITE_P(
    all, capture_text,
    testing::Values(capture_case{"", window, 0, "", 0, 0, 0, 0, 0},
                    capture_case{"12", window, 12, "", 0, 0, 0, 0, 0},
                    capture_case{"12 320", window, 12, "", 0, 0, 0, 0, 320},
                    capture_case{" \n12\t320 7", window, 12, "", 0, 0, 0, 0, 320},
                    capture_case{"win 12 320", window, 12, "", 0, 0, 0, 0, 320},
                    capture_case{"window 12", window, 12, "", 0, 0, 0, 0, 0},
                    capture_case{"window", window, 0, "", 0, 0, 0, 0, 0},
                    capture_case{"12 -320", window, 12, "", 0, 0, 0, 0, 0},
                    capture_case{"4294967297", window, 0, "", 0, 0, 0, 0, 0},
                    capture_case{"-1", window, 0, "", 0, 0, 0, 0, 0},
                    capture_case{"outputs A", window, 0, "", 0, 0, 0, 0, 0},
                    capture_case{"out", output, 0, "", 0, 0, 0, 0, 0},
                    capture_case{"output  DP-1 100", output, 0, "DP-1", 0, 0, 0, 0, 100},
                    capture_case{"output @focused 100", output, 0, "@focused", 0, 0, 0, 0, 100},
                    capture_case{"out DP-1 -5", output, 0, "DP-1", 0, 0, 0, 0, 0},
                    capture_case{"out 100", output, 0, "100", 0, 0, 0, 0, 0},
                    capture_case{"reg -5 6 70 80 90", region, 0, "", -5, 6, 70, 80, 90},
                    capture_case{"region 1 2 3", region, 0, "", 1, 2, 3, 0, 0},
                    capture_case{"region 1 two 3 4 5", region, 0, "", 1, 0, 0, 0, 0},
                    capture_case{"all", everything, 0, "", 0, 0, 0, 0, 0},
                    capture_case{"all 50", everything, 0, "", 0, 0, 0, 0, 50},
                    capture_case{"all 99999999999999999999", everything, 0, "", 0, 0, 0, 0, INT32_MAX},
                    capture_case{"ALL 50", window, 0, "", 0, 0, 0, 0, 0}));

TEST(capture_text, is_read_up_to_its_127th_byte)
{
    const std::string padding(125, ' ');
    EXPECT_EQ(ipc_parse_capture(padding + "12").window_id, 12U);
    EXPECT_EQ(ipc_parse_capture(padding + "123").window_id, 12U);
}

TEST(capture_text, cuts_the_name_of_an_output_at_its_95th_byte)
{
    const std::string name(95, 'o');
    const capture_spec spec = ipc_parse_capture("out " + name + "17 5");
    EXPECT_EQ(text_of(spec.output_name), name);
    EXPECT_EQ(spec.max_dim, 17);
}

TEST(capture_text, ends_at_a_null_byte)
{
    EXPECT_EQ(ipc_parse_capture(std::string_view{"12\0003", 4}).window_id, 12U);
}

TEST(thumbnail_text, is_a_window_id_within_31_bytes)
{
    EXPECT_EQ(ipc_parse_thumbnail("7"), 7U);
    EXPECT_EQ(ipc_parse_thumbnail(""), 0U);
    EXPECT_EQ(ipc_parse_thumbnail("window 7"), 0U);
    EXPECT_EQ(ipc_parse_thumbnail(std::string(29, ' ') + "123"), 12U);
}

} // namespace
