// Arbitrary bytes become text that parsers and fonts can take.

#include "utf8.hpp"

#include <gtest/gtest.h>

namespace
{

TEST(valid_utf8, keeps_what_is_valid)
{
    for (const char *text : {"", "plain", "größer — 日本語 \U0001F600"})
        EXPECT_EQ(valid_utf8(text), text);
}

TEST(valid_utf8, replaces_each_byte_that_belongs_to_no_character)
{
    EXPECT_EQ(valid_utf8("a\xff\xfe"), "a\uFFFD\uFFFD");
    EXPECT_EQ(valid_utf8("\x80z"), "\uFFFDz");
    EXPECT_EQ(valid_utf8("cut \xe2\x80"), "cut \uFFFD\uFFFD");
}

TEST(valid_utf8, accepts_no_overlong_forms_no_surrogates_and_nothing_beyond_the_last_plane)
{
    EXPECT_EQ(valid_utf8("\xc0\xaf"), "\uFFFD\uFFFD");
    EXPECT_EQ(valid_utf8("\xed\xa0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(valid_utf8("\xf4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
}

} // namespace
