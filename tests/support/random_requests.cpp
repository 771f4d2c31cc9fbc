#include "random_requests.hpp"

#include "boxes.hpp"
#include "memory_file.hpp"
#include "server_check.hpp"

#include <algorithm>
#include <array>
#include <climits>
#include <ctime>
#include <fcntl.h>
#include <format>
#include <linux/input-event-codes.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace test
{

static constexpr size_t most_peers = 3;
static constexpr size_t most_objects = 400; // of a peer; it leaves when it has more
static constexpr size_t most_kept = 16;
static constexpr int largest_buffer = 2048; // pixels, in both directions
static constexpr int longer_than_a_ping_ms = 3100;
static constexpr uint16_t shm_create_pool = 0, pool_create_buffer = 0;
static constexpr uint16_t frame_event_buffer = 0; // its format, width, height and stride
// Far more than compiling a shader takes.
#ifdef __SANITIZE_ADDRESS__
static constexpr long too_long_ms = 30'000;
#else
static constexpr long too_long_ms = 10'000;
#endif

static long thread_time_ms()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec * 1000 + now.tv_nsec / 1'000'000;
}

// The session and its clients

void random_requests::begin()
{
    SetUp();
    active_windows = activity::may_lag;
    plug("A", 640, 480);
    pointer = &plug_pointer();
    keyboard = &plug_keyboard();
    plug_touch("touch");
    witness = &map("witness", {200, 150});
    logger = wl_display_add_protocol_logger(server.display, log_message, this);
}

void random_requests::end()
{
    peers.clear();
    settle();
    wl_protocol_logger_destroy(logger);
    for (const int fd : kept)
        close(fd);
    kept.clear();
    TearDown();
}

void random_requests::log_message(void *data, wl_protocol_logger_type direction,
                                  const wl_protocol_logger_message *message)
{
    auto &session = *static_cast<random_requests *>(data);
    const std::string_view name = message->message->name;
    for (peer &p : session.peers) {
        if (p.side != wl_resource_get_client(message->resource))
            continue;
        if (direction == WL_PROTOCOL_LOGGER_REQUEST)
            p.sent.insert(std::format("{}.{}", wl_resource_get_class(message->resource), name));
        else if (name == "configure" && message->message->signature[0] == 'u')
            p.configured[wl_resource_get_id(message->resource)] = message->arguments[0].u;
    }
}

void random_requests::connect_peer(peer &p)
{
    int ends[2];
    EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends));
    p.side = wl_client_create(server.display, ends[0]);
    p.gone.notify = [](wl_listener *raw, void *) {
        auto *ended = owner_of<&peer::gone>(static_cast<listener *>(raw));
        ended->side = nullptr;
        unlisten(ended->gone);
    };
    wl_client_add_destroy_listener(p.side, &p.gone);
    p.wire = std::make_unique<raw_client>(ends[1]);
    EVENTUALLY((p.wire->read(), p.wire->knows("wl_compositor")));
    for (const auto &[interface, version] : p.wire->offered())
        if (interface != "xwayland_shell_v1") // only the X server may have it
            p.wire->bind(interface, version);
    settle();
    for (int i = 0; i < 3; i++)
        ask(p, any_object(p, "wl_compositor"), "create_surface");
    for (const char *device : {"get_pointer", "get_keyboard", "get_touch"})
        ask(p, any_object(p, "wl_seat"), device);
    ask(p, any_object(p, "wl_compositor"), "create_region");
    EXPECT_NE(p.side, nullptr);
}

// Returns a client that is connected.
random_requests::peer &random_requests::any_peer()
{
    peers.remove_if([](const peer &p) { return p.side == nullptr; });
    if (peers.size() < most_peers && (peers.empty() || one_in(10)))
        connect_peer(peers.emplace_back());
    return any_of(peers);
}

std::vector<random_requests::object> random_requests::objects_of(const peer &p)
{
    std::vector<object> found;
    if (p.side == nullptr)
        return found;
    wl_client_for_each_resource(
        p.side,
        [](wl_resource *resource, void *data) {
            static_cast<std::vector<object> *>(data)->push_back(
                {.id = wl_resource_get_id(resource),
                 .interface = wl_resource_get_interface(resource),
                 .version = wl_resource_get_version(resource)});
            return WL_ITERATOR_CONTINUE;
        },
        &found);
    return found;
}

