// Keys on their way from keyboards to clients, and what tapping and holding the modifier does.

#include "support/desktop.hpp"
#include "support/wayland_devices.hpp"
#include "support/wayland_text.hpp"

#include "config/settings.hpp"
#include "input/input_method.hpp"
#include "input/keymap.hpp"
#include "input/modifier_tap.hpp"
#include "input/overview.hpp"
#include "text.hpp"

#include <linux/input-event-codes.h>

using test::keymap_text;
using test::made_up_keyboard;
using test::made_up_pointer;
using test::seat;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

// A window that has the keyboard, and everything that its client hears.
struct keys : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        editor = &map("editor");
        ears = std::make_unique<seat>(editor->owner());
    }

    void TearDown() override
    {
        watch.reset();
        ears.reset();
        desktop::TearDown();
    }

    // The client knows of the keyboard when this returns.
    made_up_keyboard &plug_keyboard(const std::string &name = "keyboard")
    {
        auto &keyboard = desktop::plug_keyboard(name);
        settle();
        return keyboard;
    }

    // Returns the keys that the client has heard, without modifiers and other events.
    std::vector<std::string> heard_keys()
    {
        settle();
        auto events = ears->take();
        std::erase_if(events, [](const std::string &e) { return !e.starts_with("key "); });
        return events;
    }

    std::vector<std::string> all_heard()
    {
        settle();
        return ears->take();
    }

    // Returns the events of the socket that concern the modifier.
    std::vector<vnt_event> told()
    {
        settle();
        auto events = heard();
        std::erase_if(events, [](vnt_event e) { return e != VNT_EVT_LAUNCHER && e != VNT_EVT_SHORTCUTS; });
        return events;
    }

    window *editor = nullptr;
    std::unique_ptr<seat> ears;
    std::unique_ptr<test::idle_watch> watch;
};

TEST_F(keys, reach_the_window_that_has_the_keyboard)
{
    auto &keyboard = plug_keyboard();
    EVENTUALLY(ears->heard("keys enter editor"));
    keyboard.tap(KEY_A);
    EXPECT_THAT(heard_keys(), ElementsAre("key down 30", "key up 30"));
}

TEST_F(keys, go_to_the_newest_window_only)
{
    auto &keyboard = plug_keyboard();
    auto &other = map("other");
    seat other_ears{other.owner()};
    EVENTUALLY(other_ears.heard("keys enter other"));
    (void)all_heard();
    keyboard.tap(KEY_B);
    EVENTUALLY(other_ears.heard("key up 48"));
    EXPECT_THAT(all_heard(), IsEmpty());
}

TEST_F(keys, bring_their_modifiers_along)
{
    auto &keyboard = plug_keyboard();
    (void)all_heard();
    keyboard.press(KEY_LEFTSHIFT);
    keyboard.release(KEY_LEFTSHIFT);
    EXPECT_THAT(all_heard(), ElementsAre("key down 42", "modifiers 1 0 0", "key up 42", "modifiers 0 0 0"));
}

TEST_F(keys, of_two_keyboards_come_with_the_keymap_of_the_one_in_use)
{
    auto &first = plug_keyboard("first");
    auto &second = plug_keyboard("second");
    second.use_keymap("fr");
    first.tap(KEY_A);
    settle();
    EXPECT_THAT(ears->keymap(), HasSubstr("English"));
    const int before = ears->keymaps();
    second.tap(KEY_A);
    settle();
    EXPECT_EQ(ears->keymaps(), before + 1);
    EXPECT_THAT(ears->keymap(), HasSubstr("French"));
    EXPECT_EQ(wlr_seat_get_keyboard(server.seat), &second.base);
}

TEST_F(keys, of_two_keyboards_come_with_the_modifiers_of_the_one_in_use)
{
    auto &first = plug_keyboard("first");
    auto &second = plug_keyboard("second");
    first.press(KEY_LEFTSHIFT);
    (void)all_heard();
    second.tap(KEY_A);
    EXPECT_THAT(all_heard(), Contains("modifiers 0 0 0"));
    first.tap(KEY_A);
    EXPECT_THAT(all_heard(), Contains("modifiers 1 0 0"));
}

