// Measures how long the session keeps a client waiting for an answer while a worker decodes a large
// wallpaper.

#include "subject.hpp"

#include "ipc/protocol.hpp"
#include "support/ipc_client.hpp"
#include "support/picture_files.hpp"
#include "support/places.hpp"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

using std::chrono::steady_clock;

namespace
{

constexpr int width = 11648, height = 8736; // a camera of 100 megapixels

// Soft shapes with some noise, as photographs have.
std::string large_picture()
{
    test::image content = test::plain_image(width, height, 0xff000000);
    uint32_t noise = 1;
    for (size_t i = 0; i < content.argb.size(); i++) {
        noise = noise * 1664525 + 1013904223;
        const auto x = uint32_t(i % width), y = uint32_t(i / width);
        content.argb[i] |= (x / 64 + (noise >> 30)) << 16 | (y / 64 + (noise >> 29)) << 8 | ((x + y) / 128);
    }
    return test::jpeg_file(content);
}

size_t threads_of(pid_t pid)
{
    const std::filesystem::directory_iterator tasks{"/proc/" + std::to_string(pid) + "/task"};
    return size_t(std::distance(begin(tasks), end(tasks)));
}

double answer_ms(test::ipc_client &c)
{
    const auto before = steady_clock::now();
    c.take();
    c.send(VNT_MSG_COMMAND, "workspace 1");
    while (std::ranges::find(c.messages(), VNT_MSG_COMMAND, &test::ipc_message::type) == c.messages().end()) {
        c.pump();
        if (c.hung_up())
            abort();
    }
    return std::chrono::duration<double, std::milli>(steady_clock::now() - before).count();
}

// Asks every millisecond for as long as the condition holds.
template <class Condition> std::vector<double> answers_while(test::ipc_client &c, Condition holds)
{
    std::vector<double> ms;
    while (holds()) {
        ms.push_back(answer_ms(c));
        usleep(1000);
    }
    std::ranges::sort(ms);
    return ms;
}

void print(const char *when, const std::vector<double> &ms)
{
    printf("an answer %s: median %.2f, 99th percentile %.2f, longest %.2f ms (%zu answers)\n", when,
           ms[ms.size() / 2], ms[ms.size() * 99 / 100], ms.back(), ms.size());
}

} // namespace

int main()
{
    subject session{test::compositor_binary};
    test::ipc_client c{session.ipc_socket()};
    auto client = session.connect();
    session.rest(*client);
    const std::filesystem::path world = std::filesystem::path{session.runtime_directory()}.parent_path();
    const std::string picture = test::write_file(world / "large.jpg", large_picture());
    const size_t idle_threads = threads_of(session.pid());
    const auto end = steady_clock::now() + std::chrono::seconds{4};
    print("of an idle session", answers_while(c, [&] { return steady_clock::now() < end; }));
    test::write_file(world / "config/vantore/appearance.conf", "wallpaper = " + picture + "\n");
    const auto begin = steady_clock::now();
    kill(session.pid(), SIGHUP);
    while (threads_of(session.pid()) == idle_threads)
        (void)answer_ms(c);
    print("while a picture is decoded",
          answers_while(c, [&] { return threads_of(session.pid()) > idle_threads; }));
    printf("decoding and scaling %d megapixels: %.2f s\n", width * height / 1'000'000,
           std::chrono::duration<double>(steady_clock::now() - begin).count());
}
