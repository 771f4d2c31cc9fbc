#include "wayland_transfer.hpp"

#include "primary-selection-unstable-v1-client-protocol.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <format>
#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace test
{

static constexpr const char *plain_text = "text/plain";

incoming_text::~incoming_text()
{
    if (fd >= 0)
        close(fd);
}

int incoming_text::open()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        abort();
    if (fd >= 0)
        close(fd);
    fd = ends[0];
    text.clear();
    return ends[1];
}

const std::string &incoming_text::read()
{
    std::array<char, 256> piece;
    for (ssize_t n = 0; (n = ::read(fd, piece.data(), piece.size())) > 0;)
        text.append(piece.data(), size_t(n));
    return text;
}

// The text must be short enough for a pipe's buffer.
static void send_text(const std::string &text, int fd)
{
    if (write(fd, text.data(), text.size()) != ssize_t(text.size()))
        abort();
    close(fd);
}

struct clipboard_events {
    static clipboard &self(void *data) { return *static_cast<clipboard *>(data); }

    template <class... Arguments>
    static void note(void *data, std::format_string<Arguments...> text, Arguments &&...arguments)
    {
        self(data).events.push_back(std::format(text, std::forward<Arguments>(arguments)...));
    }

    static std::string at(wl_fixed_t x, wl_fixed_t y)
    {
        return std::format("{},{}", wl_fixed_to_double(x), wl_fixed_to_double(y));
    }

    static void data_offer(void *data, wl_data_device *, wl_data_offer *offer)
    {
        self(data).announced.reset(offer);
    }
    static void selection(void *data, wl_data_device *, wl_data_offer *offer)
    {
        self(data).selection.reset(offer == self(data).announced.get() ? self(data).announced.release()
                                                                       : nullptr);
    }
    static void enter(void *data, wl_data_device *, uint32_t serial, wl_surface *surface, wl_fixed_t x,
                      wl_fixed_t y, wl_data_offer *offer)
    {
        clipboard &c = self(data);
        c.drag.reset(offer != nullptr && offer == c.announced.get() ? c.announced.release() : nullptr);
        c.dropped = false;
        c.drag_enter = serial;
        note(data, "drag enter {} {}", c.of->owner().name_of(surface), at(x, y));
    }
    static void leave(void *data, wl_data_device *)
    {
        if (!self(data).dropped)
            self(data).drag.reset();
        note(data, "drag leave");
    }
    static void motion(void *data, wl_data_device *, uint32_t, wl_fixed_t x, wl_fixed_t y)
    {
        note(data, "drag motion {}", at(x, y));
    }
    static void drop(void *data, wl_data_device *)
    {
        self(data).dropped = true; // the offer stays until the drag is finished
        note(data, "drop");
    }

    static void target(void *data, wl_data_source *, const char *type)
    {
        note(data, "source target {}", type != nullptr ? type : "nothing");
    }
    static void send(void *data, wl_data_source *source, const char *, int fd)
    {
        clipboard &c = self(data);
        send_text(source == c.drag_source.get() ? c.dragged_text : c.offered_text, fd);
    }
    static void cancelled(void *data, wl_data_source *) { note(data, "source cancelled"); }
    static void dropped(void *data, wl_data_source *) { note(data, "source dropped"); }
    static void finished(void *data, wl_data_source *) { note(data, "source finished"); }
};

static constexpr wl_data_device_listener device_listener{
    .data_offer = clipboard_events::data_offer,
    .enter = clipboard_events::enter,
    .leave = clipboard_events::leave,
    .motion = clipboard_events::motion,
    .drop = clipboard_events::drop,
    .selection = clipboard_events::selection,
};

static constexpr wl_data_source_listener source_listener{
    .target = clipboard_events::target,
    .send = clipboard_events::send,
    .cancelled = clipboard_events::cancelled,
    .dnd_drop_performed = clipboard_events::dropped,
    .dnd_finished = clipboard_events::finished,
    .action = [](void *, wl_data_source *, uint32_t) {},
};

clipboard::clipboard(seat &s)
    : of(&s),
      manager(static_cast<wl_data_device_manager *>(s.owner().bind(wl_data_device_manager_interface, 3))),
      device(wl_data_device_manager_get_data_device(manager.get(), s.get()))
{
    wl_data_device_add_listener(device.get(), &device_listener, this);
}