TEST_F(keys, repeat_25_times_a_second_after_600_milliseconds)
{
    EXPECT_EQ(g_kb_repeat_rate, 25);
    EXPECT_EQ(g_kb_repeat_delay, 600);
}

TEST_F(keys, repeat_as_configured)
{
    g_kb_repeat_rate = 40;
    g_kb_repeat_delay = 250;
    plug_keyboard();
    EVENTUALLY_EQ(ears->repeat_rate(), 40);
    EXPECT_EQ(ears->repeat_delay(), 250);
    g_kb_repeat_rate = 25; // loading the configuration would not reset these
    g_kb_repeat_delay = 600;
}

TEST_F(keys, of_an_unknown_code_reach_the_client)
{
    auto &keyboard = plug_keyboard();
    keyboard.tap(700); // beyond what the keymap knows
    EXPECT_THAT(heard_keys(), ElementsAre("key down 700", "key up 700"));
}

TEST_F(keys, of_a_keyboard_that_goes_leave_the_next_one_on_the_seat)
{
    auto &first = plug_keyboard("first");
    auto &second = plug_keyboard("second");
    EXPECT_EQ(wlr_seat_get_keyboard(server.seat), &second.base);
    unplug_device(second);
    EXPECT_EQ(wlr_seat_get_keyboard(server.seat), &first.base);
    first.tap(KEY_C);
    EXPECT_THAT(heard_keys(), ElementsAre("key down 46", "key up 46"));
}

TEST_F(keys, of_a_keyboard_that_was_not_in_use_may_go_without_a_change)
{
    auto &first = plug_keyboard("first");
    auto &second = plug_keyboard("second");
    unplug_device(first);
    EXPECT_EQ(wlr_seat_get_keyboard(server.seat), &second.base);
}

TEST_F(keys, prefer_a_real_keyboard_when_one_goes)
{
    auto &old = plug_keyboard("old");
    auto &newest = plug_keyboard("newest");
    test::virtual_keyboard typist{*ears};
    EVENTUALLY_EQ(wl_list_length(&server.keyboards), 3);
    wlr_seat_set_keyboard(server.seat, &newest.base);
    unplug_device(newest);
    EXPECT_EQ(wlr_seat_get_keyboard(server.seat), &old.base);
}

TEST_F(keys, fall_to_a_virtual_keyboard_when_no_real_one_is_left)
{
    auto &only = plug_keyboard();
    test::virtual_keyboard mute{*ears}, typist{*ears}, mute_too{*ears};
    typist.keymap(keymap_text("fr"));
    EVENTUALLY_EQ(wl_list_length(&server.keyboards), 4);
    wlr_seat_set_keyboard(server.seat, &only.base);
    unplug_device(only);
    wlr_keyboard *left = wlr_seat_get_keyboard(server.seat);
    ASSERT_NE(left, nullptr);
    EXPECT_NE(wlr_input_device_get_virtual_keyboard(&left->base), nullptr);
    EXPECT_NE(left->keymap, nullptr);
}

TEST_F(keys, of_a_virtual_keyboard_count_once_it_has_a_keymap)
{
    auto &real = plug_keyboard();
    settle();
    const int before = ears->keymaps();
    test::virtual_keyboard typist{*ears};
    EVENTUALLY_EQ(wl_list_length(&server.keyboards), 2);
    settle();
    EXPECT_EQ(wlr_seat_get_keyboard(server.seat), &real.base);
    EXPECT_EQ(ears->keymaps(), before);
    typist.keymap(keymap_text("fr"));
    EVENTUALLY(wlr_seat_get_keyboard(server.seat) != &real.base);
    EVENTUALLY_EQ(ears->keymaps(), before + 1);
    EXPECT_THAT(ears->keymap(), HasSubstr("French"));
    real.tap(KEY_A);
    typist.keymap(keymap_text("de"));
    settle();
    EXPECT_EQ(wlr_seat_get_keyboard(server.seat), &real.base) << "a later keymap changes nothing";
}

TEST_F(keys, of_keyboards_with_equal_settings_come_with_one_keymap)
{
    auto &first = plug_keyboard("first");
    settle();
    const int before = ears->keymaps();
    auto &second = plug_keyboard("second");
    EXPECT_EQ(first.base.keymap, second.base.keymap);
    first.tap(KEY_A);
    second.tap(KEY_A);
    first.tap(KEY_A);
    EVENTUALLY(ears->heard("key up 30"));
    settle();
    EXPECT_EQ(ears->keymaps(), before);
}

