#include "wayland_client.hpp"

#include "memory_file.hpp"
#include "wlr-gamma-control-unstable-v1-client-protocol.h"
#include "xdg-shell-client-protocol.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <utility>
#include <wayland-client.h>

namespace test
{

std::ostream &operator<<(std::ostream &out, const protocol_error &e)
{
    return out << e.interface << " error " << e.code;
}

struct client_events {
    static void bind_global(client &c, const global &g)
    {
        const auto bind = [&](const wl_interface &interface, uint32_t most) {
            return wl_registry_bind(c.registry, g.name, &interface, std::min(g.version, most));
        };
        if (g.interface == wl_compositor_interface.name)
            c.compositor = static_cast<wl_compositor *>(bind(wl_compositor_interface, 5));
        else if (g.interface == wl_shm_interface.name)
            c.shm = static_cast<wl_shm *>(bind(wl_shm_interface, 1));
        else if (g.interface == xdg_wm_base_interface.name)
            bind_shell(c, static_cast<xdg_wm_base *>(bind(xdg_wm_base_interface, 3)));
        else if (g.interface == zwlr_gamma_control_manager_v1_interface.name)
            c.gamma_manager = static_cast<zwlr_gamma_control_manager_v1 *>(
                bind(zwlr_gamma_control_manager_v1_interface, 1));
        else if (g.interface == wl_output_interface.name)
            bind_output(c, g.name, static_cast<wl_output *>(bind(wl_output_interface, 4)));
    }

    static void bind_shell(client &c, xdg_wm_base *base)
    {
        static constexpr xdg_wm_base_listener listener{
            .ping =
                [](void *data, xdg_wm_base *shell, uint32_t serial) {
                    auto &self = *static_cast<client *>(data);
                    self.ping_events++;
                    if (self.answer_pings)
                        xdg_wm_base_pong(shell, serial);
                },
        };
        c.wm_base = base;
        xdg_wm_base_add_listener(base, &listener, &c);
    }

    static void bind_output(client &c, uint32_t global, wl_output *proxy)
    {
        static constexpr wl_output_listener listener{
            .geometry = [](void *, wl_output *, int, int, int, int, int, const char *, const char *, int) {},
            .mode = [](void *, wl_output *, uint32_t, int, int, int) {},
            .done = [](void *, wl_output *) {},
            .scale = [](void *, wl_output *, int) {},
            .name = [](void *data, wl_output *,
                       const char *name) { static_cast<client::output *>(data)->name = name; },
            .description = [](void *, wl_output *, const char *) {},
        };
        auto &output = c.outputs.emplace_back(client::output{.global = global, .proxy = proxy, .name = ""});
        wl_output_add_listener(proxy, &listener, &output);
    }

    static void announce(void *data, wl_registry *, uint32_t name, const char *interface, uint32_t version)
    {
        auto &c = *static_cast<client *>(data);
        c.announced.push_back({name, interface, version});
        bind_global(c, c.announced.back());
    }

    static void withdraw(void *data, wl_registry *, uint32_t name)
    {
        auto &c = *static_cast<client *>(data);
        std::erase_if(c.announced, [&](const global &g) { return g.name == name; });
        c.outputs.remove_if([&](const client::output &o) {
            if (o.global != name)
                return false;
            for (window &w : c.windows)
                std::erase(w.entered, o.proxy);
            wl_output_release(o.proxy);
            return true;
        });
    }

    static void release(void *data, wl_buffer *buffer)
    {
        std::erase(static_cast<client *>(data)->buffers, buffer);
        wl_buffer_destroy(buffer);
    }

    static void answer(void *data, wl_callback *callback, uint32_t)
    {
        auto &c = *static_cast<client *>(data);
        if (++c.answered == 1)
            (void)c.roundtrip_begin(); // for the events of the globals that the first list made us bind
        std::erase(c.roundtrips, callback);
        wl_callback_destroy(callback);
    }
};

client::client(int fd) : display(wl_display_connect_to_fd(fd))
{
    static constexpr wl_registry_listener listener{
        .global = client_events::announce,
        .global_remove = client_events::withdraw,
    };
    registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &listener, this);
    (void)roundtrip_begin();
}

client::~client()
{
    windows.clear();
    for (wl_buffer *buffer : buffers)
        wl_buffer_destroy(buffer);
    gamma_controls.clear();
    for (wl_callback *callback : roundtrips)
        wl_callback_destroy(callback);
    for (const output &o : outputs)
        wl_output_destroy(o.proxy);
    if (gamma_manager != nullptr)
        zwlr_gamma_control_manager_v1_destroy(gamma_manager);
    if (wm_base != nullptr)
        xdg_wm_base_destroy(wm_base);
    if (shm != nullptr)
        wl_shm_destroy(shm);
    if (compositor != nullptr)
        wl_compositor_destroy(compositor);
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
}

