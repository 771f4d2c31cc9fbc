// A reload of the configuration in a running session.

#include "reload.hpp"
#include "support/desktop.hpp"
#include "support/notifications.hpp"
#include "support/wayland_devices.hpp"

#include "config/keybinds.hpp"
#include "config/settings.hpp"
#include "input/cursor_image.hpp"
#include "text.hpp"

#include <csignal>
#include <linux/input-event-codes.h>

using test::made_up_keyboard;
using test::notifications_in;
using test::seat;
using unstarted_desktop = test::unstarted_desktop;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

struct reload : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1920, 1080);
        settle();
        (void)heard();
    }

    // Writes a file that the compositor does not read yet.
    void write(const std::string &name, std::string_view text) const { world.write_config(name, text); }

    static std::string layout_of(const made_up_keyboard &keyboard)
    {
        const char *name = xkb_keymap_layout_get_name(keyboard.base.keymap, 0);
        return name != nullptr ? name : "";
    }
};

// What starts a reload

struct reload_trigger {
    const char *name;
    std::vector<uint32_t> held; // empty for the signal
};

class started_by : public reload, public testing::WithParamInterface<reload_trigger>
{
};

TEST_P(started_by, key_or_signal_a_reload_is_the_same)
{
    auto &keyboard = plug_keyboard();
    write("compositor.conf", "gaps = 20\nnonsense = 1\n");
    if (GetParam().held.empty())
        raise(SIGHUP);
    for (const uint32_t key : GetParam().held)
        keyboard.press(key);
    keyboard.tap(KEY_R);
    for (const uint32_t key : GetParam().held)
        keyboard.release(key);
    EVENTUALLY_EQ(g_gap, 20);
    EXPECT_EQ(notifications_in(world).size(), 1U);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES, VNT_EVT_RELOADED));
}

INSTANTIATE_TEST_SUITE_P(all, started_by,
                         testing::Values(reload_trigger{"SIGHUP", {}},
                                         reload_trigger{"the binding", {KEY_LEFTMETA, KEY_LEFTSHIFT}},
                                         reload_trigger{"the emergency chord",
                                                        {KEY_LEFTMETA, KEY_LEFTCTRL, KEY_LEFTSHIFT}}));

TEST_F(reload, waits_for_the_event_loop)
{
    write("compositor.conf", "gaps = 20\n");
    const int before = g_gap;
    raise(SIGHUP);
    raise(SIGHUP);
    EXPECT_EQ(g_gap, before);
    EVENTUALLY_EQ(g_gap, 20);
    settle();
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES, VNT_EVT_RELOADED)) << "two signals are one";
}

// What a reload changes

TEST_F(reload, arranges_windows_with_the_new_gaps_and_layouts)
{
    const vantore_toplevel &t = record(map("editor"));
    write("compositor.conf", "gaps = 20\ndefault_layout = tiling\n");
    config_reload(server);
    EXPECT_EQ(workspace(1).layout, VANTORE_LAYOUT_TILING);
    EVENTUALLY_EQ(toplevel_box(t), (wlr_box{20, 20, 1880, 1040}));
}

TEST_F(reload, renames_workspaces_and_lays_them_out_anew)
{
    write("workspaces.conf", "1 = WWW, layout=tiling, tile_mode=grid\n2 = Mail\n");
    config_reload(server);
    EXPECT_EQ(text_of(workspace(1).name), "WWW");
    EXPECT_EQ(workspace(1).layout, VANTORE_LAYOUT_TILING);
    EXPECT_EQ(workspace(1).tile_mode, TM_GRID);
    EXPECT_EQ(text_of(workspace(2).name), "Mail");
    EXPECT_EQ(workspace(2).layout, VANTORE_LAYOUT_FLOATING);
}

TEST_F(reload, gives_every_keyboard_its_layout_and_repetition)
{
    auto &first = plug_keyboard("first"), &second = plug_keyboard("second");
    auto &editor = map("editor");
    const seat ears{editor.owner()};
    settle();
    ASSERT_EQ(layout_of(first), "English (US)");
    write("input.conf", "keyboard_layout = de\nkeyboard_repeat_rate = 40\nkeyboard_repeat_delay = 300\n");
    config_reload(server);
    for (const made_up_keyboard *keyboard : {&first, &second}) {
        EXPECT_EQ(layout_of(*keyboard), "German");
        EXPECT_EQ(keyboard->base.repeat_info.rate, 40);
        EXPECT_EQ(keyboard->base.repeat_info.delay, 300);
    }
    EVENTUALLY(ears.repeat_rate() == 40 && ears.repeat_delay() == 300);
}

