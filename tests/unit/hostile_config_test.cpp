// Configuration files that nobody would write on purpose.

#include "config/load.hpp"
#include "config/settings_apply.hpp"
#include "server.hpp"
#include "support/isolation.hpp"
#include "text.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <memory>
#include <random>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr std::array files{"compositor.conf", "input.conf",    "workspaces.conf",
                           "rules.conf",      "keybinds.conf", "autostart.conf",
                           "appearance.conf", "dock.conf",     "panel.conf"};

struct hostile_config : testing::Test {
    hostile_config() { settings_begin(*server); }

    void every_file(std::string_view text) const
    {
        for (const char *file : files)
            world.write_config(file, text);
    }

    static void expect_defaults()
    {
        EXPECT_EQ(g_gap, 8);
        EXPECT_TRUE(g_tap_to_click);
        EXPECT_EQ(g_theme_kind, 1);
        EXPECT_TRUE(g_dock_enabled);
        EXPECT_EQ(g_panel_screens, PANEL_SCREENS_ALL);
        EXPECT_FALSE(g_ws_cfg[1].set);
    }

    test::isolation world;
    std::unique_ptr<vantore_server> server = std::make_unique<vantore_server>();
};

TEST_F(hostile_config, of_bytes_without_sense_does_no_harm)
{
    std::minstd_rand random{1};
    std::string junk(200'000, '\0');
    for (char &byte : junk)
        byte = char(random() >> 8);
    every_file(junk);
    config_load(*server);
    EXPECT_LE(g_gap, 200);
    EXPECT_GT(g_config_errors, 0);
}

TEST_F(hostile_config, ends_a_line_at_a_null_byte)
{
    using namespace std::string_view_literals;
    world.write_config("compositor.conf", "gaps = 5\0 0\nprimary\0 = x\n\0\ngap = 6"sv);
    config_load(*server);
    EXPECT_EQ(g_gap, 6);
    EXPECT_EQ(text_of(g_primary_pref), "");
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(hostile_config, of_one_endless_line_is_read_in_pieces)
{
    every_file(std::string(10'000'000, 'x'));
    config_load(*server);
    expect_defaults();
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(hostile_config, of_many_lines_is_read_to_its_end)
{
    std::string text;
    for (int i = 0; i < 100'000; i++)
        text += "gaps = " + std::to_string(i % 150) + "\nunknown = 1\n";
    world.write_config("compositor.conf", text + "gaps = 33");
    config_load(*server);
    EXPECT_EQ(g_gap, 33);
    EXPECT_EQ(g_config_errors, 100'000);
}

TEST_F(hostile_config, of_directories_leaves_the_defaults)
{
    for (const char *file : files)
        std::filesystem::create_directories(world.config_directory() / file);
    config_load(*server);
    expect_defaults();
}

// Somebody who opened a FIFO for reading would wait for a writer, and there is none.
TEST_F(hostile_config, of_fifos_leaves_the_defaults_and_waits_for_nobody)
{
    std::filesystem::create_directories(world.config_directory());
    for (const char *file : files)
        ASSERT_EQ(mkfifo((world.config_directory() / file).c_str(), 0600), 0);
    config_load(*server);
    expect_defaults();
}

// While an object lives, permissions apply to this process even if it runs as root.
class bound_by_permissions
{
public:
    bound_by_permissions()
    {
        EXPECT_EQ(syscall(SYS_capget, &header, before.data()), 0);
        auto without = before;
        without[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        EXPECT_EQ(syscall(SYS_capset, &header, without.data()), 0);
    }
    ~bound_by_permissions() { syscall(SYS_capset, &header, before.data()); }
    bound_by_permissions(const bound_by_permissions &) = delete;
    bound_by_permissions &operator=(const bound_by_permissions &) = delete;

private:
    __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    std::array<__user_cap_data_struct, 2> before{};
};

TEST_F(hostile_config, that_may_not_be_read_leaves_the_defaults)
{
    every_file("gaps = 5\ntap_to_click = false\n1 = a\ndark = false\nenabled = false\nscreens = primary\n");
    for (const char *file : files)
        ASSERT_EQ(chmod((world.config_directory() / file).c_str(), 0), 0);
    const bound_by_permissions bound;
    ASSERT_LT(open((world.config_directory() / "input.conf").c_str(), O_RDONLY | O_CLOEXEC), 0);
    config_load(*server);
    expect_defaults();
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(hostile_config, in_a_directory_that_may_not_be_written_is_read_where_it_is)
{
    world.write_config("compositor.conf", "gaps = 5\n");
    ASSERT_EQ(chmod(world.config_directory().c_str(), 0500), 0);
    const bound_by_permissions bound;
    config_load(*server);
    EXPECT_EQ(g_gap, 5);
    EXPECT_FALSE(std::filesystem::exists(world.config_directory() / "input.conf"));
    ASSERT_EQ(chmod(world.config_directory().c_str(), 0700), 0);
}

TEST_F(hostile_config, behind_a_path_that_does_not_fit_is_not_found)
{
    setenv("XDG_CONFIG_HOME", ("/" + std::string(2000, 'p')).c_str(), 1);
    config_load(*server);
    expect_defaults();
}

} // namespace
