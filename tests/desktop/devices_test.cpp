// Devices that come and go, virtual ones, and shortcuts inhibitors.

#include "support/desktop.hpp"
#include "support/memory_file.hpp"
#include "support/server_check.hpp"
#include "support/wayland_devices.hpp"

#include "config/settings.hpp"
#include "input/devices.hpp"
#include "input/keymap.hpp"
#include "text.hpp"

#include <linux/input-event-codes.h>

using test::seat;
using test::window;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

enum seat_capability : uint32_t { POINTER = 1, KEYBOARD = 2, TOUCH = 4 };

struct devices : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        page = &map("page");
        watcher = std::make_unique<seat>(page->owner());
        settle();
    }

    void TearDown() override
    {
        watcher.reset();
        desktop::TearDown();
    }

    uint32_t capabilities()
    {
        settle();
        return watcher->capabilities();
    }

    // The text of a keymap that no setting asks for, such as a client would send.
    std::string swiss_keymap()
    {
        auto &donor = plug_keyboard("donor");
        donor.use_keymap("ch");
        const std::string text = donor.base.keymap_string;
        unplug_device(donor);
        return text;
    }

    wlr_keyboard *keyboard_in_use() { return wlr_seat_get_keyboard(server.seat); }

    window *page = nullptr;
    std::unique_ptr<seat> watcher;
};

TEST_F(devices, leave_the_seat_its_pointer_when_there_are_none)
{
    EXPECT_EQ(capabilities(), POINTER);
}

TEST_F(devices, of_any_kind_give_the_seat_a_pointer_and_their_own_capability)
{
    plug_switch("lid");
    EXPECT_EQ(capabilities(), POINTER);
    plug_keyboard();
    EXPECT_EQ(capabilities(), POINTER | KEYBOARD);
    plug_touch("screen");
    EXPECT_EQ(capabilities(), POINTER | KEYBOARD | TOUCH);
}

TEST_F(devices, are_listed_newest_first_until_they_go)
{
    auto &keyboard = plug_keyboard();
    auto &pointer = plug_pointer();
    plug_tablet("tablet");
    plug_tablet_pad("pad");
    std::vector<std::string> names;
    for (auto &dev : each<&vantore_input_dev::link>(server.input_devs))
        names.emplace_back(dev.device->name);
    EXPECT_THAT(names, ElementsAre("pad", "tablet", "pointer", "keyboard"));
    unplug_device(pointer);
    unplug_device(keyboard);
    EXPECT_EQ(wl_list_length(&server.input_devs), 2);
}

TEST_F(devices, other_than_keyboards_and_pointers_are_logged)
{
    plug_touch("Screen 7");
    plug_tablet("Pen Board");
    plug_tablet_pad("Buttons");
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: touchscreen attached (Screen 7)\n"));
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: drawing tablet attached (Pen Board)\n"));
    EXPECT_THAT(world.log(), HasSubstr("vantore-comp: tablet pad not yet mapped (Buttons)\n"));
}

// Touchscreens: what a touch at the middle of the device means, in layout coordinates.

struct touchscreens : devices {
    void SetUp() override
    {
        devices::SetUp();
        plug("B", 640, 640); // at 1280,0
    }

    std::pair<double, double> middle(test::made_up_touch &touch)
    {
        double x = 0, y = 0;
        wlr_cursor_absolute_to_layout_coords(server.cursor, &touch.base.base, 0.5, 0.5, &x, &y);
        return {x, y};
    }
    using at = std::pair<double, double>;
    static constexpr at middle_of_a{640, 352};
    static constexpr at middle_of_b{1600, 320};
    static constexpr at middle_of_all{960, 352};
};

TEST_F(touchscreens, belong_to_their_own_output)
{
    EXPECT_EQ(middle(plug_touch("screen", "A")), middle_of_a);
    EXPECT_EQ(middle(plug_touch("screen", "B")), middle_of_b);
}

TEST_F(touchscreens, without_an_output_of_their_own_belong_to_the_primary_one)
{
    EXPECT_EQ(middle(plug_touch("screen")), middle_of_b);
    EXPECT_EQ(middle(plug_touch("screen", "gone")), middle_of_b);
    copy_text(g_touch_output, "auto");
    EXPECT_EQ(middle(plug_touch("screen", "A")), middle_of_a);
}

