// The order of windows in the scene.
#pragma once

#include "toplevel.hpp"

inline constexpr int deepest_dialog = 64; // an X11 client may make windows each other's parents

// Whether the condition holds for the window's parent, for that window's parent, and so on.
template <class Condition> bool any_ancestor(const vantore_toplevel &t, Condition holds)
{
    const vantore_toplevel *parent = tl_parent(t);
    for (int depth = 0; parent != nullptr && depth < deepest_dialog; depth++) {
        if (holds(*parent))
            return true;
        parent = tl_parent(*parent);
    }
    return false;
}

// Whether the window is a dialog of the other, or a dialog of such a dialog.
bool is_dialog_of(const vantore_toplevel &t, const vantore_toplevel &ancestor);

// Puts the window on top of the tree that it hangs in, and its dialogs of that tree above it. X11 windows are
// raised in the X server's order as well.
void raise_with_dialogs(vantore_toplevel &t);

// Handles a change of the window's parent: the window goes where dialogs of that parent belong, and above it.
void dialog_parent_changed(vantore_toplevel &t);

// Raises only the dialogs, for a window that has come to the top of its tree by other means.
void raise_dialogs(vantore_toplevel &t);
