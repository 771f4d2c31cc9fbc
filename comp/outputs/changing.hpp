// Changes outputs while the session runs: on command, by profiles, and for whoever else may come to.
#pragma once

#include "../fwd.hpp"
#include "output_description.hpp"
#include "output_steps.hpp"

#include <span>

// A profile is being applied. It places all outputs, so the layout is not repaired after each of them.
inline bool g_applying_profile;

// Takes the steps in their order. Then it repairs the layout, brings windows and the pointer to where they
// can be seen, and tells other programs. The token is what the user calls the output, for messages. A step
// that the output refuses leaves it as it was. Nothing follows a refusal to turn off the only display.
void change_output(vantore_output &o, std::string_view token, std::span<const output_step> steps);

// Gives an output that has returned the mode, the scale and the transform that it had.
void restore_output(const vantore_output &o, const output_description &as_it_was);
