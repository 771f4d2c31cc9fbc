#include "wayland_text.hpp"

#include "input-method-unstable-v2-client-protocol.h"
#include "text-input-unstable-v3-client-protocol.h"

#include <algorithm>
#include <format>
#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace test
{

struct text_events {
    static text_input &field(void *data) { return *static_cast<text_input *>(data); }
    static input_method &method(void *data) { return *static_cast<input_method *>(data); }

    template <class... Arguments>
    static void to_field(void *data, std::format_string<Arguments...> text, Arguments &&...arguments)
    {
        field(data).events.push_back(std::format(text, std::forward<Arguments>(arguments)...));
    }
    template <class... Arguments>
    static void to_method(void *data, std::format_string<Arguments...> text, Arguments &&...arguments)
    {
        method(data).events.push_back(std::format(text, std::forward<Arguments>(arguments)...));
    }
    static std::string plain(const char *text) { return text != nullptr ? text : "(none)"; }

    static void enter(void *data, zwp_text_input_v3 *, wl_surface *surface)
    {
        to_field(data, "enter {}", field(data).of->owner().name_of(surface));
    }
    static void leave(void *data, zwp_text_input_v3 *, wl_surface *surface)
    {
        to_field(data, "leave {}", field(data).of->owner().name_of(surface));
    }
    static void preedit_string(void *data, zwp_text_input_v3 *, const char *text, int32_t begin, int32_t end)
    {
        to_field(data, "preedit {} {}-{}", plain(text), begin, end);
    }
    static void commit_string(void *data, zwp_text_input_v3 *, const char *text)
    {
        to_field(data, "commit {}", plain(text));
    }
    static void delete_surrounding(void *data, zwp_text_input_v3 *, uint32_t before, uint32_t after)
    {
        to_field(data, "delete {},{}", before, after);
    }
    static void field_done(void *data, zwp_text_input_v3 *, uint32_t) { to_field(data, "done"); }

    static void activate(void *data, zwp_input_method_v2 *) { to_method(data, "activate"); }
    static void deactivate(void *data, zwp_input_method_v2 *) { to_method(data, "deactivate"); }
    static void surrounding_text(void *data, zwp_input_method_v2 *, const char *text, uint32_t cursor,
                                 uint32_t anchor)
    {
        to_method(data, "surrounding {} {},{}", plain(text), cursor, anchor);
    }
    static void cause(void *data, zwp_input_method_v2 *, uint32_t why) { to_method(data, "cause {}", why); }
    static void content(void *data, zwp_input_method_v2 *, uint32_t hint, uint32_t purpose)
    {
        to_method(data, "content {} {}", hint, purpose);
    }
    static void method_done(void *data, zwp_input_method_v2 *)
    {
        method(data).done_events++;
        to_method(data, "done");
    }
    static void unavailable(void *data, zwp_input_method_v2 *) { to_method(data, "unavailable"); }
    static void rectangle(void *data, zwp_input_popup_surface_v2 *, int x, int y, int width, int height)
    {
        to_method(data, "rectangle {},{} {}x{}", x, y, width, height);
    }

    static void keymap(void *data, zwp_input_method_keyboard_grab_v2 *, uint32_t, int fd, uint32_t)
    {
        method(data).keymap_events++;
        close(fd);
    }
    static void key(void *data, zwp_input_method_keyboard_grab_v2 *, uint32_t, uint32_t, uint32_t code,
                    uint32_t state)
    {
        to_method(data, "key {} {}", state == WL_KEYBOARD_KEY_STATE_PRESSED ? "down" : "up", code);
    }
    static void modifiers(void *data, zwp_input_method_keyboard_grab_v2 *, uint32_t, uint32_t depressed,
                          uint32_t latched, uint32_t locked, uint32_t group)
    {
        to_method(data, "modifiers {} {} {}", depressed, latched | locked, group);
    }
};

static constexpr zwp_text_input_v3_listener field_listener{
    .enter = text_events::enter,
    .leave = text_events::leave,
    .preedit_string = text_events::preedit_string,
    .commit_string = text_events::commit_string,
    .delete_surrounding_text = text_events::delete_surrounding,
    .done = text_events::field_done,
};

static constexpr zwp_input_method_v2_listener method_listener{
    .activate = text_events::activate,
    .deactivate = text_events::deactivate,
    .surrounding_text = text_events::surrounding_text,
    .text_change_cause = text_events::cause,
    .content_type = text_events::content,
    .done = text_events::method_done,
    .unavailable = text_events::unavailable,
};

static constexpr zwp_input_popup_surface_v2_listener popup_listener{
    .text_input_rectangle = text_events::rectangle,
};

static constexpr zwp_input_method_keyboard_grab_v2_listener grab_listener{
    .keymap = text_events::keymap,
    .key = text_events::key,
    .modifiers = text_events::modifiers,
    .repeat_info = [](void *, zwp_input_method_keyboard_grab_v2 *, int32_t, int32_t) {},
};

template <class T> static T *bind(const seat &s, const wl_interface &interface)
{
    return static_cast<T *>(s.owner().bind(interface, 1));
}

text_input::text_input(seat &s)
    : of(&s), manager(bind<zwp_text_input_manager_v3>(s, zwp_text_input_manager_v3_interface)),
      object(zwp_text_input_manager_v3_get_text_input(manager.get(), s.get()))
{
    zwp_text_input_v3_add_listener(object.get(), &field_listener, this);
}

text_input::~text_input() = default;

void text_input::enable()
{
    zwp_text_input_v3_enable(object.get());
}

void text_input::disable()
{
    zwp_text_input_v3_disable(object.get());
}

void text_input::surrounding(const std::string &text, int cursor, int anchor)
{
    zwp_text_input_v3_set_surrounding_text(object.get(), text.c_str(), cursor, anchor);
}

void text_input::content(uint32_t hint, uint32_t purpose)
{
    zwp_text_input_v3_set_content_type(object.get(), hint, purpose);
}

void text_input::cursor_rectangle(int x, int y, int width, int height)
{
    zwp_text_input_v3_set_cursor_rectangle(object.get(), x, y, width, height);
}

void text_input::commit()
{
    zwp_text_input_v3_commit(object.get());
}

std::vector<std::string> text_input::take()
{
    return std::exchange(events, {});
}

bool text_input::heard(const std::string &event) const
{
    return std::ranges::contains(events, event);
}

input_method::input_method(seat &s)
    : manager(bind<zwp_input_method_manager_v2>(s, zwp_input_method_manager_v2_interface)),
      object(zwp_input_method_manager_v2_get_input_method(manager.get(), s.get()))
{
    zwp_input_method_v2_add_listener(object.get(), &method_listener, this);
}

input_method::~input_method() = default;

void input_method::preedit(const std::string &text, int cursor_begin, int cursor_end)
{
    zwp_input_method_v2_set_preedit_string(object.get(), text.c_str(), cursor_begin, cursor_end);
}

void input_method::commit_string(const std::string &text)
{
    zwp_input_method_v2_commit_string(object.get(), text.c_str());
}

void input_method::delete_surrounding(uint32_t before, uint32_t after)
{
    zwp_input_method_v2_delete_surrounding_text(object.get(), before, after);
}

void input_method::commit()
{
    zwp_input_method_v2_commit(object.get(), done_events);
}

void input_method::show_popup(wl_surface *surface)
{
    popup.reset(zwp_input_method_v2_get_input_popup_surface(object.get(), surface));
    zwp_input_popup_surface_v2_add_listener(popup.get(), &popup_listener, this);
}

void input_method::close_popup()
{
    popup.reset();
}

void input_method::grab_keyboard()
{
    grab.reset(zwp_input_method_v2_grab_keyboard(object.get()));
    zwp_input_method_keyboard_grab_v2_add_listener(grab.get(), &grab_listener, this);
}

void input_method::release_keyboard()
{
    grab.reset();
}

std::vector<std::string> input_method::take()
{
    return std::exchange(events, {});
}

bool input_method::heard(const std::string &event) const
{
    return std::ranges::contains(events, event);
}

} // namespace test