void client::pump()
{
    if (error() != 0)
        return;
    while (wl_display_prepare_read(display) != 0)
        wl_display_dispatch_pending(display);
    wl_display_flush(display);
    pollfd readable{.fd = wl_display_get_fd(display), .events = POLLIN, .revents = 0};
    if (poll(&readable, 1, 0) > 0)
        wl_display_read_events(display);
    else
        wl_display_cancel_read(display);
    wl_display_dispatch_pending(display);
}

int client::error() const
{
    return wl_display_get_error(display);
}

std::optional<protocol_error> client::protocol_error() const
{
    if (error() != EPROTO)
        return std::nullopt;
    const wl_interface *interface = nullptr;
    const uint32_t code = wl_display_get_protocol_error(display, &interface, nullptr);
    return test::protocol_error{interface != nullptr ? interface->name : "", code};
}

int client::roundtrip_begin()
{
    static constexpr wl_callback_listener listener{.done = client_events::answer};
    wl_callback *callback = wl_display_sync(display);
    roundtrips.push_back(callback);
    wl_callback_add_listener(callback, &listener, this);
    return ++asked;
}

void client::vanish()
{
    wl_display_flush(display);
    shutdown(wl_display_get_fd(display), SHUT_RDWR);
}

window &client::create_window(const std::string &app_id)
{
    return windows.emplace_back(*this, app_id);
}

gamma_control &client::gamma(const std::string &output_name)
{
    return gamma_controls.emplace_back(*this, output_named(output_name));
}

wl_output *client::output_named(const std::string &name) const
{
    const auto found = std::ranges::find(outputs, name, &output::name);
    return found != outputs.end() ? found->proxy : nullptr;
}

std::string client::name_of(const wl_output *proxy) const
{
    const auto found = std::ranges::find(outputs, proxy, &output::proxy);
    return found != outputs.end() ? found->name : "";
}

wl_surface *client::create_surface(const std::string &name)
{
    wl_surface *surface = wl_compositor_create_surface(compositor);
    surface_names[surface] = name;
    return surface;
}

void client::destroy_surface(wl_surface *surface)
{
    surface_names.erase(surface);
    wl_surface_destroy(surface);
}

std::string client::name_of(wl_surface *surface) const
{
    const auto found = surface_names.find(surface);
    return found != surface_names.end() ? found->second : "?";
}

void client::paint(wl_surface *surface, test::size s, uint32_t argb)
{
    show(surface, s, [&](uint32_t *memory, size_t pixels) { std::fill_n(memory, pixels, argb); });
}

void client::paint_noise(wl_surface *surface, test::size s)
{
    show(surface, s, [](uint32_t *memory, size_t pixels) {
        for (size_t i = 0; i < pixels; i++)
            memory[i] = 0xff000000 | uint32_t(i * 2654435761U >> 8);
    });
}

void client::show(wl_surface *surface, test::size s, const std::function<void(uint32_t *, size_t)> &fill)
{
    static constexpr wl_buffer_listener listener{.release = client_events::release};
    const size_t pixels = size_t(s.width) * size_t(s.height);
    const int fd = memory_file<uint32_t>(pixels, [&](uint32_t *memory) { fill(memory, pixels); });
    wl_shm_pool *pool = wl_shm_create_pool(shm, fd, int(pixels * 4));
    wl_buffer *buffer =
        wl_shm_pool_create_buffer(pool, 0, s.width, s.height, s.width * 4, WL_SHM_FORMAT_ARGB8888);
    wl_shm_pool_destroy(pool);
    close(fd);
    wl_buffer_add_listener(buffer, &listener, this);
    buffers.push_back(buffer);
    wl_surface_attach(surface, buffer, 0, 0);
    wl_surface_damage_buffer(surface, 0, 0, s.width, s.height);
    wl_surface_commit(surface);
}

void *client::bind(const wl_interface &interface, uint32_t version)
{
    const auto found = std::ranges::find(announced, interface.name, &global::interface);
    if (found == announced.end())
        return nullptr;
    return wl_registry_bind(registry, found->name, &interface, std::min(found->version, version));
}

struct gamma_events {
    static void size(void *data, zwlr_gamma_control_v1 *, uint32_t size)
    {
        static_cast<gamma_control *>(data)->table_size = size;
    }
    static void failed(void *data, zwlr_gamma_control_v1 *)
    {
        static_cast<gamma_control *>(data)->refused = true;
    }
};

gamma_control::gamma_control(client &owner, wl_output *output)
    : control(zwlr_gamma_control_manager_v1_get_gamma_control(owner.gamma_manager, output))
{
    static constexpr zwlr_gamma_control_v1_listener listener{
        .gamma_size = gamma_events::size,
        .failed = gamma_events::failed,
    };
    zwlr_gamma_control_v1_add_listener(control, &listener, this);
}

gamma_control::~gamma_control()
{
    destroy();
}

void gamma_control::destroy()
{
    if (control != nullptr)
        zwlr_gamma_control_v1_destroy(std::exchange(control, nullptr));
}

} // namespace test
