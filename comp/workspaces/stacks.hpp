// Stacks: several windows that share one tile under a bar of tabs. A stack is the set of windows with the
// same stack_id, in the order of their workspace. It shows the member raised last.
#pragma once

#include "../fwd.hpp"

#include <array>
#include <span>

inline constexpr int tabbar_height = 26; // layout pixels, above the active member's content

// The tiles of one stack on one workspace, in tile order. Tiles beyond the 32nd have no tab.
class stack_members
{
public:
    stack_members(vantore_workspace &ws, int stack_id);
    [[nodiscard]] std::span<vantore_toplevel *const> all() const { return {found.data(), count}; }
    // Returns -1 when the window is not a member.
    [[nodiscard]] int index_of(const vantore_toplevel &t) const;

private:
    std::array<vantore_toplevel *, 32> found{};
    size_t count = 0;
};

// Returns the member that shows on this workspace: the tile of the stack that was raised last there. A stack
// that has members on several workspaces shows one on each, so that none of them gets lost. Null when the
// stack has no tile there. The workspace may be null.
vantore_toplevel *stack_active_member(vantore_server &server, const vantore_workspace *ws, int stack_id);

// Draws the tabs of a workspace's stack above its active member, `width` layout pixels wide.
void render_tabbar(vantore_toplevel &active, vantore_workspace &ws, int width);

// Redraws the tabs of the window's stack, because one of them may show its title. Does nothing for a window
// without a stack.
void stack_refresh_tabs(const vantore_toplevel &t);

// Makes the window of action_target leave its stack or start a new one. Does nothing to a window that is no
// tile.
void stack_toggle_focused(vantore_server &server);
// Puts the window into the target's stack, on the target's workspace, and shows it. The target is a tile. If
// it has no stack, it starts one.
void stack_join(vantore_toplevel &w, vantore_toplevel &target);
void stack_ungroup_focused(vantore_server &server);
// Shows the next member. The first follows the last.
void stack_cycle_focused(vantore_server &server);

// Returns the member whose tab lies at the layout coordinate `lx`, where `shown` is the member that shows the
// tabs. Null to the left and to the right of the tabs.
vantore_toplevel *stack_tab_at(const vantore_toplevel &shown, double lx);

// Takes the window out of its stack. The caller arranges the workspace.
void stack_leave(vantore_toplevel &t);
