// What a pressed chord does, who may prevent that, and what the client hears of it.

#include "support/desktop.hpp"
#include "support/wayland_devices.hpp"

#include "config/keybinds.hpp"
#include "input/actions.hpp"
#include "startup.hpp"
#include "windows/fullscreen.hpp"
#include "workspaces/focus.hpp"

#include <format>
#include <fstream>
#include <linux/input-event-codes.h>

using test::made_up_keyboard;
using test::seat;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace
{

constexpr test::size screen{1280, 704};
constexpr const char *usual_terminals =
    "vantore-launch 'vantore-console || kitty || foot || x-terminal-emulator || xterm'";

// The held keys and the key that is pressed last.
struct chord {
    std::vector<uint32_t> held;
    uint32_t key;
};

const chord super_w{{KEY_LEFTMETA}, KEY_W}, super_q{{KEY_LEFTMETA}, KEY_Q};
const chord print{{}, KEY_SYSRQ};
const chord emergency_reload{{KEY_LEFTMETA, KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_R};
const chord emergency_terminal{{KEY_LEFTMETA, KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_ENTER};
const chord emergency_end{{KEY_LEFTMETA, KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_ESC};

// A window that has the keyboard, and a keyboard.
struct bindings : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", screen.width, screen.height);
        editor = &map("editor");
        ears = std::make_unique<seat>(editor->owner());
        keyboard = &plug_keyboard();
        settle();
        (void)heard();
        spawned_before = std::ssize(world.spawned());
    }

    void TearDown() override
    {
        inhibitor.reset();
        ears.reset();
        desktop::TearDown();
    }

    // Maps a window that fills the screen and takes the keyboard. From now on, `ears` listens to its client.
    void start_game()
    {
        game = &map("game", screen);
        ears = std::make_unique<seat>(game->owner());
        settle();
        ASSERT_TRUE(focused_is_fullscreen(server));
        (void)heard();
    }

    void inhibit(window &w)
    {
        inhibitor = std::make_unique<test::shortcuts_inhibitor>(*ears, w);
        EVENTUALLY(inhibitor->active());
    }

    void user_binds(const std::string &lines)
    {
        const auto path = world.directory() / "keybinds.conf";
        std::ofstream{path} << lines;
        config_parse_keybinds(server, path.c_str());
    }

    // Presses the chord and releases it. Returns whether the client heard of the press.
    bool reaches_client(const chord &c)
    {
        for (const uint32_t key : c.held)
            keyboard->press(key);
        settle();
        (void)ears->take();
        keyboard->press(c.key);
        settle();
        const bool came = ears->heard(std::format("key down {}", c.key));
        keyboard->release(c.key);
        for (const uint32_t key : c.held)
            keyboard->release(key);
        settle();
        return came;
    }

    // Returns the programs that were started since the last call.
    std::vector<std::string> started()
    {
        const auto &all = world.spawned();
        const auto from = all.begin() + std::exchange(spawned_before, ptrdiff_t(all.size()));
        return {from, all.end()};
    }

    // Runs the session and presses the chord. Returns false when the session still runs long afterwards.
    bool ends_session(const chord &c)
    {
        pending = &c;
        wl_event_loop *loop = wl_display_get_event_loop(server.display);
        const event_source limit{wl_event_loop_add_timer(loop, give_up, this)};
        wl_event_source_timer_update(limit.get(), 3000);
        wl_event_loop_add_idle(loop, press_pending, this);
        server_run(server);
        for (const uint32_t key : c.held)
            keyboard->release(key);
        return pending != nullptr;
    }

    static void press_pending(void *data)
    {
        auto &test = *static_cast<bindings *>(data);
        for (const uint32_t key : test.pending->held)
            test.keyboard->press(key);
        test.keyboard->tap(test.pending->key);
    }

    static int give_up(void *data)
    {
        auto &test = *static_cast<bindings *>(data);
        test.pending = nullptr;
        wl_display_terminate(test.server.display);
        return 0;
    }

    window *editor = nullptr, *game = nullptr;
    made_up_keyboard *keyboard = nullptr;
    std::unique_ptr<seat> ears;
    std::unique_ptr<test::shortcuts_inhibitor> inhibitor;
    ptrdiff_t spawned_before = 0;
    const chord *pending = nullptr;
};

// Who gets the keys

TEST_F(bindings, take_the_press_from_the_client_and_leave_it_the_release)
{
    keyboard->press(KEY_LEFTMETA);
    settle();
    (void)ears->take();
    keyboard->tap(KEY_V);
    settle();
    EXPECT_THAT(ears->take(), ElementsAre("key up 47"));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_CLIPBOARD));
    keyboard->release(KEY_LEFTMETA);
}