TEST_F(reload, leaves_a_keyboard_alone_that_has_its_layout_already)
{
    write("input.conf", "keyboard_layout = us,de\n");
    config_reload(server);
    auto &keyboard = plug_keyboard();
    wlr_keyboard_notify_modifiers(&keyboard.base, 0, 0, 2, 1); // Caps Lock, and the second layout
    auto &other = plug_keyboard("other");
    other.use_keymap("fr");
    config_reload(server);
    EXPECT_EQ(keyboard.base.modifiers.locked, 2U);
    EXPECT_EQ(keyboard.base.modifiers.group, 1U);
    EXPECT_EQ(other.base.keymap, keyboard.base.keymap);
}

TEST_F(reload, by_a_key_may_change_the_layout_of_the_keyboard_that_it_is_on)
{
    auto &keyboard = plug_keyboard();
    write("input.conf", "keyboard_layout = de\n");
    static constexpr uint32_t chord[]{KEY_LEFTMETA, KEY_LEFTSHIFT, KEY_R};
    for (const uint32_t key : chord)
        keyboard.press(key);
    EXPECT_EQ(layout_of(keyboard), "German");
    EXPECT_EQ(wlr_keyboard_get_modifiers(&keyboard.base), uint32_t{WLR_MODIFIER_LOGO | WLR_MODIFIER_SHIFT});
    for (const uint32_t key : chord)
        keyboard.release(key);
    EXPECT_EQ(wlr_keyboard_get_modifiers(&keyboard.base), 0U);
}

TEST_F(reload, replaces_the_key_bindings)
{
    auto &keyboard = plug_keyboard();
    const auto started = [&] { return world.spawned().back(); };
    write("keybinds.conf", "$mod+w = spawn mine\n");
    config_reload(server);
    keyboard.press(KEY_LEFTMETA);
    keyboard.tap(KEY_W);
    EXPECT_EQ(started(), "vantore-launch 'mine'");
    write("keybinds.conf", "$mod+e = spawn other\n");
    config_reload(server);
    keyboard.tap(KEY_W);
    EXPECT_EQ(started(), "vantore-launch 'mine'") << "bound no longer";
    keyboard.tap(KEY_E);
    EXPECT_EQ(started(), "vantore-launch 'other'");
    keyboard.release(KEY_LEFTMETA);
}

TEST_F(reload, maps_touchscreens_again)
{
    plug("B", 800, 600);
    auto &touch = plug_touch("touch", "A");
    const auto lx_of_middle = [&] {
        double lx = 0, ly = 0;
        wlr_cursor_absolute_to_layout_coords(server.cursor, &touch.base.base, 0.5, 0.5, &lx, &ly);
        return lx;
    };
    EXPECT_EQ(lx_of_middle(), 960);
    write("input.conf", "touch_output = B\n");
    config_reload(server);
    EXPECT_EQ(lx_of_middle(), output_layout_box(output("B")).x + 400);
}

TEST_F(reload, gives_and_takes_shadows_and_roundings_of_rules)
{
    const vantore_toplevel &bare = record(map("bare")), &plain = record(map("plain")),
                           &nameless = record(map(""));
    write("rules.conf", "bare -> noshadow, float\n* -> noround\n");
    config_reload(server);
    EXPECT_TRUE(bare.no_shadow);
    EXPECT_FALSE(bare.no_round);
    EXPECT_FALSE(bare.floating) << "that part of a rule is for windows that map";
    EXPECT_TRUE(plain.no_round);
    EXPECT_FALSE(nameless.no_round);
    write("rules.conf", "");
    config_reload(server);
    EXPECT_FALSE(bare.no_shadow || plain.no_round);
}

TEST_F(reload, does_not_start_the_users_programs_again)
{
    write("autostart.conf", "tray\n");
    const size_t before = world.spawned().size();
    config_reload(server);
    EXPECT_EQ(world.spawned().size(), before);
}

// The cursor

TEST_F(unstarted_desktop, the_cursors_theme_and_size_take_effect_at_the_first_reload_and_not_before)
{
    config("cursor_theme = Adwaita\ncursor_size = 48\n");
    start();
    EXPECT_EQ(server.xcursor_mgr->name, nullptr);
    EXPECT_EQ(server.xcursor_mgr->size, 24U);
    config_reload(server);
    EXPECT_STREQ(server.xcursor_mgr->name, "Adwaita");
    EXPECT_EQ(server.xcursor_mgr->size, 48U);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
}

TEST_F(reload, loads_the_cursor_at_first_and_then_only_when_it_changed)
{
    const auto loaded = [&] {
        const auto *before = server.xcursor_mgr;
        config_reload(server);
        return server.xcursor_mgr != before;
    };
    EXPECT_TRUE(loaded()) << "the first call always does";
    EXPECT_FALSE(loaded());
    write("compositor.conf", "cursor_size = -5\n");
    EXPECT_FALSE(loaded()) << "that is the usual size";
    EXPECT_EQ(server.xcursor_mgr->size, 24U);
    write("compositor.conf", "cursor_size = 32\n");
    EXPECT_TRUE(loaded());
    write("compositor.conf", "cursor_theme = Adwaita-long-name\n");
    EXPECT_TRUE(loaded());
    write("compositor.conf", "cursor_theme = Adwaita\n");
    EXPECT_TRUE(loaded());
    write("compositor.conf", "");
    EXPECT_FALSE(loaded()) << "keys that are gone keep their values";
    EXPECT_EQ(server.xcursor_mgr->size, 32U);
    write("compositor.conf", "cursor_theme =\n");
    EXPECT_TRUE(loaded());
    EXPECT_EQ(server.xcursor_mgr->name, nullptr);
}

