#include "made_up_input.hpp"

#include "handles.hpp"

namespace test
{

static constexpr wlr_keyboard_impl keyboard_impl{.name = "made-up"};
static constexpr wlr_pointer_impl pointer_impl{.name = "made-up"};
static constexpr wlr_touch_impl touch_impl{.name = "made-up"};
static constexpr wlr_tablet_impl tablet_impl{.name = "made-up"};
static constexpr wlr_tablet_pad_impl tablet_pad_impl{.name = "made-up"};
static constexpr wlr_switch_impl switch_impl{.name = "made-up"};

static uint32_t next_event_time()
{
    static uint32_t time_msec = 1000;
    return time_msec++;
}

made_up_keyboard::made_up_keyboard(const std::string &name)
{
    wlr_keyboard_init(&base, &keyboard_impl, name.c_str());
}

made_up_keyboard::~made_up_keyboard()
{
    wlr_keyboard_finish(&base);
}

static void send_key(wlr_keyboard &keyboard, uint32_t key, wl_keyboard_key_state state)
{
    wlr_keyboard_key_event event{
        .time_msec = next_event_time(), .keycode = key, .update_state = true, .state = state};
    wlr_keyboard_notify_key(&keyboard, &event);
}

void made_up_keyboard::press(uint32_t key)
{
    send_key(base, key, WL_KEYBOARD_KEY_STATE_PRESSED);
}

void made_up_keyboard::release(uint32_t key)
{
    send_key(base, key, WL_KEYBOARD_KEY_STATE_RELEASED);
}

void made_up_keyboard::tap(uint32_t key)
{
    press(key);
    release(key);
}

using keymap_handle = handle<xkb_keymap, xkb_keymap_unref>;

static handle<xkb_context, xkb_context_unref> new_context()
{
    return handle<xkb_context, xkb_context_unref>{xkb_context_new(XKB_CONTEXT_NO_FLAGS)};
}

void made_up_keyboard::use_keymap(const char *layout)
{
    const xkb_rule_names names{
        .rules = nullptr, .model = nullptr, .layout = layout, .variant = nullptr, .options = nullptr};
    const keymap_handle keymap{
        xkb_keymap_new_from_names(new_context().get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS)};
    wlr_keyboard_set_keymap(&base, keymap.get());
}

void made_up_keyboard::use_keymap_text(const std::string &text)
{
    const keymap_handle keymap{xkb_keymap_new_from_string(
        new_context().get(), text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS)};
    wlr_keyboard_set_keymap(&base, keymap.get());
}

made_up_pointer::made_up_pointer(const std::string &name)
{
    wlr_pointer_init(&base, &pointer_impl, name.c_str());
}

made_up_pointer::~made_up_pointer()
{
    wlr_pointer_finish(&base);
}

void made_up_pointer::move(double dx, double dy)
{
    wlr_pointer_motion_event event{.pointer = &base,
                                   .time_msec = next_event_time(),
                                   .delta_x = dx,
                                   .delta_y = dy,
                                   .unaccel_dx = dx,
                                   .unaccel_dy = dy};
    wl_signal_emit_mutable(&base.events.motion, &event);
    wl_signal_emit_mutable(&base.events.frame, &base);
}

void made_up_pointer::move_to(double x, double y)
{
    wlr_pointer_motion_absolute_event event{.pointer = &base, .time_msec = next_event_time(), .x = x, .y = y};
    wl_signal_emit_mutable(&base.events.motion_absolute, &event);
    wl_signal_emit_mutable(&base.events.frame, &base);
}

static void send_button(wlr_pointer &pointer, uint32_t button, wl_pointer_button_state state)
{
    wlr_pointer_button_event event{
        .pointer = &pointer, .time_msec = next_event_time(), .button = button, .state = state};
    wlr_pointer_notify_button(&pointer, &event);
    wl_signal_emit_mutable(&pointer.events.frame, &pointer);
}

void made_up_pointer::press(uint32_t button)
{
    send_button(base, button, WL_POINTER_BUTTON_STATE_PRESSED);
}

void made_up_pointer::release(uint32_t button)
{
    send_button(base, button, WL_POINTER_BUTTON_STATE_RELEASED);
}

void made_up_pointer::click(uint32_t button)
{
    press(button);
    release(button);
}

void made_up_pointer::scroll(wl_pointer_axis orientation, double delta, int32_t discrete)
{
    wlr_pointer_axis_event event{.pointer = &base,
                                 .time_msec = next_event_time(),
                                 .source = WL_POINTER_AXIS_SOURCE_WHEEL,
                                 .orientation = orientation,
                                 .relative_direction = WL_POINTER_AXIS_RELATIVE_DIRECTION_IDENTICAL,
                                 .delta = delta,
                                 .delta_discrete = discrete};
    wl_signal_emit_mutable(&base.events.axis, &event);
    wl_signal_emit_mutable(&base.events.frame, &base);
}

made_up_touch::made_up_touch(const std::string &name, const std::string &output) : output_name(output)
{
    wlr_touch_init(&base, &touch_impl, name.c_str());
    base.output_name = output_name.empty() ? nullptr : output_name.data();
}

made_up_touch::~made_up_touch()
{
    base.output_name = nullptr; // the library would free it
    wlr_touch_finish(&base);
}

made_up_tablet::made_up_tablet(const std::string &name)
{
    wlr_tablet_init(&base, &tablet_impl, name.c_str());
}

made_up_tablet::~made_up_tablet()
{
    wlr_tablet_finish(&base);
}

made_up_tablet_pad::made_up_tablet_pad(const std::string &name)
{
    wlr_tablet_pad_init(&base, &tablet_pad_impl, name.c_str());
}

made_up_tablet_pad::~made_up_tablet_pad()
{
    wlr_tablet_pad_finish(&base);
}

made_up_switch::made_up_switch(const std::string &name)
{
    wlr_switch_init(&base, &switch_impl, name.c_str());
}

made_up_switch::~made_up_switch()
{
    wlr_switch_finish(&base);
}

} // namespace test