TEST_F(bindings, leave_unbound_chords_to_the_client)
{
    EXPECT_TRUE(reaches_client(super_w));
    EXPECT_TRUE(reaches_client({{KEY_LEFTALT}, KEY_Q})) << "another modifier";
    EXPECT_TRUE(reaches_client({{KEY_LEFTMETA, KEY_LEFTALT}, KEY_Q})) << "one modifier too many";
    EXPECT_TRUE(reaches_client({{}, KEY_Q}));
    settle();
    EXPECT_EQ(editor->closes(), 0);
}

TEST_F(bindings, take_their_keys_also_when_there_is_nothing_to_act_on)
{
    editor->destroy();
    settle();
    ASSERT_TRUE(wl_list_empty(&server.toplevels));
    for (int i = 0; i < g_bind_count; i++) {
        const vnt_bind bind = g_binds[size_t(i)];
        EXPECT_TRUE(handle_keybinding(server, bind.mods, bind.keysym)) << i;
    }
}

TEST_F(bindings, do_not_run_while_locked)
{
    server.locked = true;
    EXPECT_TRUE(reaches_client(super_q));
    EXPECT_TRUE(reaches_client(emergency_terminal));
    server.locked = false;
    EXPECT_EQ(editor->closes(), 0);
    EXPECT_THAT(started(), IsEmpty());
}

TEST_F(bindings, match_whatever_locks_are_on)
{
    keyboard->tap(KEY_CAPSLOCK);
    keyboard->press(KEY_NUMLOCK);
    EXPECT_FALSE(reaches_client(super_q));
    EVENTUALLY_EQ(editor->closes(), 1);
    keyboard->release(KEY_NUMLOCK);
    const uint32_t irrelevant = WLR_MODIFIER_CAPS | WLR_MODIFIER_MOD2 | WLR_MODIFIER_MOD3 | WLR_MODIFIER_MOD5;
    EXPECT_TRUE(handle_keybinding(server, irrelevant | WLR_MODIFIER_LOGO, XKB_KEY_q));
}

TEST_F(bindings, see_a_key_as_it_is_without_shift)
{
    user_binds("exclam = spawn no\nshift+exclam = spawn no\nshift+1 = spawn yes\n");
    EXPECT_FALSE(reaches_client({{KEY_LEFTSHIFT}, KEY_1}));
    EXPECT_THAT(started(), ElementsAre("vantore-launch 'yes'"));
}

TEST_F(bindings, of_the_same_chord_run_the_first_only)
{
    add_bind(WLR_MODIFIER_ALT, XKB_KEY_z, ACT_SPAWN, 0, "first");
    add_bind(WLR_MODIFIER_ALT, XKB_KEY_z, ACT_SPAWN, 0, "second");
    EXPECT_FALSE(reaches_client({{KEY_LEFTALT}, KEY_Z}));
    EXPECT_THAT(started(), ElementsAre("vantore-launch 'first'"));
}

handle<xkb_keymap, xkb_keymap_unref> keymap_from(const char *text)
{
    const handle<xkb_context, xkb_context_unref> context{xkb_context_new(XKB_CONTEXT_NO_FLAGS)};
    return handle<xkb_keymap, xkb_keymap_unref>{xkb_keymap_new_from_string(
        context.get(), text, XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS)};
}

// The key of A means two things at once.
constexpr const char *two_syms = R"(xkb_keymap {
    xkb_keycodes { minimum = 8; maximum = 255; <A> = 38; };
    xkb_types { include "complete" };
    xkb_compat { include "complete" };
    xkb_symbols { key <A> { [ { q, e } ] }; };
};)";

TEST_F(bindings, are_offered_every_meaning_of_a_key)
{
    const auto keymap = keymap_from(two_syms);
    ASSERT_NE(keymap, nullptr);
    wlr_keyboard_set_keymap(&keyboard->base, keymap.get());
    EXPECT_TRUE(reaches_client({{}, KEY_A}));
    user_binds("e = spawn e\n");
    EXPECT_FALSE(reaches_client({{}, KEY_A})) << "one that is bound is enough";
    user_binds("q = spawn q\n");
    (void)started();
    EXPECT_FALSE(reaches_client({{}, KEY_A}));
    EXPECT_THAT(started(), ElementsAre("vantore-launch 'q'", "vantore-launch 'e'"));
    user_binds("e = none\n");
    EXPECT_FALSE(reaches_client({{}, KEY_A}));
}

