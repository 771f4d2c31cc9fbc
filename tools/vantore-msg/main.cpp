// vantore-msg gives people and scripts access to the compositor's socket.

#include "arguments.hpp"
#include "connection.hpp"
#include "json.hpp"
#include "picture.hpp"
#include "printable.hpp"
#include "recording.hpp"
#include "tables.hpp"

#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

enum exit_status : int { done = 0, refused = 1, wrong_usage = 2 };

static int complain(exit_status status, const std::string &why)
{
    fprintf(stderr, "vantore-msg: %s\n", printable(why).c_str());
    return status;
}

static int print(const std::string &text)
{
    if (fwrite(text.data(), 1, text.size(), stdout) != text.size() || fflush(stdout) != 0)
        return complain(refused, "can't write the output");
    return done;
}

static std::optional<std::string> table_of(vnt_ipc_msg message, std::string_view reply)
{
    if (message == VNT_MSG_GET_WORKSPACES)
        return workspaces_table(reply);
    return message == VNT_MSG_GET_WINDOWS ? windows_table(reply) : outputs_table(reply);
}

// 0 if the terminal does not tell its width.
static int terminal_columns()
{
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

static int show(const request &r, const frame &reply)
{
    if (isatty(STDOUT_FILENO) == 0)
        return print(reply.payload + '\n');
    const auto table = table_of(r.message, reply.payload);
    return table ? print(cut_lines(*table, terminal_columns())) : complain(refused, "the answer is no list");
}

static const char *event_name(uint32_t code)
{
    switch (vnt_event(code)) {
    case VNT_EVT_WORKSPACES:
        return "workspaces";
    case VNT_EVT_WINDOWS:
        return "windows";
    case VNT_EVT_OUTPUTS:
        return "outputs";
    case VNT_EVT_LAUNCHER:
        return "launcher";
    case VNT_EVT_RELOADED:
        return "reloaded";
    case VNT_EVT_VOLUME:
        return "volume";
    case VNT_EVT_BRIGHTNESS:
        return "brightness";
    case VNT_EVT_SHORTCUTS:
        return "shortcuts";
    case VNT_EVT_FULLSCREEN_ON:
        return "fullscreen-on";
    case VNT_EVT_FULLSCREEN_OFF:
        return "fullscreen-off";
    case VNT_EVT_CLIPBOARD:
        return "clipboard";
    }
    return "unknown";
}

// Waits for an event. False when nobody reads the output any more.
static bool await_event(const connection &compositor)
{
    std::array<pollfd, 2> sources{{{.fd = compositor.descriptor(), .events = POLLIN, .revents = 0},
                                   {.fd = STDOUT_FILENO, .events = 0, .revents = 0}}};
    while (poll(sources.data(), sources.size(), -1) < 0 && errno == EINTR)
        continue;
    return sources[1].revents == 0;
}

static int follow_events(connection &compositor)
{
    for (const int interruption : {SIGINT, SIGTERM})
        signal(interruption, [](int) { _exit(done); });
    while (await_event(compositor)) {
        const auto event = compositor.receive();
        if (!event)
            return complain(refused, event.error());
        if ((event->type & ipc_event_bit) == 0)
            continue;
        if (print(std::string{event_name(event->type & ~ipc_event_bit)} + '\n') != done)
            return refused;
    }
    return done;
}

static bool succeeded(const frame &reply)
{
    return member_is_true(parse_reply(reply.payload), "success");
}

static int finish(const request &r, connection &compositor, const frame &reply)
{
    switch (r.what) {
    case action::show:
        return show(r, reply);
    case action::subscribe:
        return succeeded(reply) ? follow_events(compositor)
                                : complain(refused, "the compositor gives no events");
    case action::capture: {
        const auto written = write_picture(reply, r.file);
        return written ? int(done) : complain(refused, written.error());
    }
    case action::describe:
        return member_is_true(parse_reply(reply.payload), "ok")
                   ? print(reply.payload + '\n')
                   : complain(refused, "the compositor could not capture that");
    case action::record: {
        const auto summary = record(r, compositor, reply);
        return summary ? print(*summary) : complain(refused, summary.error());
    }
    case action::command:
        return succeeded(reply) ? int(done) : complain(refused, "the compositor refused the command");
    case action::help:
        break;
    }
    return done;
}

int main(int argc, char **argv)
{
    setlocale(LC_CTYPE, "C.UTF-8"); // for the width of characters
    const auto r = parse_arguments({argv + std::min(argc, 1), argv + argc});
    if (!r)
        return complain(wrong_usage, r.error());
    if (r->what == action::help)
        return print(std::string{usage});
    const char *path = getenv("VANTORESOCK");
    if (path == nullptr || *path == '\0')
        return complain(refused, "VANTORESOCK is not set: is this a terminal of the session?");
    auto compositor = connection::open(path);
    if (!compositor)
        return complain(refused, compositor.error());
    const auto reply = compositor->ask(r->message, r->payload);
    return reply ? finish(*r, *compositor, *reply) : complain(refused, reply.error());
}
