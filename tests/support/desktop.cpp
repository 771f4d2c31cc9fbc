#include "desktop.hpp"

#include "config/load.hpp"
#include "startup.hpp"

#include <algorithm>
#include <csignal>
#include <ctime>
#include <drm_fourcc.h>
#include <filesystem>
#include <format>
#include <sys/socket.h>
#include <unistd.h>

namespace test
{

static std::vector<vnt_event> g_heard;

// Returns what each open descriptor of this process stands for. Leaves out the one that reads the list.
static std::map<int, std::string> open_descriptors()
{
    std::map<int, std::string> open;
    std::error_code failure;
    const std::string list = "/proc/" + std::to_string(getpid()) + "/fd";
    for (const auto &entry : std::filesystem::directory_iterator{"/proc/self/fd"}) {
        const std::string target = std::filesystem::read_symlink(entry.path(), failure);
        if (!failure && target != list)
            open[atoi(entry.path().filename().c_str())] = target;
    }
    return open;
}

unstarted_desktop::unstarted_desktop()
    : server_record(std::make_unique<vantore_server>()), server(*server_record)
{
}

unstarted_desktop::~unstarted_desktop() = default;

// Starts a first session, so that files which stay open don't count as leaks of a test. The graphics driver
// opens some with the first renderer of a process and keeps them.
static void warm_up()
{
    static bool warm = false;
    if (std::exchange(warm, true))
        return;
    const auto server = std::make_unique<vantore_server>();
    ASSERT_TRUE(server_start(*server));
    // A token takes its random number from a device that stays open.
    wlr_xdg_activation_token_v1_create(wlr_xdg_activation_v1_create(server->display));
    server_finish(*server);
}

static void note_event(vantore_server &, vnt_event event)
{
    g_heard.push_back(event);
}

void unstarted_desktop::SetUp()
{
    write_config("autostart.conf", ""); // the default text starts programs
    warm_up();
    descriptors_before = open_descriptors();
    g_heard.clear();
    broadcast_listen(note_event);
}

void unstarted_desktop::start()
{
    ASSERT_TRUE(server_start(server)) << world.log();
    running = true;
    backend = made_up_backend_create(wl_display_get_event_loop(server.display));
    ASSERT_TRUE(wlr_multi_backend_add(server.backend, &backend->base));
    g_heard.clear();
}

void unstarted_desktop::finish()
{
    EXPECT_THAT(server_check(server, active_windows), testing::IsEmpty()) << state();
    EXPECT_THAT(lookup_check(server), testing::IsEmpty()) << state();
    server_finish(server);
    running = false;
    connections.clear();
    ipc_clients.clear();
    x11_clients.clear();
    EXPECT_TRUE(wl_list_empty(&server.xwl_unmanaged));
    EXPECT_TRUE(wl_list_empty(&server.ipc.ipc_clients));
    EXPECT_TRUE(wl_list_empty(&server.toplevels));
    EXPECT_TRUE(wl_list_empty(&server.layer_surfaces));
    EXPECT_TRUE(wl_list_empty(&server.outputs));
    EXPECT_TRUE(wl_list_empty(&server.workspaces));
    EXPECT_TRUE(wl_list_empty(&server.keyboards));
    EXPECT_TRUE(wl_list_empty(&server.input_devs));
}

void unstarted_desktop::config(std::string_view text)
{
    write_config("compositor.conf", text);
}

void unstarted_desktop::write_config(const std::string &name, std::string_view text)
{
    world.write_config(name, text);
    if (running)
        config_load(server);
}

void unstarted_desktop::TearDown()
{
    if (running)
        finish();
    broadcast_unlisten(note_event);
    EXPECT_EQ(open_descriptors(), descriptors_before);
}

made_up_output &unstarted_desktop::plug(output_traits traits)
{
    return plug_in(*backend, std::move(traits));
}

made_up_output &unstarted_desktop::plug(const std::string &name, int width, int height)
{
    return plug({.name = name, .width = width, .height = height});
}

vantore_output &unstarted_desktop::output(const std::string &name)
{
    vantore_output *o = output_by_name(server, name);
    if (o == nullptr) {
        ADD_FAILURE() << "no output " << name << '\n' << state();
        abort();
    }
    return *o;
}

void unstarted_desktop::unplug(const std::string &name)
{
    test::unplug(made_up(output(name).wlr_output));
}

image unstarted_desktop::picture(const std::string &name)
{
    wlr_buffer *shown = made_up(output(name).wlr_output).shown;
    wlr_texture *texture = shown != nullptr ? wlr_texture_from_buffer(server.renderer, shown) : nullptr;
    if (texture == nullptr)
        return {};
    image result{.width = shown->width, .height = shown->height, .argb = {}};
    result.argb.resize(size_t(shown->width) * size_t(shown->height));
    wlr_texture_read_pixels_options options{};
    options.data = result.argb.data();
    options.format = DRM_FORMAT_ARGB8888;
    options.stride = uint32_t(shown->width) * 4;
    const bool read = wlr_texture_read_pixels(texture, &options);
    wlr_texture_destroy(texture);
    return read ? result : image{};
}

uint32_t unstarted_desktop::pixel(const std::string &name, int x, int y)
{
    const image shown = picture(name);
    return shown.argb.empty() ? 0 : shown.at(x, y);
}

template <class Device, class... Arguments>
static Device &add_device(made_up_backend &backend, std::list<Device> &list, const Arguments &...arguments)
{
    Device &added = list.emplace_back(arguments...);
    announce_device(backend, added.base.base);
    return added;
}

made_up_keyboard &unstarted_desktop::plug_keyboard(const std::string &name)
{
    return add_device(*backend, backend->devices.keyboards, name);
}

made_up_pointer &unstarted_desktop::plug_pointer(const std::string &name)
{
    return add_device(*backend, backend->devices.pointers, name);
}

made_up_touch &unstarted_desktop::plug_touch(const std::string &name, const std::string &output_name)
{
    return add_device(*backend, backend->devices.touchscreens, name, output_name);
}

made_up_tablet &unstarted_desktop::plug_tablet(const std::string &name)
{
    return add_device(*backend, backend->devices.tablets, name);
}

made_up_tablet_pad &unstarted_desktop::plug_tablet_pad(const std::string &name)
{
    return add_device(*backend, backend->devices.tablet_pads, name);
}

made_up_switch &unstarted_desktop::plug_switch(const std::string &name)
{
    return add_device(*backend, backend->devices.switches, name);
}

template <class Device> static void remove_device(std::list<Device> &list, const Device &device)
{
    list.remove_if([&](const Device &other) { return &other == &device; });
}

void unstarted_desktop::unplug_device(made_up_keyboard &keyboard)
{
    remove_device(backend->devices.keyboards, keyboard);
}

void unstarted_desktop::unplug_device(made_up_pointer &pointer)
{
    remove_device(backend->devices.pointers, pointer);
}

void unstarted_desktop::unplug_device(made_up_touch &touch)
{
    remove_device(backend->devices.touchscreens, touch);
}

void unstarted_desktop::point_at(made_up_pointer &pointer, double lx, double ly) const
{
    pointer.move(lx - server.cursor->x, ly - server.cursor->y);
}

client &unstarted_desktop::add_connection(int client_end, int server_end)
{
    wl_client *peer = wl_client_create(server.display, server_end);
    return *connections.emplace_back(std::make_unique<client>(client_end), peer).side;
}

client &unstarted_desktop::connect()
{
    int ends[2];
    EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends));
    client &added = add_connection(ends[1], ends[0]);
    EVENTUALLY(added.ready());
    return added;
}