random_requests::object random_requests::object_of(const peer &p, uint32_t id)
{
    for (const object &o : objects_of(p))
        if (o.id == id)
            return o;
    return {};
}

random_requests::object random_requests::any_object(const peer &p, std::string_view interface)
{
    std::vector<object> found = objects_of(p);
    std::erase_if(found, [&](const object &o) { return interface != o.interface->name; });
    return found.empty() ? object{} : any_of(found);
}

// Arguments

uint32_t random_requests::any_number()
{
    static constexpr std::array<uint32_t, 17> limits{
        0,       1,        2,       3,      0xff,   0x100,    0x7fff,     0x8000,        0xffff,
        0x10000, 0x800000, INT_MAX, 0xff01, 0x4000, 1u << 31, UINT32_MAX, UINT32_MAX - 1};
    switch (below(8)) {
    case 0:
        return any_of(limits);
    case 1:
        return uint32_t(random());
    case 2:
        return any_serial();
    case 3:
        return uint32_t(below(1000)) * 256; // whole numbers with a fraction of 8 bits
    case 4:
        return uint32_t(below(600)) - 300;
    default:
        return uint32_t(below(6));
    }
}

// The serials of the last events are the most likely ones to be taken.
uint32_t random_requests::any_serial()
{
    return wl_display_get_serial(server.display) - uint32_t(below(one_in(4) ? 100 : 4));
}

std::string random_requests::any_text()
{
    static const std::array<std::string, 8> texts{
        "",
        "text/plain",
        "text/plain;charset=utf-8",
        "a title",
        "\xff\xfe not UTF-8 \xc0\xaf",
        "vantore-clips-overlay",
        std::string(3000, 'x'),
        "\n\t\"\\{}\x01",
    };
    return any_of(texts);
}

void random_requests::keep(int fd)
{
    kept.push_back(fd);
    if (kept.size() > most_kept) {
        close(kept.front());
        kept.erase(kept.begin());
    }
}

static int listening_socket()
{
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const sockaddr any_name{.sa_family = AF_UNIX, .sa_data = {}}; // the kernel picks one
    EXPECT_EQ(bind(fd, &any_name, sizeof any_name.sa_family), 0);
    EXPECT_EQ(listen(fd, 1), 0);
    return fd;
}

// Returns a descriptor that the caller closes. It may be one whose other end, or whose file, is kept.
int random_requests::any_descriptor()
{
    int ends[2] = {-1, -1};
    const auto noise = [this](unsigned *values) {
        for (size_t i = 0; i < 4096; i++)
            values[i] = unsigned(random());
    };
    switch (below(12)) {
    case 0:
        return memfd_create("empty", MFD_CLOEXEC);
    case 1: {
        const int fd = memory_file<unsigned>(4096, noise);
        keep(dup(fd));
        return fd;
    }
    case 2: {
        const int fd = memfd_create("sealed", MFD_CLOEXEC | MFD_ALLOW_SEALING);
        EXPECT_EQ(ftruncate(fd, 65536), 0);
        fcntl(fd, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL);
        return fd;
    }
    case 3:
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        keep(ends[1]);
        return ends[0];
    case 4:
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        keep(ends[0]);
        return ends[1];
    case 5:
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        close(ends[1]);
        return ends[0];
    case 6:
        return open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    case 7:
        return open("/dev/zero", O_RDWR | O_CLOEXEC);
    case 8:
        return open("/dev/null", O_RDONLY | O_CLOEXEC);
    case 9:
        return eventfd(0, EFD_CLOEXEC);
    case 10:
        return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    default:
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        keep(ends[0]);
        return ends[1];
    }
}

// Calls `take` with each argument of a signature: its letter, whether it may be null, and its interface.
template <class Take> static void each_argument(const wl_message &kind, Take take)
{
    size_t index = 0;
    bool nullable = false;
    for (const char *c = kind.signature; *c != '\0'; c++) {
        if (*c == '?') {
            nullable = true;
        } else if (*c < '0' || *c > '9') {
            take(*c, nullable, kind.types[index++]);
            nullable = false;
        }
    }
}

