#include "recording.hpp"

#include "errors.hpp"
#include "json.hpp"
#include "picture.hpp"
#include "shared_buffer.hpp"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <format>
#include <poll.h>

// Lets SIGINT and SIGTERM through only while the program waits, so that they interrupt nothing else.
class interruptions
{
public:
    interruptions()
    {
        sigset_t both;
        sigemptyset(&both);
        for (const int signal : {SIGINT, SIGTERM}) {
            sigaddset(&both, signal);
            ::signal(signal, [](int) {});
        }
        sigprocmask(SIG_BLOCK, &both, &before);
    }
    // Waits until there is something to receive. Returns false if a signal has come.
    [[nodiscard]] bool wait_for(const connection &compositor) const
    {
        sigset_t pending;
        sigpending(&pending); // ppoll delivers no signal if there is something to receive already
        if (sigismember(&pending, SIGINT) == 1 || sigismember(&pending, SIGTERM) == 1)
            return false;
        pollfd source{.fd = compositor.descriptor(), .events = POLLIN, .revents = 0};
        return ppoll(&source, 1, nullptr, &before) == 1;
    }

private:
    sigset_t before{};
};

static bool has_more(const connection &compositor)
{
    pollfd source{.fd = compositor.descriptor(), .events = POLLIN, .revents = 0};
    return poll(&source, 1, 0) == 1;
}

struct arrival {
    std::optional<frame> picture; // the newest one
    bool window_gone = false;
};

// Receives all that has arrived. The compositor draws into the buffers of older pictures again, so only the
// newest one counts.
static std::expected<arrival, std::string> receive_newest(connection &compositor)
{
    arrival result;
    do {
        auto received = compositor.receive();
        if (!received)
            return wrong(received.error());
        if (received->type != VNT_MSG_CAPTURE_FRAME)
            continue;
        result.window_gone = member_is_true(parse_reply(received->payload), "gone");
        if (!result.window_gone)
            result.picture = std::move(*received);
    } while (!result.window_gone && has_more(compositor));
    return result;
}

// The numbers and times of the first and the last picture, as the compositor counts them.
struct progress {
    long written = 0;
    long first_number = 0, last_number = 0;
    long first_ns = 0, last_ns = 0;
};

static void note(progress &done, const json &meta)
{
    done.last_number = member_number(meta, "seq");
    done.last_ns = member_number(meta, "t_ns");
    if (done.written++ > 0)
        return;
    done.first_number = done.last_number;
    done.first_ns = done.last_ns;
}

static std::string summary(const progress &done)
{
    const double seconds = double(done.last_ns - done.first_ns) / 1e9;
    const double rate = seconds > 0 ? double(done.written - 1) / seconds : 0;
    const long drawn = done.written > 0 ? done.last_number - done.first_number + 1 : 0;
    return std::format("{} {}, {:.1f} a second, {} missed\n", done.written,
                       done.written == 1 ? "picture" : "pictures", rate, drawn - done.written);
}

static std::expected<void, std::string> write_numbered(const request &r, const frame &picture, long number)
{
    const auto pixels = read_buffer(picture);
    if (!pixels)
        return wrong(pixels.error());
    const std::string path = std::format("{}/{:06}", r.file, number);
    return r.raw ? write_file(*pixels, std::format("{}-{}x{}.rgba", path, pixels->width, pixels->height),
                              write_raw)
                 : write_file(*pixels, path + ".png", write_png);
}

static std::expected<void, std::string> make_folder(const std::string &path)
{
    std::error_code failure;
    std::filesystem::create_directory(path, failure);
    if (failure)
        return wrong("can't make the folder " + path + ": " + failure.message());
    return {};
}

std::expected<std::string, std::string> record(const request &r, connection &compositor, const frame &reply)
{
    if (!member_is_true(parse_reply(reply.payload), "ok"))
        return wrong("the compositor can't record that window");
    const interruptions user;
    if (auto made = make_folder(r.file); !made)
        return wrong(made.error());
    progress done;
    bool window_gone = false;
    while (!window_gone && (r.pictures == 0 || done.written < r.pictures) && user.wait_for(compositor)) {
        const auto next = receive_newest(compositor);
        if (!next)
            return wrong(next.error());
        window_gone = next->window_gone;
        if (!next->picture)
            continue;
        if (auto written = write_numbered(r, *next->picture, done.written + 1); !written)
            return wrong(written.error());
        note(done, parse_reply(next->picture->payload));
    }
    return summary(done);
}
