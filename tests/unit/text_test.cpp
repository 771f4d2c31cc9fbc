#include "text.hpp"

#include <array>
#include <gtest/gtest.h>

namespace
{

TEST(copy_text, terminates_what_fits)
{
    std::array<char, 8> field{'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
    copy_text(field, "abc");
    EXPECT_EQ(text_of(field), "abc");
    EXPECT_TRUE(text_equals(field, "abc"));
    EXPECT_FALSE(text_equals(field, "abcd"));
}

TEST(copy_text, cuts_what_does_not_fit)
{
    std::array<char, 4> field{};
    copy_text(field, "abcdef");
    EXPECT_EQ(text_of(field), "abc");
}

TEST(copy_text, empties_a_field)
{
    std::array<char, 4> field{'a', 'b', '\0', '\0'};
    copy_text(field, "");
    EXPECT_EQ(text_of(field), "");
}

} // namespace
