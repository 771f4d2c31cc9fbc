// What rules.conf says of a window's app id, carried into the window.
#pragma once

#include "../fwd.hpp"

// The first rule for the window's app id, if any: it may float or tile the window and move it to another
// workspace, which the caller arranges.
void config_apply_rules(vantore_toplevel &t);

// The part of a rule that follows a reload: shadow and rounding, both usual where no rule speaks of them.
void config_refresh_rules(vantore_toplevel &t);

// Puts a floating window where its rule has it, in the usable box of its workspace's output.
void place_toplevel_rule(vantore_toplevel &t);
