// From a chord to its action.
//
// Whoever has the keyboard may claim most chords. A client with a shortcuts inhibitor gets all chords except
// those that take pictures. A window that fills its output gets all chords except those that clearly belong
// to the desktop. The emergency chords come first, so nothing that the user or a client sets up can disable
// them.

#include "actions.hpp"

#include "../broadcast.hpp"
#include "../config/commands.hpp"
#include "../config/keybinds.hpp"
#include "../reload.hpp"
#include "../server.hpp"
#include "../spawn.hpp"
#include "../windows/fullscreen.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/direction.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/layout.hpp"
#include "../workspaces/stacks.hpp"
#include "../workspaces/switch.hpp"
#include "../workspaces/transfer.hpp"
#include "overview.hpp"
#include "switcher.hpp"

#include <algorithm>
#include <string_view>

static constexpr uint32_t control_shift = WLR_MODIFIER_CTRL | WLR_MODIFIER_SHIFT;
// Only these modifiers count. Lock modifiers are ignored.
static constexpr uint32_t chord_modifiers = control_shift | WLR_MODIFIER_ALT | WLR_MODIFIER_LOGO;
// The first of 256 keysyms for volume, brightness, playback and the like.
static constexpr xkb_keysym_t media_keysyms = 0x1008ff00;

static bool contains(const vnt_bind &bind, std::string_view text)
{
    return std::string_view{bind.spawn.data()}.contains(text);
}

void dir_to_delta(int dir, int &dx, int &dy)
{
    dx = (dir == DIR_RIGHT ? 1 : 0) - (dir == DIR_LEFT ? 1 : 0);
    dy = (dir == DIR_DOWN ? 1 : 0) - (dir == DIR_UP ? 1 : 0);
}

static void end_session(vantore_server &server, const vnt_bind &)
{
    wl_display_terminate(server.display);
}

static void show_workspace(vantore_server &server, const vnt_bind &bind)
{
    goto_workspace(server, bind.arg);
}

// Makes the shell show the new level, except over a game.
static void announce_level(vantore_server &server, const vnt_bind &bind)
{
    if (focused_is_fullscreen(server))
        return;
    if (contains(bind, "wpctl set-volume") || contains(bind, "wpctl set-mute"))
        ipc_broadcast(server, VNT_EVT_VOLUME);
    else if (contains(bind, "brightnessctl"))
        ipc_broadcast(server, VNT_EVT_BRIGHTNESS);
}

static void start_program(vantore_server &server, const vnt_bind &bind)
{
    spawn_app(vnt_spawn_command(bind.spawn.data()));
    announce_level(server, bind);
}

static void close_window(vantore_server &server, const vnt_bind &)
{
    if (vantore_toplevel *t = action_target(server))
        tl_close(*t);
}

static void toggle_fullscreen(vantore_server &server, const vnt_bind &)
{
    if (vantore_toplevel *t = action_target(server))
        toplevel_set_fullscreen(*t, !t->fullscreen);
}

static void maximize_window(vantore_server &server, const vnt_bind &)
{
    if (vantore_toplevel *t = action_target(server))
        toplevel_toggle_maximize(*t);
}

static void move_to_workspace(vantore_server &server, const vnt_bind &bind)
{
    move_focused_to_workspace(server, bind.arg);
}

template <auto Operation> static void run_directed(vantore_server &server, const vnt_bind &bind)
{
    int dx = 0, dy = 0;
    dir_to_delta(bind.arg, dx, dy);
    Operation(server, dx, dy);
}

template <auto Operation> static void run_plain(vantore_server &server, const vnt_bind &)
{
    Operation(server);
}

template <auto Operation> static void run_sideways(vantore_server &server, const vnt_bind &bind)
{
    Operation(server, bind.arg);
}

static void step_through_windows(vantore_server &server, const vnt_bind &bind)
{
    switcher_step(server, bind.mods);
}

static void show_clipboard(vantore_server &server, const vnt_bind &)
{
    ipc_broadcast(server, VNT_EVT_CLIPBOARD);
}

struct action {
    vnt_action act;
    void (*run)(vantore_server &server, const vnt_bind &bind); // null takes the key and does nothing
};

