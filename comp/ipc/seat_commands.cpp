#include "seat_commands.hpp"

#include "../clock.hpp"
#include "../input/synthetic.hpp"
#include "../server.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <linux/input-event-codes.h>
#include <optional>

// Limits layout coordinates and wheel notches. It lies beyond any layout, and a notch's 15 units times this
// many still fit into the fixed-point numbers that clients receive.
static constexpr double farthest = 500'000;
static constexpr double wheel_distance = 15, wheel_discrete = 120; // of one notch
static constexpr int drag_steps = 8;

struct button_name {
    std::string_view name;
    uint32_t code;
};

static constexpr button_name buttons[]{
    {"left", BTN_LEFT}, {"right", BTN_RIGHT},   {"middle", BTN_MIDDLE},
    {"back", BTN_SIDE}, {"forward", BTN_EXTRA},
};

static std::optional<uint32_t> seat_btn_code(const char *word)
{
    const auto *found =
        word != nullptr ? std::ranges::find(buttons, word, &button_name::name) : std::end(buttons);
    if (found == std::end(buttons))
        return {};
    return found->code;
}

// Returns 0 for text that is not a number, and limits numbers to `farthest` in both directions.
static double number_in(const char *word)
{
    const double number = strtod(word, nullptr);
    return std::isnan(number) ? 0 : std::clamp(number, -farthest, farthest);
}

static double seat_next_d(ipc_words &words, double dflt)
{
    const char *word = words.next();
    return word != nullptr ? number_in(word) : dflt;
}

static uint32_t now_msec()
{
    return uint32_t(mono_ms());
}

static void turn_wheel(vantore_server &server, wl_pointer_axis orientation, double notches)
{
    if (notches == 0)
        return;
    wlr_seat_pointer_notify_axis(server.seat, now_msec(), orientation, notches * wheel_distance,
                                 int32_t(notches * wheel_discrete), WL_POINTER_AXIS_SOURCE_WHEEL,
                                 WL_POINTER_AXIS_RELATIVE_DIRECTION_IDENTICAL);
}

static void seat_scroll(vantore_server &server, double dx, double dy)
{
    turn_wheel(server, WL_POINTER_AXIS_VERTICAL_SCROLL, dy);
    turn_wheel(server, WL_POINTER_AXIS_HORIZONTAL_SCROLL, dx);
    wlr_seat_pointer_notify_frame(server.seat);
}

struct drag_way {
    double x1, y1, x2, y2; // layout coordinates
};

static void seat_drag(vantore_server &server, const drag_way &way, uint32_t btn)
{
    synthetic_motion(server, way.x1, way.y1);
    synthetic_button(server, btn, true);
    for (int i = 1; i <= drag_steps; i++)
        synthetic_motion(server, way.x1 + (way.x2 - way.x1) * i / drag_steps,
                         way.y1 + (way.y2 - way.y1) * i / drag_steps);
    synthetic_button(server, btn, false);
}

static void run_move(vantore_server &server, ipc_words &words)
{
    const double x = seat_next_d(words, server.cursor->x);
    synthetic_motion(server, x, seat_next_d(words, server.cursor->y));
}

static void run_scroll(vantore_server &server, ipc_words &words)
{
    const double dx = seat_next_d(words, 0);
    seat_scroll(server, dx, seat_next_d(words, 0));
}

static void run_drag(vantore_server &server, ipc_words &words)
{
    const double x1 = seat_next_d(words, server.cursor->x), y1 = seat_next_d(words, server.cursor->y);
    const double x2 = seat_next_d(words, x1), y2 = seat_next_d(words, y1);
    seat_drag(server, {.x1 = x1, .y1 = y1, .x2 = x2, .y2 = y2},
              seat_btn_code(words.next()).value_or(BTN_LEFT));
}

// Reads `[button] [x y]`, moves there if both coordinates are given, and returns the button. An x without a y
// is dropped.
static uint32_t aim_and_take_button(vantore_server &server, ipc_words &words)
{
    const char *word = words.next();
    const auto named = seat_btn_code(word);
    const char *x = named.has_value() ? words.next() : word;
    const char *y = words.next();
    if (x != nullptr && y != nullptr)
        synthetic_motion(server, number_in(x), number_in(y));
    return named.value_or(BTN_LEFT);
}

static void click(vantore_server &server, uint32_t btn)
{
    synthetic_button(server, btn, true);
    synthetic_button(server, btn, false);
}

static void run_click(vantore_server &server, ipc_words &words)
{
    click(server, aim_and_take_button(server, words));
}

static void run_dblclick(vantore_server &server, ipc_words &words)
{
    const uint32_t btn = aim_and_take_button(server, words);
    click(server, btn);
    click(server, btn);
}

static void run_press(vantore_server &server, ipc_words &words)
{
    synthetic_button(server, aim_and_take_button(server, words), true);
}

static void run_release(vantore_server &server, ipc_words &words)
{
    synthetic_button(server, aim_and_take_button(server, words), false);
}

struct subcommand {
    std::string_view name;
    void (*run)(vantore_server &server, ipc_words &words);
};

static constexpr subcommand subcommands[]{
    {"move", run_move},         {"scroll", run_scroll}, {"drag", run_drag},       {"click", run_click},
    {"dblclick", run_dblclick}, {"press", run_press},   {"release", run_release},
};

void ipc_seat_command(vantore_server &server, ipc_words &words)
{
    const char *name = words.next();
    if (name == nullptr)
        return;
    const auto *found = std::ranges::find(subcommands, name, &subcommand::name);
    if (found != std::end(subcommands))
        found->run(server, words);
}
