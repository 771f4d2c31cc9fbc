// Many requests, results and ends of sessions while workers run. ThreadSanitizer looks on, and fails the
// program when it sees two threads at the same data.

#include "outputs/wallpaper_work.hpp"

#include <cstdlib>
#include <filesystem>
#include <poll.h>
#include <string>

namespace
{

void require(bool holds, const char *what)
{
    if (holds)
        return;
    fprintf(stderr, "wallpaper_threads: %s\n", what);
    exit(1);
}

std::string write_picture(const std::filesystem::path &folder)
{
    const std::string path = folder / "picture.png";
    cairo_surface_t *content = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 300, 200);
    cairo_t *cr = cairo_create(content);
    cairo_set_source_rgb(cr, 1, 0, 0);
    cairo_paint(cr);
    cairo_destroy(cr);
    require(cairo_surface_write_to_png(content, path.c_str()) == CAIRO_STATUS_SUCCESS,
            "no picture to decode");
    cairo_surface_destroy(content);
    return path;
}

constexpr uint64_t requests = 60;

struct session {
    descriptor results{-1};
    std::shared_ptr<wp_queue> queue = wp_queue_create(results);
};

void submit(const session &s, const std::string &path, int request)
{
    auto job = std::make_unique<wp_job>();
    job->output = "output " + std::to_string(request % 3);
    job->gen = uint64_t(request);
    job->path = path;
    job->width = 64 + request;
    job->height = 48;
    job->mode = wp_mode(request % 4);
    wp_queue_submit(s.queue, std::move(job));
}

void look_at(wp_job &job)
{
    require(job.result != nullptr, "a picture could not be decoded");
    const unsigned char *pixels = cairo_image_surface_get_data(job.result.get());
    const int width = cairo_image_surface_get_width(job.result.get());
    require(width == job.width, "a picture has the wrong size");
    require(pixels[(24 * cairo_image_surface_get_stride(job.result.get())) + 4 * (width / 2) + 3] == 255,
            "a picture is not opaque");
}

// Returns how many of the last three requests, one of each output, have been served.
int take_all(const session &s)
{
    int last_served = 0;
    while (const auto job = wp_queue_take(s.results.fd)) {
        look_at(*job);
        last_served += job->gen >= requests - 3 ? 1 : 0;
    }
    return last_served;
}

// The last request of each output is always served.
void serve(const std::string &path)
{
    const session s;
    require(s.queue != nullptr, "no pipe");
    int served = 0;
    for (int request = 0; request < int(requests); request++) {
        submit(s, path, request);
        served += take_all(s);
    }
    pollfd ready{.fd = s.results.fd, .events = POLLIN, .revents = 0};
    while (served < 3) {
        require(poll(&ready, 1, 60'000) == 1, "a result is missing");
        served += take_all(s);
    }
    wp_queue_end(*s.queue, s.results.fd);
}

void end_at_once(const std::string &path)
{
    const session s;
    for (int request = 0; request < 5; request++)
        submit(s, path, request);
    wp_queue_end(*s.queue, s.results.fd);
}

} // namespace

int main()
{
    std::string folder = std::filesystem::temp_directory_path() / "wallpaper-threads-XXXXXX";
    require(mkdtemp(folder.data()) != nullptr, "no folder");
    const std::string path = write_picture(folder);
    for (int round = 0; round < 10; round++) {
        serve(path);
        end_at_once(path);
    }
    std::filesystem::remove_all(folder);
    return 0;
}
