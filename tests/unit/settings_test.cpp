// Every key of the configuration files, against a list of this file's own: its default, values and limits,
// and whether it stays when its line goes.

#include "config/load.hpp"
#include "config/settings_apply.hpp"
#include "server.hpp"
#include "support/isolation.hpp"
#include "text.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace
{

std::string show(bool value)
{
    return value ? "true" : "false";
}

std::string show(int value)
{
    return std::to_string(value);
}

std::string show(double value)
{
    std::array<char, 32> text{};
    snprintf(text.data(), text.size(), "%g", value);
    return text.data();
}

template <size_t N> static std::string show(const std::array<char, N> &value)
{
    return std::string{text_of(value)};
}

std::string show(const std::array<float, 4> &color)
{
    std::array<char, 32> text{};
    snprintf(text.data(), text.size(), "%.0f %.0f %.0f %.0f", double(color[0] * 255), double(color[1] * 255),
             double(color[2] * 255), double(color[3] * 255));
    return text.data();
}

template <auto *stored> static std::string now(const vantore_server &)
{
    return show(*stored);
}

std::string modifier(const vantore_server &server)
{
    return std::to_string(server.wm_modifier);
}

// Shows the standard picture as no picture, because only some machines have it.
std::string wallpaper(const vantore_server &)
{
    const std::string path = show(g_wallpaper);
    return path == "/usr/share/vantore/wallpapers/Vantore.png" ? "" : path;
}

struct value_case {
    std::string written, stored;
};

struct key_case {
    const char *file, *key;
    std::string (*now)(const vantore_server &);
    std::string initial;
    std::vector<value_case> values;
    bool stays = false; // whether the value stays when the next load finds no such key

    friend void PrintTo(const key_case &c, std::ostream *out) { *out << c.file << ' ' << c.key; }
};

const std::vector<value_case> flag_values{
    {"true", "true"},  {"false", "false"}, {"1", "true"},    {"0", "false"}, {"yes", "true"},
    {"TRUE", "false"}, {"on", "false"},    {"Yes", "false"}, {"2", "false"}, {"", "false"},
};

std::vector<value_case> cut_at(size_t longest)
{
    return {{"", ""},
            {"DP-1", "DP-1"},
            {"two words", "two words"},
            {std::string(longest, 'x'), std::string(longest, 'x')},
            {std::string(longest + 1, 'x'), std::string(longest, 'x')}};
}

const std::vector<value_case> layout_values{{"tiling", "1"},   {"TILING", "1"}, {"Tile", "1"}, {"tile", "1"},
                                            {"floating", "0"}, {"tiled", "0"},  {"", "0"}};
const std::vector<value_case> acceleration_values{
    {"-1", "-1"},  {"1", "1"},        {"-1.01", "-1"}, {"7", "1"},     {"0.25", "0.25"},
    {"fast", "0"}, {"-0.5x", "-0.5"}, {"nan", "0"},    {"-inf", "-1"}, {"1e400", "1"}};
const std::vector<value_case> mode_values{{"fill", "0"},   {"fit", "1"}, {"stretch", "2"},
                                          {"center", "3"}, {"Fit", "0"}, {"", "0"}};
const std::vector<value_case> accent_values{
    {"#3399ff", "51 153 255 255"}, {"3399ff", "51 153 255 255"},  {"3399FF", "51 153 255 255"},
    {"3399f", "76 191 115 255"},   {"3399fff", "76 191 115 255"}, {"##3399ff", "76 191 115 255"},
    {"#3399f", "76 191 115 255"},  {"xx99ff", "76 191 115 255"},  {"3399ff  # hex", "76 191 115 255"},
    {"", "76 191 115 255"},        {"000000", "0 0 0 255"},       {"12zzzz", "0 0 18 255"}};

const key_case keys[]{
    {"compositor.conf",
     "modifier",
     modifier,
     "64",
     {{"alt", "8"},
      {"Super", "64"},
      {"ALT", "8"},
      {"ctrl", "4"},
      {"meta", "64"},
      {"Control", "4"},
      {"", "64"},
      {"alt", "8"}},
     true},
    {"compositor.conf",
     "gaps",
     now<&g_gap>,
     "8",
     {{"12", "12"},
      {"0", "0"},
      {"200", "200"},
      {"1000", "200"},
      {"201", "200"},
      {"-5", "0"},
      {"abc", "0"},
      {"", "0"},
      {"4px", "4"},
      {"010", "10"},
      {"0x10", "0"},
      {"99999999999999999999", "200"},
      {"-99999999999999999999", "0"}}},
    {"compositor.conf", "gap", now<&g_gap>, "8", {{"12", "12"}, {"1000", "200"}, {"-5", "0"}}},
    {"compositor.conf",
     "master_ratio",
     now<&g_default_master>,
     "0.55",
     {{"0.6", "0.6"},
      {"0", "0.1"},
      {"2", "0.9"},
      {"0.1", "0.1"},
      {"0.9", "0.9"},
      {"half", "0.1"},
      {"nan", "0.1"},
      {"inf", "0.9"},
      {"0.25 of it", "0.25"}}},
    {"compositor.conf", "default_layout", now<&g_default_layout>, "0", layout_values},
    {"compositor.conf", "overview", now<&g_overview_enabled>, "true", flag_values},
    {"compositor.conf", "allow_tearing", now<&g_allow_tearing>, "true", flag_values},
    {"compositor.conf", "game_tearing", now<&g_game_tearing>, "false", flag_values},
    {"compositor.conf", "presentation_time", now<&g_presentation_time>, "true", flag_values},
    {"compositor.conf", "desktop_icons", now<&g_desktop_icons>, "true", flag_values},
    {"compositor.conf", "vrr", now<&g_vrr>, "false", flag_values},
    {"compositor.conf", "x_primary", now<&g_x_primary>, "", cut_at(63)},
    {"compositor.conf", "primary", now<&g_primary_pref>, "", cut_at(63)},
    {"compositor.conf", "debug_input", now<&g_debug_input>, "false", flag_values},
    {"compositor.conf",
     "max_render_time",
     now<&g_max_render_time>,
     "-1",
     {{"auto", "-1"},
      {"off", "0"},
      {"false", "0"},
      {"7", "7"},
      {"100", "100"},
      {"500", "100"},
      {"-3", "0"},
      {"-1", "0"},
      {"abc", "0"},
      {"AUTO", "0"},
      {"", "0"}}},
    {"compositor.conf", "gestures", now<&g_gestures>, "true", flag_values},
    {"compositor.conf", "focus_follows_mouse", now<&g_focus_follows_mouse>, "false", flag_values},
    {"compositor.conf",
     "resize_border",
     now<&g_resize_border>,
     "8",
     {{"0", "0"}, {"32", "32"}, {"33", "32"}, {"-1", "0"}, {"12", "12"}, {"wide", "0"}}},
    {"compositor.conf", "protect_focus", now<&g_protect_focus>, "false", flag_values},
    {"compositor.conf", "game_output", now<&g_game_output>, "", cut_at(63)},
    {"compositor.conf", "shadows", now<&g_shadows>, "true", flag_values},
    {"compositor.conf",
     "corner_radius",
     now<&g_corner_radius>,
     "10",
     {{"0", "0"}, {"40", "40"}, {"41", "40"}, {"-1", "0"}, {"6", "6"}, {"round", "0"}}},
    {"compositor.conf", "blur", now<&g_blur>, "false", flag_values},
    {"compositor.conf", "glow", now<&g_glow>, "false", flag_values},
    {"compositor.conf", "tiler", now<&g_tiler>, "true", flag_values},
    {"compositor.conf",
     "tiler_pos",
     now<&g_tiler_top>,
     "true",
     {{"bottom", "false"}, {"top", "true"}, {"Bottom", "true"}, {"", "true"}}},
    {"compositor.conf",
     "dim_inactive",
     now<&g_dim_inactive>,
     "0",
     {{"0.3", "0.3"},
      {"1", "0.6"},
      {"0.6", "0.6"},
      {"-0.1", "0"},
      {"dark", "0"},
      {"nan", "0"},
      {"1e300", "0.6"}}},
    {"compositor.conf", "animations", now<&g_animations>, "true", flag_values},
    {"compositor.conf", "force_effects", now<&g_force_effects>, "false", flag_values},
    {"compositor.conf", "cursor_theme", now<&g_cursor_theme>, "", cut_at(127), true},
    {"compositor.conf",
     "cursor_size",
     now<&g_cursor_size>,
     "0",
     {{"48", "48"}, {"-4", "-4"}, {"big", "0"}, {"100000", "100000"}, {"99999999999", "2147483647"}},
     true},

    {"input.conf", "keyboard_layout", now<&g_kb_layout>, "", cut_at(63)},
    {"input.conf", "keyboard_variant", now<&g_kb_variant>, "", cut_at(63)},
    {"input.conf", "keyboard_options", now<&g_kb_options>, "", cut_at(127)},
    {"input.conf",
     "keyboard_repeat_rate",
     now<&g_kb_repeat_rate>,
     "25",
     {{"500", "100"}, {"0", "0"}, {"-1", "0"}, {"100", "100"}, {"never", "0"}, {"40", "40"}},
     true},
    {"input.conf",
     "keyboard_repeat_delay",
     now<&g_kb_repeat_delay>,
     "600",
     {{"5000", "2000"}, {"0", "0"}, {"-1", "0"}, {"2000", "2000"}, {"never", "0"}, {"300", "300"}},
     true},
    {"input.conf", "natural_scroll", now<&g_nat_scroll>, "false", flag_values},
    {"input.conf", "touchpad_natural_scroll", now<&g_tp_nat_scroll>, "true", flag_values},
    {"input.conf", "tap_to_click", now<&g_tap_to_click>, "true", flag_values},
    {"input.conf", "left_handed", now<&g_left_handed>, "false", flag_values},
    {"input.conf",
     "accel_profile",
     now<&g_accel_flat>,
     "false",
     {{"flat", "true"}, {"adaptive", "false"}, {"Flat", "false"}, {"", "false"}}},
    {"input.conf", "pointer_accel", now<&g_pointer_accel>, "0", acceleration_values},
    {"input.conf", "touchpad_accel", now<&g_tp_accel>, "0", acceleration_values},
    {"input.conf", "gestures", now<&g_gestures>, "true", flag_values},
    {"input.conf", "cursor_shake_magnify", now<&g_cursor_shake_magnify>, "false", flag_values},
    {"input.conf", "tablet_output", now<&g_tablet_output>, "", cut_at(63)},
    {"input.conf", "tablet_left_handed", now<&g_tablet_left_handed>, "false", flag_values},
    {"input.conf", "tablet_keep_aspect", now<&g_tablet_keep_aspect>, "false", flag_values},
    {"input.conf", "touch_output", now<&g_touch_output>, "", cut_at(63)},

    {"appearance.conf",
     "wallpaper",
     wallpaper,
     "",
     {{"/a#b.png", "/a#b.png"},
      {"/with = sign", "/with = sign"},
      {"none", ""},
      {std::string(1023, 'x'), std::string(1023, 'x')},
      {std::string(1024, 'x'), std::string(1023, 'x')}}},
    {"appearance.conf", "wallpaper_mode", now<&g_wp_mode>, "0", mode_values},
    {"appearance.conf",
     "wallpaper_interval",
     now<&g_wp_interval>,
     "600",
     {{"1", "1"}, {"0", "600"}, {"-5", "600"}, {"often", "600"}, {"", "600"}, {"86400", "86400"}}},
    {"appearance.conf",
     "dark",
     now<&g_theme_kind>,
     "1",
     {{"true", "1"}, {"false", "0"}, {"1", "1"}, {"True", "0"}, {"", "0"}}},
    {"appearance.conf",
     "theme",
     now<&g_theme_kind>,
     "1",
     {{"light", "0"}, {"dark", "2"}, {"high_contrast", "2"}, {"Light", "1"}, {"grey", "1"}, {"", "1"}}},
    {"appearance.conf", "reduce_transparency", now<&g_reduce_transparency>, "false", flag_values},
    {"appearance.conf", "accent", now<&g_accent>, "76 191 115 255", accent_values},

    {"dock.conf", "enabled", now<&g_dock_enabled>, "true", flag_values},
    {"panel.conf",
     "screens",
     now<&g_panel_screens>,
     "0",
     {{"primary", "1"}, {"all", "0"}, {"DP-1", "2"}, {"All", "2"}, {"", "2"}}},
};

class setting_key : public testing::TestWithParam<key_case>
{
protected:
    void SetUp() override
    {
        for (const char *file : {"compositor.conf", "input.conf", "workspaces.conf", "rules.conf",
                                 "keybinds.conf", "autostart.conf", "appearance.conf"})
            world.write_config(file, "");
        settings_begin(*server);
        config_load(*server);
    }

    void load_with(const std::string &text)
    {
        world.write_config(GetParam().file, text);
        config_load(*server);
    }
    [[nodiscard]] std::string stored() const { return GetParam().now(*server); }

    test::isolation world;
    std::unique_ptr<vantore_server> server = std::make_unique<vantore_server>();
};

TEST_P(setting_key, has_its_default_where_no_file_names_it)
{
    EXPECT_EQ(stored(), GetParam().initial);
}

TEST_P(setting_key, takes_its_values_and_no_others)
{
    for (const auto &[written, expected] : GetParam().values) {
        load_with(std::string{GetParam().key} + " = " + written + "\n");
        EXPECT_EQ(stored(), expected) << '"' << written << '"';
        EXPECT_EQ(g_config_errors, 0);
    }
}

TEST_P(setting_key, returns_to_its_default_or_stays_when_its_line_goes)
{
    const value_case &last = GetParam().values.back();
    load_with(std::string{GetParam().key} + " = " + last.written + "\n");
    load_with("");
    EXPECT_EQ(stored(), GetParam().stays ? last.stored : GetParam().initial);
    settings_begin(*server);
    config_load(*server);
    EXPECT_EQ(stored(), GetParam().initial) << "in a session to come";
}

INSTANTIATE_TEST_SUITE_P(all, setting_key, testing::ValuesIn(keys), [](const auto &row) {
    const std::string_view file{row.param.file};
    return std::string{file.substr(0, file.find('.'))} + "_" + row.param.key;
});

TEST(settings_table, has_the_keys_of_this_list_and_no_others)
{
    std::vector<std::string> listed, known;
    for (const key_case &c : keys)
        listed.emplace_back(c.key);
    for (const setting &row : settings()) {
        if (!std::holds_alternative<output_setting>(row.kind))
            known.emplace_back(row.key);
        if (!row.alias.empty())
            known.emplace_back(row.alias);
    }
    EXPECT_THAT(known, testing::UnorderedElementsAreArray(listed));
}

} // namespace