clipboard::~clipboard() = default;

wl_data_source *clipboard::make_source(const std::string &text, bool for_drag)
{
    wl_data_source *made = wl_data_device_manager_create_data_source(manager.get());
    wl_data_source_add_listener(made, &source_listener, this);
    wl_data_source_offer(made, plain_text);
    if (for_drag)
        wl_data_source_set_actions(made, WL_DATA_DEVICE_MANAGER_DND_ACTION_COPY);
    (for_drag ? dragged_text : offered_text) = text;
    return made;
}

void clipboard::offer(const std::string &text, uint32_t serial)
{
    source.reset(make_source(text, false));
    wl_data_device_set_selection(device.get(), source.get(), serial);
}

void clipboard::clear(uint32_t serial)
{
    wl_data_device_set_selection(device.get(), nullptr, serial);
}

void clipboard::paste(incoming_text &into)
{
    const int fd = into.open();
    wl_data_offer_receive(selection.get(), plain_text, fd);
    close(fd);
}

void clipboard::start_drag(window &origin, wl_surface *icon, const std::optional<std::string> &text,
                           uint32_t serial)
{
    drag_source.reset(text ? make_source(*text, true) : nullptr);
    wl_data_device_start_drag(device.get(), drag_source.get(), origin.get(), icon, serial);
}

void clipboard::accept_drag(uint32_t enter_serial)
{
    wl_data_offer_set_actions(drag.get(), WL_DATA_DEVICE_MANAGER_DND_ACTION_COPY,
                              WL_DATA_DEVICE_MANAGER_DND_ACTION_COPY);
    wl_data_offer_accept(drag.get(), enter_serial, plain_text);
}

void clipboard::paste_drag(incoming_text &into)
{
    const int fd = into.open();
    wl_data_offer_receive(drag.get(), plain_text, fd);
    close(fd);
}

void clipboard::finish_drag()
{
    wl_data_offer_finish(drag.get());
}

void clipboard::abandon_drag()
{
    drag_source.reset();
}

std::vector<std::string> clipboard::take()
{
    return std::exchange(events, {});
}

bool clipboard::heard(const std::string &event) const
{
    return std::ranges::contains(events, event);
}

struct primary_events {
    static primary_selection &self(void *data) { return *static_cast<primary_selection *>(data); }

    static void selection(void *data, zwp_primary_selection_device_v1 *,
                          zwp_primary_selection_offer_v1 *offer)
    {
        self(data).selection.reset(offer);
    }
    static void send(void *data, zwp_primary_selection_source_v1 *, const char *, int fd)
    {
        send_text(self(data).offered_text, fd);
    }
};

primary_selection::primary_selection(seat &s)
    : manager(static_cast<zwp_primary_selection_device_manager_v1 *>(
          s.owner().bind(zwp_primary_selection_device_manager_v1_interface, 1))),
      device(zwp_primary_selection_device_manager_v1_get_device(manager.get(), s.get()))
{
    static constexpr zwp_primary_selection_device_v1_listener listener{
        .data_offer = [](void *, zwp_primary_selection_device_v1 *, zwp_primary_selection_offer_v1 *) {},
        .selection = primary_events::selection,
    };
    zwp_primary_selection_device_v1_add_listener(device.get(), &listener, this);
}

primary_selection::~primary_selection() = default;

void primary_selection::offer(const std::string &text, uint32_t serial)
{
    static constexpr zwp_primary_selection_source_v1_listener listener{
        .send = primary_events::send,
        .cancelled = [](void *, zwp_primary_selection_source_v1 *) {},
    };
    offered_text = text;
    source.reset(zwp_primary_selection_device_manager_v1_create_source(manager.get()));
    zwp_primary_selection_source_v1_add_listener(source.get(), &listener, this);
    zwp_primary_selection_source_v1_offer(source.get(), plain_text);
    zwp_primary_selection_device_v1_set_selection(device.get(), source.get(), serial);
}

void primary_selection::paste(incoming_text &into)
{
    const int fd = into.open();
    zwp_primary_selection_offer_v1_receive(selection.get(), plain_text, fd);
    close(fd);
}

} // namespace test