bool is_loaded_for(const wlr_xcursor_manager &manager, float scale)
{
    const wlr_xcursor_manager_theme *theme = nullptr;
    wl_list_for_each(theme, &manager.scaled_themes, link)
    {
        if (theme->scale == scale)
            return true;
    }
    return false;
}

TEST_F(reload, loads_the_cursor_for_the_scale_of_each_output_and_for_the_usual_one)
{
    output_state twice;
    wlr_output_state_set_scale(&twice, 2);
    ASSERT_TRUE(wlr_output_commit_state(output("A").wlr_output, &twice));
    config_reload(server);
    EXPECT_TRUE(is_loaded_for(*server.xcursor_mgr, 1));
    EXPECT_TRUE(is_loaded_for(*server.xcursor_mgr, 2));
}

TEST_F(reload, takes_no_sizes_that_only_cost_memory)
{
    write("compositor.conf", "cursor_size = 2147483647\n");
    config_reload(server);
    EXPECT_EQ(server.xcursor_mgr->size, 1024U);
}

TEST_F(reload, of_another_cursor_takes_it_from_the_client_that_set_its_own)
{
    auto &pointer = plug_pointer();
    auto &editor = map("editor");
    seat ears{editor.owner()};
    settle();
    point_at(pointer, 960, 540);
    settle();
    wl_surface *arrow = editor.owner().create_surface("arrow");
    ears.set_cursor(arrow, 3, 4);
    EVENTUALLY(server.cursor_shown.cur_cursor_surface != nullptr);
    config_reload(server);
    EXPECT_TRUE(server.cursor_shown.cur_cursor_named);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
    editor.owner().destroy_surface(arrow);
}

// What a reload tells

TEST_F(reload, tells_of_workspaces_and_then_of_itself)
{
    config_reload(server);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WORKSPACES, VNT_EVT_RELOADED));
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: config reloaded\n"));
    EXPECT_THAT(world.programs(), IsEmpty());
}

TEST_F(reload, shows_the_number_of_bad_lines_in_one_notification)
{
    write("compositor.conf", "gapz = 3\n");
    write("input.conf", "nonsense = 1\n");
    write("keybinds.conf", "$mod+nokey = spawn x\n$mod+w = spawn mine\n");
    config_reload(server);
    static constexpr const char *text =
        "Reloaded with 3 issue(s) — check ~/.config/vantore (bad lines ignored)";
    EXPECT_THAT(world.programs(), ElementsAre(ElementsAre("notify-send", "-a", "Vantore", "Config", text)));
    EXPECT_THAT(world.log(), HasSubstr(std::string{"vantore-comp: "} + text + "\n"));
    EXPECT_THAT(world.log(), Not(HasSubstr("config reloaded")));
    plug_keyboard().press(KEY_LEFTMETA);
    const auto bound = [](const vnt_bind &bind) { return text_equals(bind.spawn, "mine"); };
    EXPECT_TRUE(std::ranges::any_of(g_binds, bound)) << "the rest of the file works";
}

TEST_F(reload, counts_anew_each_time)
{
    write("compositor.conf", "gapz = 3\n");
    config_reload(server);
    config_reload(server);
    write("compositor.conf", "gaps = 3\n");
    config_reload(server);
    EXPECT_THAT(notifications_in(world), ElementsAre(HasSubstr("with 1 issue"), HasSubstr("with 1 issue")));
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: config reloaded\n"));
}

// What a reload leaves behind

ptrdiff_t open_files()
{
    const std::filesystem::directory_iterator files{"/proc/self/fd"};
    return std::distance(begin(files), end(files));
}

TEST_F(reload, leaves_nothing_behind_however_often_it_runs)
{
    plug_keyboard();
    plug_touch("touch");
    map("editor");
    config_reload(server);
    settle();
    const ptrdiff_t before = open_files();
    for (int i = 0; i < 100; i++) {
        write("compositor.conf", i % 2 == 0 ? "cursor_size = 32\ngaps = 2\n" : "cursor_size = 24\nbad = 1\n");
        raise(SIGHUP);
        EVENTUALLY_EQ(g_gap, i % 2 == 0 ? 2 : 8);
    }
    settle();
    EXPECT_LT(open_files(), before + 5); // the output may have got another buffer or two to paint into
    EXPECT_EQ(notifications_in(world).size(), 50U);
}

} // namespace