// Mostly an object of the wanted interface. The newest one probably has no role yet.
uint32_t random_requests::any_argument_object(const peer &p, const wl_interface *wanted)
{
    std::vector<object> all = objects_of(p);
    if (wanted != nullptr && !one_in(100))
        std::erase_if(all,
                      [&](const object &o) { return std::string_view{o.interface->name} != wanted->name; });
    if (all.empty())
        return 0;
    return one_in(2) ? std::ranges::max(all, {}, &object::id).id : any_of(all).id;
}

// Whether the client lacks an object that the request can't do without.
bool random_requests::lacks_argument(const peer &p, const wl_message &kind)
{
    bool lacks = false;
    each_argument(kind, [&](char letter, bool nullable, const wl_interface *type) {
        lacks |= letter == 'o' && !nullable && type != nullptr && any_object(p, type->name).id == 0;
    });
    return lacks;
}

random_requests::message random_requests::any_arguments(peer &p, const object &on, const wl_message &kind)
{
    message m;
    if (!one_in(5) && sensible_arguments(p, on, kind, m))
        return m;
    each_argument(kind, [&](char letter, bool nullable, const wl_interface *type) {
        switch (letter) {
        case 'n':
            m.words.push_back(p.wire->new_id());
            break;
        case 'o':
            m.words.push_back(nullable && one_in(3) ? 0 : any_argument_object(p, type));
            break;
        case 's':
            if (nullable && one_in(3))
                m.words.push_back(0);
            else
                raw_client::append_text(m.words, any_text());
            break;
        case 'a': {
            const auto length = uint32_t(below(40));
            m.words.push_back(length);
            for (uint32_t i = 0; i < (length + 3) / 4; i++)
                m.words.push_back(any_number());
            break;
        }
        case 'h':
            m.fds.push_back(any_descriptor());
            break;
        default:
            m.words.push_back(any_number());
        }
    });
    return m;
}

// Arguments that get a client further than random ones. Returns false where random ones will do.
bool random_requests::sensible_arguments(peer &p, const object &on, const wl_message &kind, message &m)
{
    const std::string name = std::format("{}.{}", on.interface->name, kind.name);
    const auto size = [this] { return uint32_t(1 + below(300)); };
    if (name == "wl_shm.create_pool") {
        m.fds.push_back(memory_file<unsigned>(65536, [](unsigned *) {}));
        keep(dup(m.fds.back())); // it may shrink under the pool
        m.words = {p.wire->new_id(), 65536 * 4};
    } else if (name == "wl_shm_pool.create_buffer") {
        const auto width = uint32_t(1 + below(128)), height = uint32_t(1 + below(128));
        m.words = {p.wire->new_id(), 0, width, height, width * 4, uint32_t(below(2))};
    } else if (name == "zwp_virtual_keyboard_v1.keymap") {
        m.fds.push_back(dup(keyboard->base.keymap_fd));
        m.words = {WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, uint32_t(keyboard->base.keymap_size)};
    } else if (name == "xdg_positioner.set_size" || name == "xdg_toplevel.set_max_size" ||
               name == "zwlr_layer_surface_v1.set_size") {
        m.words = {size(), size()};
    } else if (name == "xdg_positioner.set_anchor_rect" || name == "xdg_surface.set_window_geometry") {
        m.words = {uint32_t(below(20)), uint32_t(below(20)), size(), size()};
    } else if (std::string_view{kind.name} == "ack_configure") {
        m.words = {p.configured[on.id]};
    } else if (name == "wl_surface.set_buffer_scale") {
        m.words = {uint32_t(1 + below(3))};
    } else if (name.starts_with("zwlr_screencopy_frame_v1.copy")) {
        const std::vector<uint32_t> *wanted = p.wire->heard(on.id, frame_event_buffer);
        if (wanted == nullptr)
            return false;
        m.words = {create_buffer(p, int((*wanted)[1]), int((*wanted)[2]), (*wanted)[0])};
    } else if (name == "wl_surface.attach") {
        m.words = {any_object(p, "wl_buffer").id, 0, 0};
    } else if (name == "wp_security_context_manager_v1.create_listener") {
        int life[2] = {-1, -1};
        EXPECT_EQ(pipe2(life, O_CLOEXEC), 0);
        keep(life[1]);
        m.words = {p.wire->new_id()};
        m.fds = {listening_socket(), life[0]};
    } else {
        return false;
    }
    return true;
}

