#include "config/files.hpp"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

namespace
{

std::string trimmed(std::string text)
{
    return cfg_trim(text.data());
}

TEST(cfg_trim, cuts_blanks_on_both_sides_and_line_ends_behind)
{
    EXPECT_EQ(trimmed(" \t a b \t\r\n"), "a b");
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed(" \t \n"), "");
    EXPECT_EQ(trimmed("\r a"), "\r a") << "a leading return stays";
}

TEST(cfg_without_comment, cuts_at_the_first_number_sign_wherever_it_stands)
{
    std::string line = " a = b#c # d\n";
    EXPECT_STREQ(cfg_without_comment(line.data()), "a = b");
}

TEST(cfg_split, takes_the_first_equals_sign)
{
    std::string line = "key \t=  a = b ";
    const auto pair = cfg_split(line.data());
    if (!pair)
        FAIL() << "no pair";
    EXPECT_STREQ(pair->key, "key");
    EXPECT_STREQ(pair->value, "a = b");
}

TEST(cfg_split, finds_no_pair_without_one)
{
    std::string line = "key";
    EXPECT_FALSE(cfg_split(line.data()).has_value());
}

TEST(cfg_bool, knows_three_words_for_true)
{
    for (const char *word : {"true", "1", "yes"})
        EXPECT_TRUE(cfg_bool(word)) << word;
    for (const char *word : {"", "TRUE", "on", "2", "Yes", "false"})
        EXPECT_FALSE(cfg_bool(word)) << word;
}

struct config_directory : testing::Test {
    void SetUp() override
    {
        std::string name = std::filesystem::temp_directory_path() / "vantore-test-XXXXXX";
        root = mkdtemp(name.data());
        setenv("HOME", "/somewhere", 1);
        unsetenv("XDG_CONFIG_HOME");
    }
    void TearDown() override { std::filesystem::remove_all(root); }

    static std::string directory()
    {
        std::array<char, 512> buf{};
        config_dir(buf);
        return buf.data();
    }

    std::filesystem::path root;
};

TEST_F(config_directory, lies_in_the_users_configuration)
{
    EXPECT_EQ(directory(), "/somewhere/.config/vantore");
    setenv("XDG_CONFIG_HOME", "", 1);
    EXPECT_EQ(directory(), "/somewhere/.config/vantore");
    setenv("XDG_CONFIG_HOME", "/elsewhere", 1);
    EXPECT_EQ(directory(), "/elsewhere/vantore");
    std::array<char, 600> path{};
    config_path(path, "input.conf");
    EXPECT_STREQ(path.data(), "/elsewhere/vantore/input.conf");
}

TEST_F(config_directory, is_relative_without_a_home)
{
    unsetenv("HOME");
    EXPECT_EQ(directory(), "./.config/vantore");
}

TEST_F(config_directory, opens_regular_files_only_and_never_waits)
{
    const auto file = root / "file", fifo = root / "fifo";
    std::ofstream{file} << "x";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_NE(config_open(file.c_str()), nullptr);
    EXPECT_EQ(config_open(fifo.c_str()), nullptr);
    EXPECT_EQ(config_open(root.c_str()), nullptr);
    EXPECT_EQ(config_open((root / "missing").c_str()), nullptr);
}

} // namespace