TEST_F(touchscreens, follow_the_output_that_the_user_names)
{
    copy_text(g_touch_output, "A");
    EXPECT_EQ(middle(plug_touch("screen", "B")), middle_of_a);
}

TEST_F(touchscreens, fall_back_to_the_primary_output_when_the_named_one_is_not_there)
{
    copy_text(g_touch_output, "C");
    EXPECT_EQ(middle(plug_touch("screen", "A")), middle_of_b);
}

class whole_layout : public touchscreens, public testing::WithParamInterface<const char *>
{
};

TEST_P(whole_layout, is_one_large_touchscreen)
{
    copy_text(g_touch_output, GetParam());
    EXPECT_EQ(middle(plug_touch("screen", "A")), middle_of_all);
}

INSTANTIATE_TEST_SUITE_P(by_name, whole_layout, testing::Values("desktop", "all", "whole"));

TEST_F(touchscreens, are_mapped_anew_when_outputs_come_and_go)
{
    auto &touch = plug_touch("screen", "C");
    EXPECT_EQ(middle(touch), middle_of_b);
    plug("C", 640, 640); // at 1920,0
    EXPECT_EQ(middle(touch), (at{2240, 320}));
    unplug("C");
    EXPECT_EQ(middle(touch), middle_of_b);
}

TEST_F(touchscreens, survive_a_time_without_outputs)
{
    auto &touch = plug_touch("screen", "A");
    unplug("A");
    unplug("B");
    plug("A", 640, 640);
    EXPECT_EQ(middle(touch), (at{320, 320}));
}

// Virtual devices

TEST_F(devices, a_virtual_keyboard_types_with_its_own_keymap)
{
    const std::string keymap = swiss_keymap();
    test::virtual_keyboard typist{*watcher};
    typist.keymap(keymap);
    settle();
    EXPECT_THAT(watcher->keymap(), HasSubstr("German (Switzerland)"));
    (void)watcher->take();
    typist.modifiers(1);
    typist.key(KEY_A, true);
    typist.key(KEY_A, false);
    settle();
    EXPECT_THAT(watcher->take(), ElementsAre("modifiers 1 0 0", "key down 30", "key up 30"));
}

TEST_F(devices, a_virtual_keyboard_gets_the_configured_layout_only_when_it_is_applied_to_all)
{
    const std::string keymap = swiss_keymap();
    copy_text(g_kb_layout, "fr");
    test::virtual_keyboard typist{*watcher};
    typist.keymap(keymap);
    settle();
    EXPECT_STREQ(xkb_keymap_layout_get_name(keyboard_in_use()->keymap, 0), "German (Switzerland)");
    keyboard_apply_layout(keyboard_in_use());
    EXPECT_STREQ(xkb_keymap_layout_get_name(keyboard_in_use()->keymap, 0), "French");
}

TEST_F(devices, a_virtual_keyboard_turns_touch_off_until_the_next_device)
{
    plug_touch("screen");
    EXPECT_EQ(capabilities(), POINTER | TOUCH);
    test::virtual_keyboard typist{*watcher};
    EXPECT_EQ(capabilities(), POINTER | KEYBOARD);
    plug_pointer();
    EXPECT_EQ(capabilities(), POINTER | KEYBOARD | TOUCH);
}

TEST_F(devices, a_virtual_pointer_points_and_clicks)
{
    test::virtual_pointer hand{*watcher};
    const auto box = toplevel_box(record(*page));
    hand.move_to(uint32_t(box.x + 10), uint32_t(box.y + 20), 1280, 704);
    hand.move(5, 5);
    hand.button(BTN_LEFT, true);
    hand.button(BTN_LEFT, false);
    settle();
    EXPECT_THAT(watcher->take(),
                ElementsAre("pointer enter page 10,20", "motion 15,25", "button down 272", "button up 272"));
}

