// Outputs that are absent while another session is in front, on another virtual terminal. The backend
// destroys them and makes new ones on return, but nobody has unplugged a display. Until then their workspaces
// belong to no other output, windows keep their boxes, and programs that ask are told of the outputs as they
// were.
#pragma once

#include "../fwd.hpp"
#include "output_description.hpp"

#include <optional>

struct remembered_output {
    output_description description;
    std::string name_before; // it may return on another connector
    int workspace = 0; // the number of the one that it showed, 0 for none
    bool absent = false; // the others are here, but were remembered with it
    bool has_own_place = false; // the user has placed it in the layout
    bool turned_off = false; // by the user
};

struct vantore_absence {
    std::vector<remembered_output> outputs; // in the order of the layout
    double pointer_x = 0, pointer_y = 0; // layout coordinates
    uint32_t focused = 0; // id of the window that had the keyboard last
};

// Whether an output that goes now will come back. A virtual output that goes has been removed.
bool will_come_back(const vantore_output &o);

// Remembers an output that goes. Call it before the output leaves the layout. The first call remembers all
// outputs and keeps those that stay from moving.
void remember_absent(const vantore_output &o);

enum class likeness : unsigned char {
    none,
    connector, // another display on the same connector
    display, // the same make, model and serial number, on another connector
    both,
};

// Returns what was remembered of a new output, which is then no longer absent: the absent output that is most
// like it, if it is at least as like as this. Nullopt for an output that is really new.
std::optional<remembered_output> recognise(vantore_server &server, const struct wlr_output &output,
                                           likeness least);

// Puts the outputs that have returned back to the places that the user gave them, and the others into the
// order in which the layout places them side by side. They may have returned in any order. Outputs that are
// new come last.
void restore_order(vantore_server &server);

// Whether the output is one of those that are remembered.
bool was_recognised(const vantore_output &o);
// Whether the output has returned with the box and the workspace that are remembered of it.
bool is_as_remembered(const vantore_output &o);

// Puts the pointer back to where it was, if an output is there again.
void restore_pointer(vantore_server &server);

// Forgets all outputs. Returns whether some were still absent.
bool forget_absent(vantore_server &server);

// Returns the absent output to which the workspace belongs, or null.
const remembered_output *absent_output_of(const vantore_workspace &ws);
// Returns the absent output that was under the pointer, or null.
const remembered_output *absent_output_under_pointer(const vantore_server &server);
