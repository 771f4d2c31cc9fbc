// Events of made-up devices reach the compositor as those of real devices do: through the cursor, or through
// the device's own signals where the cursor has none.

#include "support/desktop.hpp"
#include "support/more_wlr.hpp"

#include <linux/input-event-codes.h>

using test::made_up_pointer;
using testing::ElementsAre;

namespace
{

// Writes down what it hears.
struct listening_ear {
    template <class... Arguments> void note(std::format_string<Arguments...> text, Arguments &&...arguments)
    {
        heard.push_back(std::format(text, std::forward<Arguments>(arguments)...));
    }

    std::vector<std::string> heard;
    listener begin, update, end, frame, cancel;
};

void swipe_begin(listening_ear &ear, wlr_pointer_swipe_begin_event *event)
{
    ear.note("begin {}", event->fingers);
}

void swipe_update(listening_ear &ear, wlr_pointer_swipe_update_event *event)
{
    ear.note("update {} {},{}", event->fingers, event->dx, event->dy);
}

void swipe_end(listening_ear &ear, wlr_pointer_swipe_end_event *event)
{
    ear.note("end {}", event->cancelled);
}

void pinch_begin(listening_ear &ear, wlr_pointer_pinch_begin_event *event)
{
    ear.note("begin {}", event->fingers);
}

void pinch_update(listening_ear &ear, wlr_pointer_pinch_update_event *event)
{
    ear.note("update {} {},{} scale {} turned {}", event->fingers, event->dx, event->dy, event->scale,
             event->rotation);
}

void pinch_end(listening_ear &ear, wlr_pointer_pinch_end_event *event)
{
    ear.note("end {}", event->cancelled);
}

void hold_begin(listening_ear &ear, wlr_pointer_hold_begin_event *event)
{
    ear.note("begin {}", event->fingers);
}

void hold_end(listening_ear &ear, wlr_pointer_hold_end_event *event)
{
    ear.note("end {}", event->cancelled);
}

void touch_down(listening_ear &ear, wlr_touch_down_event *event)
{
    ear.note("down {} {},{}", event->touch_id, event->x, event->y);
}

void touch_motion(listening_ear &ear, wlr_touch_motion_event *event)
{
    ear.note("motion {} {},{}", event->touch_id, event->x, event->y);
}

void touch_up(listening_ear &ear, wlr_touch_up_event *event)
{
    ear.note("up {}", event->touch_id);
}

void touch_cancel(listening_ear &ear, wlr_touch_cancel_event *event)
{
    ear.note("cancel {}", event->touch_id);
}

void touch_frame(listening_ear &ear)
{
    ear.note("frame");
}

void pen_proximity(listening_ear &ear, wlr_tablet_tool_proximity_event *event)
{
    ear.note("{} {},{}", event->state == WLR_TABLET_TOOL_PROXIMITY_IN ? "in" : "out", event->x, event->y);
}

void pen_axis(listening_ear &ear, wlr_tablet_tool_axis_event *event)
{
    if ((event->updated_axes & WLR_TABLET_TOOL_AXIS_X) != 0)
        ear.note("motion {},{} by {},{}", event->x, event->y, event->dx, event->dy);
    if ((event->updated_axes & WLR_TABLET_TOOL_AXIS_PRESSURE) != 0)
        ear.note("pressure {}", event->pressure);
}

void pen_tip(listening_ear &ear, wlr_tablet_tool_tip_event *event)
{
    ear.note("{} {},{}", event->state == WLR_TABLET_TOOL_TIP_DOWN ? "down" : "up", event->x, event->y);
}

void pen_button(listening_ear &ear, wlr_tablet_tool_button_event *event)
{
    ear.note("button {} {}", event->button, event->state == WLR_BUTTON_PRESSED ? "down" : "up");
}

void switch_toggle(listening_ear &ear, wlr_switch_toggle_event *event)
{
    ear.note("{} {}", event->switch_type == WLR_SWITCH_TYPE_LID ? "lid" : "other",
             event->switch_state == WLR_SWITCH_STATE_ON ? "closed" : "open");
}

struct made_up_devices : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
    }
    // The cursor and the devices die with the session, and nobody may listen to them by then.
    void TearDown() override
    {
        for (listener *l : {&ear.begin, &ear.update, &ear.end, &ear.frame, &ear.cancel})
            unlisten(*l);
        desktop::TearDown();
    }

    listening_ear ear;
};

