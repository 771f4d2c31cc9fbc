// One managed window, and the small adapter through which the rest of the system sees it.
#pragma once

#include "../fwd.hpp"
#include "../place.hpp"
#include "../presentation/dec_region.hpp"
#include "../records.hpp"
#include "../scene_tag.hpp"

#include <climits>
#include <sys/types.h>

enum vantore_kind : int { VNT_XDG, VNT_XWL };

// A part of the plane, relative to a window's node; right and bottom lie outside of it.
struct vantore_reach {
    int left = INT_MIN, top = INT_MIN, right = INT_MAX, bottom = INT_MAX;
};

struct vantore_toplevel {
    scene_tag tag{scene_owner::window}; // the data of scene_tree's node
    list_link link; // server->toplevels, only while mapped
    vantore_server *server = nullptr;
    uint32_t id = 0; // from 1, never reused
    vantore_kind kind = VNT_XDG;
    wlr_xdg_toplevel *xdg_toplevel = nullptr; // of VNT_XDG
    wlr_xwayland_surface *xwl = nullptr; // of VNT_XWL
    listener associate, dissociate, xwl_configure, xwl_activate, xwl_geometry, xwl_or,
        xwl_hints; // of VNT_XWL
    // Its position is the layout position of the content's top left corner, so a
    // title bar lies above it. Null while a VNT_XWL is not mapped.
    wlr_scene_tree *scene_tree = nullptr;
    vantore_reach reach; // nothing of it takes input outside; hit_test keeps it
    // The title bar's nodes, children of scene_tree.
    wlr_scene_rect *titlebar = nullptr;
    wlr_scene_buffer *title = nullptr;
    int title_w = -1; // the width that the title was drawn for; -1 draws it anew
    wlr_scene_buffer *btn_close = nullptr, *btn_min = nullptr, *btn_max = nullptr;
    wlr_scene_rect *btn_hover = nullptr; // behind the button under the pointer
    vantore_dec_region hover_region = DEC_NONE;
    wlr_scene_buffer *grip = nullptr;
    wlr_scene_blur *titlebar_blur = nullptr; // null until it was wanted once
    bool maximized = false;
    wlr_xdg_toplevel_decoration_v1 *decoration = nullptr; // null when the client has none
    vantore_decoration *deco_wrap = nullptr; // our record of it
    bool fullscreen = false;
    bool fs_demoted = false; // fullscreen, but below a window that has the focus on the same output
    bool overlay_lift = false; // lives in the overlay layer, above fullscreen windows
    bool ssd = false; // the compositor draws the title bar
    bool snapped = false; // placed at an edge or by the Mouse Tiler
    wlr_box snap_geo{}; // where to return to from that
    wlr_box saved_geo{}; // where to return to from maximized or fullscreen
    vantore_workspace *workspace = nullptr; // null before the first map, and while a VNT_XWL is not mapped
    list_link ws_link; // workspace->toplevels, while there is one
    bool floating = false; // stays out of tiling on a tiling workspace
    bool minimized = false; // hidden until focused
    bool put_away = false; // minimized while fullscreen, and its workspace has not come into view since
    bool dimmed = false; // its decorations show it without the focus
    // Shares of the room in tiling; not above 0 counts as 1.
    double tile_weight = 0; // along its row or column
    double tile_hweight = 0; // of its row in the grid
    int stack_id = 0; // of the stack whose tile it shares; 0 for none
    wlr_scene_buffer *tabbar = nullptr; // enabled on the active member of a stack only
    bool no_shadow = false, no_round = false; // the user's rule has it so
    bool skip_taskbar = false; // left out of lists for taskbars
    bool rule_follow = false; // the view goes to the window's workspace when it maps
    vantore_place place = PLACE_NONE; // counts while it floats
    bool urgent = false; // wants attention
    bool unresponsive = false; // failed to answer a ping
    listener ping_timeout;
    wlr_box float_geo{}; // the last floating box; width 0 means none yet
    bool tiled_state = false; // what the client was last told
    int want_w = 0, want_h = 0; // the size last asked for; 0 for none
    int last_w = 0, last_h = 0; // the geometry of the last commit
    listener map, unmap, commit, destroy;
    listener request_move, request_resize, request_maximize, request_minimize, request_fullscreen, set_title,
        set_app_id;
};