TEST_F(keys, of_a_keyboard_without_any_keymap_still_arrive)
{
    copy_text(g_kb_layout, "no-such-layout");
    auto &keyboard = plug_keyboard();
    EXPECT_EQ(keyboard.base.keymap, nullptr);
    keyboard.tap(KEY_A);
    EXPECT_THAT(heard_keys(), ElementsAre("key down 30", "key up 30"));
}

// Layouts

TEST_F(keys, have_the_configured_layout_variant_and_options)
{
    copy_text(g_kb_layout, "de");
    copy_text(g_kb_variant, "nodeadkeys");
    copy_text(g_kb_options, "ctrl:swapcaps");
    auto &keyboard = plug_keyboard();
    xkb_keymap *keymap = keyboard.base.keymap;
    ASSERT_NE(keymap, nullptr);
    EXPECT_STREQ(xkb_keymap_layout_get_name(keymap, 0), "German (no dead keys)");
    const xkb_keysym_t *syms = nullptr;
    ASSERT_EQ(xkb_keymap_key_get_syms_by_level(keymap, KEY_CAPSLOCK + 8, 0, 0, &syms), 1);
    EXPECT_EQ(syms[0], xkb_keysym_t{XKB_KEY_Control_L});
}

TEST_F(keys, without_a_layout_ignore_variant_and_options)
{
    copy_text(g_kb_variant, "nodeadkeys");
    copy_text(g_kb_options, "ctrl:swapcaps");
    auto &keyboard = plug_keyboard();
    const xkb_keysym_t *syms = nullptr;
    ASSERT_EQ(xkb_keymap_key_get_syms_by_level(keyboard.base.keymap, KEY_CAPSLOCK + 8, 0, 0, &syms), 1);
    EXPECT_EQ(syms[0], xkb_keysym_t{XKB_KEY_Caps_Lock});
}

TEST_F(keys, keep_their_keymap_when_the_layout_does_not_compile)
{
    auto &keyboard = plug_keyboard();
    keyboard.use_keymap("fr");
    copy_text(g_kb_layout, "no-such-layout");
    keyboard_apply_layout(&keyboard.base);
    EXPECT_STREQ(xkb_keymap_layout_get_name(keyboard.base.keymap, 0), "French");
    EXPECT_THAT(
        world.log(),
        HasSubstr(
            "vantore-comp: keyboard layout 'no-such-layout' failed to compile — keeping the current one\n"));
}

// Virtual terminals

struct seat_session : keys {
    void SetUp() override
    {
        keys::SetUp();
        server.session = &made_up;
        keyboard = &plug_keyboard();
    }

    void TearDown() override
    {
        server.session = nullptr;
        keys::TearDown();
    }

    void control_alt(uint32_t key)
    {
        keyboard->press(KEY_LEFTCTRL);
        keyboard->press(KEY_LEFTALT);
        (void)heard_keys();
        keyboard->press(key);
        const auto to_client = heard_keys();
        keyboard->release(key);
        keyboard->release(KEY_LEFTALT);
        keyboard->release(KEY_LEFTCTRL);
        press_heard = !to_client.empty();
    }

    wlr_session made_up{};
    made_up_keyboard *keyboard = nullptr;
    bool press_heard = false;
};

TEST_F(seat_session, switches_the_terminal_with_control_alt_and_a_function_key)
{
    control_alt(KEY_F1);
    EXPECT_FALSE(press_heard);
    control_alt(KEY_F2);
    control_alt(KEY_F12);
    EXPECT_THAT(world.virtual_terminals(), ElementsAre(1U, 2U, 12U));
}

TEST_F(seat_session, switches_the_terminal_while_locked)
{
    server.locked = true;
    control_alt(KEY_F2);
    EXPECT_THAT(world.virtual_terminals(), ElementsAre(2U));
    EXPECT_FALSE(press_heard);
    server.locked = false;
}

