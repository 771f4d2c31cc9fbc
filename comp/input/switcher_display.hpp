// Draws the window switcher.
#pragma once

#include "../fwd.hpp"
#include "switching.hpp"

#include <string>

// Returns a row's text: "APP  —  TITLE  (minimized)", without the parts that a window does not have.
std::string switcher_row_text(const char *app_id, const char *title, bool minimized);
// Returns a card's text: the title, otherwise the application, and "  (min)".
std::string switcher_card_text(const char *app_id, const char *title, bool minimized);

// Shows the items with the selected one, and a frame around the selected window if it is not minimized.
void switcher_show(vantore_server &server);
void switcher_hide(vantore_switching &s);