static constexpr action actions[]{
    {ACT_NONE, nullptr},
    {ACT_WORKSPACE, show_workspace},
    {ACT_MOVE_TO_WS, move_to_workspace},
    {ACT_FOCUS, run_directed<focus_direction>},
    {ACT_MOVE, run_directed<move_direction>},
    {ACT_RESIZE, run_directed<resize_direction>},
    {ACT_SPAWN, start_program},
    {ACT_CLOSE, close_window},
    {ACT_FLOAT, run_plain<toggle_float_focused>},
    {ACT_LAYOUT, run_plain<toggle_ws_layout>},
    {ACT_TILE_MODE, run_plain<cycle_tile_mode>},
    {ACT_FULLSCREEN, toggle_fullscreen},
    {ACT_MAXIMIZE, maximize_window},
    {ACT_CYCLE, step_through_windows},
    {ACT_QUIT, end_session},
    {ACT_RELOAD, run_plain<config_reload>},
    {ACT_OVERVIEW, run_plain<overview_toggle>},
    {ACT_CLIPBOARD, show_clipboard},
    {ACT_STACK_GROUP, run_plain<stack_toggle_focused>},
    {ACT_STACK_UNGROUP, run_plain<stack_ungroup_focused>},
    {ACT_STACK_CYCLE, run_plain<stack_cycle_focused>},
    {ACT_MOVE_WS_OUTPUT, run_sideways<move_ws_to_adjacent_output>},
    {ACT_MOVE_WINDOW_OUTPUT, run_sideways<move_focused_to_adjacent_output>},
};

static void run_action(vantore_server &server, const vnt_bind &bind)
{
    const auto *found = std::ranges::find(actions, bind.act, &action::act);
    if (found != std::end(actions) && found->run != nullptr)
        found->run(server, bind);
}

struct emergency_chord {
    xkb_keysym_t sym;
    vnt_bind bind;
};

static constexpr emergency_chord emergency_chords[]{
    {XKB_KEY_r, {.act = ACT_RELOAD}},
    {XKB_KEY_Return, {.act = ACT_SPAWN, .spawn{"$terminal"}}},
    {XKB_KEY_Escape, {.act = ACT_QUIT}},
};

static bool run_emergency_chord(vantore_server &server, uint32_t mods, xkb_keysym_t sym)
{
    if (mods != (server.wm_modifier | control_shift))
        return false;
    const auto *found = std::ranges::find(emergency_chords, sym, &emergency_chord::sym);
    if (found == std::end(emergency_chords))
        return false;
    run_action(server, found->bind);
    return true;
}

static const vnt_bind *find_bind(uint32_t mods, xkb_keysym_t sym)
{
    for (const vnt_bind &bind : std::span{g_binds.data(), size_t(g_bind_count)})
        if (bind.mods == mods && bind.keysym == sym)
            return &bind;
    return nullptr;
}

static bool takes_pictures(const vnt_bind &bind)
{
    return bind.act == ACT_SPAWN && (contains(bind, "vantore-shot") || contains(bind, "vantore-replay"));
}

static bool shortcuts_inhibited(const vantore_server &server)
{
    const wlr_keyboard_shortcuts_inhibitor_v1 *inhibitor = server.active_shortcuts_inhibitor;
    return inhibitor != nullptr && inhibitor->surface == server.seat->keyboard_state.focused_surface;
}

// Whether the chord is one that no game uses, or one that the player must not lose.
static bool works_in_games(const vantore_server &server, const vnt_bind &bind)
{
    const bool media_key = (bind.keysym & ~0xffU) == media_keysyms;
    const bool task_manager = bind.mods == control_shift && bind.keysym == XKB_KEY_Escape;
    return (bind.mods & server.wm_modifier) != 0 || media_key || bind.act == ACT_CYCLE || task_manager;
}

static bool may_run(vantore_server &server, const vnt_bind &bind)
{
    if (shortcuts_inhibited(server))
        return takes_pictures(bind);
    return !focused_is_fullscreen(server) || works_in_games(server, bind);
}

bool handle_keybinding(vantore_server &server, uint32_t mods, xkb_keysym_t sym)
{
    const uint32_t chord = mods & chord_modifiers;
    if (run_emergency_chord(server, chord, sym))
        return true;
    const vnt_bind *found = find_bind(chord, sym);
    if (found == nullptr || !may_run(server, *found))
        return false;
    const vnt_bind bind = *found; // an action may rebuild the table
    run_action(server, bind);
    return true;
}
