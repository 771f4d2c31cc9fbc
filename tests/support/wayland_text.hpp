// The two sides of text input: a client with a text field, and an input method that writes into it. They
// record their events as text, in order.
#pragma once

#include "wayland_seat.hpp"

namespace test
{

// A text field. It records "enter editor", "leave editor", "preedit ni 2-2", "commit text", "delete 3,0" and
// "done".
class text_input
{
public:
    explicit text_input(seat &s);
    ~text_input();
    text_input(const text_input &) = delete;
    text_input &operator=(const text_input &) = delete;

    // These take effect with the next commit.
    void enable();
    void disable();
    void surrounding(const std::string &text, int cursor, int anchor);
    void content(uint32_t hint, uint32_t purpose); // of zwp_text_input_v3
    void cursor_rectangle(int x, int y, int width, int height);
    void commit();

    std::vector<std::string> take();
    [[nodiscard]] bool heard(const std::string &event) const;

private:
    friend struct text_events;
    seat *of;
    proxy<zwp_text_input_manager_v3> manager;
    proxy<zwp_text_input_v3> object;
    std::vector<std::string> events;
};

// Records "activate", "deactivate", "surrounding text 2,4", "content 0 8", "cause 1", "done" and
// "unavailable". For a popup it records "rectangle 1,2 3x4", and while it grabs the keyboard "key down 30"
// and "modifiers 1 0 0".
class input_method
{
public:
    explicit input_method(seat &s);
    ~input_method();
    input_method(const input_method &) = delete;
    input_method &operator=(const input_method &) = delete;

    // These take effect with the next commit.
    void preedit(const std::string &text, int cursor_begin, int cursor_end);
    void commit_string(const std::string &text);
    void delete_surrounding(uint32_t before, uint32_t after);
    void commit();

    // Shows the surface beside the text as the method's popup.
    void show_popup(wl_surface *surface);
    void close_popup();

    void grab_keyboard();
    void release_keyboard();

    std::vector<std::string> take();
    [[nodiscard]] bool heard(const std::string &event) const;
    [[nodiscard]] int keymaps() const { return keymap_events; }

private:
    friend struct text_events;
    proxy<zwp_input_method_manager_v2> manager;
    proxy<zwp_input_method_v2> object;
    proxy<zwp_input_popup_surface_v2> popup;
    proxy<zwp_input_method_keyboard_grab_v2> grab;
    std::vector<std::string> events;
    int keymap_events = 0;
    uint32_t done_events = 0; // the serial of a commit
};

} // namespace test