void unstarted_desktop::disconnect(client &c)
{
    connections.remove_if([&](const connection &other) { return other.side.get() == &c; });
    settle();
}

void unstarted_desktop::disconnect(x11_client &c)
{
    x11_clients.remove_if([&](const x11_client &other) { return &other == &c; });
    settle();
}

client &unstarted_desktop::connect(cut_line &line)
{
    client &added = add_connection(line.client_end(), line.server_end());
    cut_lines.push_back(&line);
    EVENTUALLY(added.ready() || added.error() != 0);
    return added;
}

void unstarted_desktop::forget(cut_line &line)
{
    line.cut();
    std::erase(cut_lines, &line);
}

window &unstarted_desktop::map(const std::string &app_id, size preferred)
{
    window &w = connect().create_window(app_id);
    w.preferred = preferred;
    return map(w);
}

window &unstarted_desktop::map(window &w)
{
    w.open();
    EVENTUALLY(find_record(w) != nullptr);
    settle();
    return w;
}

window &unstarted_desktop::map_dialog(window &parent, const std::string &app_id, size preferred)
{
    window &dialog = parent.owner().create_window(app_id);
    dialog.parent(&parent);
    dialog.preferred = preferred;
    return map(dialog);
}

window &unstarted_desktop::map_of_fixed_size(const std::string &app_id, size fixed)
{
    window &w = connect().create_window(app_id);
    w.preferred = fixed;
    w.min_size(fixed);
    w.max_size(fixed);
    return map(w);
}