TEST_F(seat_session, switches_no_terminal_in_the_overview)
{
    overview_toggle(server);
    ASSERT_TRUE(server.overview.active);
    control_alt(KEY_F2);
    EXPECT_THAT(world.virtual_terminals(), IsEmpty());
    EXPECT_FALSE(press_heard);
    overview_end(server);
}

TEST_F(seat_session, leaves_plain_function_keys_to_the_client)
{
    keyboard->tap(KEY_F2);
    EXPECT_THAT(heard_keys(), ElementsAre("key down 60", "key up 60"));
    EXPECT_THAT(world.virtual_terminals(), IsEmpty());
}

TEST_F(keys, switch_no_terminal_without_a_login_session)
{
    auto &keyboard = plug_keyboard();
    keyboard.press(KEY_LEFTCTRL);
    keyboard.press(KEY_LEFTALT);
    keyboard.press(KEY_F2);
    EXPECT_THAT(heard_keys(), Contains("key down 60"));
    EXPECT_THAT(world.virtual_terminals(), IsEmpty());
}

// The modifier alone

TEST_F(keys, tapping_the_modifier_asks_for_the_launcher)
{
    auto &keyboard = plug_keyboard();
    keyboard.press(KEY_LEFTMETA);
    EXPECT_THAT(told(), IsEmpty());
    keyboard.release(KEY_LEFTMETA);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_LAUNCHER));
    EXPECT_THAT(heard_keys(), ElementsAre("key down 125", "key up 125")) << "the client hears of it too";
}

TEST_F(keys, either_modifier_key_counts)
{
    auto &keyboard = plug_keyboard();
    keyboard.tap(KEY_RIGHTMETA);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_LAUNCHER));
}

TEST_F(keys, a_tap_may_last_until_just_before_the_hold)
{
    auto &keyboard = plug_keyboard();
    keyboard.press(KEY_LEFTMETA);
    advance_clock_ms(1499);
    settle();
    keyboard.release(KEY_LEFTMETA);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_LAUNCHER));
}

TEST_F(keys, holding_the_modifier_shows_the_shortcuts_until_it_is_released)
{
    auto &keyboard = plug_keyboard();
    keyboard.press(KEY_LEFTMETA);
    advance_clock_ms(1500);
    EVENTUALLY(server.tap.shortcuts_shown);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_SHORTCUTS));
    keyboard.release(KEY_LEFTMETA);
    EXPECT_FALSE(server.tap.shortcuts_shown);
    EXPECT_FALSE(server.tap.mod_tapped);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_SHORTCUTS)) << "and no launcher";
}

TEST_F(keys, another_key_ends_the_tap)
{
    auto &keyboard = plug_keyboard();
    keyboard.press(KEY_LEFTMETA);
    keyboard.press(KEY_L);
    EXPECT_FALSE(server.tap.mod_tapped);
    keyboard.release(KEY_L);
    keyboard.release(KEY_LEFTMETA);
    advance_clock_ms(5000);
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(keys, another_key_hides_the_shortcuts)
{
    auto &keyboard = plug_keyboard();
    keyboard.press(KEY_LEFTMETA);
    advance_clock_ms(1500);
    EVENTUALLY(server.tap.shortcuts_shown);
    (void)told();
    keyboard.press(KEY_L);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_SHORTCUTS));
    keyboard.release(KEY_L);
    keyboard.release(KEY_LEFTMETA);
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(keys, a_pointer_button_ends_the_tap)
{
    auto &keyboard = plug_keyboard();
    auto &pointer = plug_pointer();
    keyboard.press(KEY_LEFTMETA);
    pointer.release(BTN_LEFT);
    EXPECT_FALSE(server.tap.mod_tapped);
    keyboard.release(KEY_LEFTMETA);
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(keys, a_pointer_button_hides_the_shortcuts)
{
    auto &keyboard = plug_keyboard();
    auto &pointer = plug_pointer();
    keyboard.press(KEY_LEFTMETA);
    advance_clock_ms(1500);
    EVENTUALLY(server.tap.shortcuts_shown);
    (void)told();
    pointer.press(BTN_LEFT);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_SHORTCUTS));
    EXPECT_FALSE(server.tap.shortcuts_shown);
}