TEST_F(devices, virtual_devices_may_vanish_while_a_button_and_a_key_are_down)
{
    plug_pointer();
    auto &other = map("other");
    seat theirs{other.owner()};
    settle();
    {
        test::virtual_keyboard typist{theirs};
        test::virtual_pointer hand{theirs};
        typist.keymap(swiss_keymap());
        hand.move_to(640, 352, 1280, 704);
        hand.button(BTN_LEFT, true);
        typist.key(KEY_A, true);
        settle();
        other.owner().vanish();
        EVENTUALLY_EQ(wl_list_length(&server.keyboards), 0);
    }
    auto &keyboard = plug_keyboard();
    settle();
    keyboard.tap(KEY_B);
    settle();
    EXPECT_TRUE(watcher->heard("key up 48"));
}

TEST_F(devices, a_thousand_virtual_ones_come_and_go)
{
    plug_keyboard();
    for (int round = 0; round < 50; round++) {
        std::list<test::virtual_keyboard> typists;
        std::list<test::virtual_pointer> hands;
        for (int i = 0; i < 10; i++) {
            typists.emplace_back(*watcher);
            hands.emplace_back(*watcher);
        }
        settle();
    }
    settle();
    EXPECT_EQ(wl_list_length(&server.keyboards), 1);
    EXPECT_EQ(page->owner().error(), 0);
}

struct bad_keymap {
    const char *name;
    size_t file_size;
    uint32_t told_size;
};

class broken_keymap : public devices, public testing::WithParamInterface<bad_keymap>
{
};

TEST_P(broken_keymap, costs_only_its_client_something)
{
    auto &other = map("other");
    seat theirs{other.owner()};
    settle();
    test::virtual_keyboard typist{theirs};
    const int fd = test::memory_file<char>(GetParam().file_size,
                                           [](char *text) { std::fill_n(text, GetParam().file_size, ' '); });
    typist.keymap(fd, GetParam().told_size);
    close(fd);
    typist.key(KEY_A, true);
    settle();
    EXPECT_NE(other.owner().error(), 0) << "a key without a keymap is a protocol error";
    auto &keyboard = plug_keyboard();
    settle();
    keyboard.tap(KEY_B);
    EVENTUALLY(watcher->heard("key up 48"));
    EXPECT_THAT(test::server_check(server), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(of, broken_keymap,
                         testing::Values(bad_keymap{"no_bytes", 1, 0}, bad_keymap{"blanks", 64, 64},
                                         bad_keymap{"64_MB", size_t{64} << 20, 64U << 20}),
                         [](const auto &keymap) { return keymap.param.name; });

// Shortcuts inhibitors

TEST_F(devices, a_shortcuts_inhibitor_is_active_at_once)
{
    test::shortcuts_inhibitor inhibitor{*watcher, *page};
    EVENTUALLY(inhibitor.active());
    ASSERT_NE(server.active_shortcuts_inhibitor, nullptr);
    EXPECT_EQ(server.active_shortcuts_inhibitor->surface, tl_surface(record(*page)));
}

TEST_F(devices, the_latest_shortcuts_inhibitor_counts_and_leaves_none_behind)
{
    auto &other = map("other");
    seat theirs{other.owner()};
    test::shortcuts_inhibitor first{*watcher, *page};
    EVENTUALLY(first.active());
    {
        test::shortcuts_inhibitor second{theirs, other};
        EVENTUALLY(second.active());
        EXPECT_EQ(server.active_shortcuts_inhibitor->surface, tl_surface(record(other)));
    }
    settle();
    EXPECT_EQ(server.active_shortcuts_inhibitor, nullptr);
}

TEST_F(devices, an_earlier_shortcuts_inhibitor_goes_unnoticed)
{
    auto &other = map("other");
    seat theirs{other.owner()};
    auto first = std::make_unique<test::shortcuts_inhibitor>(*watcher, *page);
    EVENTUALLY(first->active());
    const test::shortcuts_inhibitor second{theirs, other};
    EVENTUALLY(second.active());
    first.reset();
    settle();
    ASSERT_NE(server.active_shortcuts_inhibitor, nullptr);
    EXPECT_EQ(server.active_shortcuts_inhibitor->surface, tl_surface(record(other)));
}

} // namespace
