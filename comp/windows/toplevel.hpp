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

// A rectangle relative to the window's node. `right` and `bottom` are exclusive. The default covers
// everything.
struct vantore_reach {
    int left = INT_MIN, top = INT_MIN, right = INT_MAX, bottom = INT_MAX;
    friend bool operator==(const vantore_reach &, const vantore_reach &) = default;
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
    // Its position is the layout position of the content's top left corner, so a title bar lies above it.
    // Null while a VNT_XWL is not mapped.
    wlr_scene_tree *scene_tree = nullptr;
    vantore_reach reach; // the window takes no input outside; see windows/reach
    // The title bar's nodes, children of scene_tree.
    wlr_scene_rect *titlebar = nullptr;
    wlr_scene_buffer *title = nullptr;
    int title_w = -1; // the width of the drawn title; -1 forces a redraw
    wlr_scene_buffer *btn_close = nullptr, *btn_min = nullptr, *btn_max = nullptr;
    wlr_scene_rect *btn_hover = nullptr; // behind the button under the pointer
    vantore_dec_region hover_region = DEC_NONE;
    wlr_scene_buffer *grip = nullptr;
    wlr_scene_blur *titlebar_blur = nullptr; // null until the first use
    wlr_scene_shadow *shadow = nullptr; // null until the first use
    wlr_scene_rect *dim_rect = nullptr; // darkens the window; null until the first use
    int64_t anim_open_t0 = 0; // of mono_ms: when its fade began; 0 for no fade
    bool maximized = false;
    wlr_xdg_toplevel_decoration_v1 *decoration = nullptr; // null when the client has made none
    vantore_decoration *deco_wrap = nullptr; // the record of `decoration`
    bool fullscreen = false;
    bool fs_demoted = false; // fullscreen, but below a window that has the focus on the same output
    bool overlay_lift = false; // hangs in the overlay layer, above fullscreen windows
    bool ssd = false; // the compositor draws the title bar
    bool snapped = false; // placed at an edge or by the Mouse Tiler
    wlr_box snap_geo{}; // the box before snapping
    wlr_box saved_geo{}; // the box before maximizing or fullscreen
    vantore_workspace *workspace = nullptr; // null before the first map, and while a VNT_XWL is not mapped
    list_link ws_link; // workspace->toplevels, while there is one
    bool floating = false; // stays out of tiling on a tiling workspace
    bool minimized = false; // hidden until focused
    bool put_away = false; // minimized while fullscreen, until its workspace is shown again
    bool dimmed = true; // drawn in the colours without focus
    // Shares of the space in tiling. A value of 0 or less counts as 1.
    double tile_weight = 0; // along its row or column
    double tile_hweight = 0; // of its row in the grid
    int stack_id = 0; // of the stack whose tile it shares; 0 for none
    wlr_scene_buffer *tabbar = nullptr; // enabled only on the active member of a stack
    bool no_shadow = false, no_round = false; // by the user's rule
    bool skip_taskbar = false; // left out of lists for taskbars
    bool rule_follow = false; // its rule shows its workspace when it maps
    vantore_place place = PLACE_NONE; // used only while floating
    bool urgent = false; // until it is focused
    // It was asked to close and did not answer the ping, and no window of its client has committed since.
    bool unresponsive = false;
    list_link unresponsive_link; // server->unresponsive, only while it is so
    uint32_t close_ping = 0; // of VNT_XDG: the ping of the last request to close, 0 before the first
    listener ping_timeout;
    wlr_box float_geo{}; // the last floating box; width 0 means none yet
    bool tiled_state = false; // the last tiled state told to the client
    int want_w = 0, want_h = 0; // the size last requested by tl_place; 0 for none
    int last_w = 0, last_h = 0; // the geometry of the last commit
    listener map, unmap, commit, destroy;
    listener request_move, request_resize, request_maximize, request_minimize, request_fullscreen, set_title,
        set_app_id, set_parent;
};

// The height of a title bar above the content's origin, in layout pixels.
inline constexpr int titlebar_height = 30;

// Returns the mapped window of this id, or null.
vantore_toplevel *toplevel_by_id(vantore_server &server, uint32_t id);

