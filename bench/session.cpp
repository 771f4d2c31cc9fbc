// Measures what a session costs: starting, mapping and closing windows among many others, memory, and doing
// nothing. Each measured program is a child process. Its CPU time comes from the kernel, so a busy machine
// hardly disturbs the result.

#include "median.hpp"
#include "subject.hpp"

#include "support/places.hpp"

#include <chrono>
#include <cstdio>
#include <cstdlib>

using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace
{

// The number that follows a name in a file of lines "NAME: NUMBER", or -1.
long field(const std::string &text, const std::string &name)
{
    const size_t at = text.find(name);
    return at == std::string::npos ? -1 : strtol(text.c_str() + at + name.size(), nullptr, 10);
}

double private_dirty_mib(pid_t pid)
{
    return double(field(read_proc(pid, "smaps_rollup"), "Private_Dirty:")) / 1024;
}

long context_switches(pid_t pid)
{
    const std::string status = read_proc(pid, "status");
    return field(status, "\nvoluntary_ctxt_switches:") + field(status, "\nnonvoluntary_ctxt_switches:");
}

void start_up()
{
    std::vector<double> ms;
    for (int i = 0; i < 7; i++) {
        const auto begin = steady_clock::now();
        subject session{test::compositor_binary};
        auto client = session.connect();
        test::window &w = client->create_window("first");
        w.open();
        session.pump_until(*client, [&] { return w.configure_count() > 0; });
        w.request_frame();
        session.pump_until(*client, [&] { return w.frames() > 0; });
        ms.push_back(std::chrono::duration<double, std::milli>(steady_clock::now() - begin).count());
    }
    printf("start-up to the first window's first frame: %.0f ms (median of %zu)\n", median(ms), ms.size());
}

struct cost {
    double map_us, close_us;
};

// CPU time of the program for mapping and closing one window among `others`, including the frames after it.
cost map_and_close(const char *binary, int others)
{
    subject session{binary};
    auto client = session.connect();
    for (int i = 1; i < others; i++)
        session.map_one(*client);
    session.rest(*client);
    std::vector<double> map_us, close_us;
    for (int i = 0; i < 9; i++) {
        const double before = cpu_us(session.pid());
        test::window &w = session.map_one(*client);
        session.rest(*client);
        const double mapped = cpu_us(session.pid());
        w.destroy();
        session.rest(*client);
        map_us.push_back(mapped - before);
        close_us.push_back(cpu_us(session.pid()) - mapped);
    }
    return {median(map_us), median(close_us)};
}

void mapping()
{
    printf("\nCPU of the main thread for one window more and one less, frames included, in microseconds:\n");
    printf("  %-8s %12s %12s %12s %12s\n", "the n-th", "map", "floor's map", "close", "floor's close");
    for (const int n : {10, 50, 200}) {
        const cost ours = map_and_close(test::compositor_binary, n);
        const cost least = map_and_close(FLOOR_BINARY, n);
        printf("  %-8d %12.0f %12.0f %12.0f %12.0f\n", n, ours.map_us, least.map_us, ours.close_us,
               least.close_us);
    }
}

void memory(const char *name, const char *binary)
{
    subject session{binary};
    auto client = session.connect();
    printf("  %-12s", name);
    std::vector<test::window *> windows;
    for (const size_t count : {0UL, 100UL, 300UL}) {
        while (windows.size() < count)
            windows.push_back(&session.map_one(*client));
        session.rest(*client);
        printf(" %9.1f", private_dirty_mib(session.pid()));
    }
    for (test::window *w : windows)
        w->destroy();
    session.rest(*client);
    const auto trimmed = steady_clock::now() + 4s;
    session.pump_until(*client, [&] { return steady_clock::now() > trimmed; });
    printf(" %13.1f\n", private_dirty_mib(session.pid()));
}

void idle(int windows)
{
    subject session{test::compositor_binary};
    const auto tenth_second = steady_clock::now() + 10s;
    auto client = session.connect();
    for (int i = 0; i < windows; i++)
        session.map_one(*client);
    session.pump_until(*client, [&] { return steady_clock::now() > tenth_second; });
    const double cpu = cpu_us(session.pid());
    const long switches = context_switches(session.pid());
    const auto end = steady_clock::now() + 10s;
    session.pump_until(*client, [&] { return steady_clock::now() > end; });
    printf("  with %3d windows: %.0f microseconds of CPU, %ld context switches\n", windows,
           cpu_us(session.pid()) - cpu, context_switches(session.pid()) - switches);
}

} // namespace

int main()
{
    start_up();
    mapping();
    printf("\nprivate dirty memory in MiB:\n  %-12s %9s %9s %9s %13s\n", "windows", "0", "100", "300",
           "all closed");
    memory("compositor", test::compositor_binary);
    memory("floor", FLOOR_BINARY);
    printf("\n10 idle seconds, from the tenth after the start:\n");
    for (const int windows : {0, 100})
        idle(windows);
}
