// A client's clipboard, primary selection, and drag and drop. Every offer is one text as "text/plain".
#pragma once

#include "wayland_seat.hpp"

namespace test
{

// A pipe that somebody else writes a text into.
class incoming_text
{
public:
    incoming_text() = default;
    ~incoming_text();
    incoming_text(const incoming_text &) = delete;
    incoming_text &operator=(const incoming_text &) = delete;

    // Returns the end to write into, which the caller closes.
    [[nodiscard]] int open();
    // Returns the text that has arrived so far.
    const std::string &read();

private:
    int fd = -1;
    std::string text;
};

// Records drags as text: "drag enter target 10,20", "drag motion 11,20", "drag leave" and "drop". For its own
// drags it records "source target text/plain", "source cancelled", "source dropped" and "source finished".
class clipboard
{
public:
    explicit clipboard(seat &s);
    ~clipboard();
    clipboard(const clipboard &) = delete;
    clipboard &operator=(const clipboard &) = delete;

    void offer(const std::string &text, uint32_t serial);
    void clear(uint32_t serial);
    [[nodiscard]] bool has_offer() const { return selection != nullptr; }
    void paste(incoming_text &into);

    // The icon may be null. Without `text`, the drag has no source and stays within the client.
    void start_drag(window &origin, wl_surface *icon, const std::optional<std::string> &text,
                    uint32_t serial);
    void accept_drag(uint32_t enter_serial);
    void paste_drag(incoming_text &into);
    void finish_drag();
    void abandon_drag(); // of its own
    [[nodiscard]] uint32_t drag_serial() const { return drag_enter; }

    std::vector<std::string> take();
    [[nodiscard]] bool heard(const std::string &event) const;

private:
    friend struct clipboard_events;
    wl_data_source *make_source(const std::string &text, bool for_drag);

    seat *of;
    proxy<wl_data_device_manager> manager;
    proxy<wl_data_device> device;
    proxy<wl_data_source> source, drag_source;
    proxy<wl_data_offer> announced, selection, drag;
    std::string offered_text, dragged_text;
    std::vector<std::string> events;
    uint32_t drag_enter = 0;
    bool dropped = false;
};

class primary_selection
{
public:
    explicit primary_selection(seat &s);
    ~primary_selection();
    primary_selection(const primary_selection &) = delete;
    primary_selection &operator=(const primary_selection &) = delete;

    void offer(const std::string &text, uint32_t serial);
    [[nodiscard]] bool has_offer() const { return selection != nullptr; }
    void paste(incoming_text &into);

private:
    friend struct primary_events;
    proxy<zwp_primary_selection_device_manager_v1> manager;
    proxy<zwp_primary_selection_device_v1> device;
    proxy<zwp_primary_selection_source_v1> source;
    proxy<zwp_primary_selection_offer_v1> selection;
    std::string offered_text;
};

} // namespace test