void random_requests::send(peer &p, uint32_t id, uint16_t opcode, const message &m)
{
    std::vector<uint32_t> bytes;
    raw_client::append(bytes, id, opcode, m.words);
    p.wire->send(bytes, m.fds);
    for (const int fd : m.fds)
        close(fd);
}

uint32_t random_requests::ask(peer &p, const object &on, std::string_view request,
                              std::vector<uint32_t> words)
{
    for (int opcode = 0; on.id != 0 && opcode < on.interface->method_count; opcode++) {
        const wl_message &kind = on.interface->methods[opcode];
        if (request != kind.name)
            continue;
        uint32_t made = 0;
        size_t place = 0;
        each_argument(kind, [&](char letter, bool, const wl_interface *) {
            if (letter == 'n')
                words.insert(words.begin() + ptrdiff_t(place), made = p.wire->new_id());
            place++;
        });
        send(p, on.id, uint16_t(opcode), {.words = words, .fds = {}});
        settle();
        return made;
    }
    return 0;
}

// Operations

std::string random_requests::request()
{
    peer &p = any_peer();
    std::vector<object> all = objects_of(p);
    std::set<std::string_view> interfaces;
    for (const object &o : all)
        interfaces.insert(o.interface->name);
    if (all.size() > most_objects)
        return leave(p);
    if (all.empty())
        return "nothing";
    const object on = any_object(p, any_of(interfaces)); // rare kinds as often as common ones
    if (on.interface->method_count == 0)
        return "nothing";
    const int opcode = below(size_t(on.interface->method_count));
    const wl_message &kind = on.interface->methods[opcode];
    std::string name = std::format("{}@{}.{}", on.interface->name, on.id, kind.name);
    if (atoi(kind.signature) > on.version || on.interface->name == std::string_view{"wl_registry"})
        return "nothing";
    if (lacks_argument(p, kind) && !one_in(50))
        return "nothing";
    // Most objects shall live long enough to be used.
    if ((std::string_view{kind.name} == "destroy" || std::string_view{kind.name} == "release") && !one_in(4))
        return "nothing";
    send(p, on.id, uint16_t(opcode), any_arguments(p, on, kind));
    return name;
}

std::string random_requests::nearly_valid_request()
{
    peer &p = any_peer();
    std::vector<object> all = objects_of(p);
    std::erase_if(all, [](const object &o) { return o.interface->method_count == 0; });
    if (all.empty())
        return "nothing";
    object on = any_of(all);
    auto opcode = uint16_t(below(size_t(on.interface->method_count)));
    message m = any_arguments(p, on, on.interface->methods[opcode]);
    if (m.words.empty()) {
        m.words.push_back(any_number());
        send(p, on.id, opcode, m);
        return std::format("a word too many for {}@{}", on.interface->name, on.id);
    }
    std::string what;
    switch (below(7)) {
    case 0:
        what = "an object that is not there";
        on.id = p.wire->new_id() + uint32_t(below(3));
        break;
    case 1:
        what = "a request that is not there";
        opcode = uint16_t(on.interface->method_count + below(3));
        break;
    case 2:
        what = "a word too few";
        m.words.pop_back();
        break;
    case 3:
        what = "words too many";
        m.words.resize(m.words.size() + 1 + size_t(below(100)));
        break;
    case 4:
        what = "a wrong word";
        any_of(m.words) = any_number();
        break;
    case 5:
        what = m.fds.empty() ? "a valid request" : "no descriptor";
        for (const int fd : m.fds)
            close(fd);
        m.fds.clear();
        break;
    default:
        what = "a descriptor too many";
        m.fds.push_back(any_descriptor());
    }
    send(p, on.id, opcode, m);
    return std::format("{} for {}@{}", what, on.interface->name, on.id);
}

