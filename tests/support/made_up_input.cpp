#include "made_up_input.hpp"

#include "handles.hpp"

#include <cstdlib>
#include <utility>

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

static keymap_handle keymap_of(const char *layout)
{
    const xkb_rule_names names{
        .rules = nullptr, .model = nullptr, .layout = layout, .variant = nullptr, .options = nullptr};
    return keymap_handle{xkb_keymap_new_from_names(new_context().get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS)};
}

std::string keymap_text(const char *layout)
{
    const handle<char, free> text{
        xkb_keymap_get_as_string(keymap_of(layout).get(), XKB_KEYMAP_FORMAT_TEXT_V1)};
    return text.get();
}

void made_up_keyboard::use_keymap(const char *layout)
{
    wlr_keyboard_set_keymap(&base, keymap_of(layout).get());
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

void made_up_pointer::swipe_begin(uint32_t count)
{
    fingers = count;
    wlr_pointer_swipe_begin_event event{.pointer = &base, .time_msec = next_event_time(), .fingers = fingers};
    wl_signal_emit_mutable(&base.events.swipe_begin, &event);
}

void made_up_pointer::swipe_update(double dx, double dy)
{
    wlr_pointer_swipe_update_event event{
        .pointer = &base, .time_msec = next_event_time(), .fingers = fingers, .dx = dx, .dy = dy};
    wl_signal_emit_mutable(&base.events.swipe_update, &event);
}

void made_up_pointer::swipe_end(bool cancelled)
{
    wlr_pointer_swipe_end_event event{
        .pointer = &base, .time_msec = next_event_time(), .cancelled = cancelled};
    wl_signal_emit_mutable(&base.events.swipe_end, &event);
}

void made_up_pointer::pinch_begin(uint32_t count)
{
    fingers = count;
    wlr_pointer_pinch_begin_event event{.pointer = &base, .time_msec = next_event_time(), .fingers = fingers};
    wl_signal_emit_mutable(&base.events.pinch_begin, &event);
}

void made_up_pointer::pinch_update(double dx, double dy, double scale, double rotation)
{
    wlr_pointer_pinch_update_event event{.pointer = &base,
                                         .time_msec = next_event_time(),
                                         .fingers = fingers,
                                         .dx = dx,
                                         .dy = dy,
                                         .scale = scale,
                                         .rotation = rotation};
    wl_signal_emit_mutable(&base.events.pinch_update, &event);
}

void made_up_pointer::pinch_end(bool cancelled)
{
    wlr_pointer_pinch_end_event event{
        .pointer = &base, .time_msec = next_event_time(), .cancelled = cancelled};
    wl_signal_emit_mutable(&base.events.pinch_end, &event);
}

void made_up_pointer::hold_begin(uint32_t count)
{
    fingers = count;
    wlr_pointer_hold_begin_event event{.pointer = &base, .time_msec = next_event_time(), .fingers = fingers};
    wl_signal_emit_mutable(&base.events.hold_begin, &event);
}

void made_up_pointer::hold_end(bool cancelled)
{
    wlr_pointer_hold_end_event event{
        .pointer = &base, .time_msec = next_event_time(), .cancelled = cancelled};
    wl_signal_emit_mutable(&base.events.hold_end, &event);
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

void made_up_touch::down(int32_t finger, double x, double y)
{
    wlr_touch_down_event event{
        .touch = &base, .time_msec = next_event_time(), .touch_id = finger, .x = x, .y = y};
    wl_signal_emit_mutable(&base.events.down, &event);
    wl_signal_emit_mutable(&base.events.frame, nullptr);
}

void made_up_touch::move(int32_t finger, double x, double y)
{
    wlr_touch_motion_event event{
        .touch = &base, .time_msec = next_event_time(), .touch_id = finger, .x = x, .y = y};
    wl_signal_emit_mutable(&base.events.motion, &event);
    wl_signal_emit_mutable(&base.events.frame, nullptr);
}

void made_up_touch::up(int32_t finger)
{
    wlr_touch_up_event event{.touch = &base, .time_msec = next_event_time(), .touch_id = finger};
    wl_signal_emit_mutable(&base.events.up, &event);
    wl_signal_emit_mutable(&base.events.frame, nullptr);
}

void made_up_touch::cancel(int32_t finger)
{
    wlr_touch_cancel_event event{.touch = &base, .time_msec = next_event_time(), .touch_id = finger};
    wl_signal_emit_mutable(&base.events.cancel, &event);
    wl_signal_emit_mutable(&base.events.frame, nullptr);
}

made_up_tablet::made_up_tablet(const std::string &name)
{
    wlr_tablet_init(&base, &tablet_impl, name.c_str());
    pen.type = WLR_TABLET_TOOL_TYPE_PEN;
    pen.pressure = pen.tilt = pen.distance = true;
    wl_signal_init(&pen.events.destroy);
}

// The tool must be destroyed before its tablet.
made_up_tablet::~made_up_tablet()
{
    wl_signal_emit_mutable(&pen.events.destroy, &pen);
    wlr_tablet_finish(&base);
}

static void send_proximity(made_up_tablet &tablet, wlr_tablet_tool_proximity_state state)
{
    wlr_tablet_tool_proximity_event event{.tablet = &tablet.base,
                                          .tool = &tablet.pen,
                                          .time_msec = next_event_time(),
                                          .x = tablet.pen_x,
                                          .y = tablet.pen_y,
                                          .state = state};
    wl_signal_emit_mutable(&tablet.base.events.proximity, &event);
}

void made_up_tablet::pen_in(double x, double y)
{
    pen_x = x;
    pen_y = y;
    send_proximity(*this, WLR_TABLET_TOOL_PROXIMITY_IN);
}

void made_up_tablet::pen_out()
{
    send_proximity(*this, WLR_TABLET_TOOL_PROXIMITY_OUT);
}

void made_up_tablet::pen_to(double x, double y)
{
    wlr_tablet_tool_axis_event event{};
    event.updated_axes = WLR_TABLET_TOOL_AXIS_X | WLR_TABLET_TOOL_AXIS_Y;
    event.x = x;
    event.y = y;
    event.dx = x - std::exchange(pen_x, x);
    event.dy = y - std::exchange(pen_y, y);
    pen_axes(event);
}

void made_up_tablet::pen_axes(wlr_tablet_tool_axis_event event)
{
    event.tablet = &base;
    event.tool = &pen;
    event.time_msec = next_event_time();
    wl_signal_emit_mutable(&base.events.axis, &event);
}

static void send_tip(made_up_tablet &tablet, wlr_tablet_tool_tip_state state)
{
    wlr_tablet_tool_tip_event event{.tablet = &tablet.base,
                                    .tool = &tablet.pen,
                                    .time_msec = next_event_time(),
                                    .x = tablet.pen_x,
                                    .y = tablet.pen_y,
                                    .state = state};
    wl_signal_emit_mutable(&tablet.base.events.tip, &event);
}

void made_up_tablet::pen_press()
{
    send_tip(*this, WLR_TABLET_TOOL_TIP_DOWN);
}

void made_up_tablet::pen_release()
{
    send_tip(*this, WLR_TABLET_TOOL_TIP_UP);
}

void made_up_tablet::pen_button(uint32_t button, bool down)
{
    wlr_tablet_tool_button_event event{.tablet = &base,
                                       .tool = &pen,
                                       .time_msec = next_event_time(),
                                       .button = button,
                                       .state = down ? WLR_BUTTON_PRESSED : WLR_BUTTON_RELEASED};
    wl_signal_emit_mutable(&base.events.button, &event);
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

void made_up_switch::toggle(wlr_switch_type type, bool on)
{
    wlr_switch_toggle_event event{.time_msec = next_event_time(),
                                  .switch_type = type,
                                  .switch_state = on ? WLR_SWITCH_STATE_ON : WLR_SWITCH_STATE_OFF};
    wl_signal_emit_mutable(&base.events.toggle, &event);
}

} // namespace test
