// Pointer constraints: a client locks the pointer in its place or confines it to a region of its surface.
//
// At most one constraint is in force. It follows the focus: a client's constraint is in force only while the
// user works in its surface.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"

struct vantore_constraint {
    vantore_server *server = nullptr;
    wlr_pointer_constraint_v1 *constraint = nullptr;
    listener unmap, destroy;
};

// Handles the manager's new_constraint event.
void server_new_constraint(vantore_server &server, wlr_pointer_constraint_v1 *constraint);

// Puts the surface's constraint in force, if it has one, and ends any other. Null only ends the one in force.
// When a lock ends, the cursor moves to where its client says that it drew it.
void constrain_to_surface(vantore_server &server, wlr_surface *surface);

// Whether the surface has a constraint, in force or not.
bool has_constraint(const vantore_server &server, wlr_surface *surface);

// Whether this window's constraint is in force.
bool constrains_pointer(const vantore_toplevel &t);
// Whether a window's constraint is in force, wherever the pointer is.
bool pointer_is_constrained(vantore_server &server);
// Whether a lock is in force. The pointer then produces only relative motion.
bool pointer_is_locked(const vantore_server &server);
// Whether a lock is in force, or a confinement whose region the pointer has not left.
bool constraint_holds_pointer(vantore_server &server);

// Applies the constraint in force to a motion. Returns false when the motion stays as it is.
bool constrain_motion(vantore_server &server, const wlr_pointer_motion_event &event);