std::string random_requests::half_a_request()
{
    peer &p = any_peer();
    p.wire->send({raw_client::display, 4096U << 16, any_number()});
    return "half a request";
}

std::string random_requests::bind_again()
{
    peer &p = any_peer();
    const std::map<std::string, uint32_t> offered = p.wire->offered();
    const auto &[interface, version] = any_of(offered);
    p.wire->bind(interface, one_in(20) ? any_number() : uint32_t(1 + below(version)));
    return "bind " + interface;
}

std::string random_requests::leave(const peer &p)
{
    peers.remove_if([&](const peer &other) { return &other == &p; });
    return "leave";
}

std::string random_requests::lose_a_client()
{
    return leave(any_peer());
}

uint32_t random_requests::create_buffer(peer &p, int width, int height, uint32_t format)
{
    const object shm = any_object(p, "wl_shm");
    if (shm.id == 0)
        return 0;
    width = std::clamp(width, 1, largest_buffer); // a capture may wish for any size
    height = std::clamp(height, 1, largest_buffer);
    const auto bytes = uint32_t(width * height * 4);
    const uint32_t pool = p.wire->new_id();
    const int file = memory_file<char>(bytes, [](char *) {});
    send(p, shm.id, shm_create_pool, {.words = {pool, bytes}, .fds = {file}});
    const uint32_t buffer = p.wire->new_id();
    send(p, pool, pool_create_buffer,
         {.words = {buffer, 0, uint32_t(width), uint32_t(height), uint32_t(width) * 4, format}, .fds = {}});
    return buffer;
}

void random_requests::draw(peer &p, const object &surface, int width, int height)
{
    if (surface.id == 0)
        return;
    const uint32_t buffer = create_buffer(p, width, height, WL_SHM_FORMAT_XRGB8888);
    ask(p, surface, "attach", {buffer, 0, 0});
    ask(p, surface, "damage", {0, 0, uint32_t(width), uint32_t(height)});
    ask(p, surface, "commit");
}

// In what follows, a client that a request has ended has no objects any more, and ask() and draw() do
// nothing.

std::string random_requests::open_window()
{
    peer &p = any_peer();
    const uint32_t id = ask(p, any_object(p, "wl_compositor"), "create_surface");
    const uint32_t role = ask(p, any_object(p, "xdg_wm_base"), "get_xdg_surface", {id});
    ask(p, object_of(p, role), "get_toplevel");
    ask(p, object_of(p, id), "commit");
    ask(p, object_of(p, role), "ack_configure", {p.configured[role]});
    draw(p, object_of(p, id), 1 + below(200), 1 + below(200));
    return std::format("open a window on {}", id);
}

std::string random_requests::open_popup()
{
    peer &p = any_peer();
    const object parent = any_object(p, "xdg_surface"), shell = any_object(p, "xdg_wm_base");
    if (parent.id == 0)
        return "nothing";
    const uint32_t id = ask(p, any_object(p, "wl_compositor"), "create_surface");
    const uint32_t positioner = ask(p, shell, "create_positioner");
    ask(p, object_of(p, positioner), "set_size", {uint32_t(1 + below(200)), uint32_t(1 + below(200))});
    ask(p, object_of(p, positioner), "set_anchor_rect", {0, 0, 1, 1});
    const uint32_t role = ask(p, shell, "get_xdg_surface", {id});
    const uint32_t popup = ask(p, object_of(p, role), "get_popup", {parent.id, positioner});
    if (one_in(2))
        ask(p, object_of(p, popup), "grab", {any_object(p, "wl_seat").id, any_serial()});
    ask(p, object_of(p, id), "commit");
    ask(p, object_of(p, role), "ack_configure", {p.configured[role]});
    draw(p, object_of(p, id), 50, 50);
    return std::format("open a popup on {}", id);
}

