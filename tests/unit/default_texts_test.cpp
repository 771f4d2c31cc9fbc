// The default files, which are written where they are missing.

#include "config/default_texts.hpp"
#include "config/load.hpp"
#include "server.hpp"
#include "support/files.hpp"
#include "support/isolation.hpp"
#include "support/places.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

using test::contents;

namespace
{

const std::vector<std::string> file_names{"compositor.conf", "input.conf",    "workspaces.conf",
                                          "rules.conf",      "keybinds.conf", "autostart.conf",
                                          "appearance.conf"};

std::string expected(const std::string &name)
{
    return contents(std::filesystem::path{test::data_directory} / "defaults" / name);
}

struct default_texts_of : testing::Test {
    default_texts_of() { std::filesystem::create_directories(directory); }

    [[nodiscard]] std::vector<std::string> written() const
    {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator{directory})
            names.push_back(entry.path().filename());
        return names;
    }

    test::isolation world;
    std::filesystem::path directory = world.config_directory();
};

TEST_F(default_texts_of, an_empty_directory_are_these_seven_byte_for_byte)
{
    config_write_defaults(directory.c_str());
    EXPECT_THAT(written(), testing::UnorderedElementsAreArray(file_names));
    for (const std::string &name : file_names) {
        EXPECT_FALSE(expected(name).empty()) << name;
        EXPECT_EQ(contents(directory / name), expected(name)) << name;
    }
    EXPECT_THAT(contents(directory / "autostart.conf"), testing::HasSubstr("ones.\n\nnm-applet"));
}

TEST(default_texts, are_written_in_order)
{
    std::vector<std::string> names;
    for (const default_text &text : default_texts())
        names.emplace_back(text.file);
    EXPECT_EQ(names, file_names);
}

TEST_F(default_texts_of, files_that_exist_are_not_written)
{
    world.write_config("rules.conf", "mine -> float\n");
    world.write_config("input.conf", "");
    config_write_defaults(directory.c_str());
    EXPECT_EQ(contents(directory / "rules.conf"), "mine -> float\n");
    EXPECT_EQ(contents(directory / "input.conf"), "");
    EXPECT_EQ(written().size(), 7U);
    EXPECT_EQ(contents(directory / "appearance.conf"), expected("appearance.conf"));
}

TEST_F(default_texts_of, a_deleted_file_are_written_again_at_the_next_load)
{
    const auto server = std::make_unique<vantore_server>();
    config_load(*server);
    std::filesystem::remove(directory / "keybinds.conf");
    world.write_config("input.conf", "left_handed = true\n");
    config_load(*server);
    EXPECT_EQ(contents(directory / "keybinds.conf"), expected("keybinds.conf"));
    EXPECT_EQ(contents(directory / "input.conf"), "left_handed = true\n");
}

TEST_F(default_texts_of, a_directory_that_does_not_exist_are_not_written)
{
    config_write_defaults((directory / "missing").c_str());
    EXPECT_FALSE(std::filesystem::exists(directory / "missing"));
}

TEST_F(default_texts_of, something_that_is_not_a_file_leave_it_alone)
{
    std::filesystem::create_directory(directory / "rules.conf");
    config_write_defaults(directory.c_str());
    EXPECT_TRUE(std::filesystem::is_directory(directory / "rules.conf"));
    EXPECT_EQ(written().size(), 7U);
}

} // namespace