vantore_toplevel *unstarted_desktop::find_record(const window &w)
{
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
        wl_resource *resource = tl_surface(t)->resource;
        if (wl_resource_get_client(resource) == server_side(w.owner()) &&
            wl_resource_get_id(resource) == w.surface_id())
            return &t;
    }
    return nullptr;
}

vantore_toplevel &unstarted_desktop::record(const window &w)
{
    vantore_toplevel *t = find_record(w);
    if (t == nullptr) {
        ADD_FAILURE() << "the compositor does not have the window\n" << state();
        abort();
    }
    return *t;
}

void unstarted_desktop::place(const window &w, int lx, int ly)
{
    tl_move(record(w), lx, ly);
}

wl_client *unstarted_desktop::server_side(const client &c)
{
    for (const connection &other : connections)
        if (other.side.get() == &c)
            return other.server_side;
    return nullptr;
}

vantore_workspace &unstarted_desktop::workspace(int num) const
{
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
        if (ws.num == num)
            return ws;
    abort();
}

void unstarted_desktop::pump()
{
    wl_display_flush_clients(server.display);
    for (const connection &c : connections)
        c.side->pump();
    for (cut_line *line : cut_lines)
        line->pump();
    for (ipc_client &c : ipc_clients)
        c.pump();
    for (x11_client &c : x11_clients)
        c.pump();
    wl_event_loop_dispatch(wl_display_get_event_loop(server.display), 1);
}

static std::chrono::microseconds processor_time()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return std::chrono::seconds{now.tv_sec} + std::chrono::microseconds{now.tv_nsec / 1000};
}

std::chrono::microseconds unstarted_desktop::pump_timed()
{
    static constexpr std::chrono::microseconds longest_counted_round{200'000};
    const auto began = std::chrono::steady_clock::now();
    const auto worked = processor_time();
    pump();
    const auto took =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - began);
    last_wait.longest_round = std::max(last_wait.longest_round, took);
    last_wait.longest_work = std::max(last_wait.longest_work, processor_time() - worked);
    return std::min(took, longest_counted_round);
}

bool unstarted_desktop::idle() const
{
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (o.wlr_output->frame_pending || o.wlr_output->idle_frame != nullptr)
            return false;
    return true;
}

// A request of an X11 client travels through the X server to the window manager, and its answer travels back.
// That takes more rounds.
void unstarted_desktop::settle()
{
    const int rounds = x11_clients.empty() ? 2 : 4;
    for (int round = 0; round < rounds; round++) {
        pump(); // for clients that don't belong to this desktop
        for (x11_client &c : x11_clients)
            c.roundtrip_begin();
        EVENTUALLY(std::ranges::all_of(x11_clients, [](x11_client &c) { return c.roundtrip_done(); }));
        std::vector<std::pair<client *, int>> asked;
        for (const connection &c : connections)
            if (c.side->error() == 0)
                asked.emplace_back(c.side.get(), c.side->roundtrip_begin());
        EVENTUALLY(std::ranges::all_of(asked, [](const auto &ask) {
            return ask.first->error() != 0 || ask.first->roundtrip_done(ask.second);
        }));
        EVENTUALLY(idle());
    }
}

x11_client &unstarted_desktop::connect_x11()
{
    static constexpr std::chrono::seconds longest_start{30}; // the machine may be busy
    x11_client &added = x11_clients.emplace_back(server.xwayland->display_name);
    (void)until([&] { return added.ready() || added.lost(); }, longest_start);
    if (!added.ready()) {
        ADD_FAILURE() << "the X server did not answer its client\n" << state();
        abort();
    }
    return added;
}

x11_window &unstarted_desktop::map_x11(const x11_traits &traits)
{
    return map_x11(connect_x11().create(traits));
}

x11_window &unstarted_desktop::map_x11(x11_window &w)
{
    w.map();
    EVENTUALLY(find_record(w) != nullptr);
    settle();
    return w;
}

x11_window &unstarted_desktop::map_unmanaged(x11_traits traits)
{
    traits.override_redirect = true;
    x11_window &w = connect_x11().create(traits);
    w.map();
    EVENTUALLY(find_unmanaged(w) != nullptr && find_unmanaged(w)->scene_tree != nullptr);
    settle();
    return w;
}

