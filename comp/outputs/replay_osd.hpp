// A short message near the top of the screen, for a program that records it. It also shows above a fullscreen
// window.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <string_view>

// Returns the size of the pill around a text of this size, in layout units.
wlr_box replay_osd_size(double text_width, double text_height);
// Returns the pill's place on an output.
wlr_box replay_osd_place(const wlr_box &output, const wlr_box &size);

// Shows the text for 2.6 seconds on the output of the fullscreen window raised last, else on the one under
// the pointer. Replaces the message before. Does nothing for an empty text or without such an output.
void replay_osd_show(vantore_server &server, std::string_view text);