TEST_F(made_up_devices, swipe_on_a_touchpad)
{
    made_up_pointer &pad = plug_pointer("touchpad");
    auto &events = server.cursor->events;
    listen<&listening_ear::begin, swipe_begin>(ear, events.swipe_begin);
    listen<&listening_ear::update, swipe_update>(ear, events.swipe_update);
    listen<&listening_ear::end, swipe_end>(ear, events.swipe_end);
    pad.swipe_begin(3);
    pad.swipe_update(5, -2.5);
    pad.swipe_end();
    EXPECT_THAT(ear.heard, ElementsAre("begin 3", "update 3 5,-2.5", "end false"));
}

TEST_F(made_up_devices, pinch_on_a_touchpad)
{
    made_up_pointer &pad = plug_pointer("touchpad");
    auto &events = server.cursor->events;
    listen<&listening_ear::begin, pinch_begin>(ear, events.pinch_begin);
    listen<&listening_ear::update, pinch_update>(ear, events.pinch_update);
    listen<&listening_ear::end, pinch_end>(ear, events.pinch_end);
    pad.pinch_begin(2);
    pad.pinch_update(1, 0, 1.5, 10);
    pad.pinch_end(true);
    EXPECT_THAT(ear.heard, ElementsAre("begin 2", "update 2 1,0 scale 1.5 turned 10", "end true"));
}

TEST_F(made_up_devices, hold_on_a_touchpad)
{
    made_up_pointer &pad = plug_pointer("touchpad");
    listen<&listening_ear::begin, hold_begin>(ear, server.cursor->events.hold_begin);
    listen<&listening_ear::end, hold_end>(ear, server.cursor->events.hold_end);
    pad.hold_begin(4);
    pad.hold_end();
    EXPECT_THAT(ear.heard, ElementsAre("begin 4", "end false"));
}

TEST_F(made_up_devices, fingers_on_a_touchscreen)
{
    auto &screen = plug_touch("screen");
    auto &events = server.cursor->events;
    listen<&listening_ear::begin, touch_down>(ear, events.touch_down);
    listen<&listening_ear::update, touch_motion>(ear, events.touch_motion);
    listen<&listening_ear::end, touch_up>(ear, events.touch_up);
    listen<&listening_ear::cancel, touch_cancel>(ear, events.touch_cancel);
    listen<&listening_ear::frame, touch_frame>(ear, events.touch_frame);
    screen.down(0, 0.5, 0.25);
    screen.down(1, 0.75, 0.25);
    screen.move(0, 0.5, 0.5);
    screen.up(0);
    screen.cancel(1);
    EXPECT_THAT(ear.heard, ElementsAre("down 0 0.5,0.25", "frame", "down 1 0.75,0.25", "frame",
                                       "motion 0 0.5,0.5", "frame", "up 0", "frame", "cancel 1", "frame"));
}

TEST_F(made_up_devices, pen_on_a_tablet)
{
    auto &tablet = plug_tablet("tablet");
    auto &events = server.cursor->events;
    listen<&listening_ear::begin, pen_proximity>(ear, events.tablet_tool_proximity);
    listen<&listening_ear::update, pen_axis>(ear, events.tablet_tool_axis);
    listen<&listening_ear::end, pen_tip>(ear, events.tablet_tool_tip);
    listen<&listening_ear::frame, pen_button>(ear, events.tablet_tool_button);
    tablet.pen_in(0.25, 0.25);
    tablet.pen_to(0.5, 0.75);
    tablet.pen_press();
    wlr_tablet_tool_axis_event harder{};
    harder.updated_axes = WLR_TABLET_TOOL_AXIS_PRESSURE;
    harder.pressure = 0.5;
    tablet.pen_axes(harder);
    tablet.pen_button(BTN_STYLUS, true);
    tablet.pen_button(BTN_STYLUS, false);
    tablet.pen_release();
    tablet.pen_out();
    EXPECT_THAT(ear.heard,
                ElementsAre("in 0.25,0.25", "motion 0.5,0.75 by 0.25,0.5", "down 0.5,0.75", "pressure 0.5",
                            "button 331 down", "button 331 up", "up 0.5,0.75", "out 0.5,0.75"));
}

TEST_F(made_up_devices, lid_that_closes_and_opens)
{
    auto &lid = plug_switch("lid");
    listen<&listening_ear::begin, switch_toggle>(ear, lid.base.events.toggle);
    lid.close_lid();
    lid.open_lid();
    lid.toggle(WLR_SWITCH_TYPE_TABLET_MODE, true);
    EXPECT_THAT(ear.heard, ElementsAre("lid closed", "lid open", "other closed"));
}

} // namespace
