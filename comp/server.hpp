// The one server record. It owns everything and lives as long as the session.
#pragma once

#include "fwd.hpp"
#include "input/cursor_shown.hpp"
#include "input/drag.hpp"
#include "input/locating.hpp"
#include "input/overviewing.hpp"
#include "input/pointing.hpp"
#include "input/switching.hpp"
#include "input/tap.hpp"
#include "input/tiler.hpp"
#include "ipc/capturing.hpp"
#include "ipc/socket.hpp"
#include "outputs/absent.hpp"
#include "outputs/on_screen.hpp"
#include "outputs/wallpapers.hpp"
#include "presentation/sliding.hpp"
#include "records.hpp"
#include "timer.hpp"
#include "wayland_socket.hpp"

#include <array>
#include <vector>

struct vantore_server {
    std::vector<listener *> session_listeners; // members of this record; see session_listeners.hpp
    wl_display *display = nullptr;
    wayland_socket socket;
    listener new_client; // any Wayland client connects
    list_head sandboxes; // sandbox_context
    wlr_backend *backend = nullptr;
    wlr_backend *headless = nullptr; // hosts virtual outputs; null unless the backend is a multi-backend
    listener backend_destroy, display_backend_destroy;
    wlr_session *session = nullptr; // null without a login session
    listener session_active, session_destroy;
    wlr_renderer *renderer = nullptr;
    wlr_allocator *allocator = nullptr;
    wlr_compositor *compositor = nullptr;
    listener new_surface;
    wlr_scene *scene = nullptr;
    wlr_scene_output_layout *scene_layout = nullptr;

    // Children of the scene root. scene_graph.cpp creates them in their stacking order.
    std::array<wlr_scene_tree *, 4> layers{}; // by zwlr_layer_shell_v1_layer
    wlr_scene_tree *toplevel_tree = nullptr; // parent of all workspace trees
    wlr_scene_tree *unmanaged = nullptr;
    wlr_scene_tree *fullscreen_tree = nullptr;
    wlr_scene_rect *drag_hint = nullptr;
    wlr_scene_rect *snap_preview = nullptr;

    listener xdg_activation_activate;
    wlr_xdg_shell *xdg_shell = nullptr;
    listener new_xdg_toplevel, new_xdg_popup;
    listener request_set_cursor_shape;
    wlr_tearing_control_manager_v1 *tearing_mgr = nullptr; // null when it could not be made
    wlr_content_type_manager_v1 *content_type_mgr = nullptr; // null when it could not be made
    listener new_keyboard_shortcuts_inhibitor;
    wlr_keyboard_shortcuts_inhibitor_v1 *active_shortcuts_inhibitor = nullptr; // the latest one
    listener new_virtual_kbd, new_virtual_ptr;
    wlr_xwayland *xwayland = nullptr; // null when there is no X server
    listener xwayland_start, xwayland_lost, xwayland_ready, new_xwayland_surface;
    timer_source xwayland_revival;
    list_head toplevels; // vantore_toplevel.link, mapped windows, most recently raised first
    list_head unresponsive; // vantore_toplevel.unresponsive_link, windows that do not respond
    list_head xwl_unmanaged; // vantore_unmanaged.link, newest first
    listener new_decoration;
    wlr_layer_shell_v1 *layer_shell = nullptr; // null when it could not be made
    listener new_layer_surface;
    list_head layer_surfaces; // vantore_layer_surface.link, newest first

    wlr_cursor *cursor = nullptr;
    wlr_xcursor_manager *xcursor_mgr = nullptr;
    listener cursor_motion, cursor_motion_absolute, cursor_button, cursor_axis, cursor_frame;
    vantore_pointing pointing;
    vantore_drag drag;
    vantore_tiler tiler;
    vantore_ime_relay *ime = nullptr; // null without text input

    wlr_seat *seat = nullptr;
    listener new_input;
    listener request_cursor, request_set_selection, request_set_primary_selection, request_start_drag,
        start_drag;
    list_head keyboards; // vantore_keyboard.link, newest first
    list_head input_devs; // vantore_input_dev.link, newest first
    wlr_relative_pointer_manager_v1 *relative_pointer_mgr = nullptr; // null when it could not be made
    wlr_pointer_constraints_v1 *pointer_constraints = nullptr; // null when it could not be made
    listener new_constraint;
    wlr_pointer_constraint_v1 *active_constraint = nullptr; // the one in force

    wlr_output_layout *output_layout = nullptr;
    list_head outputs; // vantore_output.link, newest first
    vantore_absence absence; // empty while the session is in front
    bool profile_waits = false; // until the displays are turned on
    listener new_output;
    listener gamma_set;
    vantore_wallpapers wallpapers;
    list_head workspaces; // vantore_workspace.link, always nine, ascending num
    uint32_t wm_modifier = WLR_MODIFIER_LOGO; // Ctrl, Alt or Logo
    bool shutting_down = false; // the event loop has ended; the teardown must not rearrange windows
    uint32_t next_toplevel_id = 0; // the last id that was assigned
    signal_head window_ends; // emitted with a vantore_toplevel that is about to be deleted
    uint32_t last_focused = 0; // id of the window that got the keyboard last; it may be gone
    int next_stack_id = 1;
    vantore_tap tap;
    event_source hangup; // reloads the configuration on SIGHUP

    vantore_cursor_shown cursor_shown;
    vantore_locating locating;
    timer_source anim_timer;
    vantore_sliding sliding;
    vantore_on_screen on_screen;
    vantore_switching switching;
    vantore_overviewing overview;

    wlr_idle_notifier_v1 *idle_notifier = nullptr;
    bool locked = false; // nothing except the lock screen may be seen or reached
    wlr_output *virtual_output = nullptr; // on the headless backend; null if there is none
    vantore_ipc ipc;
    vantore_capturing capturing;

    wlr_scene_tree *lock_tree = nullptr;
    wlr_scene_tree *drag_icon_tree = nullptr;
};