TEST_F(bindings, act_on_the_window_that_was_raised_last)
{
    auto &other = map("other");
    focus_toplevel_ex(&record(*editor), false);
    ASSERT_EQ(focused_toplevel(server), &record(other));
    EXPECT_FALSE(reaches_client(super_q));
    EVENTUALLY_EQ(other.closes(), 1);
    EXPECT_EQ(editor->closes(), 0);
}

TEST_F(bindings, work_again_after_the_tap_of_the_modifier)
{
    EXPECT_FALSE(reaches_client(super_q));
    EXPECT_THAT(heard(), Not(Contains(VNT_EVT_LAUNCHER))) << "a chord is no tap";
}

// Actions

TEST_F(bindings, start_the_terminal)
{
    EXPECT_FALSE(reaches_client({{KEY_LEFTMETA}, KEY_ENTER}));
    EXPECT_THAT(started(), ElementsAre(usual_terminals));
}

TEST_F(bindings, start_nothing_for_an_empty_command)
{
    user_binds("$mod+w = spawn\n");
    EXPECT_FALSE(reaches_client(super_w));
    EXPECT_THAT(started(), IsEmpty());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(bindings, show_a_workspace)
{
    EXPECT_FALSE(reaches_client({{KEY_LEFTMETA}, KEY_3}));
    EXPECT_EQ(output("A").current_ws, &workspace(3));
}

TEST_F(bindings, of_a_workspace_that_does_not_exist_do_nothing)
{
    user_binds("$mod+w = workspace 42\n");
    EXPECT_FALSE(reaches_client(super_w));
    EXPECT_EQ(output("A").current_ws, &workspace(1));
}

TEST_F(bindings, maximize_and_come_back)
{
    EXPECT_FALSE(reaches_client({{KEY_LEFTMETA}, KEY_M}));
    EXPECT_TRUE(record(*editor).maximized);
    EXPECT_FALSE(reaches_client({{KEY_LEFTMETA}, KEY_M}));
    EXPECT_FALSE(record(*editor).maximized);
}

TEST_F(bindings, end_the_session)
{
    EXPECT_TRUE(ends_session({{KEY_LEFTMETA, KEY_LEFTSHIFT}, KEY_ESC}));
}

struct level_case {
    const char *command;
    std::vector<vnt_event> events;
};

TEST_F(bindings, that_change_a_level_tell_the_shell)
{
    const std::vector<level_case> cases{
        {"wpctl set-volume @DEFAULT_AUDIO_SINK@ 5%+", {VNT_EVT_VOLUME}},
        {"wpctl set-mute @DEFAULT_AUDIO_SINK@ toggle", {VNT_EVT_VOLUME}},
        {"sh -c 'wpctl set-volume 1 0; brightnessctl set 1'", {VNT_EVT_VOLUME}},
        {"brightnessctl set +10%", {VNT_EVT_BRIGHTNESS}},
        {"wpctl status", {}},
        {"$terminal", {}},
    };
    for (const level_case &c : cases) {
        user_binds(std::format("alt+z = spawn {}\n", c.command));
        EXPECT_TRUE(handle_keybinding(server, WLR_MODIFIER_ALT, XKB_KEY_z));
        EXPECT_EQ(started().size(), 1U) << c.command;
        EXPECT_EQ(heard(), c.events) << c.command;
    }
}

TEST_F(bindings, of_media_keys_need_no_modifier)
{
    EXPECT_FALSE(reaches_client({{}, KEY_MUTE}));
    EXPECT_FALSE(reaches_client({{}, KEY_BRIGHTNESSUP}));
    EXPECT_THAT(started(), ElementsAre("vantore-launch 'wpctl set-mute @DEFAULT_AUDIO_SINK@ toggle'",
                                       "vantore-launch 'brightnessctl set +10%'"));
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_VOLUME, VNT_EVT_BRIGHTNESS));
}

// Emergency chords

