// Pointer constraints: a client locks the pointer in its place or confines it to a region of its surface.
//
// At most one constraint is in force. It follows the focus: a client keeps its constraint and has it only
// while its surface is what the user works in.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"

struct vantore_constraint {
    vantore_server *server = nullptr;
    wlr_pointer_constraint_v1 *constraint = nullptr;
    listener unmap, destroy;
};

// Handler of the manager's new_constraint event.
void server_new_constraint(vantore_server &server, wlr_pointer_constraint_v1 *constraint);

// Puts the surface's constraint in force, if it has one, in place of any other. Null lets go of the pointer.
// A lock that ends puts the cursor where its client says that it drew it.
void constrain_to_surface(vantore_server &server, wlr_surface *surface);

// The surface has a constraint, in force or not.
bool has_constraint(const vantore_server &server, wlr_surface *surface);

// A window's constraint is in force, wherever the pointer is.
bool pointer_is_constrained(vantore_server &server);
// Nothing but relative motion is to come of the pointer.
bool pointer_is_locked(const vantore_server &server);

// What the constraint in force makes of a motion. False when it leaves the motion as it is.
bool constrain_motion(vantore_server &server, const wlr_pointer_motion_event &event);