std::string random_requests::open_panel()
{
    peer &p = any_peer();
    const uint32_t id = ask(p, any_object(p, "wl_compositor"), "create_surface");
    std::vector<uint32_t> words{id, any_object(p, "wl_output").id, uint32_t(below(4))};
    raw_client::append_text(words, one_in(3) ? "vantore-panel" : "panel");
    const uint32_t role = ask(p, any_object(p, "zwlr_layer_shell_v1"), "get_layer_surface", words);
    ask(p, object_of(p, role), "set_size", {uint32_t(1 + below(100)), uint32_t(1 + below(100))});
    ask(p, object_of(p, role), "set_anchor", {uint32_t(below(16))});
    ask(p, object_of(p, role), "set_exclusive_zone", {uint32_t(below(60)) - 10});
    ask(p, object_of(p, role), "set_keyboard_interactivity", {uint32_t(below(3))});
    ask(p, object_of(p, id), "commit");
    ask(p, object_of(p, role), "ack_configure", {p.configured[role]});
    draw(p, object_of(p, id), 50, 20);
    return std::format("open a panel on {}", id);
}

std::string random_requests::nest()
{
    peer &p = any_peer();
    const object parent = any_object(p, "wl_surface");
    if (parent.id == 0)
        return "nothing";
    const uint32_t id = ask(p, any_object(p, "wl_compositor"), "create_surface");
    ask(p, any_object(p, "wl_subcompositor"), "get_subsurface", {id, parent.id});
    draw(p, object_of(p, id), 30, 30);
    return std::format("nest {} in {}", id, parent.id);
}

// A file that the compositor may have mapped.
std::string random_requests::shrink_a_file()
{
    if (kept.empty())
        return "nothing";
    return ftruncate(any_of(kept), 0) == 0 ? "shrink a file" : "nothing";
}

std::string random_requests::move_pointer()
{
    pointer->move(below(200) - 100, below(200) - 100);
    return "move the pointer";
}

std::string random_requests::use_button()
{
    pointer->click(one_in(3) ? BTN_RIGHT : BTN_LEFT);
    return "click";
}

std::string random_requests::use_key()
{
    keyboard->tap(one_in(2) ? KEY_A : KEY_ESC);
    return "press a key";
}

std::string random_requests::pass_time()
{
    advance_clock_ms(one_in(4) ? longer_than_a_ping_ms : 20);
    return "time passes";
}

std::string random_requests::change_outputs()
{
    if (second_output)
        unplug("B");
    else
        plug("B", 500 + below(100), 300);
    second_output = !second_output;
    return "change the outputs";
}

const random_requests::operation random_requests::operations[]{
    {&random_requests::request, 60},       {&random_requests::nearly_valid_request, 4},
    {&random_requests::half_a_request, 1}, {&random_requests::bind_again, 3},
    {&random_requests::lose_a_client, 1},  {&random_requests::open_window, 6},
    {&random_requests::open_popup, 4},     {&random_requests::open_panel, 3},
    {&random_requests::nest, 3},           {&random_requests::shrink_a_file, 2},
    {&random_requests::move_pointer, 4},   {&random_requests::use_button, 3},
    {&random_requests::use_key, 3},        {&random_requests::pass_time, 2},
    {&random_requests::change_outputs, 1},
};

std::string random_requests::step(unsigned seed)
{
    random.seed(seed);
    int all = 0;
    for (const operation &o : operations)
        all += o.weight;
    int left = below(size_t(all));
    const operation *chosen = operations;
    while ((left -= chosen->weight) >= 0)
        chosen++;
    const long began = thread_time_ms();
    std::string did = (this->*chosen->run)();
    settle();
    last_step_ms = thread_time_ms() - began;
    for (peer &p : peers) {
        p.wire->read();
        if (p.side != nullptr)
            kinds_taken.merge(p.sent);
        else if (!p.wire->error().empty())
            did += " (" + p.wire->error() + ")";
        p.sent.clear();
    }
    return did;
}

std::vector<std::string> random_requests::broken()
{
    std::vector<std::string> rules = server_check(server, active_windows);
    rules.append_range(usable_check(server));
    rules.append_range(lookup_check(server));
    if (witness->owner().error() != 0)
        rules.emplace_back("a well-behaved client was ended");
    if (last_step_ms > too_long_ms)
        rules.push_back(std::format("a step took {} ms of processor time", last_step_ms));
    return rules;
}

} // namespace test
