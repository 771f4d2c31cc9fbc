// Measures what the IPC socket costs: a query, an event, a picture that goes into a memory file, and a
// window's picture with and without copying.

#include "median.hpp"
#include "subject.hpp"

#include "ipc/memory_file.hpp"
#include "strbuf.hpp"
#include "support/ipc_client.hpp"
#include "support/places.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <sys/mman.h>
#include <unistd.h>

using std::chrono::steady_clock;

namespace
{

// Sends the request and reads until its reply has arrived.
void ask(test::ipc_client &c, uint32_t type, std::string_view payload = {})
{
    c.take();
    c.send(type, payload);
    while (std::ranges::find(c.messages(), type, &test::ipc_message::type) == c.messages().end()) {
        c.pump();
        if (c.hung_up())
            abort();
    }
}

// CPU time that the program needs for one request, in microseconds.
double request_us(const subject &session, test::ipc_client &c, uint32_t type, std::string_view payload = {})
{
    constexpr int requests = 100;
    std::vector<double> us;
    for (int i = 0; i < 15; i++) {
        const double before = cpu_us(session.pid());
        for (int n = 0; n < requests; n++)
            ask(c, type, payload);
        us.push_back((cpu_us(session.pid()) - before) / requests);
    }
    return median(us);
}

void queries()
{
    subject session{test::compositor_binary};
    auto client = session.connect();
    test::ipc_client c{session.ipc_socket()};
    printf("a command that does nothing: %.1f microseconds of CPU\n",
           request_us(session, c, VNT_MSG_COMMAND));
    for (int i = 0; i < 100; i++)
        session.map_one(*client).title("A window with a title of ordinary length");
    session.rest(*client);
    printf("the list of 100 windows: %.1f microseconds of CPU\n",
           request_us(session, c, VNT_MSG_GET_WINDOWS));
}

// Switching to the workspace that is already shown sends one event.
double event_us(const subject &session, test::ipc_client &c, std::list<test::ipc_client> &subscribers)
{
    constexpr int events = 100; // a socket can hold this many unread
    std::vector<double> us;
    for (int i = 0; i < 15; i++) {
        const double before = cpu_us(session.pid());
        for (int n = 0; n < events; n++)
            ask(c, VNT_MSG_COMMAND, "workspace 1");
        us.push_back((cpu_us(session.pid()) - before) / events);
        for (test::ipc_client &s : subscribers) {
            s.pump();
            if (s.take().size() < events || s.hung_up())
                abort();
        }
    }
    return median(us);
}

void events()
{
    subject session{test::compositor_binary};
    test::ipc_client c{session.ipc_socket()};
    std::list<test::ipc_client> subscribers;
    (void)event_us(session, c, subscribers); // the first round is slower than the later ones
    const double to_nobody = event_us(session, c, subscribers);
    for (const size_t count : {1UL, 100UL}) {
        while (subscribers.size() < count)
            ask(subscribers.emplace_back(session.ipc_socket()), VNT_MSG_SUBSCRIBE);
        printf("an event to %zu subscriber(s): %.1f microseconds of CPU\n", count,
               event_us(session, c, subscribers) - to_nobody);
    }
}

constexpr int width = 3840, height = 2160;
constexpr size_t picture_bytes = size_t{width} * height * 4;

template <class Action> double duration_ms(Action action)
{
    const auto begin = steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(steady_clock::now() - begin).count();
}

void plain_copy(const char *source)
{
    const int file = memfd_create("bench", 0);
    void *target = MAP_FAILED;
    if (ftruncate(file, off_t{picture_bytes}) == 0)
        target = mmap(nullptr, picture_bytes, PROT_WRITE, MAP_SHARED, file, 0);
    if (target == MAP_FAILED)
        abort();
    memcpy(target, source, picture_bytes);
    munmap(target, picture_bytes);
    close(file);
}

void memory_files()
{
    const std::vector<char> picture(picture_bytes, 'x');
    std::vector<double> ours_ms, plain_ms, shrunk_ms;
    for (int i = 0; i < 31; i++) {
        strbuf meta;
        plain_ms.push_back(duration_ms([&] { plain_copy(picture.data()); }));
        ours_ms.push_back(duration_ms(
            [&] { close(vnt_rgba_to_memfd(picture.data(), width, height, size_t{width} * 4, 0, meta)); }));
        shrunk_ms.push_back(duration_ms(
            [&] { close(vnt_rgba_to_memfd(picture.data(), width, height, size_t{width} * 4, 320, meta)); }));
    }
    printf("a picture of %dx%d into a memory file: %.2f ms; a plain copy: %.2f ms; shrunk to 320: %.2f ms\n",
           width, height, median(ours_ms), median(plain_ms), median(shrunk_ms));
}

void close_descriptors(test::ipc_client &c)
{
    for (int fd = 0; (fd = c.take_descriptor()) >= 0;)
        close(fd);
}

// CPU time of the main thread for one picture, in microseconds.
template <class Action> double picture_us(const subject &session, test::ipc_client &c, Action take_picture)
{
    constexpr int pictures = 20;
    std::vector<double> us;
    for (int i = 0; i < 7; i++) {
        const double before = cpu_us(session.pid());
        for (int n = 0; n < pictures; n++) {
            take_picture();
            close_descriptors(c);
        }
        us.push_back((cpu_us(session.pid()) - before) / pictures);
    }
    return median(us);
}

// A new subscription pushes a picture at once.
void take_push(test::ipc_client &c)
{
    ask(c, VNT_MSG_CAPTURE_SUBSCRIBE, "1 60");
    while (std::ranges::find(c.messages(), VNT_MSG_CAPTURE_FRAME, &test::ipc_message::type) ==
           c.messages().end())
        c.pump();
}

void windows()
{
    subject session{test::compositor_binary};
    auto client = session.connect();
    test::window &w = session.map_one(*client);
    w.draw({width, height}, 0xff336699);
    session.rest(*client);
    test::ipc_client c{session.ipc_socket()};
    const double copied = picture_us(session, c, [&] { ask(c, VNT_MSG_CAPTURE, "1"); });
    const double once = picture_us(session, c, [&] { ask(c, VNT_MSG_CAPTURE_DMABUF, "1"); });
    const double pushed = picture_us(session, c, [&] { take_push(c); });
    printf(
        "a window of %dx%d: %.0f microseconds of the main thread with a copy, %.0f for a buffer, %.0f for a "
        "push\n",
        width, height, copied, once, pushed);
}

} // namespace

int main()
{
    queries();
    events();
    memory_files();
    windows();
}
