// Applies the rules of rules.conf to windows, by their app id.
#pragma once

#include "../fwd.hpp"

// Applies the first rule for the window's app id, if there is one. The rule may float or tile the window and
// move it to another workspace. The caller arranges that workspace.
void config_apply_rules(vantore_toplevel &t);

// Updates shadow and rounding, the part of a rule that a reload changes for windows that exist already. A
// window without a rule has both.
void config_refresh_rules(vantore_toplevel &t);

// Moves a floating window to the place that its rule names, in the usable box of its workspace's output.
void place_toplevel_rule(vantore_toplevel &t);
