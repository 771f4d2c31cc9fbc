#include "strbuf.hpp"

#include <gtest/gtest.h>
#include <string>

namespace
{

std::string json(const char *text)
{
    strbuf sb;
    sb_jstr(sb, text);
    return std::string{sb.text()};
}

TEST(strbuf, starts_empty)
{
    const strbuf sb;
    EXPECT_EQ(sb.data, nullptr);
    EXPECT_TRUE(sb.text().empty());
}

TEST(strbuf, is_terminated_after_each_append)
{
    strbuf sb;
    sb_append(sb, "abc", 2);
    EXPECT_STREQ(sb.data, "ab");
    sb_append(sb, "", 0);
    EXPECT_STREQ(sb.data, "ab");
}

TEST(strbuf, doubles_its_capacity_from_256)
{
    strbuf sb;
    sb_append(sb, "x", 1);
    EXPECT_EQ(sb.cap, 256U);
    const std::string long_text(600, 'y');
    sb_append(sb, long_text.data(), long_text.size());
    EXPECT_EQ(sb.cap, 1024U);
    EXPECT_EQ(sb.text(), "x" + long_text);
}

TEST(strbuf, formats_into_a_text_that_fills_its_capacity)
{
    strbuf sb;
    const std::string text(255, 'z');
    sb_appendf(sb, "%s", text.c_str());
    EXPECT_EQ(sb.cap, 256U);
    sb_appendf(sb, "%d", 7);
    EXPECT_EQ(sb.text(), text + "7");
}

TEST(strbuf, formatting_nothing_changes_nothing)
{
    strbuf sb;
    sb_appendf(sb, "%s", "");
    EXPECT_EQ(sb.data, nullptr);
}

TEST(json_string, escapes_what_json_forbids)
{
    EXPECT_EQ(json("a\"b\\c\nd\re\tf\x01\x1f"), R"("a\"b\\c\nd\re\tf\u0001\u001f")");
}

TEST(json_string, of_null_is_empty)
{
    EXPECT_EQ(json(nullptr), "\"\"");
}

TEST(json_string, passes_other_bytes_unchanged)
{
    EXPECT_EQ(json("\x7f\xc3\xa4 \xc3"), "\"\x7f\xc3\xa4 \xc3\"");
}

} // namespace
