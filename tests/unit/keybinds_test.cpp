// The grammar of keybinds.conf, and the default table against a list of this file's own.

#include "config/commands.hpp"
#include "config/files.hpp"
#include "config/keybinds.hpp"
#include "input/actions.hpp"
#include "server.hpp"
#include "support/isolation.hpp"

#include <format>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>

using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

// The modifier mask, the key, the action's number, the argument and the command.
std::string describe(const vnt_bind &bind)
{
    std::array<char, 64> key{};
    xkb_keysym_get_name(bind.keysym, key.data(), key.size());
    std::string text = std::format("{} {} {} {}", bind.mods, key.data(), int(bind.act), bind.arg);
    return bind.spawn.front() != '\0' ? text + " " + bind.spawn.data() : text;
}

std::vector<std::string> table()
{
    std::vector<std::string> rows;
    for (const vnt_bind &bind : std::span{g_binds.data(), size_t(g_bind_count)})
        rows.push_back(describe(bind));
    return rows;
}

std::vector<std::string> lines_of(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        lines.emplace_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
    }
    return lines;
}

// The modifier here is the logo key, 64.
constexpr const char *defaults = R"(64 1 1 1
65 1 2 1
64 2 1 2
65 2 2 2
64 3 1 3
65 3 2 3
64 4 1 4
65 4 2 4
64 5 1 5
65 5 2 5
64 6 1 6
65 6 2 6
64 7 1 7
65 7 2 7
64 8 1 8
65 8 2 8
64 9 1 9
65 9 2 9
64 Left 3 0
64 h 3 0
65 Left 4 0
65 h 4 0
68 Left 5 0
68 h 5 0
64 Right 3 1
64 l 3 1
65 Right 4 1
65 l 4 1
68 Right 5 1
68 l 5 1
64 Up 3 2
64 k 3 2
65 Up 4 2
65 k 4 2
68 Up 5 2
68 k 5 2
64 Down 3 3
64 j 3 3
65 Down 4 3
65 j 4 3
68 Down 5 3
68 j 5 3
64 Return 6 0 $terminal
64 b 6 0 $browser
64 e 6 0 $files
64 q 7 0
64 space 8 0
64 t 9 0
65 t 10 0
64 f 11 0
64 m 12 0
64 Tab 13 0
65 Tab 13 0
8 Tab 13 0
9 Tab 13 0
64 g 18 0
65 g 19 0
64 grave 20 0
65 r 15 0
65 Escape 14 0
64 Escape 6 0 loginctl lock-session
5 Escape 6 0 vantore-tasks
0 Print 6 0 vantore-shot --overlay
64 Print 6 0 vantore-shot --overlay --record
1 Print 6 0 vantore-shot region --copy
64 F7 6 0 vantore-replay toggle
64 F8 6 0 vantore-replay osd-status
64 F9 6 0 vantore-replay screenshot
64 F10 6 0 vantore-clips --overlay
64 F11 6 0 vantore-replay save
64 F12 6 0 vantore-replay mark
64 a 16 0
64 v 17 0
64 comma 6 0 vantore-settings
65 comma 21 -1
65 period 21 1
68 comma 22 -1
68 period 22 1
0 XF86MonBrightnessUp 6 0 brightnessctl set +10%
0 XF86MonBrightnessDown 6 0 brightnessctl set 10%-
0 XF86AudioRaiseVolume 6 0 wpctl set-volume -l 1.0 @DEFAULT_AUDIO_SINK@ 5%+
0 XF86AudioLowerVolume 6 0 wpctl set-volume @DEFAULT_AUDIO_SINK@ 5%-
0 XF86AudioMute 6 0 wpctl set-mute @DEFAULT_AUDIO_SINK@ toggle
0 XF86AudioPlay 6 0 playerctl play-pause
0 XF86AudioNext 6 0 playerctl next
0 XF86AudioPrev 6 0 playerctl previous
)";

struct keybinds : testing::Test {
    keybinds() : server(std::make_unique<vantore_server>())
    {
        install_default_binds(*server);
        g_config_errors = 0;
    }

    // Reads a user's file.
    void read(const std::string &text) const
    {
        const auto path = world.directory() / "keybinds.conf";
        std::ofstream{path, std::ios::binary} << text;
        config_parse_keybinds(*server, path.c_str());
    }