TEST_F(bindings, cannot_replace_the_emergency_chords)
{
    write_config("keybinds.conf", "$mod+ctrl+shift+r = spawn mine\n$mod+ctrl+shift+Return = spawn mine\n"
                                  "$mod+ctrl+shift+Escape = spawn mine\n");
    EXPECT_FALSE(reaches_client(emergency_reload));
    EXPECT_THAT(started(), IsEmpty());
    EXPECT_THAT(heard(), Contains(VNT_EVT_RELOADED));
    EXPECT_FALSE(reaches_client(emergency_terminal));
    EXPECT_THAT(started(), ElementsAre(usual_terminals));
    EXPECT_TRUE(ends_session(emergency_end));
    EXPECT_THAT(started(), IsEmpty());
}

TEST_F(bindings, may_use_the_emergency_modifiers_with_other_keys)
{
    user_binds("$mod+ctrl+shift+x = spawn mine\n");
    EXPECT_FALSE(reaches_client({emergency_end.held, KEY_X}));
    EXPECT_THAT(started(), ElementsAre("vantore-launch 'mine'"));
}

TEST_F(bindings, with_control_as_the_modifier_leave_control_and_shift_to_emergencies)
{
    config("modifier = ctrl\n");
    write_config("keybinds.conf", "ctrl+shift+r = spawn mine\n");
    EXPECT_FALSE(reaches_client({{KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_R}));
    EXPECT_THAT(started(), IsEmpty());
    EXPECT_FALSE(reaches_client({{KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_ENTER}));
    EXPECT_THAT(started(), ElementsAre(usual_terminals));
    EXPECT_TRUE(ends_session({{KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_ESC}));
    EXPECT_THAT(started(), IsEmpty()) << "and no task manager";
}

TEST_F(bindings, of_emergencies_work_in_an_inhibiting_game)
{
    start_game();
    inhibit(*game);
    EXPECT_FALSE(reaches_client(emergency_reload));
    EXPECT_FALSE(reaches_client(emergency_terminal));
    EXPECT_THAT(started(), ElementsAre(usual_terminals));
    EXPECT_TRUE(ends_session(emergency_end));
}

// Inhibitors

TEST_F(bindings, go_to_a_client_that_inhibits_them)
{
    inhibit(*editor);
    EXPECT_TRUE(reaches_client(super_q));
    EXPECT_TRUE(reaches_client({{KEY_LEFTALT}, KEY_TAB}));
    EXPECT_TRUE(reaches_client({{}, KEY_MUTE}));
    EXPECT_TRUE(reaches_client({{KEY_LEFTMETA}, KEY_F10})) << "vantore-clips takes no picture";
    EXPECT_EQ(editor->closes(), 0);
    EXPECT_THAT(started(), IsEmpty());
}

TEST_F(bindings, that_take_pictures_cannot_be_inhibited)
{
    inhibit(*editor);
    EXPECT_FALSE(reaches_client(print));
    EXPECT_FALSE(reaches_client({{KEY_LEFTMETA}, KEY_F11}));
    EXPECT_THAT(started(), ElementsAre("vantore-launch 'vantore-shot --overlay'",
                                       "vantore-launch 'vantore-replay save'"));
}

TEST_F(bindings, are_inhibited_only_while_that_client_has_the_keyboard)
{
    inhibit(*editor);
    auto &other = map("other");
    EXPECT_FALSE(reaches_client(super_q));
    EVENTUALLY_EQ(other.closes(), 1);
    focus_toplevel_ex(&record(*editor), true);
    EXPECT_TRUE(reaches_client(super_q));
}

TEST_F(bindings, come_back_when_the_inhibitor_goes)
{
    inhibit(*editor);
    inhibitor.reset();
    settle();
    EXPECT_FALSE(reaches_client(super_q));
}

// Games

struct game_case {
    const char *name;
    chord pressed;
    bool to_game;
    const char *program; // null for none
};

class in_a_game : public bindings, public testing::WithParamInterface<game_case>
{
};

TEST_P(in_a_game, a_chord_works_or_goes_to_the_game)
{
    user_binds(
        "$mod+w = spawn mine\nalt+F4 = spawn mine\nctrl+shift+z = spawn mine\nctrl+Escape = spawn mine\n");
    start_game();
    EXPECT_EQ(reaches_client(GetParam().pressed), GetParam().to_game);
    if (GetParam().program != nullptr)
        EXPECT_THAT(started(), ElementsAre(std::format("vantore-launch '{}'", GetParam().program)));
    else
        EXPECT_THAT(started(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    of, in_a_game,
    testing::Values(
        game_case{"the_modifier", super_w, false, "mine"},
        game_case{"alt_and_F4", {{KEY_LEFTALT}, KEY_F4}, true, nullptr},
        game_case{"volume", {{}, KEY_VOLUMEUP}, false, "wpctl set-volume -l 1.0 @DEFAULT_AUDIO_SINK@ 5%+"},
        game_case{"alt_and_tab", {{KEY_LEFTALT}, KEY_TAB}, false, nullptr},
        game_case{"the_task_manager", {{KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_ESC}, false, "vantore-tasks"},
        game_case{"control_and_shift", {{KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_Z}, true, nullptr},
        game_case{"control_and_escape", {{KEY_LEFTCTRL}, KEY_ESC}, true, nullptr},
        game_case{"print", print, true, nullptr}),
    [](const auto &c) { return c.param.name; });

TEST_F(bindings, that_take_pictures_run_in_a_game_that_inhibits_them)
{
    start_game();
    inhibit(*game);
    EXPECT_FALSE(reaches_client(print));
    EXPECT_THAT(started(), ElementsAre("vantore-launch 'vantore-shot --overlay'"));
}

TEST_F(bindings, that_change_the_volume_show_no_level_over_a_game)
{
    start_game();
    EXPECT_FALSE(reaches_client({{}, KEY_VOLUMEUP}));
    EXPECT_EQ(started().size(), 1U);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(bindings, of_the_modifier_alone_are_the_games)
{
    start_game();
    keyboard->tap(KEY_LEFTMETA);
    keyboard->press(KEY_LEFTMETA);
    world.advance_clock_ms(1500);
    settle();
    EXPECT_FALSE(server.tap.shortcuts_shown);
    keyboard->release(KEY_LEFTMETA);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(bindings, of_the_modifier_alone_are_forgotten_when_a_game_starts_meanwhile)
{
    keyboard->press(KEY_LEFTMETA);
    start_game();
    keyboard->release(KEY_LEFTMETA);
    settle();
    EXPECT_FALSE(server.tap.mod_tapped);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(bindings, hide_the_shortcuts_when_the_modifier_is_pressed_again_in_a_game)
{
    keyboard->press(KEY_LEFTMETA);
    world.advance_clock_ms(1500);
    EVENTUALLY(server.tap.shortcuts_shown);
    start_game();
    keyboard->press(KEY_RIGHTMETA);
    EXPECT_FALSE(server.tap.shortcuts_shown);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_SHORTCUTS));
    keyboard->release(KEY_RIGHTMETA);
    keyboard->release(KEY_LEFTMETA);
    EXPECT_THAT(heard(), IsEmpty());
}

// What counts as a game

TEST_F(bindings, know_a_game_by_the_size_of_its_window)
{
    EXPECT_FALSE(focused_is_fullscreen(server)) << "a small window";
    EXPECT_FALSE(covers_output(record(map("narrow", {screen.width - 1, screen.height}))));
    EXPECT_FALSE(focused_is_fullscreen(server));
    EXPECT_FALSE(covers_output(record(map("low", {screen.width, screen.height - 1}))));
    auto &full = map("full", screen);
    EXPECT_TRUE(covers_output(record(full)));
    EXPECT_TRUE(focused_is_fullscreen(server));
    focus_toplevel_ex(&record(*editor), true);
    EXPECT_FALSE(focused_is_fullscreen(server)) << "it does not have the keyboard";
}

TEST_F(bindings, know_a_game_by_its_state)
{
    record(*editor).fullscreen = true;
    EXPECT_TRUE(focused_is_fullscreen(server));
    record(*editor).fullscreen = false;
    EXPECT_FALSE(focused_is_fullscreen(server));
}

TEST_F(bindings, know_no_game_where_nothing_has_the_keyboard)
{
    start_game();
    focus_clear(server);
    EXPECT_FALSE(focused_is_fullscreen(server));
}

TEST_F(bindings, know_no_game_on_a_workspace_that_is_not_shown)
{
    start_game();
    command("workspace 2");
    EXPECT_FALSE(covers_output(record(*game)));
}

// The start

struct start_with_bindings : test::unstarted_desktop {
};

TEST_F(start_with_bindings, reads_the_users_file)
{
    write_config("keybinds.conf", "$mod+w = spawn mine\n$mod+q = none\n");
    start();
    EXPECT_EQ(g_bind_count, 86);
    EXPECT_TRUE(handle_keybinding(server, WLR_MODIFIER_LOGO, XKB_KEY_w));
    EXPECT_FALSE(handle_keybinding(server, WLR_MODIFIER_LOGO, XKB_KEY_q));
}

} // namespace