// Height of a title bar above the content's origin, in layout pixels.
inline constexpr int titlebar_height = 30;

// The mapped window of this id, or null.
vantore_toplevel *toplevel_by_id(vantore_server &server, uint32_t id);

// The window of an xdg surface; null for other roles and for a window that is gone.
vantore_toplevel *toplevel_of(const wlr_xdg_surface &surface);

// The window whose scene tree this node is, or null.
inline vantore_toplevel *toplevel_of(const wlr_scene_node &node)
{
    scene_tag *tag = tag_of(node);
    return tag != nullptr && tag->owner == scene_owner::window ? owner_of<&vantore_toplevel::tag>(tag)
                                                               : nullptr;
}

// Null when the surface is gone, and before an X11 window has one.
wlr_surface *tl_surface(const vantore_toplevel &t);
bool tl_mapped(const vantore_toplevel &t);
// The client's title, or "TITLE (Not Responding)" in a buffer that the next call overwrites. May be null.
const char *tl_title(const vantore_toplevel &t);
// May be null.
const char *tl_app_id(const vantore_toplevel &t);
// The window geometry in surface coordinates: what the client calls its window, without its own shadows. Cut
// to what can be added to without overflow.
wlr_box tl_get_geometry(const vantore_toplevel &t);
// Asks the client for a size in layout pixels; the client decides with its next commit. An X11 window has no
// choice, and also learns where it is: a window that moves at the same time is moved before.
void tl_set_size(vantore_toplevel &t, int w, int h);
// The client was asked for this size and has taken it, and an X11 window knows where it is.
bool tl_has_size(const vantore_toplevel &t, int w, int h);
// Puts the content there, in layout coordinates. An X11 window is told, or its menus would open elsewhere.
void tl_move(vantore_toplevel &t, int lx, int ly);
// Gives the content this box of the layout: puts it there, and asks the client for the size unless it was
// asked before and has it. A client that is a tile is held to that size.
void tl_place(vantore_toplevel &t, const wlr_box &content);
// An X11 window has moved by itself: follows it.
void tl_follow_x11(vantore_toplevel &t);
// Tells the client whether other windows adjoin it on all four sides, where it does not know already.
void tl_set_tiled(vantore_toplevel &t, bool on);
void tl_set_activated(vantore_toplevel &t, bool activated);
// Activates a window that may not know that its surface has the keyboard.
void tl_ensure_activated(vantore_toplevel &t);
void tl_set_maximized(vantore_toplevel &t, bool maximized);
void tl_set_fullscreen_state(vantore_toplevel &t, bool fullscreen);
// For X11 clients; others can't be told.
void tl_set_minimized(vantore_toplevel &t, bool minimized);
// Puts an X11 window above all others in the X server's own order, by which it hands out the pointer.
void tl_restack(vantore_toplevel &t);
// The smallest size that the client takes, 0 for none.
wlr_box tl_least_size(const vantore_toplevel &t);
// Where its surface may take input, relative to the scene tree: anywhere when popups or subsurfaces may reach
// beyond it.
vantore_reach tl_reach(const vantore_toplevel &t);
// The client's process, as its socket or the X server tells it; 0 when unknown.
pid_t tl_pid(const vantore_toplevel &t);
// Asks the window to close and pings it; a window already found unresponsive is killed.
void tl_close(vantore_toplevel &t);

// Title bar height of this window: titlebar_height or 0.
int titlebar_of(const vantore_toplevel &t);
// The window can be seen: neither it nor the workspace that it hangs in is hidden.
bool tl_on_screen(const vantore_toplevel &t);
// Width of what the client shows, for its title bar: the surface's, not the geometry's, from 1 to 16384.
int tl_shown_width(const vantore_toplevel &t);
// The geometry's size at the scene node's position, in layout coordinates.
wlr_box toplevel_box(const vantore_toplevel &t);