TEST_F(keys, no_shortcuts_are_shown_over_a_lock)
{
    auto &keyboard = plug_keyboard();
    keyboard.press(KEY_LEFTMETA);
    server.locked = true;
    advance_clock_ms(1500);
    EXPECT_THAT(told(), IsEmpty());
    server.locked = false;
}

TEST_F(keys, force_hiding_tells_only_when_something_was_shown)
{
    server.tap.mod_tapped = true;
    shortcuts_force_hide(server);
    EXPECT_FALSE(server.tap.mod_tapped);
    EXPECT_THAT(told(), IsEmpty());
    server.tap.shortcuts_shown = true;
    shortcuts_force_hide(server);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_SHORTCUTS));
}

struct modifier_case {
    uint32_t configured;
    std::vector<uint32_t> keys; // the keys that count as the configured modifier
    std::vector<uint32_t> others;
};

class configured_modifier : public keys, public testing::WithParamInterface<modifier_case>
{
};

TEST_P(configured_modifier, is_the_one_whose_tap_counts)
{
    auto &keyboard = plug_keyboard();
    server.wm_modifier = GetParam().configured;
    for (const uint32_t key : GetParam().others)
        keyboard.tap(key);
    EXPECT_THAT(told(), IsEmpty());
    for (const uint32_t key : GetParam().keys) {
        keyboard.tap(key);
        EXPECT_THAT(told(), ElementsAre(VNT_EVT_LAUNCHER));
    }
}

INSTANTIATE_TEST_SUITE_P(
    all, configured_modifier,
    testing::Values(
        modifier_case{WLR_MODIFIER_CTRL, {KEY_LEFTCTRL, KEY_RIGHTCTRL}, {KEY_LEFTALT, KEY_LEFTMETA}},
        modifier_case{WLR_MODIFIER_ALT, {KEY_LEFTALT}, {KEY_LEFTCTRL, KEY_LEFTMETA}},
        modifier_case{WLR_MODIFIER_LOGO, {KEY_LEFTMETA, KEY_RIGHTMETA}, {KEY_LEFTALT, KEY_LEFTCTRL}}));

TEST_F(keys, the_right_alt_key_counts_where_it_is_one)
{
    server.wm_modifier = WLR_MODIFIER_ALT;
    auto &keyboard = plug_keyboard();
    keyboard.use_keymap("us");
    keyboard.tap(KEY_RIGHTALT);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_LAUNCHER));
}

TEST_F(keys, shift_does_not_change_what_the_modifier_key_is)
{
    auto &keyboard = plug_keyboard();
    // Gives the key a second level, so that it means another symbol with Shift.
    std::string keymap = keyboard.base.keymap_string;
    const size_t end_of_levels = keymap.find(']', keymap.find("key <LWIN>"));
    ASSERT_NE(end_of_levels, std::string::npos);
    keymap.insert(end_of_levels, ", Hyper_L ");
    keyboard.use_keymap_text(keymap);
    keyboard.press(KEY_LEFTSHIFT);
    ASSERT_EQ(xkb_state_key_get_one_sym(keyboard.base.xkb_state, KEY_LEFTMETA + 8),
              xkb_keysym_t{XKB_KEY_Hyper_L});
    keyboard.tap(KEY_LEFTMETA);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_LAUNCHER));
}

// Input methods

struct method_relay : vantore_ime_relay {
    listener new_input_method;
};

void take_input_method(method_relay &relay, wlr_input_method_v2 *method)
{
    relay.input_method = method;
}

struct typing_with_a_method : keys {
    void SetUp() override
    {
        keys::SetUp();
        auto *manager = wlr_input_method_manager_v2_create(server.display);
        listen<&method_relay::new_input_method, take_input_method>(relay, manager->events.new_input_method);
        server.ime = &relay;
        keyboard = &plug_keyboard();
        settle();
        method = std::make_unique<test::input_method>(*ears);
        EVENTUALLY(relay.input_method != nullptr);
    }

    void TearDown() override
    {
        method.reset();
        server.ime = nullptr;
        unlisten(relay.new_input_method);
        keys::TearDown();
    }

    void grab()
    {
        method->grab_keyboard();
        settle();
        (void)method->take();
        (void)ears->take();
    }

    method_relay relay;
    made_up_keyboard *keyboard = nullptr;
    std::unique_ptr<test::input_method> method;
};