// Returns the window of an xdg surface. Null for other roles and for a window that is gone.
vantore_toplevel *toplevel_of(const wlr_xdg_surface &surface);

// Returns the window that owns this scene tree's node, or null.
inline vantore_toplevel *toplevel_of(const wlr_scene_node &node)
{
    scene_tag *tag = tag_of(node);
    return tag != nullptr && tag->owner == scene_owner::window ? owner_of<&vantore_toplevel::tag>(tag)
                                                               : nullptr;
}

// Null when the surface is gone, or when an X11 window has none yet.
wlr_surface *tl_surface(const vantore_toplevel &t);
bool tl_mapped(const vantore_toplevel &t);
// Returns the window whose dialog this is, as the client says, or null. It need not be mapped.
vantore_toplevel *tl_parent(const vantore_toplevel &t);
// Returns the client's title, or "TITLE (Not Responding)" in a buffer that the next call overwrites. May be
// null.
const char *tl_title(const vantore_toplevel &t);
// May be null.
const char *tl_app_id(const vantore_toplevel &t);
// Returns the window geometry in surface coordinates: what the client calls its window, without its own
// shadows. The values are clamped so that sums of them do not overflow.
wlr_box tl_get_geometry(const vantore_toplevel &t);
// Asks the client for a size in layout pixels. An xdg client decides with its next commit. An X11 window
// takes the size at once and is told its position too, so set its position before.
void tl_set_size(vantore_toplevel &t, int w, int h);
// Whether the client has this size. An xdg client must also have been asked for it, and an X11 window must
// know its position.
bool tl_has_size(const vantore_toplevel &t, int w, int h);
// Moves the content to this position, in layout coordinates. An X11 window is told its position, because its
// menus would open elsewhere otherwise.
void tl_move(vantore_toplevel &t, int lx, int ly);
// Moves the content to this box, in layout coordinates, and asks the client for the size unless the client
// already has it. A tile that commits another size is asked once more.
void tl_place(vantore_toplevel &t, const wlr_box &content);
// Moves the scene node to where an X11 window has moved itself.
void tl_follow_x11(vantore_toplevel &t);
// Tells an xdg client whether other windows adjoin it on all four sides, if that has changed. X11 windows
// can't be told.
void tl_set_tiled(vantore_toplevel &t, bool on);
void tl_set_activated(vantore_toplevel &t, bool activated);
// Activates a window whose surface has the keyboard although the window itself may not be activated.
void tl_ensure_activated(vantore_toplevel &t);
void tl_set_maximized(vantore_toplevel &t, bool maximized);
void tl_set_fullscreen_state(vantore_toplevel &t, bool fullscreen);
// Tells an X11 client. Other clients can't be told.
void tl_set_minimized(vantore_toplevel &t, bool minimized);
// Puts an X11 window above all others in the X server's stacking order, by which the X server delivers
// pointer events.
void tl_restack(vantore_toplevel &t);
// Returns the smallest size that the client accepts, 0 for no limit. It is always 0 for X11 windows.
wlr_box tl_least_size(const vantore_toplevel &t);
// Returns where the window's surface may take input, relative to the scene tree. With popups or subsurfaces,
// that is anywhere.
vantore_reach tl_reach(const vantore_toplevel &t);
// Returns the client's process as its socket or the X server tells it, or 0 when unknown.
pid_t tl_pid(const vantore_toplevel &t);
// Asks the window to close and pings it, if it supports that. A window already known to be unresponsive is
// killed.
void tl_close(vantore_toplevel &t);

// Returns titlebar_height, even while the bar is hidden, or 0 when the client draws its own decorations.
int titlebar_of(const vantore_toplevel &t);
// Whether the window's node and the node's parent are both enabled.
bool tl_on_screen(const vantore_toplevel &t);
// Return the size of the content that the title bar and effects are made for, each side from 1 to 16384: the
// size of the surface rather than of the window geometry.
int tl_shown_width(const vantore_toplevel &t);
int tl_shown_height(const vantore_toplevel &t);
// Returns the size of the geometry at the position of the scene node, in layout coordinates.
wlr_box toplevel_box(const vantore_toplevel &t);
