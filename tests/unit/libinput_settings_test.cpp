#include "input/libinput_settings.hpp"

#include <gtest/gtest.h>

namespace
{

constexpr device_preferences wishes{
    .tap_to_click = true,
    .touchpad_natural_scroll = true,
    .natural_scroll = false,
    .touchpad_acceleration = 0.25,
    .pointer_acceleration = -0.5,
    .flat_profile = false,
    .left_handed = true,
    .tablet_left_handed = false,
};

constexpr device_capabilities everything{
    .tablet = false, .tap_fingers = 3, .natural_scroll = true, .acceleration = true, .left_handed = true};

TEST(libinput_settings, give_a_touchpad_tap_disable_while_typing_and_its_own_speed)
{
    EXPECT_EQ(settings_for(everything, wishes), (device_settings{.tap = true,
                                                                 .disable_while_typing = true,
                                                                 .natural_scroll = true,
                                                                 .left_handed = true,
                                                                 .acceleration = 0.25,
                                                                 .profile = {}}));
}

TEST(libinput_settings, keep_disable_while_typing_on_without_tapping)
{
    device_preferences wish = wishes;
    wish.tap_to_click = false;
    const device_settings settings = settings_for(everything, wish);
    EXPECT_EQ(settings.tap, false);
    EXPECT_EQ(settings.disable_while_typing, true);
}

TEST(libinput_settings, count_one_tap_finger_as_a_touchpad)
{
    device_capabilities can = everything;
    can.tap_fingers = 1;
    EXPECT_TRUE(settings_for(can, wishes).tap.has_value());
}

TEST(libinput_settings, treat_a_trackpoint_without_tap_as_a_mouse)
{
    device_capabilities can = everything;
    can.tap_fingers = 0;
    EXPECT_EQ(settings_for(can, wishes),
              (device_settings{.tap = {},
                               .disable_while_typing = {},
                               .natural_scroll = false,
                               .left_handed = true,
                               .acceleration = -0.5,
                               .profile = LIBINPUT_CONFIG_ACCEL_PROFILE_ADAPTIVE}));
}

TEST(libinput_settings, give_a_mouse_the_flat_profile_on_request)
{
    device_capabilities can = everything;
    can.tap_fingers = 0;
    device_preferences wish = wishes;
    wish.flat_profile = true;
    EXPECT_EQ(settings_for(can, wish).profile, LIBINPUT_CONFIG_ACCEL_PROFILE_FLAT);
}

TEST(libinput_settings, set_nothing_that_a_mouse_can_not_do)
{
    EXPECT_EQ(settings_for({}, wishes), device_settings{});
}

TEST(libinput_settings, set_nothing_more_that_a_touchpad_can_not_do)
{
    EXPECT_EQ(settings_for({.tap_fingers = 1}, wishes), (device_settings{.tap = true,
                                                                         .disable_while_typing = true,
                                                                         .natural_scroll = {},
                                                                         .left_handed = {},
                                                                         .acceleration = {},
                                                                         .profile = {}}));
}

TEST(libinput_settings, turn_a_tablet_by_its_own_setting_and_nothing_else)
{
    device_capabilities can = everything;
    can.tablet = true;
    EXPECT_EQ(settings_for(can, wishes), (device_settings{.tap = {},
                                                          .disable_while_typing = {},
                                                          .natural_scroll = {},
                                                          .left_handed = false,
                                                          .acceleration = {},
                                                          .profile = {}}));
    can.left_handed = false;
    EXPECT_EQ(settings_for(can, wishes), device_settings{});
}

} // namespace
