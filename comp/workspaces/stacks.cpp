#include "stacks.hpp"

#include "../broadcast.hpp"
#include "../cairo_buffer.hpp"
#include "../input/resting_pointer.hpp"
#include "../presentation/decorations.hpp"
#include "../server.hpp"
#include "../utf8.hpp"
#include "../windows/reach.hpp"
#include "../windows/showing.hpp"
#include "../windows/toplevel.hpp"
#include "arrange.hpp"
#include "focus.hpp"
#include "tiles.hpp"
#include "transfer.hpp"
#include "workspace.hpp"

#include <algorithm>
#include <utility>

static constexpr color COL_TAB_ACTIVE{0.20F, 0.42F, 0.78F, 1.0F};
static constexpr color COL_TAB_INACTIVE{0.11F, 0.12F, 0.15F, 1.0F};
static constexpr color tab_text_color{0.92F, 0.93F, 0.96F, 1.0F};
static constexpr double tab_font_size = 13;

stack_members::stack_members(vantore_workspace &ws, int stack_id)
{
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels)) {
        if (count == found.size())
            break;
        if (t.stack_id == stack_id && tile_participates(t))
            found[count++] = &t;
    }
}

int stack_members::index_of(const vantore_toplevel &t) const
{
    const auto members = all();
    const auto at = std::ranges::find(members, &t);
    return at != members.end() ? int(at - members.begin()) : -1;
}

vantore_toplevel *stack_active_member(vantore_server &server, const vantore_workspace *ws, int stack_id)
{
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (t.stack_id == stack_id && t.workspace == ws && tile_participates(t))
            return &t;
    return nullptr;
}

// Text that is not UTF-8 puts Cairo into an error state, in which it draws nothing more.
static std::string tab_text(const vantore_toplevel &t)
{
    for (const char *text : {tl_title(t), tl_app_id(t)})
        if (text != nullptr && *text != '\0')
            return valid_utf8(text);
    return "—";
}

static void draw_tab(cairo_t *cr, double x, double width, const std::string &text, const color &background)
{
    cairo_rectangle(cr, x + 1, 1, width - 2, tabbar_height - 2);
    cairo_set_color(cr, background);
    cairo_fill(cr);
    cairo_set_color(cr, tab_text_color);
    cairo_save(cr);
    cairo_rectangle(cr, x + 6, 0, width - 12, tabbar_height);
    cairo_clip(cr);
    cairo_move_to(cr, x + 9, 18);
    cairo_show_text(cr, text.c_str());
    cairo_restore(cr);
}

void render_tabbar(vantore_toplevel &active, vantore_workspace &ws, int width)
{
    const stack_members members{ws, active.stack_id};
    const auto tabs = members.all();
    if (tabs.empty())
        return;
    cairo_t *cr = nullptr;
    cairo_buffer *buffer = cairo_buffer_create(width, tabbar_height, &cr);
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, tab_font_size);
    const double tab_width = double(width) / double(tabs.size());
    for (size_t i = 0; i < tabs.size(); i++)
        draw_tab(cr, double(i) * tab_width, tab_width, tab_text(*tabs[i]),
                 tabs[i] == &active ? COL_TAB_ACTIVE : COL_TAB_INACTIVE);
    cairo_destroy(cr);
    scene_buffer_set_cairo(active.tabbar, buffer);
    wlr_scene_node_set_position(&active.tabbar->node, 0, -tabbar_height);
    if (!active.tabbar->node.enabled)
        pointer_look_again(*active.server);
    wlr_scene_node_set_enabled(&active.tabbar->node, true);
    forget_reach(active);
}

void stack_refresh_tabs(const vantore_toplevel &t)
{
    vantore_toplevel *active =
        t.stack_id != 0 ? stack_active_member(*t.server, t.workspace, t.stack_id) : nullptr;
    if (active != nullptr && active->tabbar->node.enabled) // on a tile, whose width the arrangement has set
        render_tabbar(*active, *active->workspace, active->want_w);
}

// The decorations change too, because a stack has tabs in place of the title bar.
static void set_stack(vantore_toplevel &t, int stack_id)
{
    const int left = std::exchange(t.stack_id, stack_id);
    refresh_showing(t);
    dec_layout(t); // after the tabs have been hidden, which take input too
    vantore_toplevel *next = left != 0 ? stack_active_member(*t.server, t.workspace, left) : nullptr;
    if (next != nullptr)
        refresh_showing(*next);
}

void stack_leave(vantore_toplevel &t)
{
    set_stack(t, 0);
}

static void arrange_and_announce(vantore_toplevel &t)
{
    arrange_workspace(t.workspace);
    ipc_broadcast(*t.server, VNT_EVT_WORKSPACES);
}

void stack_toggle_focused(vantore_server &server)
{
    vantore_toplevel *t = action_target(server);
    if (t == nullptr || !tile_participates(*t))
        return;
    if (t->stack_id != 0)
        stack_leave(*t);
    else
        set_stack(*t, server.next_stack_id++);
    arrange_and_announce(*t);
}

void stack_join(vantore_toplevel &w, vantore_toplevel &target)
{
    if (&w == &target)
        return;
    if (w.workspace != target.workspace) {
        stack_leave(w); // so that another member is shown where it leaves
        carry_to_workspace(w, *target.workspace);
    }
    if (target.stack_id == 0)
        set_stack(target, w.server->next_stack_id++);
    set_stack(w, target.stack_id);
    w.floating = false;
    move_to_front(w.server->toplevels, w.link);
    arrange_workspace(w.workspace);
    focus_toplevel_ex(&w, true);
}

void stack_ungroup_focused(vantore_server &server)
{
    vantore_toplevel *t = action_target(server);
    if (t == nullptr || t->stack_id == 0)
        return;
    stack_leave(*t);
    arrange_and_announce(*t);
}

void stack_cycle_focused(vantore_server &server)
{
    vantore_toplevel *t = action_target(server);
    if (t == nullptr || t->stack_id == 0 || t->workspace == nullptr)
        return;
    const stack_members members{*t->workspace, t->stack_id};
    const auto all = members.all();
    if (all.size() >= 2)
        focus_toplevel_ex(all[size_t(members.index_of(*t) + 1) % all.size()], true);
}

vantore_toplevel *stack_tab_at(const vantore_toplevel &shown, double lx)
{
    const wlr_box box = toplevel_box(shown);
    if (shown.workspace == nullptr || lx < box.x || lx >= box.x + box.width)
        return nullptr;
    const stack_members members{*shown.workspace, shown.stack_id};
    const auto tabs = members.all();
    if (tabs.empty())
        return nullptr;
    const double tab_width = double(box.width) / double(tabs.size());
    const int index = std::clamp(int((lx - box.x) / tab_width), 0, int(tabs.size()) - 1);
    return tabs[size_t(index)];
}
