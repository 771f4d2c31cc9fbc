// The two ends of an input method: the client with a text field, and the one that writes into it. What they
// hear is kept as text, in order.
#pragma once

#include "wayland_seat.hpp"

namespace test
{

// A text field. Hears "enter editor", "leave editor", "preedit ni 2-2", "commit text", "delete 3,0", "done".
class text_input
{
public:
    explicit text_input(seat &s);
    ~text_input();
    text_input(const text_input &) = delete;
    text_input &operator=(const text_input &) = delete;

    // They count for the compositor with the next commit.
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

// Hears "activate", "deactivate", "surrounding text 2,4", "content 0 8", "cause 1", "done", "unavailable", of
// a popup "rectangle 1,2 3x4", and while it holds the keyboard "key down 30" and "modifiers 1 0 0".
class input_method
{
public:
    explicit input_method(seat &s);
    ~input_method();
    input_method(const input_method &) = delete;
    input_method &operator=(const input_method &) = delete;

    // They count with the next commit.
    void preedit(const std::string &text, int cursor_begin, int cursor_end);
    void commit_string(const std::string &text);
    void delete_surrounding(uint32_t before, uint32_t after);
    void commit();

    // The surface shows what the method offers, beside the text.
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
