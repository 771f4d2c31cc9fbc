// The one server record. It owns everything and lives as long as the process.
#pragma once

#include "fwd.hpp"
#include "input/cursor_mode.hpp"
#include "input/shake.hpp"
#include "records.hpp"
#include "timer.hpp"

#include <array>

struct vantore_server {
    wl_display *display = nullptr;
    wlr_backend *backend = nullptr;
    wlr_backend *headless = nullptr; // hosts virtual outputs; null when the backend is no multi-backend
    wlr_session *session = nullptr; // null without a login session
    listener session_active, session_destroy;
    wlr_renderer *renderer = nullptr;
    wlr_allocator *allocator = nullptr;
    wlr_compositor *compositor = nullptr;
    wlr_scene *scene = nullptr;
    wlr_scene_output_layout *scene_layout = nullptr;

    // Children of the scene root, see scene_graph.cpp for their order.
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
    wlr_content_type_manager_v1 *content_type_mgr = nullptr; // the same
    listener new_keyboard_shortcuts_inhibitor;
    wlr_keyboard_shortcuts_inhibitor_v1 *active_shortcuts_inhibitor = nullptr; // the latest one
    listener new_virtual_kbd, new_virtual_ptr;
    wlr_xwayland *xwayland = nullptr; // null when there is no X server
    listener xwayland_start, xwayland_lost, xwayland_ready, new_xwayland_surface;
    timer_source xwayland_revival;
    list_head toplevels; // vantore_toplevel.link, mapped windows, most recently raised first
    // Whose title bar is under the pointer; cleared when it unmaps.
    vantore_toplevel *hovered_toplevel = nullptr;
    list_head xwl_unmanaged; // vantore_unmanaged.link, newest first
    listener new_decoration;
    wlr_layer_shell_v1 *layer_shell = nullptr; // null when it could not be made
    listener new_layer_surface;
    list_head layer_surfaces; // vantore_layer_surface.link, newest first

    wlr_cursor *cursor = nullptr;
    wlr_xcursor_manager *xcursor_mgr = nullptr;
    // What cursor_apply last applied; at first what no configuration can ask for.
    std::array<char, 128> applied_theme{"\1"};
    int applied_size = -1;
    listener cursor_motion, cursor_motion_absolute, cursor_button, cursor_axis, cursor_frame;
    // Cursor position minus surface position at the last motion that a client heard of.
    double ptr_grab_ox = 0, ptr_grab_oy = 0;
    // Where focus by hovering was settled last.
    double ffm_anchor_x = 0, ffm_anchor_y = 0;
    // The last press on a title bar, for double clicks.
    uint32_t last_tb_msec = 0;
    uint32_t last_tb_id = 0; // of its window; 0 for none
    // A window that is dragged: while cursor_mode is not VANTORE_CURSOR_PASSTHROUGH.
    vantore_cursor_mode cursor_mode = VANTORE_CURSOR_PASSTHROUGH;
    vantore_toplevel *grabbed_toplevel = nullptr; // cleared when it unmaps
    double grab_x = 0, grab_y = 0; // cursor minus what is dragged: the window's position, or its border
    double grab_start_x = 0, grab_start_y = 0; // cursor at the start of a move
    wlr_box grab_geobox{}; // window geometry at the start of a resize, layout coordinates
    uint32_t resize_edges = 0; // of wlr_edges
    // The Mouse Tiler's display.
    bool mt_visible = false;
    int mt_zone = -1, mt_ws = -1; // the zone or the workspace tile under the pointer; -1 for none
    wlr_output *mt_output = nullptr; // that it was drawn for; only compared
    wlr_scene_buffer *mt_hud = nullptr; // null until it was shown once
    vantore_ime_relay *ime = nullptr; // null without text input

    wlr_seat *seat = nullptr;
    listener new_input;
    listener request_cursor, request_set_selection, request_set_primary_selection, request_start_drag,
        start_drag;
    list_head keyboards; // vantore_keyboard.link, newest first
    list_head input_devs; // vantore_input_dev.link, newest first
    wlr_relative_pointer_manager_v1 *relative_pointer_mgr = nullptr; // null when it could not be made
    wlr_pointer_constraints_v1 *pointer_constraints = nullptr; // the same
    listener new_constraint;
    wlr_pointer_constraint_v1 *active_constraint = nullptr; // the one in force

    wlr_output_layout *output_layout = nullptr;
    list_head outputs; // vantore_output.link, newest first
    listener new_output;
    listener gamma_set;
    list_head workspaces; // vantore_workspace.link, always nine, ascending num
    uint32_t wm_modifier = WLR_MODIFIER_LOGO; // Ctrl, Alt or Logo
    bool shutting_down = false; // the event loop has ended: teardown must not rearrange
    uint32_t next_toplevel_id = 0; // the last id handed out
    int next_stack_id = 1;
    bool mod_tapped = false; // the modifier went down alone; a tap is still possible
    timer_source mod_hold_timer;
    event_source hangup; // reloads the configuration on SIGHUP
    bool shortcuts_shown = false; // the modifier was held: the shell shows the shortcuts

    // What the cursor shows: a name of the theme, or a client's surface, or nothing.
    bool cur_cursor_named = false;
    std::array<char, 48> cur_cursor_name{};
    wlr_surface *cur_cursor_surface = nullptr;
    int32_t cur_cursor_hx = 0, cur_cursor_hy = 0; // its hotspot
    listener cur_cursor_surface_destroy;

    // The pointer is shaken to be found: times of mono_ms.
    std::array<wlr_xcursor_manager *, 10>
        xcursor_steps{}; // by cursor_locate_step; null until they are needed
    bool cursor_locate_on = false;
    bool cursor_locate_shrinking = false;
    int cursor_locate_step = 0; // 0 is the usual size
    int64_t cursor_locate_t0 = 0, cursor_locate_shrink_t0 = 0, cursor_locate_hold_until = 0;
    shake_history shake;
    timer_source anim_timer;

    wlr_idle_notifier_v1 *idle_notifier = nullptr;
    bool locked = false; // nothing but the lock screen may be seen or reached
    wlr_output *virtual_output = nullptr; // on the headless backend; null for none
    int ipc_listen_fd = -1;
    wl_event_source *ipc_listen_src = nullptr;
    std::array<char, 108> ipc_path{}; // empty without a socket
    list_head ipc_clients; // vnt_ipc_client.link

    wlr_scene_tree *lock_tree = nullptr;
    wlr_scene_tree *drag_icon_tree = nullptr;
};