    static std::vector<std::string> bound_to(const std::string &chord)
    {
        auto rows = table();
        std::erase_if(rows, [&](const std::string &row) { return !row.starts_with(chord + " "); });
        return rows;
    }

    test::isolation world;
    std::unique_ptr<vantore_server> server;
};

using testing::ElementsAre;

TEST_F(keybinds, of_the_default_table_are_these_86)
{
    EXPECT_EQ(g_bind_count, 86);
    EXPECT_THAT(table(), ElementsAreArray(lines_of(defaults)));
}

TEST_F(keybinds, of_the_default_table_are_installed_afresh)
{
    read("$mod+q = none\n$mod+shift+b = spawn brave\n");
    install_default_binds(*server);
    EXPECT_THAT(table(), ElementsAreArray(lines_of(defaults)));
}

TEST_F(keybinds, of_the_default_table_follow_the_modifier_where_it_is_named)
{
    server->wm_modifier = WLR_MODIFIER_ALT;
    install_default_binds(*server);
    EXPECT_EQ(g_bind_count, 86);
    EXPECT_THAT(bound_to("8 q"), ElementsAre("8 q 7 0"));
    EXPECT_THAT(bound_to("12 comma"), ElementsAre("12 comma 22 -1"));
    EXPECT_THAT(bound_to("5 Escape"), ElementsAre("5 Escape 6 0 vantore-tasks"));
    EXPECT_THAT(bound_to("64 q"), IsEmpty());
    EXPECT_THAT(bound_to("8 Tab"), ElementsAre("8 Tab 13 0", "8 Tab 13 0")) << "twice, and that is harmless";
    EXPECT_THAT(bound_to("9 Tab"), ElementsAre("9 Tab 13 0", "9 Tab 13 0"));
}

class with_any_modifier : public keybinds, public testing::WithParamInterface<uint32_t>
{
};

TEST_P(with_any_modifier, alt_and_tab_are_bound)
{
    server->wm_modifier = GetParam();
    install_default_binds(*server);
    EXPECT_THAT(bound_to("8 Tab"), testing::Contains("8 Tab 13 0"));
    EXPECT_THAT(bound_to("9 Tab"), testing::Contains("9 Tab 13 0"));
}

INSTANTIATE_TEST_SUITE_P(all, with_any_modifier,
                         testing::Values(WLR_MODIFIER_CTRL, WLR_MODIFIER_ALT, WLR_MODIFIER_LOGO));

