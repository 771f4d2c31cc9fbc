// Measures what a frame costs when a fullscreen client redraws all of 1920x1080 at each frame callback, for
// the compositor and for the floor. Rendering is done in software, so effects are off, and the driver draws
// in threads of its own. The CPU times come from the kernel's counters.

#include "median.hpp"
#include "subject.hpp"

#include "support/memory_file.hpp"
#include "support/places.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <wayland-client.h>

namespace
{

constexpr int frames_measured = 150, frames_before = 30, rounds = 15;
constexpr test::size screen{1920, 1080};

// Shows prepared pictures in turn, so that drawing costs the client next to nothing.
class painter
{
public:
    painter(subject &session, test::client &client) : w(client.create_window("painter"))
    {
        prepare_pictures(client);
        w.preferred = screen;
        w.request_fullscreen();
        w.open();
        session.pump_until(client, [&] { return w.has(test::FULLSCREEN) && w.last().size() == screen; });
        w.auto_draw = false;
        show_next();
    }
    ~painter()
    {
        if (awaited != nullptr)
            wl_callback_destroy(awaited);
        for (const picture &p : pictures)
            wl_buffer_destroy(p.buffer);
    }
    painter(const painter &) = delete;
    painter &operator=(const painter &) = delete;

    [[nodiscard]] int shown() const { return count; }

private:
    struct picture {
        wl_buffer *buffer = nullptr;
        bool busy = false; // the compositor may still read it
    };

    void prepare_pictures(test::client &client)
    {
        static constexpr wl_buffer_listener listener{
            .release = [](void *data, wl_buffer *) { static_cast<picture *>(data)->busy = false; }};
        constexpr int stride = screen.width * 4, bytes = stride * screen.height;
        const int fd =
            test::memory_file<uint32_t>(size_t{bytes} / 4 * pictures.size(), [&](uint32_t *pixels) {
                for (size_t i = 0; i < pictures.size(); i++)
                    std::fill_n(pixels + i * bytes / 4, bytes / 4, 0xff203040 + uint32_t(i) * 0x302010);
            });
        auto *shm = static_cast<wl_shm *>(client.bind(wl_shm_interface, 1));
        wl_shm_pool *pool = wl_shm_create_pool(shm, fd, bytes * int(pictures.size()));
        for (size_t i = 0; i < pictures.size(); i++) {
            pictures[i].buffer = wl_shm_pool_create_buffer(pool, int(i) * bytes, screen.width, screen.height,
                                                           stride, WL_SHM_FORMAT_XRGB8888);
            wl_buffer_add_listener(pictures[i].buffer, &listener, &pictures[i]);
        }
        wl_shm_pool_destroy(pool);
        wl_shm_destroy(shm);
        close(fd);
    }

    void show_next()
    {
        static constexpr wl_callback_listener listener{.done = [](void *data, wl_callback *done, uint32_t) {
            auto &self = *static_cast<painter *>(data);
            wl_callback_destroy(done);
            self.awaited = nullptr;
            self.show_next();
        }};
        const auto free = std::ranges::find(pictures, false, &picture::busy);
        if (free == pictures.end())
            abort();
        free->busy = true;
        awaited = wl_surface_frame(w.get());
        wl_callback_add_listener(awaited, &listener, this);
        wl_surface_attach(w.get(), free->buffer, 0, 0);
        wl_surface_damage_buffer(w.get(), 0, 0, screen.width, screen.height);
        wl_surface_commit(w.get());
        count++;
    }

    test::window &w;
    std::array<picture, 4> pictures;
    wl_callback *awaited = nullptr;
    int count = 0;
};

struct cost {
    double main_us, threads_us;
};

// CPU time that the program needs for one frame.
cost frame_of(const char *binary, const test::variables &more, const std::string &settings)
{
    subject session{binary, more, settings};
    auto client = session.connect();
    const painter p{session, *client};
    const auto run = [&](int frames) {
        const int last = p.shown() + frames;
        session.pump_until(*client, [&] { return p.shown() >= last; });
    };
    run(frames_before);
    const int first = p.shown();
    const cost before{cpu_us(session.pid()), cpu_of_threads_us(session.pid())};
    run(frames_measured);
    const cost after{cpu_us(session.pid()), cpu_of_threads_us(session.pid())};
    const int shown = p.shown() - first;
    return {(after.main_us - before.main_us) / shown, (after.threads_us - before.threads_us) / shown};
}

void print_row(const char *name, const std::vector<cost> &ours, const std::vector<cost> &least)
{
    std::vector<double> main_us, threads_us, main_ratio, threads_ratio;
    for (size_t i = 0; i < ours.size(); i++) {
        main_us.push_back(ours[i].main_us);
        threads_us.push_back(ours[i].threads_us);
        main_ratio.push_back(ours[i].main_us / least[i].main_us);
        threads_ratio.push_back(ours[i].threads_us / least[i].threads_us);
    }
    printf("  %-34s %8.0f %8.0f %8.2f %8.2f\n", name, median(main_us), median(threads_us), median(main_ratio),
           median(threads_ratio));
}

// The programs take turns, so that other work of the machine affects them equally.
void compare(const char *what, const test::variables &more)
{
    std::vector<cost> floor, off, measured;
    for (int i = 0; i < rounds; i++) {
        off.push_back(frame_of(test::compositor_binary, more, "max_render_time = off\n"));
        floor.push_back(frame_of(FLOOR_BINARY, more, ""));
        measured.push_back(frame_of(test::compositor_binary, more, "max_render_time = auto\n"));
    }
    printf("%s:\n", what);
    print_row("compositor, max_render_time = off", off, floor);
    print_row("compositor, max_render_time = auto", measured, floor);
    print_row("floor", floor, floor);
}

} // namespace

int main()
{
    printf(
        "CPU of one frame of %dx%d in microseconds, medians of %d rounds of %d frames, and of the rounds'\n"
        "ratios to the floor:\n  %-34s %8s %8s %8s %8s\n",
        screen.width, screen.height, rounds, frames_measured, "", "main", "threads", "ratio", "ratio");
    compare("the client's buffer is shown as it is (direct scan-out)", {});
    compare("drawn", {{"WLR_SCENE_DISABLE_DIRECT_SCANOUT", "1"}});
}