vantore_toplevel *unstarted_desktop::find_record(const x11_window &w) const
{
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (t.kind == VNT_XWL && t.xwl->window_id == w.id())
            return &t;
    return nullptr;
}

vantore_toplevel &unstarted_desktop::record(const x11_window &w)
{
    vantore_toplevel *t = find_record(w);
    if (t == nullptr) {
        ADD_FAILURE() << "the compositor does not have the X11 window\n" << state();
        abort();
    }
    return *t;
}

vantore_unmanaged *unstarted_desktop::find_unmanaged(const x11_window &w) const
{
    for (auto &u : each<&vantore_unmanaged::link>(server.xwl_unmanaged))
        if (u.xwl->window_id == w.id())
            return &u;
    return nullptr;
}

// The X server is not our child, because the process that the compositor started in between has ended.
pid_t unstarted_desktop::x_server() const
{
    return x_server_of(server.xwayland->display_name);
}

void unstarted_desktop::kill_x_server()
{
    const pid_t pid = x_server();
    ASSERT_GT(pid, 1);
    kill(pid, SIGKILL);
    EVENTUALLY(server.xwayland->server->client == nullptr);
}

ipc_client &unstarted_desktop::dial()
{
    const int before = wl_list_length(&server.ipc.ipc_clients);
    ipc_client &added = ipc_clients.emplace_back(server.ipc.ipc_path.data());
    EVENTUALLY(wl_list_length(&server.ipc.ipc_clients) > before);
    return added;
}

std::string unstarted_desktop::ask(ipc_client &c, uint32_t type, std::string_view payload)
{
    c.take();
    c.send(type, payload);
    const auto reply = [&] { return std::ranges::find(c.messages(), type, &ipc_message::type); };
    EVENTUALLY(reply() != c.messages().end());
    return reply() != c.messages().end() ? reply()->payload : "no reply";
}

void unstarted_desktop::command(std::string_view text)
{
    EXPECT_EQ(ask(dial(), VNT_MSG_COMMAND, text), R"({"success":true})");
}

void unstarted_desktop::advance_clock_ms(int ms)
{
    if (!world.advance_clock_ms(ms))
        return;
    bool passed = false;
    wl_event_source *later = wl_event_loop_add_timer(
        wl_display_get_event_loop(server.display),
        [](void *data) {
            *static_cast<bool *>(data) = true;
            return 0;
        },
        &passed);
    wl_event_source_timer_update(later, 2); // fires after the due ones, which are armed for 1 ms
    EVENTUALLY(passed);
    wl_event_source_remove(later);
}

void unstarted_desktop::run_clock(std::chrono::milliseconds time)
{
    int left = int(time.count());
    for (std::optional<int> next = isolation::next_timer_ms(); next && *next <= left;
         next = isolation::next_timer_ms()) {
        advance_clock_ms(*next);
        left -= *next;
    }
    advance_clock_ms(left);
}

std::vector<vnt_event> unstarted_desktop::heard()
{
    return std::exchange(g_heard, {});
}

static std::string describe(const vantore_toplevel &t)
{
    const wlr_box box = toplevel_box(t);
    const char *app_id = tl_app_id(t);
    return std::format("  window {} \"{}\" {},{} {}x{} workspace {}{}{}\n", t.id,
                       app_id != nullptr ? app_id : "", box.x, box.y, box.width, box.height,
                       t.workspace != nullptr ? t.workspace->num : 0, t.maximized ? " maximized" : "",
                       t.floating ? " floating" : "");
}

static std::string describe(const vantore_output &o)
{
    return std::format("  output {} {}x{} {} workspace {}\n", output_name(o.wlr_output), o.wlr_output->width,
                       o.wlr_output->height, o.wlr_output->enabled ? "on" : "off",
                       o.current_ws != nullptr ? o.current_ws->num : 0);
}

static std::string last_lines(const std::string &text, int count)
{
    size_t from = text.size();
    while (count-- > 0 && from != std::string::npos && from > 0)
        from = text.rfind('\n', from - 1);
    return from == std::string::npos ? text : text.substr(from);
}

std::string unstarted_desktop::state()
{
    std::string text = std::format(
        "the last wait took {} rounds, the longest {} ms, with at most {} ms of work\n"
        "state of the session:\n",
        last_wait.rounds, last_wait.longest_round.count() / 1000, last_wait.longest_work.count() / 1000);
    for (auto &o : each<&vantore_output::link>(server.outputs))
        text += describe(o);
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        text += describe(t);
    return text + "last log lines:" + last_lines(world.log(), 10);
}

} // namespace test