TEST_F(typing_with_a_method, gives_it_the_keys_while_it_holds_the_keyboard)
{
    grab();
    keyboard->tap(KEY_A);
    settle();
    EXPECT_THAT(method->take(), ElementsAre("modifiers 0 0 0", "key down 30", "key up 30"));
    EXPECT_THAT(heard_keys(), IsEmpty());
    EXPECT_GT(method->keymaps(), 0);
}

TEST_F(typing_with_a_method, gives_it_the_modifiers_too)
{
    grab();
    keyboard->press(KEY_LEFTSHIFT);
    settle();
    EXPECT_THAT(method->take(), ElementsAre("modifiers 0 0 0", "key down 42", "modifiers 1 0 0"));
    EXPECT_THAT(all_heard(), IsEmpty());
}

TEST_F(typing_with_a_method, leaves_keys_to_the_client_before_and_after)
{
    keyboard->tap(KEY_A);
    EXPECT_THAT(heard_keys(), ElementsAre("key down 30", "key up 30"));
    grab();
    method->release_keyboard();
    settle();
    keyboard->tap(KEY_B);
    EXPECT_THAT(heard_keys(), ElementsAre("key down 48", "key up 48"));
}

TEST_F(typing_with_a_method, never_shows_it_what_is_typed_into_a_lock)
{
    grab();
    server.locked = true;
    keyboard->tap(KEY_A);
    EXPECT_THAT(heard_keys(), ElementsAre("key down 30", "key up 30"));
    EXPECT_THAT(method->take(), IsEmpty());
    server.locked = false;
}

TEST_F(typing_with_a_method, leaves_key_bindings_to_the_desktop)
{
    grab();
    keyboard->press(KEY_LEFTMETA);
    keyboard->press(KEY_V);
    settle();
    EXPECT_THAT(heard(), Contains(VNT_EVT_CLIPBOARD));
    EXPECT_THAT(method->take(), Not(Contains("key down 47")));
    keyboard->release(KEY_V);
    keyboard->release(KEY_LEFTMETA);
}

TEST_F(typing_with_a_method, still_hears_the_modifier_tap)
{
    grab();
    keyboard->tap(KEY_LEFTMETA);
    EXPECT_THAT(told(), ElementsAre(VNT_EVT_LAUNCHER));
}

// Idleness

struct idleness : keys {
    void SetUp() override
    {
        keys::SetUp();
        server.idle_notifier = wlr_idle_notifier_v1_create(server.display);
        keyboard = &plug_keyboard();
        pointer = &plug_pointer();
        settle();
        watch = std::make_unique<test::idle_watch>(*ears);
        EVENTUALLY(watch->times_idle() > 0);
    }

    made_up_keyboard *keyboard = nullptr;
    made_up_pointer *pointer = nullptr;
};

TEST_F(idleness, ends_with_each_press_and_release_also_while_locked)
{
    server.locked = true;
    keyboard->press(KEY_A);
    EVENTUALLY_EQ(watch->times_active(), 1);
    EVENTUALLY_EQ(watch->times_idle(), 2);
    keyboard->release(KEY_A);
    EVENTUALLY_EQ(watch->times_active(), 2);
    server.locked = false;
}

struct user_action {
    const char *name;
    void (*act)(made_up_pointer &);
};

class pointer_activity : public idleness, public testing::WithParamInterface<user_action>
{
};

TEST_P(pointer_activity, ends_idleness)
{
    GetParam().act(*pointer);
    EVENTUALLY_EQ(watch->times_active(), 1);
}

INSTANTIATE_TEST_SUITE_P(of, pointer_activity,
                         testing::Values(user_action{"motion", [](made_up_pointer &p) { p.move(1, 1); }},
                                         user_action{"absolute_motion",
                                                     [](made_up_pointer &p) { p.move_to(0.5, 0.5); }},
                                         user_action{"button", [](made_up_pointer &p) { p.press(BTN_LEFT); }},
                                         user_action{"wheel",
                                                     [](made_up_pointer &p) {
                                                         p.scroll(WL_POINTER_AXIS_VERTICAL_SCROLL, 15, 120);
                                                     }}),
                         [](const auto &action) { return action.param.name; });

} // namespace
