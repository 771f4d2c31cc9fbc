// The line grammars of the configuration files, how the files affect each other, and the order of a load.

#include "config/files.hpp"
#include "config/keybinds.hpp"
#include "config/load.hpp"
#include "config/settings_apply.hpp"
#include "config/settings_files.hpp"
#include "server.hpp"
#include "support/isolation.hpp"
#include "text.hpp"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using testing::ElementsAre;

namespace
{

struct settings_files : testing::Test {
    settings_files() { settings_begin(*server); }

    void compositor(std::string_view text) const
    {
        world.write_config("compositor.conf", text);
        config_load(*server);
    }
    void input(std::string_view text) const
    {
        world.write_config("input.conf", text);
        config_load(*server);
    }
    void appearance(std::string_view text) const
    {
        world.write_config("appearance.conf", text);
        config_load(*server);
    }

    test::isolation world;
    std::unique_ptr<vantore_server> server = std::make_unique<vantore_server>();
};

TEST_F(settings_files, count_unknown_keys_of_the_first_two_files_anew_at_each_load)
{
    world.write_config("input.conf", "tap = true\n = 1\n");
    compositor("Gaps = 9\ngaps=9\nwallpaper = /x\n");
    EXPECT_EQ(g_config_errors, 4);
    EXPECT_EQ(g_gap, 9);
    config_load(*server);
    EXPECT_EQ(g_config_errors, 4);
    input("");
    compositor("");
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(settings_files, count_no_bad_lines_anywhere_else)
{
    for (const char *file : {"appearance.conf", "dock.conf", "panel.conf", "workspaces.conf"})
        world.write_config(file, "unknown = 1\n= 2\n0 = a\n10 = b\n");
    config_load(*server);
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(settings_files, pass_over_lines_without_an_equals_sign)
{
    compositor("gaps\n\n   \t\r\n# gaps = 1\nnonsense # = 4\n");
    EXPECT_EQ(g_config_errors, 0);
    EXPECT_EQ(g_gap, 8);
}

TEST_F(settings_files, end_at_a_number_sign_also_inside_a_value)
{
    compositor("primary = DP#1\ngaps = 5# pixels\n#gaps = 7\n");
    EXPECT_EQ(text_of(g_primary_pref), "DP");
    EXPECT_EQ(g_gap, 5);
}

TEST_F(settings_files, are_split_at_the_first_equals_sign_and_trimmed)
{
    compositor("\t primary \t= \t a = b \t\r\n");
    EXPECT_EQ(text_of(g_primary_pref), "a = b");
}

TEST_F(settings_files, need_no_newline_at_the_end)
{
    compositor("gaps = 3\nprimary = DP-1");
    EXPECT_EQ(text_of(g_primary_pref), "DP-1");
}

TEST_F(settings_files, let_the_last_of_several_lines_count)
{
    compositor("gaps = 3\ngap = 4\n");
    EXPECT_EQ(g_gap, 4);
    compositor("gap = 1000\ngaps = 5\n");
    EXPECT_EQ(g_gap, 5);
    compositor("primary = long name\nprimary = x\n");
    EXPECT_EQ(text_of(g_primary_pref), "x");
}

TEST_F(settings_files, take_lines_of_more_than_511_bytes_for_several)
{
    const std::string comment = "# " + std::string(509, 'x');
    compositor(comment + "gaps = 30\n");
    EXPECT_EQ(g_gap, 30);
    compositor(comment.substr(1) + "gaps = 30\n");
    EXPECT_EQ(g_gap, 8) << "one byte of the key belongs to the comment";
    EXPECT_EQ(g_config_errors, 1);
}

TEST_F(settings_files, take_lines_of_more_than_1099_bytes_for_several_in_appearance)
{
    const std::string filler(1099, 'x');
    appearance(filler + "dark = false\n");
    EXPECT_EQ(g_theme_kind, 0);
    appearance(filler.substr(1) + "dark = false\n");
    EXPECT_EQ(g_theme_kind, 1);
}

TEST_F(settings_files, bring_numbers_inside_their_limits_only_where_there_is_a_file)
{
    g_gap = 999;
    config_parse_compositor(*server, "/nonexistent/compositor.conf");
    EXPECT_EQ(g_gap, 999);
    config_parse_compositor(*server, world.write_config("compositor.conf", "").c_str());
    EXPECT_EQ(g_gap, 200);
}

TEST_F(settings_files, take_gestures_from_input_rather_than_compositor)
{
    compositor("gestures = false\n");
    EXPECT_FALSE(g_gestures);
    input("gestures = true\n");
    EXPECT_TRUE(g_gestures);
    compositor("gestures = true\n");
    input("gestures = false\n");
    EXPECT_FALSE(g_gestures);
}

// appearance.conf

TEST_F(settings_files, know_no_comments_in_appearance)
{
    appearance("# dark = false\naccent = 3399ff  # hex\nwallpaper = /a#b.png # mine\n");
    EXPECT_EQ(g_theme_kind, 1);
    EXPECT_FLOAT_EQ(g_accent[0], 76 / 255.0F);
    EXPECT_EQ(text_of(g_wallpaper), "/a#b.png # mine");
}

TEST_F(settings_files, always_have_an_accent)
{
    g_accent_set = false;
    appearance("");
    EXPECT_TRUE(g_accent_set);
    EXPECT_THAT(g_accent, ElementsAre(76 / 255.0F, 191 / 255.0F, 115 / 255.0F, 1.0F));
    appearance("accent = #3399ff\n");
    EXPECT_TRUE(g_accent_set);
    EXPECT_THAT(g_accent, ElementsAre(51 / 255.0F, 153 / 255.0F, 255 / 255.0F, 1.0F));
}

TEST_F(settings_files, prefer_theme_to_dark_wherever_it_stands)
{
    appearance("theme = dark\ndark = false\n");
    EXPECT_EQ(g_theme_kind, 2);
    appearance("dark = false\ntheme = dark\n");
    EXPECT_EQ(g_theme_kind, 2);
    appearance("dark = true\n");
    EXPECT_EQ(g_theme_kind, 1);
    EXPECT_FALSE(g_saw_theme_key);
    appearance("theme = light\ndark = true\ndark = true\n");
    EXPECT_EQ(g_theme_kind, 0);
    EXPECT_TRUE(g_saw_theme_key);
}

std::string describe(const wp_override &o)
{
    return std::string{text_of(o.name)} + " " + std::string{text_of(o.path)} + " " + std::to_string(o.mode) +
           " " + std::to_string(o.interval);
}

std::vector<std::string> overrides()
{
    std::vector<std::string> rows;
    for (const wp_override &o : std::span{g_wp_overrides}.first(size_t(g_wp_override_count)))
        rows.push_back(describe(o));
    return rows;
}

TEST_F(settings_files, give_outputs_wallpapers_modes_and_intervals_of_their_own)
{
    appearance("wallpaper_mode.DP-1 = fit\n"
               "wallpaper.DP-1 = /one#.png\n"
               "wallpaper_interval.HDMI-A-1 = 30\n"
               "wallpaper.mode = /two\n"
               "wallpaper_interval.DP-1 = 0\n"
               "wallpaper_mode.dp-1 = what\n"
               "wallpaper_modes = center\n");
    EXPECT_THAT(overrides(),
                ElementsAre("DP-1 /one#.png 1 -1", "HDMI-A-1  -1 30", "mode /two -1 -1", "dp-1  0 -1"));
    EXPECT_EQ(g_wp_mode, WP_FILL);
    EXPECT_EQ(g_wp_interval, 600);
    appearance("wallpaper.HDMI-A-1 = /three\n");
    EXPECT_THAT(overrides(), ElementsAre("HDMI-A-1 /three -1 -1")) << "nothing is left of the load before";
}

TEST_F(settings_files, give_no_more_than_sixteen_outputs_their_own)
{
    std::string text;
    for (int i = 1; i <= 18; i++)
        text += "wallpaper.DP-" + std::to_string(i) + " = /" + std::to_string(i) + "\n";
    text += "wallpaper_mode.DP-17 = fit\nwallpaper_mode.DP-16 = fit\n";
    appearance(text);
    EXPECT_EQ(g_wp_override_count, 16);
    EXPECT_EQ(describe(g_wp_overrides.front()), "DP-1 /1 -1 -1");
    EXPECT_EQ(describe(g_wp_overrides.back()), "DP-16 /16 1 -1");
}

TEST_F(settings_files, cut_the_names_of_outputs_and_know_them_again)
{
    const std::string name(100, 'n');
    appearance("wallpaper." + name + " = /a\nwallpaper_mode." + name + " = center\n");
    EXPECT_THAT(overrides(), ElementsAre(name.substr(0, 63) + " /a 3 -1"));
}

TEST_F(settings_files, use_the_standard_wallpaper_or_none_where_none_is_chosen)
{
    const auto picture = world.directory() / "picture.png";
    std::ofstream{picture} << "x";
    std::array<char, 1024> wallpaper{};
    config_resolve_wallpaper(wallpaper, "/nonexistent/picture.png");
    EXPECT_EQ(text_of(wallpaper), "");
    config_resolve_wallpaper(wallpaper, picture.c_str());
    EXPECT_EQ(text_of(wallpaper), picture.string());
    copy_text(wallpaper, "/mine");
    config_resolve_wallpaper(wallpaper, picture.c_str());
    EXPECT_EQ(text_of(wallpaper), "/mine");
    copy_text(wallpaper, "none");
    config_resolve_wallpaper(wallpaper, picture.c_str());
    EXPECT_EQ(text_of(wallpaper), "");
}

TEST_F(settings_files, reset_the_appearance_even_where_there_is_no_file)
{
    appearance(
        "wallpaper = /x\nwallpaper.A = /y\nwallpaper_mode = fit\nwallpaper_interval = 5\ntheme = light\n"
        "accent = 000000\nreduce_transparency = true\n");
    config_parse_appearance("/nonexistent/appearance.conf");
    EXPECT_NE(text_of(g_wallpaper), "/x");
    EXPECT_EQ(g_wp_override_count, 0);
    EXPECT_EQ(g_wp_mode, WP_FILL);
    EXPECT_EQ(g_wp_interval, 600);
    EXPECT_EQ(g_theme_kind, 1);
    EXPECT_FALSE(g_saw_theme_key);
    EXPECT_FALSE(g_reduce_transparency);
    EXPECT_FLOAT_EQ(g_accent[1], 191 / 255.0F);
}

TEST_F(settings_files, name_the_screen_of_the_panel)
{
    world.write_config("panel.conf", "screens = DP-1 # left\n");
    config_load(*server);
    EXPECT_EQ(g_panel_screens, PANEL_SCREENS_NAMED);
    EXPECT_EQ(text_of(g_panel_screen_name), "DP-1");
    world.write_config("panel.conf", "screens = " + std::string(70, 's'));
    config_load(*server);
    EXPECT_EQ(text_of(g_panel_screen_name), std::string(63, 's'));
    world.write_config("panel.conf", "");
    config_load(*server);
    EXPECT_EQ(g_panel_screens, PANEL_SCREENS_ALL);
    EXPECT_EQ(text_of(g_panel_screen_name), "");
}

// A whole load

TEST_F(settings_files, yield_to_the_modifier_of_the_environment_at_every_load)
{
    setenv("VANTORE_MOD", "Alt", 1);
    compositor("modifier = ctrl\n");
    EXPECT_EQ(server->wm_modifier, uint32_t{WLR_MODIFIER_ALT});
    setenv("VANTORE_MOD", "", 1);
    config_load(*server);
    EXPECT_EQ(server->wm_modifier, uint32_t{WLR_MODIFIER_LOGO});
    unsetenv("VANTORE_MOD");
    config_load(*server);
    EXPECT_EQ(server->wm_modifier, uint32_t{WLR_MODIFIER_CTRL});
}

bool has_bind(uint32_t mods, xkb_keysym_t key)
{
    return std::ranges::any_of(std::span{g_binds}.first(size_t(g_bind_count)),
                               [&](const vnt_bind &b) { return b.mods == mods && b.keysym == key; });
}

TEST_F(settings_files, give_key_bindings_the_modifier_that_came_out)
{
    world.write_config("keybinds.conf", "$mod+shift+b = spawn brave\n$mod+q = none\n");
    setenv("VANTORE_MOD", "ctrl", 1);
    compositor("modifier = alt\n");
    EXPECT_TRUE(has_bind(WLR_MODIFIER_CTRL, XKB_KEY_f));
    EXPECT_TRUE(has_bind(WLR_MODIFIER_CTRL | WLR_MODIFIER_SHIFT, XKB_KEY_b));
    EXPECT_FALSE(has_bind(WLR_MODIFIER_CTRL, XKB_KEY_q));
    EXPECT_FALSE(has_bind(WLR_MODIFIER_ALT, XKB_KEY_f));
}

TEST_F(settings_files, lie_in_a_directory_that_is_created_with_at_most_its_parent)
{
    const mode_t mask = umask(0);
    setenv("XDG_CONFIG_HOME", (world.directory() / "new").c_str(), 1);
    config_load(*server);
    for (const auto &path : {world.directory() / "new", world.directory() / "new" / "vantore"}) {
        struct stat status{};
        ASSERT_EQ(stat(path.c_str(), &status), 0) << path;
        EXPECT_EQ(status.st_mode, mode_t{S_IFDIR | 0755}) << path;
    }
    setenv("XDG_CONFIG_HOME", (world.directory() / "deep" / "below").c_str(), 1);
    config_load(*server);
    EXPECT_FALSE(std::filesystem::exists(world.directory() / "deep"));
    EXPECT_EQ(g_gap, 8);
    umask(mask);
}

} // namespace