TEST_F(keybinds, are_removed_by_none_or_unbind)
{
    read("$mod+f = none\n$mod+q = unbind\n");
    EXPECT_THAT(bound_to("64 f"), IsEmpty());
    EXPECT_THAT(bound_to("64 q"), IsEmpty());
    EXPECT_EQ(g_bind_count, 84);
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(keybinds, of_a_new_chord_go_to_the_end_of_the_table)
{
    read("$mod+shift+b = spawn brave");
    EXPECT_EQ(g_bind_count, 87);
    EXPECT_EQ(table().back(), "65 b 6 0 brave");
}

TEST_F(keybinds, of_a_user_replace_the_default_of_the_chord_in_either_case)
{
    for (const char *line : {"$mod+q = spawn foo", "$mod+Q = spawn foo"}) {
        install_default_binds(*server);
        read(line);
        EXPECT_EQ(g_bind_count, 86);
        EXPECT_THAT(bound_to("64 q"), ElementsAre("64 q 6 0 foo")) << line;
        EXPECT_EQ(table().back(), "64 q 6 0 foo");
        EXPECT_EQ(table()[45], "0 XF86AudioPrev 6 0 playerctl previous") << "the last entry fills the gap";
    }
}

TEST_F(keybinds, need_exactly_the_same_modifiers_to_be_replaced)
{
    read("$mod+shift+q = spawn foo");
    EXPECT_THAT(bound_to("64 q"), ElementsAre("64 q 7 0"));
    EXPECT_THAT(bound_to("65 q"), ElementsAre("65 q 6 0 foo"));
}

TEST_F(keybinds, of_two_equal_chords_lose_only_the_first)
{
    server->wm_modifier = WLR_MODIFIER_ALT;
    install_default_binds(*server);
    read("alt+tab = none");
    EXPECT_THAT(bound_to("8 Tab"), ElementsAre("8 Tab 13 0"));
    read("alt+tab = close");
    EXPECT_THAT(bound_to("8 Tab"), ElementsAre("8 Tab 7 0"));
}

TEST_F(keybinds, that_spawn_nothing_are_no_error)
{
    read("$mod+b = spawn\n");
    EXPECT_THAT(bound_to("64 b"), ElementsAre("64 b 6 0"));
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(keybinds, can_be_added_again_after_they_were_removed)
{
    read("$mod+b = none\n$mod+b = spawn x\n");
    EXPECT_THAT(bound_to("64 b"), ElementsAre("64 b 6 0 x"));
    EXPECT_EQ(g_bind_count, 86);
}

TEST_F(keybinds, without_an_entry_can_be_removed_without_an_error)
{
    read("$mod+z = none\n");
    EXPECT_EQ(g_bind_count, 86);
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(keybinds, beyond_the_74th_of_the_user_are_not_read_and_no_removal_either)
{
    std::string text;
    for (int i = 0; i < 74; i++)
        text += std::format("ctrl+alt+U{:04x} = workspace {}\n", 0x400 + i, i);
    read(text + "$mod+q = none\n$mod+w = close\nnonsense = close\n");
    EXPECT_EQ(g_bind_count, 160);
    EXPECT_EQ(g_binds.back().arg, 73);
    EXPECT_THAT(bound_to("64 q"), ElementsAre("64 q 7 0"));
    EXPECT_THAT(bound_to("64 w"), IsEmpty());
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(keybinds, do_not_grow_beyond_the_table)
{
    g_bind_count = 160;
    const vnt_bind last = g_binds.back();
    add_bind(0, XKB_KEY_a, ACT_CLOSE, 0, nullptr);
    EXPECT_EQ(g_bind_count, 160);
    EXPECT_EQ(describe(g_binds.back()), describe(last));
}

TEST_F(keybinds, keep_255_bytes_of_a_command)
{
    add_bind(0, XKB_KEY_a, ACT_SPAWN, 0, std::string(300, 'x').c_str());
    EXPECT_EQ(std::string_view{g_binds[86].spawn.data()}, std::string(255, 'x'));
    read("$mod+b = spawn " + std::string(300, 'y') + "\n");
    EXPECT_EQ(std::string_view{g_binds[86].spawn.data()}, std::string(255, 'y'));
}

TEST_F(keybinds, keep_nothing_of_a_removed_entry)
{
    add_bind(0, XKB_KEY_a, ACT_SPAWN, 7, "something");
    remove_bind(0, XKB_KEY_a);
    add_bind(0, XKB_KEY_a, ACT_CLOSE, 0, nullptr);
    EXPECT_EQ(table().back(), "0 a 7 0");
}

// Lines

TEST_F(keybinds, are_read_past_comments_blanks_and_lines_without_a_sign)
{
    read("# a comment = close\n\n   \t\n just words \n\t $mod+z =  close  # and this goes\r\n"
         "#$mod+x = close\nctrl+1=spawn a=b#c\nctrl+2 = close");
    EXPECT_EQ(g_config_errors, 0);
    EXPECT_EQ(g_bind_count, 89);
    EXPECT_EQ(table()[86], "64 z 7 0");
    EXPECT_EQ(table()[87], "4 1 6 0 a=b");
    EXPECT_EQ(table()[88], "4 2 7 0") << "the last line needs no end";
}

TEST_F(keybinds, of_bad_lines_are_counted_and_change_nothing)
{
    const std::vector<std::string> bad{
        "= close",
        " = close",
        "+ = close",
        "++ = close",
        "$mod = close",
        "shift+alt = none",
        "$mod+ = close",
        "nokey = close",
        "$mod+nokey = none",
        "q+$MOD = close",
        "$mod+$q = a",
        "$mod+q = Close",
        "$mod+q = shut",
        "$mod+q =",
        "$mod+q = close\tnow",
        "$mod+q + + = close",
        "$mod+q+bogus = close",
    };
    for (const std::string &line : bad) {
        g_config_errors = 0;
        read(line + "\n");
        EXPECT_EQ(g_config_errors, 1) << line;
        EXPECT_THAT(table(), ElementsAreArray(lines_of(defaults))) << line;
    }
}

TEST_F(keybinds, after_a_bad_line_are_read)
{
    read("bogus = close\n$mod+z = close\nbogus = close\n");
    EXPECT_EQ(g_config_errors, 2);
    EXPECT_EQ(table().back(), "64 z 7 0");
}

TEST_F(keybinds, stay_as_they_are_without_a_file)
{
    config_parse_keybinds(*server, (world.directory() / "missing").c_str());
    config_parse_keybinds(*server, world.directory().c_str());
    EXPECT_THAT(table(), ElementsAreArray(lines_of(defaults)));
    EXPECT_EQ(g_config_errors, 0);
}

TEST_F(keybinds, come_from_the_configuration_directory)
{
    const auto directory = world.directory() / "config" / "vantore";
    std::filesystem::create_directories(directory);
    std::ofstream{directory / "keybinds.conf"} << "$mod+z = close\n";
    g_bind_count = 0;
    config_load_keybinds(*server);
    EXPECT_EQ(g_bind_count, 87);
    EXPECT_EQ(table().back(), "64 z 7 0");
}

TEST_F(keybinds, survive_any_bytes)
{
    std::string junk;
    unsigned state = 1;
    for (int i = 0; i < 200'000; i++) {
        state = state * 1103515245 + 12345;
        junk += char(state >> 16);
    }
    read(junk);
    read(std::string(5'000'000, '+') + "=");
    read(std::string(5'000'000, 'a'));
    read(std::string("$mod+z\0 = close\n$mod+y = close\n", 31));
    EXPECT_EQ(table().back(), "64 y 7 0");
}

// Chords

struct chord_case {
    const char *text;
    uint32_t mods;
    xkb_keysym_t key;
};

TEST_F(keybinds, are_chords_of_these_tokens)
{
    server->wm_modifier = WLR_MODIFIER_ALT;
    const std::vector<chord_case> cases{
        {"super+x", 64, XKB_KEY_x},    {"SUPER+x", 64, XKB_KEY_x},
        {"logo+x", 64, XKB_KEY_x},     {"Logo+x", 64, XKB_KEY_x},
        {"mod4+x", 64, XKB_KEY_x},     {"Mod4+x", 64, XKB_KEY_x},
        {"shift+x", 1, XKB_KEY_x},     {"Shift+x", 1, XKB_KEY_x},
        {"ctrl+x", 4, XKB_KEY_x},      {"CTRL+x", 4, XKB_KEY_x},
        {"control+x", 4, XKB_KEY_x},   {"Control+x", 4, XKB_KEY_x},
        {"alt+x", 8, XKB_KEY_x},       {"Alt+x", 8, XKB_KEY_x},
        {"mod1+x", 8, XKB_KEY_x},      {"MOD1+x", 8, XKB_KEY_x},
        {"$mod+x", 8, XKB_KEY_x},      {"mod+x", 8, XKB_KEY_x},
        {"MOD+x", 8, XKB_KEY_x},       {"x", 0, XKB_KEY_x},
        {"x+ctrl", 4, XKB_KEY_x},      {" ctrl + shift\t+ x ", 5, XKB_KEY_x},
        {"++ctrl++x++", 4, XKB_KEY_x}, {"super+alt+ctrl+shift+x", 77, XKB_KEY_x},
        {"ctrl+ctrl+x", 4, XKB_KEY_x}, {"x+y", 0, XKB_KEY_y},
        {"$MOD+y", 0, XKB_KEY_y},      {"x+ctrl+y+alt", 12, XKB_KEY_y},
    };
    for (const chord_case &c : cases) {
        std::string text = c.text;
        uint32_t mods = 999;
        xkb_keysym_t key = 999;
        EXPECT_TRUE(cfg_mods_key(*server, text.data(), mods, key)) << c.text;
        EXPECT_EQ(mods, c.mods) << c.text;
        EXPECT_EQ(key, c.key) << c.text;
    }
}

struct key_case {
    const char *name;
    xkb_keysym_t keysym;
};

TEST(cfg_key, knows_characters_names_in_any_case_and_the_names_of_xkb)
{
    const std::vector<key_case> cases{
        {"a", 0x61},       {"z", 0x7a},          {"A", 0x61},        {"Z", 0x7a},
        {"0", 0x30},       {"9", 0x39},          {"left", 0xff51},   {"LEFT", 0xff51},
        {"right", 0xff53}, {"Right", 0xff53},    {"up", 0xff52},     {"Up", 0xff52},
        {"down", 0xff54},  {"DOWN", 0xff54},     {"return", 0xff0d}, {"Return", 0xff0d},
        {"enter", 0xff0d}, {"Enter", 0xff0d},    {"space", 0x20},    {"Space", 0x20},
        {"tab", 0xff09},   {"TAB", 0xff09},      {"escape", 0xff1b}, {"Escape", 0xff1b},
        {"esc", 0xff1b},   {"Esc", 0xff1b},      {"comma", 0x2c},    {"period", 0x2e},
        {"grave", 0x60},   {"F1", 0xffbe},       {"F12", 0xffc9},    {"XF86AudioMute", 0x1008ff12},
        {"Print", 0xff61}, {"odiaeresis", 0xf6},
    };
    for (const key_case &c : cases)
        EXPECT_EQ(cfg_key(c.name), c.keysym) << c.name;
    for (const char *unknown :
         {"", "Comma", "f1", "xf86audiomute", "print", "nosuchkey", ",", "!", "\xf6", " "})
        EXPECT_EQ(cfg_key(unknown), xkb_keysym_t{XKB_KEY_NoSymbol}) << unknown;
}

TEST(cfg_dir, takes_left_for_whatever_it_does_not_know)
{
    EXPECT_EQ(cfg_dir("left"), 0);
    EXPECT_EQ(cfg_dir("right"), 1);
    EXPECT_EQ(cfg_dir("RIGHT"), 1);
    EXPECT_EQ(cfg_dir("up"), 2);
    EXPECT_EQ(cfg_dir("Up"), 2);
    EXPECT_EQ(cfg_dir("down"), 3);
    EXPECT_EQ(cfg_dir("DOWN"), 3);
    EXPECT_EQ(cfg_dir("sideways"), 0);
    EXPECT_EQ(cfg_dir(""), 0);
}

TEST_F(keybinds, that_focus_sideways_focus_left)
{
    read("$mod+z = focus sideways\n$mod+y = focus\n$mod+x = focus down\n");
    EXPECT_EQ(table()[86], "64 z 3 0");
    EXPECT_EQ(table()[87], "64 y 3 0");
    EXPECT_EQ(table()[88], "64 x 3 3");
}

TEST_F(keybinds, have_these_verbs)
{
    // The text after the sign, and the action, argument and command that it becomes.
    const std::vector<std::pair<const char *, const char *>> cases{
        {"workspace 3", "1 3"},
        {"workspace", "1 0"},
        {"workspace 42", "1 42"},
        {"workspace -7x", "1 -7"},
        {"workspace 99999999999999999999", "1 2147483647"},
        {"move-to-workspace 9", "2 9"},
        {"focus up", "3 2"},
        {"move right", "4 1"},
        {"resize   down", "5 3"},
        {"move-workspace-output left", "21 -1"},
        {"move-workspace-output prev", "21 -1"},
        {"move-workspace-output next", "21 1"},
        {"move-workspace-output Left", "21 1"},
        {"move-workspace-output", "21 1"},
        {"move-to-output prev", "22 -1"},
        {"move-window-output left", "22 -1"},
        {"move-window-output right", "22 1"},
        {"spawn foot -e  top", "6 0 foot -e  top"},
        {"exec $email", "6 0 $email"},
        {"spawn \t foot", "6 0 foot"},
        {"close", "7 0"},
        {"close 5", "7 0"},
        {"toggle-float", "8 0"},
        {"float", "8 0"},
        {"toggle-layout", "9 0"},
        {"layout", "9 0"},
        {"cycle-tile-mode", "10 0"},
        {"tile-mode", "10 0"},
        {"fullscreen", "11 0"},
        {"maximize", "12 0"},
        {"cycle", "13 0"},
        {"quit", "14 0"},
        {"exit", "14 0"},
        {"reload", "15 0"},
        {"overview", "16 0"},
        {"clipboard", "17 0"},
        {"stack-group", "18 0"},
        {"group", "18 0"},
        {"stack-ungroup", "19 0"},
        {"ungroup", "19 0"},
        {"unstack", "19 0"},
        {"stack-cycle", "20 0"},
        {"stack-next", "20 0"},
    };
    for (const auto &[text, expected] : cases) {
        install_default_binds(*server);
        read(std::string{"ctrl+alt+z = "} + text + "\n");
        EXPECT_EQ(table().back(), std::string{"12 z "} + expected) << text;
    }
    EXPECT_EQ(g_config_errors, 0);
}

TEST(dir_to_delta, steps_along_one_axis)
{
    const std::vector<std::array<int, 3>> cases{{0, -1, 0}, {1, 1, 0}, {2, 0, -1},
                                                {3, 0, 1},  {4, 0, 0}, {-1, 0, 0}};
    for (const auto &[dir, x, y] : cases) {
        int dx = 9, dy = 9;
        dir_to_delta(dir, dx, dy);
        EXPECT_EQ(dx, x) << dir;
        EXPECT_EQ(dy, y) << dir;
    }
}

// The programs that the user chose

struct commands : testing::Test {
    void choose(const std::string &text) const
    {
        const auto directory = world.directory() / "config" / "vantore";
        std::filesystem::create_directories(directory);
        std::ofstream{directory / "defaults.conf", std::ios::binary} << text;
    }

    test::isolation world;
    const std::string usual = "vantore-console || kitty || foot || x-terminal-emulator || xterm";
};

TEST_F(commands, start_the_usual_terminals_without_a_choice)
{
    EXPECT_EQ(vnt_terminal_cmd(), usual);
}

TEST_F(commands, try_the_chosen_terminal_first)
{
    for (const char *line :
         {"terminal = alacritty\n", " \tterminal=alacritty", "terminal-program =\talacritty \r\n",
          "browser = x\nterminal\nterminals = alacritty\nterminal = other\n",
          "x = terminal = no\n# terminal = no\nterminal = alacritty"}) {
        choose(line);
        EXPECT_EQ(vnt_terminal_cmd(), "alacritty || " + usual) << line;
    }
    choose("terminal = /opt/My-Term_2.0/bin/term\n");
    EXPECT_EQ(vnt_terminal_cmd(), "/opt/My-Term_2.0/bin/term || " + usual);
}

TEST_F(commands, follow_a_new_choice_at_once)
{
    choose("terminal = one\n");
    EXPECT_EQ(vnt_terminal_cmd(), "one || " + usual);
    choose("terminal = two\n");
    EXPECT_EQ(vnt_terminal_cmd(), "two || " + usual);
}

TEST_F(commands, never_give_the_shell_more_than_a_programs_name)
{
    for (const char *value : {"alacritty --flag", "a;b", "$(id)", "a|b", "a'b", "a\"b", "a&", "~/term", "a=b",
                              "\xc3\xa4", "a\tb"}) {
        choose(std::string{"terminal = "} + value + "\nterminal = good\n");
        EXPECT_EQ(vnt_terminal_cmd(), usual) << value;
    }
}

TEST_F(commands, take_only_the_first_choice_and_only_of_1_to_127_bytes)
{
    choose("terminal =\nterminal = good\n");
    EXPECT_EQ(vnt_terminal_cmd(), usual);
    choose("terminal = " + std::string(127, 'x') + "\n");
    EXPECT_EQ(vnt_terminal_cmd(), std::string(127, 'x') + " || " + usual);
    choose("terminal = " + std::string(128, 'x') + "\n");
    EXPECT_EQ(vnt_terminal_cmd(), usual);
}

TEST_F(commands, do_not_wait_for_a_pipe_in_the_files_place)
{
    choose("");
    const auto file = world.directory() / "config" / "vantore" / "defaults.conf";
    std::filesystem::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(vnt_terminal_cmd(), usual);
}

TEST_F(commands, that_are_symbolic_stand_for_shell_lines)
{
    choose("terminal = foot\n");
    EXPECT_EQ(vnt_spawn_command("$terminal"), "foot || " + usual);
    EXPECT_STREQ(
        vnt_spawn_command("$browser"),
        R"(d=$(xdg-mime query default x-scheme-handler/https 2>/dev/null); [ -n "$d" ] && gtk-launch "${d%.desktop}" || x-www-browser)");
    EXPECT_STREQ(
        vnt_spawn_command("$files"),
        R"(d=$(xdg-mime query default inode/directory 2>/dev/null); [ -n "$d" ] && gtk-launch "${d%.desktop}" || thunar)");
    EXPECT_STREQ(
        vnt_spawn_command("$email"),
        R"(d=$(xdg-mime query default x-scheme-handler/mailto 2>/dev/null); [ -n "$d" ] && gtk-launch "${d%.desktop}")");
}

TEST_F(commands, that_are_not_exactly_symbolic_stay_as_they_are)
{
    for (const char *text : {"", "foot", "$browser --new", " $terminal", "$Terminal", "$"})
        EXPECT_EQ(vnt_spawn_command(text), text) << "the same text, not a copy";
}

} // namespace
